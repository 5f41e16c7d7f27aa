// SPDX-License-Identifier: MIT
#include "PreviewPanel.h"

#include "AppState.h"
#include "Button.h"
#include "EmptyState.h"
#include "InspectorFacts.h"
#include "Label.h"
#include "Painting.h"
#include "QuickLookPreview.h"
#include "Refresher.h"
#include "Text.h"
#include "Tokens.h"

#include <QApplication>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <QStackedLayout>
#include <QTextDocument>
#include <QVBoxLayout>

#include <cstddef>
#include <optional>

namespace quorvane {
namespace {

constexpr int headerHeight = 44;
constexpr int panelMargin = 48;
constexpr QSize largestPanel{960, 760};

bool isPanelKey(int key)
{
    return key == Qt::Key_Space || key == Qt::Key_Escape || key == Qt::Key_Up ||
           key == Qt::Key_Down || key == Qt::Key_Left || key == Qt::Key_Right;
}

} // namespace

class PreviewPanel::PictureView : public QWidget
{
public:
    void setPicture(const QImage& picture)
    {
        m_picture = picture;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        const QSizeF natural = m_picture.size() / devicePixelRatioF();
        QSizeF shown = natural;
        if (natural.width() > width() || natural.height() > height()) {
            shown = natural.scaled(size(), Qt::KeepAspectRatio);
        }
        QRectF place(QPointF(), shown);
        place.moveCenter(QRectF(rect()).center());
        painter.drawImage(place, m_picture);
    }

private:
    QImage m_picture;
};

PreviewPanel::PreviewPanel(AppState& state, QWidget* window)
    : QWidget(window)
    , m_state(state)
    , m_name(new ElidedLabel({}, Qt::ElideMiddle, TextStyle::strong))
    , m_summary(new EmptyState({}, {}, {}))
    , m_picture(new PictureView)
    , m_text(new QPlainTextEdit)
{
    setObjectName(QStringLiteral("previewPanel"));
    setAccessibleName(tr("Quick Look"));
    setFocusPolicy(Qt::StrongFocus);
    hide();
    m_text->setObjectName(QStringLiteral("previewText"));
    m_text->setAccessibleName(tr("Contents"));
    m_text->setReadOnly(true);
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->setFocusPolicy(Qt::ClickFocus);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_text->document()->setDocumentMargin(spacing::l);
    m_text->installEventFilter(this);
    layOut();
    window->installEventFilter(this);
    QuickLookPreview::shared().setPanel([this] { bringToFront(); });
    auto* const refresher = new Refresher(this, [this] { followSelection(); });
    refresher->watch(m_state.selectedNode, m_state.section);
}

PreviewPanel::~PreviewPanel()
{
    QuickLookPreview::shared().setPanel({});
    if (m_reading) {
        m_reading->cancel();
    }
}

void PreviewPanel::layOut()
{
    auto* const header = new QWidget;
    header->setFixedHeight(headerHeight);
    auto* const row = new QHBoxLayout(header);
    row->setContentsMargins(spacing::l, 0, spacing::s, 0);
    row->addWidget(m_name, 1);
    auto* const close = new ToolButton(QStringLiteral("xmark"), tr("Close Preview (Space)"));
    close->setObjectName(QStringLiteral("closePreviewButton"));
    connect(close, &QAbstractButton::clicked, this, &PreviewPanel::closePanel);
    row->addWidget(close);

    auto* const body = new QWidget;
    m_pages = new QStackedLayout(body);
    m_pages->addWidget(m_summary);
    m_pages->addWidget(m_picture);
    m_pages->addWidget(m_text);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(1, 1, 1, spacing::m);
    column->setSpacing(0);
    column->addWidget(header);
    column->addWidget(new Hairline);
    column->addWidget(body, 1);
}

void PreviewPanel::place()
{
    const QRect window = parentWidget()->rect();
    const QSize room = window.size() - QSize(2 * panelMargin, 2 * panelMargin);
    QRect area(QPoint(), room.boundedTo(largestPanel));
    area.moveCenter(window.center());
    setGeometry(area);
}

void PreviewPanel::bringToFront()
{
    const std::optional<FilePath>& url = QuickLookPreview::shared().url();
    if (!url) {
        return;
    }
    if (isHidden()) {
        m_focusBefore = QApplication::focusWidget();
    }
    place();
    show();
    raise();
    setFocus(Qt::OtherFocusReason);
    m_name->setText(displayText(url->lastComponent()));
    read(*url);
}

void PreviewPanel::closePanel()
{
    if (isHidden()) {
        return;
    }
    if (m_reading) {
        m_reading->cancel();
    }
    m_isReading = false;
    hide();
    showContent({});
    if (m_focusBefore && m_focusBefore->isVisible()) {
        m_focusBefore->setFocus(Qt::OtherFocusReason);
    }
}

void PreviewPanel::followSelection()
{
    if (isHidden()) {
        return;
    }
    const NodePointer node = m_state.selectedNode.value();
    if (!node || m_state.section.value() != AppSection::analysis) {
        closePanel();
    } else if (node->path() != QuickLookPreview::shared().url()) {
        QuickLookPreview::shared().show(*node);
    }
}

void PreviewPanel::read(const FilePath& path)
{
    if (m_reading) {
        m_reading->cancel();
    }
    showContent({});
    m_isReading = true;
    const QSize atMost = m_pages->parentWidget()->size() * devicePixelRatioF();
    m_reading = m_state.jobs().start(
        JobPriority::userInitiated,
        [path, atMost](const Job&) { return PreviewContent::read(path, atMost); },
        [this](const PreviewContent& content) {
            m_isReading = false;
            showContent(content);
        });
}

void PreviewPanel::showContent(const PreviewContent& content)
{
    m_kind = content.kind;
    m_picture->setPicture(content.picture);
    m_text->setPlainText(content.text);
    const NodePointer node = m_state.selectedNode.value();
    m_summary->setSymbol(node ? symbolOf(*node) : QStringLiteral("doc.fill"));
    m_summary->setHeading(m_name->text());
    m_summary->setText(node ? kindOf(*node) % QStringLiteral(" · ") % node->formattedBytes()
                            : QString());
    switch (content.kind) {
    case PreviewContent::Kind::picture:
        m_pages->setCurrentWidget(m_picture);
        return;
    case PreviewContent::Kind::text:
        m_pages->setCurrentWidget(m_text);
        return;
    case PreviewContent::Kind::summary:
        break;
    }
    m_pages->setCurrentWidget(m_summary);
}

/// In the order of the sizes, as the panel beside lists them.
void PreviewPanel::selectSibling(int step)
{
    const NodePointer node = m_state.selectedNode.value();
    FileNode* const parent = node ? node->parent() : nullptr;
    if (parent == nullptr) {
        return;
    }
    const auto siblings = parent->children();
    const auto here = &*node - siblings.data() + step;
    if (here < 0 || here >= static_cast<std::ptrdiff_t>(siblings.size())) {
        return;
    }
    m_state.select(NodePointer(node, &siblings[static_cast<std::size_t>(here)]));
}

bool PreviewPanel::event(QEvent* event)
{
    // Its keys come here before any shortcut of the window.
    if (event->type() == QEvent::ShortcutOverride &&
        isPanelKey(static_cast<QKeyEvent*>(event)->key())) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

bool PreviewPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize && isVisible()) {
        place();
    } else if (watched == m_text && event->type() == QEvent::ShortcutOverride) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Space || key == Qt::Key_Escape) {
            event->accept();
            return true;
        }
    } else if (watched == m_text && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Space || key == Qt::Key_Escape) {
            closePanel();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void PreviewPanel::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Escape:
        closePanel();
        break;
    case Qt::Key_Up:
    case Qt::Key_Left:
        selectSibling(-1);
        break;
    case Qt::Key_Down:
    case Qt::Key_Right:
        selectSibling(1);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void PreviewPanel::mousePressEvent(QMouseEvent* event)
{
    event->accept();
}

void PreviewPanel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintPopover(painter, rect(), radius::surface);
}

} // namespace quorvane

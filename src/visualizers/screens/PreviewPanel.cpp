// SPDX-License-Identifier: MIT
#include "PreviewPanel.h"

#include "Button.h"
#include "ByteFormatter.h"
#include "DocumentView.h"
#include "EmptyState.h"
#include "FacetHost.h"
#include "InspectorFacts.h"
#include "Label.h"
#include "MediaView.h"
#include "NavigationState.h"
#include "Painting.h"
#include "PanelShadow.h"
#include "PictureView.h"
#include "PreviewText.h"
#include "QuickLookPreview.h"
#include "Refresher.h"
#include "SettingsState.h"
#include "Text.h"
#include "Tokens.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QStackedLayout>
#include <QTextDocument>
#include <QVBoxLayout>

#include <chrono>
#include <cstddef>
#include <optional>
#include <utility>

namespace quorvane {
namespace {

constexpr int headerHeight = 44;
constexpr int panelMargin = 48;
constexpr QSize maxPanel{960, 760};
/// The whole name stands in the header's tip.
constexpr int summaryNameWidth = 560;
/// A reading that takes longer shows the summary meanwhile.
constexpr std::chrono::milliseconds summaryDelay{150};

bool isArrow(int key)
{
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_Left || key == Qt::Key_Right;
}

bool isPanelKey(int key)
{
    return key == Qt::Key_Space || isArrow(key);
}

/// "File · 4.0 KB", "Folder · 4.0 KB · 12 files"
QString summaryOf(const FileNode& node)
{
    const QString summary = kindOf(node) % QStringLiteral(" · ") % node.formattedBytes();
    return node.isDirectory()
               ? QString(summary % QStringLiteral(" · ") % QString::number(node.fileCount()) %
                         QStringLiteral(" files"))
               : summary;
}

} // namespace

PreviewPanel::PreviewPanel(AppState& state, QWidget* window)
    : QWidget(window)
    , m_navigation(NavigationState::of(state))
    , m_settings(SettingsState::of(state))
    , m_host(FacetHost::of(state))
    , m_shadow(new PanelShadow(window))
    , m_name(new ElidedLabel({}, Qt::ElideMiddle, TextStyle::strong))
    , m_detail(new Label({}, TextStyle::caption, ThemeColor::text2))
    , m_summary(new EmptyState({}, {}, {}))
    , m_picture(new PictureView)
    , m_text(new QPlainTextEdit)
    , m_document(new DocumentView(m_host.jobs()))
{
    setObjectName(QStringLiteral("previewPanel"));
    setAccessibleName(tr("Quick Look"));
    setFocusPolicy(Qt::StrongFocus);
    hide();
    setUpText();
    layOut();
    m_summaryDelay.setSingleShot(true);
    connect(&m_summaryDelay, &QTimer::timeout, this, &PreviewPanel::showSummary);
    connect(m_document, &DocumentView::currentPageChanged, this, &PreviewPanel::showDetail);
    auto* const refresher = new Refresher(this, [this] { followSelection(); });
    refresher->watch(m_navigation.selectedNode, m_navigation.section);
}

PreviewPanel::~PreviewPanel()
{
    delete m_shadow;
    stopReading();
    if (m_reading) {
        m_reading->cancel();
    }
}

void PreviewPanel::setUpText()
{
    m_text->setObjectName(QStringLiteral("previewText"));
    m_text->setAccessibleName(tr("Contents"));
    m_text->setReadOnly(true);
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->setFocusPolicy(Qt::ClickFocus);
    m_text->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_text->viewport()->setAutoFillBackground(false);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_text->document()->setDocumentMargin(spacing::l);
}

QWidget* PreviewPanel::makeHeader()
{
    auto* const header = new QWidget;
    header->setFixedHeight(headerHeight);
    auto* const row = new QHBoxLayout(header);
    row->setContentsMargins(spacing::l, 0, spacing::s, 0);
    row->setSpacing(spacing::m);
    row->addWidget(m_name, 1);
    m_detail->setObjectName(QStringLiteral("previewDetail"));
    row->addWidget(m_detail);
    auto* const close = new ToolButton(QStringLiteral("xmark"), tr("Close Preview (Space)"));
    close->setObjectName(QStringLiteral("closePreviewButton"));
    connect(close, &QAbstractButton::clicked, this, &PreviewPanel::closePanel);
    row->addWidget(close);
    return header;
}

void PreviewPanel::layOut()
{
    auto* const body = new QWidget;
    m_pages = new QStackedLayout(body);
    m_pages->addWidget(m_summary);
    m_pages->addWidget(m_picture);
    m_pages->addWidget(m_text);
    m_pages->addWidget(m_document);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(1, 1, 1, spacing::m);
    column->setSpacing(0);
    column->addWidget(makeHeader());
    column->addWidget(new Hairline);
    column->addWidget(body, 1);
}

/// Its thread starts with the first sound or film.
MediaView& PreviewPanel::media()
{
    if (m_media == nullptr) {
        m_media = new MediaView;
        m_pages->addWidget(m_media);
        connect(m_media, &MediaView::opened, this, [this] {
            m_isReading = false;
            showKind(PreviewContent::Kind::media, m_media);
        });
        connect(m_media, &MediaView::failed, this, [this] {
            m_isReading = false;
            showSummary();
        });
    }
    return *m_media;
}

void PreviewPanel::place()
{
    const QRect window = parentWidget()->rect();
    const QSize room = window.size() - QSize(2 * panelMargin, 2 * panelMargin);
    QRect area(QPoint(), room.boundedTo(maxPanel));
    area.moveCenter(window.center());
    setGeometry(area);
    m_shadow->place(this);
}

void PreviewPanel::bringToFront()
{
    const QuickLookPreview& source = QuickLookPreview::shared();
    if (source.numberOfPreviewItems() == 0) {
        return;
    }
    const std::optional<FilePath>& url = source.previewItemAt(0);
    // A user who works beside the open panel keeps the keyboard focus there.
    if (isHidden()) {
        m_focusBefore = QApplication::focusWidget();
        place();
        m_shadow->show();
        show();
        setFocus(Qt::OtherFocusReason);
        qApp->installEventFilter(this);
    }
    raise();
    m_shadow->stackUnder(this);
    m_name->setText(displayText(url->lastComponent()));
    read(*url);
}

void PreviewPanel::closePanel()
{
    if (isHidden()) {
        return;
    }
    qApp->removeEventFilter(this);
    const QWidget* const focused = QApplication::focusWidget();
    const bool hadFocus = focused == this || (focused != nullptr && isAncestorOf(focused));
    stopReading();
    m_shadow->hide();
    hide();
    showSummary();
    if (hadFocus && m_focusBefore && m_focusBefore->isVisible()) {
        m_focusBefore->setFocus(Qt::OtherFocusReason);
    }
}

void PreviewPanel::followSelection()
{
    if (isHidden()) {
        return;
    }
    const NodePointer node = m_navigation.selectedNode.value();
    if (!node || m_navigation.section.value() != AppSection::analysis) {
        closePanel();
    } else if (node->path() != QuickLookPreview::shared().url()) {
        QuickLookPreview::shared().show(*node);
    }
}

/// The job is not cancelled: what it has opened is returned, to be released on another thread.
void PreviewPanel::stopReading()
{
    m_summaryDelay.stop();
    m_isReading = false;
    if (m_stop) {
        m_stop->set(true);
        m_stop.reset();
    }
    if (m_media != nullptr) {
        m_media->close();
    }
}

void PreviewPanel::read(const FilePath& path)
{
    stopReading();
    m_path = path;
    m_isReading = true;
    m_stop = std::make_shared<LockedFlag>();
    m_summaryDelay.start(summaryDelay);
    const QSize room = m_pages->parentWidget()->size() * devicePixelRatioF();
    m_reading = m_host.jobs().start(
        JobPriority::userInitiated,
        [path, room, stop = m_stop](const Job&) { return PreviewContent::read(path, room, *stop); },
        [this, stop = m_stop](PreviewContent content) {
            if (stop == m_stop) {
                take(std::move(content));
            } else if (content.document) {
                m_host.jobs().release(std::move(content.document));
            }
        });
}

void PreviewPanel::take(PreviewContent content)
{
    if (content.kind == PreviewContent::Kind::media) {
        media().open(m_path);
        return;
    }
    m_isReading = false;
    emptyPages();
    m_content = std::move(content);
    switch (m_content.kind) {
    case PreviewContent::Kind::picture:
        m_picture->setPicture(m_content.picture.image);
        showKind(m_content.kind, m_picture);
        return;
    case PreviewContent::Kind::text:
        m_text->setPlainText(m_content.text);
        showKind(m_content.kind, m_text);
        return;
    case PreviewContent::Kind::document:
        m_document->setDocument(std::exchange(m_content.document, nullptr));
        showKind(m_content.kind, m_document);
        return;
    default:
        showSummary();
    }
}

void PreviewPanel::emptyPages()
{
    m_content = {};
    m_picture->setPicture({});
    m_text->clear();
    m_document->setDocument(nullptr);
}

void PreviewPanel::showKind(PreviewContent::Kind kind, QWidget* page)
{
    m_summaryDelay.stop();
    m_kind = kind;
    m_pages->setCurrentWidget(page);
    showDetail();
}

void PreviewPanel::showSummary()
{
    emptyPages();
    const NodePointer selected = m_navigation.selectedNode.value();
    const bool isSelected = selected && selected->path() == m_path;
    m_summary->setSymbol(isSelected ? symbolOf(*selected) : QStringLiteral("doc.fill"));
    m_summary->setHeading(QFontMetrics(quorvane::font(TextStyle::heading))
                              .elidedText(m_name->text(), Qt::ElideMiddle, summaryNameWidth));
    m_summary->setText(isSelected ? summaryOf(*selected) : QString());
    showKind(PreviewContent::Kind::summary, m_summary);
}

/// How large the picture is, where in the document the reader is, or that a text goes on.
void PreviewPanel::showDetail()
{
    QString detail;
    if (m_kind == PreviewContent::Kind::picture) {
        const QSize size = m_content.picture.fullSize;
        detail =
            QString::number(size.width()) % QStringLiteral(" × ") % QString::number(size.height());
    } else if (m_kind == PreviewContent::Kind::document) {
        detail = tr("%1 of %2").arg(m_document->currentPage() + 1).arg(m_document->pageCount());
    } else if (m_kind == PreviewContent::Kind::text && m_content.isCut) {
        detail = m_content.isCutByLines
                     ? tr("First %1 lines").arg(maxTextLines)
                     : tr("First %1").arg(ByteFormatter::string(PreviewContent::textLimit));
    }
    m_detail->setText(detail);
}

void PreviewPanel::moveSelection(QKeyEvent& event)
{
    auto* const list = qobject_cast<QAbstractItemView*>(m_focusBefore.data());
    if (list != nullptr && list->isVisible()) {
        QApplication::sendEvent(list, &event);
        return;
    }
    selectSibling(event.key() == Qt::Key_Up || event.key() == Qt::Key_Left ? -1 : 1);
}

/// In the order of the sizes, past what is hidden.
void PreviewPanel::selectSibling(int step)
{
    const NodePointer node = m_navigation.selectedNode.value();
    FileNode* const parent = node ? node->parent() : nullptr;
    if (parent == nullptr) {
        return;
    }
    const BloatKeys hidden = m_settings.disabledBloat();
    FileNode* before = nullptr;
    FileNode* after = nullptr;
    for (FileNode& sibling : parent->visibleChildren(hidden)) {
        if (&sibling > node.get()) {
            after = &sibling;
            break;
        }
        before = &sibling < node.get() ? &sibling : before;
    }
    if (FileNode* const next = step < 0 ? before : after) {
        m_navigation.select(NodePointer(node, next));
    }
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
    if (isHidden()) {
        return QWidget::eventFilter(watched, event);
    }
    if (watched == parentWidget() && event->type() == QEvent::Resize) {
        place();
    } else if (watched == parentWidget() && event->type() == QEvent::Hide) {
        closePanel();
    } else if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) {
        if (takesKey(*watched, *event)) {
            event->accept();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

/// Esc anywhere in the window belongs to the panel, ahead of all that it does elsewhere; in the
/// text Space does as well.
bool PreviewPanel::takesKey(const QObject& watched, QEvent& event)
{
    const auto* const widget = qobject_cast<const QWidget*>(&watched);
    const auto& key = static_cast<const QKeyEvent&>(event);
    const bool isEscape = key.key() == Qt::Key_Escape && key.modifiers() == Qt::NoModifier &&
                          widget != nullptr && widget->window() == window();
    if (!isEscape && (&watched != m_text || key.key() != Qt::Key_Space)) {
        return false;
    }
    if (event.type() == QEvent::KeyPress) {
        closePanel();
    }
    return true;
}

void PreviewPanel::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space) {
        closePanel();
    } else if (isArrow(event->key())) {
        moveSelection(*event);
    } else if (!scrollByKey(event->key())) {
        QWidget::keyPressEvent(event);
    }
}

/// The keys of a page scroll what is longer than the panel.
bool PreviewPanel::scrollByKey(int key)
{
    const auto* const area = qobject_cast<QAbstractScrollArea*>(m_pages->currentWidget());
    if (area == nullptr) {
        return false;
    }
    QScrollBar& bar = *area->verticalScrollBar();
    switch (key) {
    case Qt::Key_PageUp:
        bar.triggerAction(QAbstractSlider::SliderPageStepSub);
        return true;
    case Qt::Key_PageDown:
        bar.triggerAction(QAbstractSlider::SliderPageStepAdd);
        return true;
    case Qt::Key_Home:
        bar.triggerAction(QAbstractSlider::SliderToMinimum);
        return true;
    case Qt::Key_End:
        bar.triggerAction(QAbstractSlider::SliderToMaximum);
        return true;
    default:
        return false;
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

// SPDX-License-Identifier: MIT
#include "FooterView.h"

#include "GrowthLegend.h"
#include "Label.h"
#include "Painting.h"
#include "SegmentedPicker.h"
#include "SettingsState.h"
#include "SizeMode.h"
#include "Theme.h"
#include "Tokens.h"

#include <QPainter>
#include <QStringList>

#include <algorithm>
#include <cstddef>

namespace quorvane {
namespace {

constexpr int pickerWidth = 240;
constexpr int leftMargin = spacing::m;
constexpr int rightMargin = spacing::l;
constexpr int hintLines = 2;
constexpr int hintGap = 6; ///< between the picker and the hint below it
constexpr int bottomMargin = 10;

} // namespace

/// Phrases with dots between them, on one line or broken between two phrases.
class FooterHint final : public Label
{
public:
    FooterHint(const QString& text, QWidget* parent)
        : Label(text, TextStyle::caption, ThemeColor::text3, parent)
    {
        const QStringList phrases = text.split(separator());
        const qsizetype half = (phrases.size() + 1) / 2;
        m_halves = {phrases.first(half).join(separator()), phrases.sliced(half).join(separator())};
    }

    int widthOf(int lines) const
    {
        return lines == 1 ? textWidth(textStyle(), text())
                          : std::max(textWidth(textStyle(), m_halves.first()),
                                     textWidth(textStyle(), m_halves.last()));
    }

    void setLines(int lines, Qt::Alignment alignment)
    {
        m_isBroken = lines > 1;
        setAlignment(alignment);
        update();
    }

    QSize minimumSizeHint() const override
    {
        const int lines = m_isBroken ? hintLines : 1;
        return {widthOf(lines), lines * typeMeasure(textStyle()).lineHeight};
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const QStringList lines = m_isBroken ? m_halves : QStringList(text());
        const int lineHeight = typeMeasure(textStyle()).lineHeight;
        int y = (height() - lineHeight * static_cast<int>(lines.size())) / 2;
        for (const QString& line : lines) {
            paintText(painter, QRect(0, y, width(), lineHeight),
                      static_cast<int>(alignment() | Qt::AlignVCenter), textStyle(), currentColor(),
                      line);
            y += lineHeight;
        }
    }

private:
    static QString separator() { return QStringLiteral(" · "); }

    QStringList m_halves;
    bool m_isBroken = false;
};

FooterView::FooterView(AppState& state, QWidget* parent)
    : QWidget(parent)
    , m_settings(SettingsState::of(state))
    , m_sizeBasis(new SegmentedPicker(tr("Size basis"), this))
    , m_legend(new GrowthLegend(state, this))
    , m_hint(new FooterHint(
          tr("Hover to inspect · Click a folder to zoom · Right-click for actions · Esc zooms out"),
          this))
{
    setObjectName(QStringLiteral("footerView"));
    setFixedHeight(measure::footerHeight);
    m_sizeBasis->setObjectName(QStringLiteral("sizeBasisPicker"));
    m_sizeBasis->setFixedWidth(pickerWidth);
    for (const SizeMode mode : allSizeModes) {
        m_sizeBasis->addSegment(title(mode));
    }
    m_hint->setObjectName(QStringLiteral("footerHint"));

    connect(m_sizeBasis, &SegmentedPicker::activated, this, [this](int index) {
        m_settings.setSizeMode(allSizeModes[static_cast<std::size_t>(index)]);
    });
    m_sizeModeChanged = m_settings.storageSizeMode.addNotifier([this] { showSizeMode(); });
    connect(m_legend, &GrowthLegend::contentChanged, this, [this] { layOut(); });
    showSizeMode();
}

void FooterView::showSizeMode()
{
    const auto* const mode =
        std::find(allSizeModes.begin(), allSizeModes.end(), m_settings.sizeMode());
    m_sizeBasis->setCurrentIndex(static_cast<int>(mode - allSizeModes.begin()));
}

void FooterView::layOut()
{
    const int pickerHeight = m_sizeBasis->sizeHint().height();
    const int pickerTop = (measure::footerHeight + 1 - pickerHeight) / 2;
    m_sizeBasis->setGeometry(leftMargin, pickerTop, pickerWidth, pickerHeight);
    const int lineHeight = typeMeasure(m_hint->textStyle()).lineHeight;
    int besidePicker = leftMargin + pickerWidth;
    const int rowsBottom = layOutLegend(pickerTop, besidePicker);
    const int left = besidePicker + spacing::l;
    const int beside = rowsBottom > pickerTop + pickerHeight ? 0 : width() - left - rightMargin;
    if (beside >= m_hint->widthOf(hintLines)) {
        m_hint->setLines(beside >= m_hint->widthOf(1) ? 1 : hintLines, Qt::AlignRight);
        m_hint->setGeometry(left, 1, beside, measure::footerHeight - 1);
        setFixedHeight(measure::footerHeight);
        return;
    }
    m_hint->setLines(hintLines, Qt::AlignLeft);
    m_hint->setGeometry(leftMargin, rowsBottom + hintGap, width() - leftMargin - rightMargin,
                        hintLines * lineHeight);
    setFixedHeight(m_hint->geometry().bottom() + 1 + bottomMargin);
}

/// Puts the legend beside the picker, or below it where there is no room. Moves `right` behind what
/// stands in the picker's row, and returns the bottom of the last row.
int FooterView::layOutLegend(int top, int& right)
{
    const int rowHeight = m_sizeBasis->sizeHint().height();
    m_legend->setVisible(m_legend->isWanted());
    if (!m_legend->isWanted()) {
        return top + rowHeight;
    }
    const int left = right + spacing::xl;
    const int beside = width() - left - rightMargin;
    if (beside >= m_legend->shortWidth()) {
        const int own = std::min(beside, m_legend->wholeWidth());
        m_legend->setGeometry(left, top, own, rowHeight);
        right = left + own;
        return top + rowHeight;
    }
    const int below = top + rowHeight + hintGap;
    m_legend->setGeometry(leftMargin, below,
                          std::min(width() - leftMargin - rightMargin, m_legend->wholeWidth()),
                          rowHeight);
    return below + rowHeight;
}

void FooterView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    layOut();
}

void FooterView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(QRect(0, 0, width(), 1), themeColor(ThemeColor::hairline));
}

} // namespace quorvane

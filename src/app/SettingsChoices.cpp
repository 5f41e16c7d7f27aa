// SPDX-License-Identifier: MIT
#include "SettingsChoices.h"

#include "Painting.h"
#include "Symbols.h"
#include "Theme.h"
#include "Tokens.h"

#include <QPainter>

namespace quorvane {
namespace {

constexpr int discSide = 32;
constexpr int discTop = 6;
constexpr int discGap = 9;
constexpr int swatchWidth = 64;
constexpr int checkSide = 15;
/// The ring around the current accent: a gap of 3, then 2 wide.
constexpr double ringGap = 3;
constexpr double ringWidth = 2;

constexpr int paletteRowHeight = 52;
constexpr int paletteGap = 14;
constexpr int sampleSide = 28;
constexpr double sampleEdgeOpacity = 0.12;
constexpr int currentMarkSide = 18;

void setUpChoice(QAbstractButton& button, const QString& name)
{
    button.setText(name);
    button.setCheckable(true);
    button.setAttribute(Qt::WA_Hover);
    button.setFocusPolicy(Qt::TabFocus);
}

QColor toQColor(const Color& color)
{
    return QColor::fromRgbF(static_cast<float>(color.r), static_cast<float>(color.g),
                            static_cast<float>(color.b), static_cast<float>(color.a));
}

} // namespace

AccentSwatch::AccentSwatch(AccentChoice accent, QWidget* parent)
    : QAbstractButton(parent)
    , m_accent(accent)
{
    setUpChoice(*this, title(accent));
    setAutoExclusive(true);
}

QSize AccentSwatch::sizeHint() const
{
    const int textHeight = typeMeasure(TextStyle::caption).lineHeight;
    return {swatchWidth, discTop + discSide + discGap + textHeight + measure::focusLine};
}

void AccentSwatch::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor own = color(m_accent);
    const QRectF disc((width() - discSide) / 2.0, discTop, discSide, discSide);
    painter.setPen(Qt::NoPen);
    painter.setBrush(own);
    painter.drawEllipse(disc);
    if (isChecked()) {
        const double out = ringGap + ringWidth / 2;
        painter.setPen(QPen(own, ringWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(disc.adjusted(-out, -out, out, out));
        paintSymbol(painter, QStringLiteral("checkmark"), disc, checkSide,
                    Theme(theme().isDark(), m_accent).color(ThemeColor::accentLabel));
    }
    const QRectF words(0, disc.bottom() + discGap, width(),
                       typeMeasure(TextStyle::caption).lineHeight);
    const bool isStrong = isChecked() || underMouse();
    paintText(painter, words, Qt::AlignCenter,
              isChecked() ? TextStyle::captionMedium : TextStyle::caption,
              themeColor(isStrong ? ThemeColor::text1 : ThemeColor::text2), text());
    if (hasFocus()) {
        paintFocusLine(painter, rect(), radius::control);
    }
}

PaletteRow::PaletteRow(AppPalette palette, QWidget* parent)
    : QAbstractButton(parent)
    , m_palette(palette)
{
    setUpChoice(*this, title(palette));
    setAccessibleDescription(subtitle(palette));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void PaletteRow::setCurrent(bool current)
{
    setChecked(current);
    setToolTip(current ? tr("Currently selected palette") : QString());
}

QSize PaletteRow::sizeHint() const
{
    return {swatchWidth, paletteRowHeight};
}

void PaletteRow::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QStyle::State state = QStyle::State_None;
    state.setFlag(QStyle::State_MouseOver, underMouse());
    state.setFlag(QStyle::State_HasFocus, hasFocus());
    painter.save();
    if (const QWidget* const card = parentWidget()) {
        clipToCard(painter, card->rect().translated(-pos()).adjusted(1, 1, -1, -1));
    }
    paintRowGround(painter, rect(), radius::control, state);
    painter.restore();

    const QRectF area = QRectF(rect()).adjusted(spacing::l, 0, -spacing::l, 0);
    const QRectF sample(area.left(), (height() - sampleSide) / 2.0, sampleSide, sampleSide);
    paintPanel(painter, sample, radius::control, toQColor(swatch(m_palette, theme().isDark())),
               withOpacity(Qt::white, sampleEdgeOpacity));
    if (isChecked()) {
        paintSymbol(painter, QStringLiteral("checkmark.circle.fill"),
                    QRectF(area.right() - currentMarkSide, 0, currentMarkSide, height()),
                    currentMarkSide, themeColor(ThemeColor::accentText));
    }
    const int titleHeight = typeMeasure(TextStyle::row).lineHeight;
    const int subtitleHeight = typeMeasure(TextStyle::caption).lineHeight;
    const qreal left = sample.right() + paletteGap;
    const qreal width = area.right() - currentMarkSide - paletteGap - left;
    const qreal top = (height() - titleHeight - subtitleHeight) / 2.0;
    const int alignment = Qt::AlignLeft | Qt::AlignVCenter;
    paintText(painter, QRectF(left, top, width, titleHeight), alignment, TextStyle::row,
              themeColor(ThemeColor::text1), text());
    paintText(painter, QRectF(left, top + titleHeight, width, subtitleHeight), alignment,
              TextStyle::caption, themeColor(ThemeColor::text2), subtitle(m_palette));
}

} // namespace quorvane

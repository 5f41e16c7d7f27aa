// SPDX-License-Identifier: MIT
#include "FileTypeLegend.h"

#include "FileTypeCategory.h"
#include "Label.h"
#include "NodeColors.h"
#include "Tokens.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QPainter>

namespace quorvane {
namespace {

constexpr int columns = 3;
constexpr int firstColumnWidth = 66;
constexpr int secondColumnWidth = 72;
constexpr int dotSide = 8;
constexpr int dotGap = 7;

QColor toQColor(const Color& color)
{
    return QColor::fromRgbF(static_cast<float>(color.r), static_cast<float>(color.g),
                            static_cast<float>(color.b), static_cast<float>(color.a));
}

class Dot : public QWidget
{
public:
    explicit Dot(const QColor& color)
        : m_color(color)
    {
        setFixedSize(dotSide, dotSide);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_color);
        painter.drawEllipse(rect());
    }

private:
    QColor m_color;
};

} // namespace

FileTypeLegend::FileTypeLegend(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("fileTypeLegend"));
    auto* const grid = new QGridLayout(this);
    grid->setContentsMargins(spacing::s, 0, spacing::s, 0);
    grid->setHorizontalSpacing(0);
    grid->setVerticalSpacing(6);
    grid->setColumnMinimumWidth(0, firstColumnWidth);
    grid->setColumnMinimumWidth(1, secondColumnWidth);
    grid->setColumnStretch(columns - 1, 1);
    int i = 0;
    for (const FileTypeCategory category : legendCategories) {
        auto* const entry = new QHBoxLayout;
        entry->setSpacing(dotGap);
        entry->addWidget(new Dot(toQColor(NodeColors::legendColor(category))), 0, Qt::AlignVCenter);
        entry->addWidget(new Label(displayName(category), TextStyle::caption, ThemeColor::text2),
                         1);
        grid->addLayout(entry, i / columns, i % columns);
        ++i;
    }
}

} // namespace quorvane

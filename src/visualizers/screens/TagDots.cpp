// SPDX-License-Identifier: MIT
#include "TagDots.h"

#include "Theme.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace quorvane {

QColor tagColor(std::string_view rawValue)
{
    switch (tagColorFromRawValue(rawValue).value_or(TagColor::gray)) {
    case TagColor::red:
        return themeColor(ThemeColor::red);
    case TagColor::orange:
        return themeColor(ThemeColor::orange);
    case TagColor::yellow:
        return theme().isDark() ? QColor(0xFF, 0xD6, 0x0A) : QColor(0xD9, 0xA8, 0x00);
    case TagColor::green:
        return themeColor(ThemeColor::green);
    case TagColor::blue:
        return themeColor(ThemeColor::accent);
    case TagColor::purple:
        return themeColor(ThemeColor::purple);
    case TagColor::gray:
        break;
    }
    return {0x8E, 0x96, 0xA3};
}

QString tagColorName(TagColor color)
{
    static constexpr std::array names{
        QT_TRANSLATE_NOOP("TagColor", "Red"),    QT_TRANSLATE_NOOP("TagColor", "Orange"),
        QT_TRANSLATE_NOOP("TagColor", "Yellow"), QT_TRANSLATE_NOOP("TagColor", "Green"),
        QT_TRANSLATE_NOOP("TagColor", "Blue"),   QT_TRANSLATE_NOOP("TagColor", "Purple"),
        QT_TRANSLATE_NOOP("TagColor", "Gray")};
    return QCoreApplication::translate("TagColor", names[static_cast<std::size_t>(color)]);
}

std::vector<TagDot> tagDots(const std::vector<const TagRule*>& rules)
{
    std::vector<TagDot> dots;
    for (const TagRule* const rule : rules) {
        TagDot dot{rule->tagName, tagColor(rawValue(rule->tagColor))};
        if (std::find(dots.begin(), dots.end(), dot) == dots.end()) {
            dots.push_back(std::move(dot));
        }
    }
    return dots;
}

} // namespace quorvane

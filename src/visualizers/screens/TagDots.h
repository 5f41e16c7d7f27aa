// SPDX-License-Identifier: MIT
#pragma once

#include "TagRule.h"

#include <QColor>
#include <QString>

#include <string_view>
#include <vector>

namespace quorvane {

/// The colour of a tag in the present theme, by the stored key; gray for any other text.
QColor tagColor(std::string_view rawValue);
/// The name of a tag's colour, for example "Orange".
QString tagColorName(TagColor color);

/// One tag of a file, as it is shown: a dot, and the name, without which no colour stands.
struct TagDot
{
    QString name;
    QColor color;

    friend bool operator==(const TagDot&, const TagDot&) = default;
};

/// The tags of the rules that matched a file, each once, in the order of the rules.
std::vector<TagDot> tagDots(const std::vector<const TagRule*>& rules);

} // namespace quorvane

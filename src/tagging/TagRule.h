// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QUuid>

#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace quorvane {

/// What a condition tests, in the order in which a person chooses from them.
enum class TagConditionType : unsigned char {
    filenameContains,
    filenameStartsWith,
    filenameEndsWith,
    extensionIs,
    folderContains,
    sizeGT,
    sizeLT,
    contentContains
};

inline constexpr std::array allTagConditionTypes{
    TagConditionType::filenameContains, TagConditionType::filenameStartsWith,
    TagConditionType::filenameEndsWith, TagConditionType::extensionIs,
    TagConditionType::folderContains,   TagConditionType::sizeGT,
    TagConditionType::sizeLT,           TagConditionType::contentContains};

/// The stored key, for example "sizeGT".
std::string_view rawValue(TagConditionType type);
std::optional<TagConditionType> tagConditionTypeFromRawValue(std::string_view text);
/// The label, for example "Size greater than".
QString title(TagConditionType type);
QString defaultValue(TagConditionType type);
/// Whether the operand is a size.
inline bool takesSize(TagConditionType type)
{
    return type == TagConditionType::sizeGT || type == TagConditionType::sizeLT;
}

enum class TagColor : unsigned char { red, orange, yellow, green, blue, purple, gray };

inline constexpr std::array allTagColors{TagColor::red,   TagColor::orange, TagColor::yellow,
                                         TagColor::green, TagColor::blue,   TagColor::purple,
                                         TagColor::gray};

/// The stored key, for example "red".
std::string_view rawValue(TagColor color);
std::optional<TagColor> tagColorFromRawValue(std::string_view text);

/// One test of a rule: what is tested, and the operand as it was typed.
struct TagCondition
{
    QUuid id;
    TagConditionType type = TagConditionType::filenameContains;
    QString value;

    /// With a new id; without a value that of the type.
    static TagCondition make(TagConditionType type,
                             const std::optional<QString>& value = std::nullopt);
    /// "Extension is “pdf”".
    QString summary() const;

    friend bool operator==(const TagCondition&, const TagCondition&) = default;
};

/// A tag and what a file has to be like to get it.
struct TagRule
{
    QUuid id;
    QString name;
    QString tagName;
    TagColor tagColor = TagColor::blue;
    bool isEnabled = true; ///< a rule that is not matches nothing
    std::vector<TagCondition> conditions;
    bool matchAny = false; ///< any condition is enough; otherwise all have to hold

    /// "All of Extension is “pdf”; Size greater than “1 GB”".
    QString conditionSummary() const;

    friend bool operator==(const TagRule&, const TagRule&) = default;
};

/// The list as it is stored: JSON in UTF-8 on one line, ids in upper case, "\/" for a slash.
QByteArray encodeTagRules(std::span<const TagRule> rules);
/// Reads what encodeTagRules() writes, with the keys of an object in any order and any blanks
/// between the tokens. Nothing for every other text: one with a key missing, unknown or there
/// twice, with a value of another type, or with an unknown colour or condition. Any bytes are safe.
std::optional<std::vector<TagRule>> decodeTagRules(std::string_view json);

} // namespace quorvane

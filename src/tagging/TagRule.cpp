// SPDX-License-Identifier: MIT
#include "TagRule.h"

#include "Json.h"
#include "Text.h"

#include <QStringList>

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace quorvane {
namespace {

struct TypeRow
{
    std::string_view rawValue;
    const char* title;
    const char* defaultValue;
};

constexpr std::array<TypeRow, allTagConditionTypes.size()> typeRows{{
    {"filenameContains", "Filename contains", ""},
    {"filenameStartsWith", "Filename starts with", ""},
    {"filenameEndsWith", "Filename ends with", ""},
    {"extensionIs", "Extension is", "pdf"},
    {"folderContains", "Path contains folder", ""},
    {"sizeGT", "Size greater than", "100 MB"},
    {"sizeLT", "Size smaller than", "100 MB"},
    {"contentContains", "File content contains", "invoice"},
}};

constexpr std::array<std::string_view, allTagColors.size()> colorNames{
    "red", "orange", "yellow", "green", "blue", "purple", "gray"};

const TypeRow& rowOf(TagConditionType type)
{
    return typeRows[static_cast<std::size_t>(type)];
}

// ---- Writing

void appendText(std::string& out, const char* key, const QString& value)
{
    out.append(key);
    appendJsonString(out, value.toStdString());
}

void append(std::string& out, const TagCondition& condition)
{
    out.append("{\"id\":\"" + uuidText(condition.id) + "\",\"type\":\"");
    out.append(rawValue(condition.type));
    appendText(out, "\",\"value\":", condition.value);
    out.push_back('}');
}

void append(std::string& out, const TagRule& rule)
{
    out.append("{\"id\":\"" + uuidText(rule.id) + '"');
    appendText(out, ",\"name\":", rule.name);
    appendText(out, ",\"tagName\":", rule.tagName);
    out.append(",\"tagColor\":\"");
    out.append(rawValue(rule.tagColor));
    out.append(rule.isEnabled ? "\",\"isEnabled\":true" : "\",\"isEnabled\":false");
    out.append(",\"conditions\":[");
    for (std::size_t i = 0; i < rule.conditions.size(); ++i) {
        out.append(i == 0 ? "" : ",");
        append(out, rule.conditions[i]);
    }
    out.append(rule.matchAny ? "],\"matchAny\":true}" : "],\"matchAny\":false}");
}

// ---- Reading

bool readText(JsonReader& reader, QString& out)
{
    std::string bytes;
    if (!reader.text(bytes)) {
        return false;
    }
    // Not QString::fromUtf8(): that drops a byte order mark.
    out = displayText(bytes);
    return true;
}

bool readId(JsonReader& reader, QUuid& out)
{
    std::string text;
    if (!reader.text(text)) {
        return false;
    }
    const std::optional<QUuid> id = uuidFromText(text);
    out = id.value_or(out);
    return id.has_value();
}

template<class Value, class FromRawValue>
bool readRawValue(JsonReader& reader, Value& out, FromRawValue fromRawValue)
{
    std::string text;
    if (!reader.text(text)) {
        return false;
    }
    const std::optional<Value> known = fromRawValue(text);
    out = known.value_or(out);
    return known.has_value();
}

/// Reads an object that has each of the keys once and no other. readMember(place of the key).
template<std::size_t count, class ReadMember>
bool readObject(JsonReader& reader, const std::array<std::string_view, count>& keys,
                ReadMember readMember)
{
    if (!reader.beginObject()) {
        return false;
    }
    std::array<bool, count> isRead{};
    for (std::string key; reader.nextKey(key);) {
        const auto known = std::find(keys.begin(), keys.end(), key);
        const auto place = static_cast<std::size_t>(known - keys.begin());
        if (known == keys.end() || std::exchange(isRead[place], true) || !readMember(place)) {
            return false;
        }
    }
    return !reader.hasFailed() &&
           std::all_of(isRead.begin(), isRead.end(), [](bool isThere) { return isThere; });
}

constexpr std::array<std::string_view, 3> conditionKeys{"id", "type", "value"};
constexpr std::array<std::string_view, 7> ruleKeys{"id",        "name",       "tagName", "tagColor",
                                                   "isEnabled", "conditions", "matchAny"};

bool read(JsonReader& reader, TagCondition& condition)
{
    return readObject(reader, conditionKeys, [&](std::size_t key) {
        switch (key) {
        case 0:
            return readId(reader, condition.id);
        case 1:
            return readRawValue(reader, condition.type, tagConditionTypeFromRawValue);
        default:
            return readText(reader, condition.value);
        }
    });
}

template<class Value>
bool readList(JsonReader& reader, std::vector<Value>& out);

bool read(JsonReader& reader, TagRule& rule)
{
    return readObject(reader, ruleKeys, [&](std::size_t key) {
        switch (key) {
        case 0:
            return readId(reader, rule.id);
        case 1:
            return readText(reader, rule.name);
        case 2:
            return readText(reader, rule.tagName);
        case 3:
            return readRawValue(reader, rule.tagColor, tagColorFromRawValue);
        case 4:
            return reader.boolean(rule.isEnabled);
        case 5:
            return readList(reader, rule.conditions);
        default:
            return reader.boolean(rule.matchAny);
        }
    });
}

template<class Value>
bool readList(JsonReader& reader, std::vector<Value>& out)
{
    if (!reader.beginArray()) {
        return false;
    }
    while (reader.nextItem()) {
        if (!read(reader, out.emplace_back())) {
            return false;
        }
    }
    return !reader.hasFailed();
}

} // namespace

std::string_view rawValue(TagConditionType type)
{
    return rowOf(type).rawValue;
}

std::optional<TagConditionType> tagConditionTypeFromRawValue(std::string_view text)
{
    for (const TagConditionType type : allTagConditionTypes) {
        if (rawValue(type) == text) {
            return type;
        }
    }
    return std::nullopt;
}

QString title(TagConditionType type)
{
    return QLatin1String(rowOf(type).title);
}

QString defaultValue(TagConditionType type)
{
    return QLatin1String(rowOf(type).defaultValue);
}

std::string_view rawValue(TagColor color)
{
    return colorNames[static_cast<std::size_t>(color)];
}

std::optional<TagColor> tagColorFromRawValue(std::string_view text)
{
    for (const TagColor color : allTagColors) {
        if (rawValue(color) == text) {
            return color;
        }
    }
    return std::nullopt;
}

TagCondition TagCondition::make(TagConditionType type, const std::optional<QString>& value)
{
    return {QUuid::createUuid(), type, value ? *value : defaultValue(type)};
}

QString TagCondition::summary() const
{
    return title(type) + QStringLiteral(" “") + value + QStringLiteral("”");
}

QString TagRule::conditionSummary() const
{
    if (conditions.empty()) {
        return QStringLiteral("No conditions (matches every file)");
    }
    QStringList summaries;
    for (const TagCondition& condition : conditions) {
        summaries.append(condition.summary());
    }
    return (matchAny ? QStringLiteral("Any of ") : QStringLiteral("All of ")) +
           summaries.join(QStringLiteral("; "));
}

QByteArray encodeTagRules(std::span<const TagRule> rules)
{
    std::string out = "[";
    for (std::size_t i = 0; i < rules.size(); ++i) {
        out.append(i == 0 ? "" : ",");
        append(out, rules[i]);
    }
    out.push_back(']');
    return QByteArray::fromStdString(out);
}

std::optional<std::vector<TagRule>> decodeTagRules(std::string_view json)
{
    JsonReader reader(json);
    std::vector<TagRule> rules;
    if (!readList(reader, rules) || !reader.isComplete()) {
        return std::nullopt;
    }
    return rules;
}

} // namespace quorvane

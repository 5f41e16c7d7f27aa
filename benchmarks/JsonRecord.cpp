// SPDX-License-Identifier: MIT
#include "JsonRecord.h"

#include "JsonLineReader.h"

#include <iostream>

namespace quorvane {

std::variant<JsonRecord, std::string> JsonRecord::parse(std::string_view line)
{
    JsonRecord record;
    JsonLineReader reader(line);
    for (JsonMember member; reader.next(member);) {
        Value& value = record.m_members[std::string(member.key)];
        switch (member.kind) {
        case JsonMember::Kind::boolean:
            value = member.boolean;
            break;
        case JsonMember::Kind::integer:
            value = member.integer;
            break;
        case JsonMember::Kind::real:
            value = member.real;
            break;
        case JsonMember::Kind::text:
            value = std::string(member.text);
            break;
        case JsonMember::Kind::null:
        case JsonMember::Kind::nested:
            record.m_members.erase(std::string(member.key));
            break;
        }
    }
    if (!reader.fault().empty()) {
        return std::string(reader.fault());
    }
    return record;
}

const JsonRecord::Value* JsonRecord::find(std::string_view key) const
{
    const auto member = m_members.find(key);
    return member == m_members.end() ? nullptr : &member->second;
}

std::optional<std::string_view> JsonRecord::text(std::string_view key) const
{
    const Value* const value = find(key);
    const auto* const text = value == nullptr ? nullptr : std::get_if<std::string>(value);
    return text == nullptr ? std::nullopt : std::optional<std::string_view>(*text);
}

std::optional<std::int64_t> JsonRecord::integer(std::string_view key) const
{
    const Value* const value = find(key);
    const auto* const number = value == nullptr ? nullptr : std::get_if<std::int64_t>(value);
    return number == nullptr ? std::nullopt : std::optional(*number);
}

std::optional<double> JsonRecord::real(std::string_view key) const
{
    if (const std::optional<std::int64_t> whole = integer(key)) {
        return static_cast<double>(*whole);
    }
    const Value* const value = find(key);
    const auto* const number = value == nullptr ? nullptr : std::get_if<double>(value);
    return number == nullptr ? std::nullopt : std::optional(*number);
}

std::optional<bool> JsonRecord::boolean(std::string_view key) const
{
    const Value* const value = find(key);
    const auto* const boolean = value == nullptr ? nullptr : std::get_if<bool>(value);
    return boolean == nullptr ? std::nullopt : std::optional(*boolean);
}

int answerLines(const LineAnswer& answer)
{
    std::string line;
    for (std::size_t number = 1; std::getline(std::cin, line); ++number) {
        if (line.empty()) {
            continue;
        }
        const std::variant<JsonRecord, std::string> parsed = JsonRecord::parse(line);
        const std::string* fault = std::get_if<std::string>(&parsed);
        std::string out;
        const std::string wrong =
            fault == nullptr ? answer(std::get<JsonRecord>(parsed), out) : *fault;
        if (!wrong.empty()) {
            std::cout.flush();
            return complain("line " + std::to_string(number) + " " + wrong, exitUsage);
        }
        std::cout << out << std::flush;
    }
    return exitSuccess;
}

} // namespace quorvane

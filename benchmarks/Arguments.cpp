// SPDX-License-Identifier: MIT
#include "Arguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace quorvane {

Arguments::Result Arguments::parse(std::span<const char* const> words,
                                   std::span<const OptionRule> rules)
{
    Arguments arguments;
    bool optionsEnded = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string_view word = words[i];
        if (optionsEnded || !word.starts_with("--")) {
            arguments.m_operands.push_back(word);
            continue;
        }
        if (word == "--") {
            optionsEnded = true;
            continue;
        }
        const std::size_t equals = word.find('=');
        const std::string_view name = word.substr(2, equals == word.npos ? equals : equals - 2);
        const auto rule = std::find_if(rules.begin(), rules.end(),
                                       [&](const OptionRule& known) { return known.name == name; });
        if (rule == rules.end()) {
            return "unknown option --" + std::string(name);
        }
        if (!rule->takesValue) {
            if (equals != word.npos) {
                return "--" + std::string(name) + " takes no value";
            }
            arguments.m_options.emplace_back(name, std::string_view());
        } else if (equals != word.npos) {
            arguments.m_options.emplace_back(name, word.substr(equals + 1));
        } else if (i + 1 < words.size()) {
            arguments.m_options.emplace_back(name, words[++i]);
        } else {
            return "--" + std::string(name) + " needs a value";
        }
    }
    return arguments;
}

Arguments Arguments::withoutFirstOperand() const
{
    Arguments rest = *this;
    if (!rest.m_operands.empty()) {
        rest.m_operands.erase(rest.m_operands.begin());
    }
    return rest;
}

std::optional<std::string_view> Arguments::value(std::string_view name) const
{
    const auto found = std::find_if(m_options.rbegin(), m_options.rend(),
                                    [&](const auto& option) { return option.first == name; });
    return found == m_options.rend() ? std::nullopt : std::optional(found->second);
}

std::vector<std::string_view> Arguments::values(std::string_view name) const
{
    std::vector<std::string_view> result;
    for (const auto& option : m_options) {
        if (option.first == name) {
            result.push_back(option.second);
        }
    }
    return result;
}

std::optional<std::int64_t> integerFromText(std::string_view text)
{
    std::int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, number);
    if (parsed.ec != std::errc() || parsed.ptr != end) {
        return std::nullopt;
    }
    return number;
}

std::optional<double> realFromText(std::string_view text)
{
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, number);
    if (parsed.ec != std::errc() || parsed.ptr != end || !std::isfinite(number)) {
        return std::nullopt;
    }
    return number;
}

} // namespace quorvane

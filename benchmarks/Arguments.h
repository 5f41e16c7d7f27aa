// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace quorvane {

/// One option that a command knows, named without its two dashes.
struct OptionRule
{
    std::string_view name;
    bool takesValue = false;
};

/// A command line taken apart: options as "--name value" or "--name=value", everything else in
/// order. The texts point into the words that were parsed, which must outlive it.
class Arguments
{
public:
    /// The message of a fault tells which word was wrong.
    using Result = std::variant<Arguments, std::string>;

    static Result parse(std::span<const char* const> words, std::span<const OptionRule> rules);

    const std::vector<std::string_view>& operands() const { return m_operands; }
    /// The same without the first operand, for a command whose first operand chooses what follows.
    Arguments withoutFirstOperand() const;
    bool has(std::string_view name) const { return value(name).has_value(); }
    /// The value given last; empty for an option that takes none.
    std::optional<std::string_view> value(std::string_view name) const;
    /// Every value given, in order.
    std::vector<std::string_view> values(std::string_view name) const;

private:
    std::vector<std::string_view> m_operands;
    std::vector<std::pair<std::string_view, std::string_view>> m_options;
};

/// The whole text as a decimal number; absent when it is none or does not fit.
std::optional<std::int64_t> integerFromText(std::string_view text);
/// The same for a finite number with or without point and exponent.
std::optional<double> realFromText(std::string_view text);

} // namespace quorvane

// SPDX-License-Identifier: MIT
#pragma once

#include "Command.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace quorvane {

/// The members of one JSON object that hold a text, a number or a boolean. A plain value.
class JsonRecord
{
public:
    /// The message of a fault tells what is wrong with the line.
    static std::variant<JsonRecord, std::string> parse(std::string_view line);

    /// Absent for a member that is missing or of another type.
    std::optional<std::string_view> text(std::string_view key) const;
    std::optional<std::int64_t> integer(std::string_view key) const;
    /// Whole numbers, too.
    std::optional<double> real(std::string_view key) const;
    std::optional<bool> boolean(std::string_view key) const;

private:
    using Value = std::variant<std::string, std::int64_t, double, bool>;

    const Value* find(std::string_view key) const;

    std::map<std::string, Value, std::less<>> m_members;
};

/// Answers one line of standard input; appends one line to the output. Returns what is wrong with
/// the record; empty when nothing is.
using LineAnswer = std::function<std::string(const JsonRecord& record, std::string& out)>;

/// Answers every line of standard input that is not empty, each at once. A line that cannot be
/// answered is told by its number and ends the command. Returns an ExitCode.
int answerLines(const LineAnswer& answer);

} // namespace quorvane

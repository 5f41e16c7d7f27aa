// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace quorvane {

/// A value of the preferences store: a text, a switch, a map of switches, or opaque data.
using PreferenceValue = std::variant<QString, bool, std::map<std::string, bool>, QByteArray>;

/// The user's preferences: a small key-value store. Main thread.
class Preferences
{
public:
    virtual ~Preferences() = default;

    virtual std::optional<PreferenceValue> value(std::string_view key) const = 0;
    /// Written through at once: a crash right after the call loses nothing, unless the disk or
    /// another process held the store up; it is then written as soon as that lets go. False when
    /// the store could not be written; the value then counts for this run only.
    virtual bool setValue(std::string_view key, const PreferenceValue& value) = 0;

    /// The value if it is there and of that type.
    template<typename T>
    std::optional<T> read(std::string_view key) const
    {
        const std::optional<PreferenceValue> stored = value(key);
        if (!stored || !std::holds_alternative<T>(*stored)) {
            return std::nullopt;
        }
        return std::get<T>(*stored);
    }
};

} // namespace quorvane

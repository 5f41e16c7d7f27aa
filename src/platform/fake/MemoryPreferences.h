// SPDX-License-Identifier: MIT
#pragma once

#include "Preferences.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace quorvane {

/// Preferences that live in memory. Main thread.
class MemoryPreferences final : public Preferences
{
public:
    std::optional<PreferenceValue> value(std::string_view key) const override
    {
        const auto place = m_values.find(key);
        return place == m_values.end() ? std::nullopt : std::optional(place->second);
    }

    bool setValue(std::string_view key, const PreferenceValue& value) override
    {
        m_values.insert_or_assign(std::string(key), value);
        m_writtenKeys.emplace_back(key);
        return true;
    }

    /// What an earlier run left there; not counted as a write.
    void store(std::string_view key, PreferenceValue value)
    {
        m_values.insert_or_assign(std::string(key), std::move(value));
    }

    /// The keys in the order of the writes, with repetitions.
    const std::vector<std::string>& writtenKeys() const { return m_writtenKeys; }

private:
    std::map<std::string, PreferenceValue, std::less<>> m_values;
    std::vector<std::string> m_writtenKeys;
};

} // namespace quorvane

// SPDX-License-Identifier: MIT
#pragma once

#include "AppSection.h"
#include "VisualizerType.h"

#include <functional>
#include <map>
#include <utility>
#include <vector>

class QWidget;

namespace quorvane {

class AppState;

/// Makes a screen as a child of the given widget, which owns it.
using ScreenFactory = std::function<QWidget*(AppState&, QWidget* parent)>;

/// Which screens the program has, each under its key. A screen shows up in the pickers, lists and
/// menus that lead to it by being added here. A plain value; main thread.
template<class Key>
class ScreenRegistry
{
public:
    /// Replaces an earlier factory of the same key.
    void add(Key key, ScreenFactory factory)
    {
        m_factories.insert_or_assign(key, std::move(factory));
    }

    bool contains(Key key) const { return m_factories.count(key) != 0; }

    /// The keys that have a screen, in the order of their enumerators.
    std::vector<Key> keys() const
    {
        std::vector<Key> keys;
        for (const auto& entry : m_factories) {
            keys.push_back(entry.first);
        }
        return keys;
    }

    /// Null for a key without a screen.
    QWidget* make(Key key, AppState& state, QWidget* parent) const
    {
        const auto found = m_factories.find(key);
        return found == m_factories.end() ? nullptr : found->second(state, parent);
    }

private:
    std::map<Key, ScreenFactory> m_factories;
};

using SectionScreens = ScreenRegistry<AppSection>;
using VisualizerScreens = ScreenRegistry<VisualizerType>;

} // namespace quorvane

// SPDX-License-Identifier: MIT
#pragma once

#include "Card.h"

#include <vector>

class QCheckBox;

namespace quorvane {

class Refresher;
class SettingsState;

/// The switches of the Dev Bloat Filters, which hide families of folders in every visualiser and
/// among the quick wins. Main thread.
class BloatFilterBar : public Card
{
    Q_OBJECT

public:
    explicit BloatFilterBar(SettingsState& settings, QWidget* parent = nullptr);

private:
    void refresh();

    SettingsState& m_settings;
    std::vector<QCheckBox*> m_boxes;
    Refresher* m_refresher;
};

} // namespace quorvane

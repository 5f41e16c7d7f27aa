// SPDX-License-Identifier: MIT
#pragma once

#include "AppSection.h"

#include <QWidget>

namespace quorvane {

class AppState;
class EmptyState;

/// Stands in for a screen that needs a scan while there is none. Main thread.
class NoScanPromptView : public QWidget
{
    Q_OBJECT

public:
    NoScanPromptView(AppState& state, AppSection section, QWidget* parent = nullptr);

    AppSection section() const { return m_section; }
    void setSection(AppSection section);

private:
    AppSection m_section;
    EmptyState* m_prompt;
};

} // namespace quorvane

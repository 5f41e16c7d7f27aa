// SPDX-License-Identifier: MIT
#pragma once

#include "ScreenRegistry.h"

#include <QWidget>

#include <array>
#include <cstddef>

class QStackedLayout;

namespace quorvane {

class AppState;
class ScanState;
class Refresher;

/// What the analysis section shows.
enum class AnalysisPage { progress, error, result, welcome };

/// The first that applies, in the order of the enumeration.
AnalysisPage analysisPage(bool isScanning, bool hasError, bool hasScan);

/// The analysis section: one page for each state of a scan, made when it is first needed. Main
/// thread.
class AnalysisView : public QWidget
{
    Q_OBJECT

public:
    /// makeResult makes the page that shows a finished scan.
    AnalysisView(AppState& state, ScreenFactory makeResult, QWidget* parent = nullptr);

    AnalysisPage page() const { return m_page; }

private:
    static constexpr std::size_t pageCount = 4;

    QWidget* makePage(AnalysisPage page);
    void refresh();

    AppState& m_state;
    ScanState& m_scan;
    ScreenFactory m_makeResult;
    std::array<QWidget*, pageCount> m_pages{};
    AnalysisPage m_page = AnalysisPage::welcome;
    QStackedLayout* m_stack;
    Refresher* m_refresher;
};

} // namespace quorvane

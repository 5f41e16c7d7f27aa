// SPDX-License-Identifier: MIT
#pragma once

#include "JobSlot.h"
#include "QuickWins.h"

#include <QProperty>

#include <vector>

namespace quorvane {

class AppState;
class FacetHost;

/// The model's list of big folders that may go. Main thread.
class QuickWinsState
{
public:
    static QuickWinsState& of(AppState& state);

    explicit QuickWinsState(FacetHost& host);

    QProperty<std::vector<QuickWin>> quickWins;
    QProperty<bool> isQuickWinsLoading{false};
    QProperty<int> quickWinsMeasured{0}; ///< places of the home looked at by the run under way

    /// Looks through the home and the current tree in the background; nothing while it does.
    void refreshQuickWins();
    /// Ends the look under way, whose result is dropped.
    void stopQuickWins();
    /// The wins less those whose family is hidden, in their order.
    std::vector<QuickWin> filteredQuickWins() const;
    /// Whether any family is hidden.
    bool isQuickWinsFiltered() const;
    /// Puts the win into the Trash queue, or takes the first entry with its path out again. Nothing
    /// for one that goes by its own tool only.
    void stageQuickWin(const QuickWin& win);
    void revealQuickWin(const QuickWin& win);
    /// Whether an entry of the queue has the win's path.
    bool isStagedQuickWin(const QuickWin& win) const;
    /// The same of each of the wins, with one pass over the queue.
    std::vector<bool> areStaged(const std::vector<QuickWin>& wins) const;

protected:
    /// Empties the list and ends the look under way.
    void dropQuickWins();

private:
    FacetHost& m_host;
    JobSlot m_quickWinsSlot;
};

} // namespace quorvane

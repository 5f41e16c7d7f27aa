// SPDX-License-Identifier: MIT
#pragma once

#include "Button.h"
#include "Theme.h"

#include <QPointer>
#include <QString>
#include <QWidget>

#include <map>
#include <optional>
#include <vector>

class QBoxLayout;

namespace quorvane {

class EmptyState;
class Label;
class ProgressBar;
class RowView;
class ScreenHeader;
class Spinner;

/// The screen of a tool: header, summary, progress, and below them either the body or one of the
/// empty states; a bar at the bottom. A tool fills in what it has; the rest takes no room.
///
///     QuickWinsView::QuickWinsView(AppState& state) : ToolFrame("bolt", tr("Quick Wins"))
///     {
///         m_refresh = addAction("arrow.clockwise", tr("Refresh"));
///         addEmpty("nothing", "bolt", tr("Nothing found — clean machine!"), tr("We check …"));
///         addList(*m_rows);
///         m_refresher->watch(state.quickWins, state.isQuickWinsLoading);
///     }
///     void QuickWinsView::refresh()
///     {
///         setBusy(isLoading ? tr("Looking for junk…") : QString());
///         m_refresh->setVisible(!isLoading);
///         setSummary({{tr("%1 candidates — …").arg(n)}}, {{tr("Stage sends …"), note}});
///         wins.empty() ? showEmpty("nothing") : showBody();
///     }
///
/// What vanishes while it has the keyboard's focus hands it to this screen, not to whatever comes
/// next in the window; a list that comes back takes it back. Main thread.
class ToolFrame : public QWidget
{
    Q_OBJECT

public:
    /// A piece of the summary line. `name` is the object name of its label.
    struct Note
    {
        QString text = {};
        TextStyle style = TextStyle::body;
        ThemeColor color = ThemeColor::text1;
        QString name = {};
    };
    /// Notes in the usual dress: said less loudly, and a chief number.
    static Note dim(const QString& text, const QString& name = {});
    static Note strong(const QString& text, const QString& name = {});

    struct Progress
    {
        double fraction = 0; ///< 0 to 1
        QString status = {}; ///< at the left; empty for none
        QString count = {};  ///< at the right, "34%" or "12 of 80"; empty for none
    };

    enum class Side { left, right };

    ToolFrame(const QString& symbol, const QString& title, QWidget* parent = nullptr);

    /// A quieter line below the title; empty for none. `name` is the object name of its label.
    void setSubtitle(const QString& text, const QString& name);
    /// A button at the right end of the header, after those that were added before.
    Button* addAction(const QString& symbol, const QString& text,
                      ButtonRole role = ButtonRole::bordered);
    /// Anything else of the header: a picker with its label.
    void addHeaderWidget(QWidget* widget);
    /// Turns a spinner with that text in the header; empty: none.
    void setBusy(const QString& text);

    /// The line below the header, at its two ends; nothing for none.
    void setSummary(const std::vector<Note>& left, const std::vector<Note>& right = {});

    /// Puts a widget of the tool's own below the summary, above the body and the empty states, as
    /// wide as these.
    void addStrip(QWidget* strip);

    /// Shows the progress block; absent: none. `name` of the bar is its accessible name.
    void setProgress(const std::optional<Progress>& progress);
    void setProgressName(const QString& name);
    /// Puts the words below the bar instead of above it.
    void setStatusBelowBar();
    /// Puts "Cancel" into the progress block; progressCancelled() tells of it.
    Button* addProgressCancel(const QString& text);

    /// An empty state under a key of the tool's own. Later calls of showEmpty(key) show it.
    EmptyState* addEmpty(const QString& key, const QString& symbol, const QString& heading,
                         const QString& text, int textWidth = 460);
    /// Any widget in place of the body: work in progress with its two lines.
    void addEmpty(const QString& key, QWidget* widget);
    /// A spinner over a heading and a sentence.
    QWidget* addWaiting(const QString& key, const QString& heading, const QString& text);
    void showEmpty(const QString& key);
    void showBody();
    /// Neither the body nor an empty state.
    void showNothing();
    /// The key of the empty state on show; empty for none.
    QString shownEmpty() const { return m_shownEmpty; }

    /// What stands between the header and the bottom bar, 24 from the sides, from the top down.
    QBoxLayout* body() const { return m_bodyLayout; }
    QWidget* bodyWidget() const { return m_body; }
    /// Puts a list on a card of its own that ends where its rows do; a footer closes the card. A
    /// list whose rows have cards of their own gets none.
    QWidget* addList(RowView& list, QWidget* footer = nullptr);

    /// A button in the bottom bar, 56 high; the bar is there while anything in it is.
    Button* addBottomAction(Side side, const QString& symbol, const QString& text, ButtonRole role);
    void addBottomWidget(Side side, QWidget* widget);
    void setBottomHeight(int height);

    /// Makes a widget visible or not and looks after the focus.
    void setShown(QWidget& widget, bool shown);

Q_SIGNALS:
    void progressCancelled();

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeProgress();
    void makeBottom();
    void fillNotes(QBoxLayout& line, std::vector<Label*>& labels, const std::vector<Note>& notes);
    void showOnly(QWidget* shown);
    void fitBottom();

    QBoxLayout* m_column;
    ScreenHeader* m_header;
    Spinner* m_spinner;
    QWidget* m_summary;
    QBoxLayout* m_summaryLeft;
    QBoxLayout* m_summaryRight;
    std::vector<Label*> m_leftNotes;
    std::vector<Label*> m_rightNotes;
    QWidget* m_progress;
    QBoxLayout* m_progressLine = nullptr;
    QBoxLayout* m_progressColumn = nullptr;
    Label* m_status = nullptr;
    Label* m_count = nullptr;
    ProgressBar* m_bar = nullptr;
    QWidget* m_body;
    QBoxLayout* m_bodyLayout;
    std::map<QString, QWidget*> m_empties;
    QString m_shownEmpty;
    QWidget* m_bottom;
    QBoxLayout* m_bottomLeft = nullptr;
    QBoxLayout* m_bottomRight = nullptr;
    QPointer<QWidget> m_lostFocus; ///< had it when the body went
};

} // namespace quorvane

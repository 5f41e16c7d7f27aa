// SPDX-License-Identifier: MIT
#include "UninstallerView.h"

#include "ByteFormatter.h"
#include "CleanupCautions.h"
#include "Dialog.h"
#include "EmptyState.h"
#include "Refresher.h"
#include "RowView.h"
#include "Text.h"
#include "ToolRows.h"
#include "UninstallState.h"

#include <QIcon>

#include <utility>

namespace quorvane {
namespace {

constexpr int rowHeight = 58;
constexpr int commandHeight = 26;
constexpr int extrasWidth = 124;
constexpr int sizeWidth = 84;
constexpr int queueWidth = 128;
constexpr int iconSide = 20;
constexpr int emptyTextWidth = 440;
constexpr int bottomHeight = 56;

QString plural(std::size_t count)
{
    return count == 1 ? QString() : QStringLiteral("s");
}

/// The desktop's own icon; null where there is none.
QIcon iconOf(const UninstallableApp& app)
{
    const QString name = displayText(app.icon);
    return name.startsWith(QLatin1Char('/')) ? QIcon(name) : QIcon::fromTheme(name);
}

/// What of the queue does not go to the Trash whole, a line each.
QStringList exceptions(const std::vector<UninstallableApp>& queue)
{
    QStringList lines;
    for (const UninstallableApp& app : queue) {
        const QString name = displayText(app.name);
        if (app.goesByOwnTool()) {
            lines << UninstallerView::tr("%1 is removed by Flatpak for good; only its data goes to "
                                         "the Trash.")
                         .arg(name);
        } else if (app.isForAdministrator()) {
            lines << UninstallerView::tr("Of %1 only the extras go; the package stays.").arg(name);
        }
        if (app.isRunning) {
            lines << UninstallerView::tr("%1 is running.").arg(name);
        }
    }
    return lines;
}

} // namespace

UninstallerView::UninstallerView(AppState& state, QWidget* parent)
    : ToolFrame(QStringLiteral("app.dashed"), tr("App Uninstaller"), parent)
    , m_uninstall(UninstallState::of(state))
    , m_refresher(new Refresher(this, [this] { refresh(); }))
    , m_runRefresher(new Refresher(this, [this] { refreshRun(); }))
{
    setObjectName(QStringLiteral("uninstallerView"));
    m_refresh = addAction(QStringLiteral("arrow.clockwise"), tr("Refresh"));
    m_refresh->setObjectName(QStringLiteral("refreshApps"));
    connect(m_refresh, &QAbstractButton::clicked, this,
            [this] { m_uninstall.refreshInstalledApps(); });
    const QString heading = tr("Review installed apps and everything they leave behind");
    const QString text =
        tr("For each app we look in Application Support, Containers, Caches, Preferences, Logs, "
           "Saved State and WebKit data, and show exactly how much is removable for a clean "
           "uninstall.");
    EmptyState* const empty = addEmpty(QStringLiteral("nothing"), QStringLiteral("app.dashed"),
                                       heading, text, emptyTextWidth);
    m_scan = empty->addButton({}, tr("Scan installed apps"), ButtonRole::prominent);
    m_scan->setObjectName(QStringLiteral("scanApps"));
    connect(m_scan, &QAbstractButton::clicked, this,
            [this] { m_uninstall.refreshInstalledApps(); });
    EmptyState* const loading =
        addEmpty(QStringLiteral("loading"), QStringLiteral("app.dashed"), heading,
                 text + QStringLiteral("\n\n") +
                     tr("Scanning installed apps… results appear automatically."),
                 emptyTextWidth);
    loading->setObjectName(QStringLiteral("appsLoading"));
    m_model = new RowModel(this);
    m_model->setHeights([this](int row) {
        const UninstallableApp& app = m_apps[static_cast<std::size_t>(row)];
        return rowHeight + (app.command().empty() ? 0 : commandHeight);
    });
    RowMetrics metrics;
    metrics.height = rowHeight;
    metrics.symbolSide = iconSide;
    m_view = new RowView(*m_model, metrics);
    m_view->setObjectName(QStringLiteral("appList"));
    m_view->setAccessibleName(tr("Installed apps"));
    m_view->setHasSeveralHeights(true);
    m_view->setSelectionMode(QAbstractItemView::NoSelection);
    connect(m_view, &RowView::actionTriggered, this, &UninstallerView::act);
    addList(*m_view);
    setProgressName(tr("Share of the queue that is uninstalled"));
    m_clear = addBottomAction(Side::left, {}, tr("Clear queue"), ButtonRole::revoke);
    m_clear->setObjectName(QStringLiteral("clearUninstallQueue"));
    connect(m_clear, &QAbstractButton::clicked, this,
            [this] { m_uninstall.clearUninstallQueue(); });
    m_run = addBottomAction(Side::right, QStringLiteral("trash.fill"), {}, ButtonRole::destructive);
    m_run->setObjectName(QStringLiteral("runUninstallQueue"));
    connect(m_run, &QAbstractButton::clicked, this, [this] { setConfirmTrash(true); });
    setBottomHeight(bottomHeight);
    m_refresher->watch(m_uninstall.installedApps, m_uninstall.isUninstallerLoading,
                       m_uninstall.uninstallQueue, m_uninstall.isUninstalling,
                       m_uninstall.uninstallFailures);
    m_runRefresher->watch(m_uninstall.isUninstalling, m_uninstall.uninstallProgress,
                          m_uninstall.uninstallStatus);
    refresh();
    refreshRun();
}

void UninstallerView::showEvent(QShowEvent* event)
{
    ToolFrame::showEvent(event);
    if (m_uninstall.installedApps.value().empty() && !m_uninstall.isUninstallerLoading.value()) {
        m_uninstall.refreshInstalledApps();
    }
}

Row UninstallerView::rowOf(const UninstallableApp& app) const
{
    Row row;
    row.symbol = QStringLiteral("app.fill");
    row.icon = iconOf(app);
    row.title = displayText(app.name);
    RowBadge kind;
    kind.text = displayName(app.kind);
    row.badges.push_back(kind);
    if (app.isRunning) {
        RowBadge running;
        running.text = tr("Running");
        running.tint = Tint::green;
        running.hasDot = true;
        row.badges.push_back(running);
    }
    const auto& failures = m_uninstall.uninstallFailures.value();
    if (const auto failure = failures.find(app.id); failure != failures.end()) {
        const auto& [outcome, path] = failure->second;
        row.badges.push_back(path.isEmpty() ? toolrows::notMoved(tr("Flatpak could not remove it"))
                                            : toolrows::notMoved(outcome, path));
    }
    row.path = app.bundleURL.displayText();
    row.command = displayText(app.command());
    const bool hasExtras = !app.components.empty();
    const QString extras =
        hasExtras ? tr("+ %1 extras").arg(ByteFormatter::string(app.extraBytes())) : QString();
    row.cells = {RowCell::note(extras, extrasWidth),
                 RowCell::number(app.formattedTotal(), sizeWidth)};
    row.actions.push_back(RowAction::icon(revealAction, QStringLiteral("magnifyingglass"),
                                          tr("Reveal app in Finder")));
    const bool isQueued = m_uninstall.isQueuedForUninstall(app);
    RowAction queue;
    queue.id = uninstallAction;
    queue.text = isQueued                   ? tr("Queued")
                 : app.isForAdministrator() ? tr("Queue extras")
                                            : tr("Uninstall");
    queue.symbol = isQueued ? QStringLiteral("checkmark.circle.fill") : QStringLiteral("trash");
    queue.role = isQueued ? ButtonRole::queued : ButtonRole::bordered;
    queue.width = queueWidth;
    queue.isEnabled = isQueued || !app.isForAdministrator() || hasExtras;
    row.actions.push_back(queue);
    return row;
}

void UninstallerView::act(const QModelIndex& index, int action)
{
    if (index.row() < 0 || index.row() >= static_cast<int>(m_apps.size())) {
        return;
    }
    const UninstallableApp& app = m_apps[static_cast<std::size_t>(index.row())];
    if (action == revealAction) {
        m_uninstall.revealApp(app);
    } else if (action == uninstallAction) {
        m_uninstall.toggleUninstall(app);
    }
}

void UninstallerView::setConfirmTrash(bool confirm)
{
    const bool canAsk =
        !m_uninstall.uninstallQueue.value().empty() && !m_uninstall.isUninstalling.value();
    if (!confirm && m_dialog) {
        m_dialog->closeDialog();
    } else if (confirm && canAsk && !m_dialog) {
        openConfirmation();
    }
}

void UninstallerView::openConfirmation()
{
    m_asked = m_uninstall.uninstallQueue.value();
    m_dialog = new Dialog(window());
    m_dialog->setObjectName(QStringLiteral("confirmUninstallDialog"));
    m_dialog->setSymbol(QStringLiteral("trash.fill"), Tint::red);
    m_dialog->setTitle(tr("Move %1 app%2 and their data to Trash?")
                           .arg(m_asked.size())
                           .arg(plural(m_asked.size())));
    m_dialog->setText(tr("%1 will be recoverable from the Trash.")
                          .arg(ByteFormatter::string(m_uninstall.uninstallQueueBytes())));
    auto* const cautions = new CautionPanel;
    m_dialog->bodyLayout()->addWidget(cautions);
    cautions->setLines(exceptions(m_asked));
    m_dialog->addButton(tr("Cancel"), ButtonRole::bordered, false);
    m_dialog->addButton(tr("Move to Trash"), ButtonRole::destructive, true);
    connect(m_dialog, &Dialog::accepted, this, [this] {
        // Nothing but what the dialog has asked about is removed by it.
        if (m_uninstall.uninstallQueue.value() == m_asked) {
            m_uninstall.runUninstallQueue();
        }
    });
    m_dialog->open();
}

void UninstallerView::refresh()
{
    m_apps = m_uninstall.installedApps.value();
    const std::vector<UninstallableApp>& queue = m_uninstall.uninstallQueue.value();
    const bool isLoading = m_uninstall.isUninstallerLoading.value();
    const bool isUninstalling = m_uninstall.isUninstalling.value();
    setBusy(isLoading ? tr("Scanning /Applications…") : QString());
    setShown(*m_refresh, !isLoading && !m_apps.empty() && !isUninstalling);
    RowModel::Keys keys;
    for (const UninstallableApp& app : m_apps) {
        keys.push_back(toolrows::key(app.id));
    }
    m_model->setRows(
        static_cast<int>(m_apps.size()),
        [this](int row) { return rowOf(m_apps[static_cast<std::size_t>(row)]); }, std::move(keys));
    std::vector<Note> right;
    if (!queue.empty()) {
        right = {
            strong(tr("%1 queued").arg(queue.size()), QStringLiteral("queuedApps")),
            dim(QStringLiteral("· ") + ByteFormatter::string(m_uninstall.uninstallQueueBytes()))};
    }
    if (m_apps.empty()) {
        setSummary({});
        showEmpty(isLoading ? QStringLiteral("loading") : QStringLiteral("nothing"));
    } else {
        setSummary({{tr("%1 apps").arg(m_apps.size()), TextStyle::body, ThemeColor::text1,
                     QStringLiteral("appCount")}},
                   right);
        showBody();
    }
    const bool hasQueue = !queue.empty() && !isUninstalling && !m_apps.empty();
    m_run->setText(tr("Uninstall %1 app%2 to Trash").arg(queue.size()).arg(plural(queue.size())));
    setShown(*m_clear, hasQueue);
    setShown(*m_run, hasQueue);
    if (m_dialog && queue != m_asked) {
        setConfirmTrash(false);
    }
}

void UninstallerView::refreshRun()
{
    if (!m_uninstall.isUninstalling.value()) {
        setProgress({});
        return;
    }
    setProgress(Progress{m_uninstall.uninstallProgress.value(),
                         m_uninstall.uninstallStatus.value().value_or(QString()),
                         {}});
}

} // namespace quorvane

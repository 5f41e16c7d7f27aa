// SPDX-License-Identifier: MIT
#include "ToolGallery.h"

#include "EmptyState.h"
#include "Label.h"
#include "Painting.h"
#include "RowView.h"
#include "ToolFrame.h"

#include <QPainter>
#include <QPixmap>
#include <QVBoxLayout>

namespace quorvane::gallery {
namespace {

enum Action { revealAction, stageAction, editAction, moreAction };

Row folder(const QString& title, const QString& path, const QString& size)
{
    Row row;
    row.symbol = QStringLiteral("folder.fill");
    row.title = title;
    row.path = path;
    row.cells = {RowCell::number(size, 84)};
    return row;
}

RowAction uninstallAction(const QString& text, const QString& symbol, ButtonRole role)
{
    RowAction action;
    action.id = stageAction;
    action.text = text;
    action.symbol = symbol;
    action.role = role;
    action.width = 128;
    return action;
}

Row application()
{
    Row row = folder(QStringLiteral("Halyard"),
                     QStringLiteral("/home/mara/Applications/Halyard-4.2.AppImage"),
                     QStringLiteral("9.1 GB"));
    row.symbol = QStringLiteral("app.fill");
    row.badges = {{QStringLiteral("AppImage"), Tint::neutral, {}, false, {}},
                  {QStringLiteral("Running"), Tint::green, {}, true, {}}};
    row.cells.insert(row.cells.begin(), RowCell::note(QStringLiteral("+ 8.8 GB extras"), 124));
    row.actions = {RowAction::icon(revealAction, QStringLiteral("magnifyingglass"),
                                   QStringLiteral("Reveal app in Finder")),
                   uninstallAction(QStringLiteral("Uninstall"), QStringLiteral("trash"),
                                   ButtonRole::bordered)};
    return row;
}

Row packageRow()
{
    Row row = application();
    row.title = QStringLiteral("Wavefold Studio");
    row.path = QStringLiteral("/usr/share/applications/wavefold-studio.desktop");
    row.badges = {{QStringLiteral("Package"), Tint::neutral, {}, false, {}},
                  {QStringLiteral("Not moved: no permission for /Applications"),
                   Tint::orange,
                   QStringLiteral("exclamationmark.triangle.fill"),
                   false,
                   {}}};
    row.command = QStringLiteral("sudo apt remove wavefold-studio");
    row.actions[1] = uninstallAction(QStringLiteral("Queued"),
                                     QStringLiteral("checkmark.circle.fill"), ButtonRole::queued);
    return row;
}

Row quickWin()
{
    Row row = folder(QStringLiteral("iOS Simulator devices"),
                     QStringLiteral("/Users/mara/Library/Developer/CoreSimulator/Devices"),
                     QStringLiteral("24.6 GB"));
    row.detail = QStringLiteral("Full OS images for the simulator, one per device. Simulators you "
                                "no longer use can be huge.");
    row.actions = {RowAction::icon(revealAction, QStringLiteral("magnifyingglass"),
                                   QStringLiteral("Reveal in Finder")),
                   uninstallAction(QStringLiteral("Kept"), QStringLiteral("checkmark.seal.fill"),
                                   ButtonRole::kept)};
    return row;
}

Row rule(const QString& name, bool isOn)
{
    Row row;
    row.isOn = isOn;
    row.isDimmed = !isOn;
    row.title = name;
    row.titleWidth = 172;
    RowCell tag = RowCell::note(QStringLiteral("Invoices"), 118);
    tag.dot = themeColor(ThemeColor::orange);
    tag.alignment = Qt::AlignLeft;
    tag.style = TextStyle::body;
    tag.color = ThemeColor::text1;
    RowCell summary =
        RowCell::note(QStringLiteral("All of Extension is “pdf”; Filename contains “invoice”"), 0);
    summary.stretch = 1;
    summary.alignment = Qt::AlignLeft;
    row.cells = {tag, summary};
    row.actions = {
        RowAction::icon(editAction, QStringLiteral("pencil"), QStringLiteral("Edit this rule")),
        RowAction::icon(revealAction, QStringLiteral("trash"), QStringLiteral("Delete this rule"))};
    return row;
}

Row duplicateGroup()
{
    Row row;
    row.symbol = QStringLiteral("chevron.right");
    row.symbolColor = ThemeColor::text3;
    row.title = QStringLiteral("812.4 MB");
    row.titleStyle = TextStyle::heading;
    row.titleWidth = 84;
    row.titleCells = {RowCell::note(QStringLiteral("× 4"), 34),
                      RowCell::note(QStringLiteral("2.4 GB reclaimable"), 0)};
    row.titleCells[0].style = TextStyle::body;
    row.titleCells[1].style = TextStyle::body;
    row.detail = QStringLiteral("fixtures · Northwind · datasets");
    row.detailColor = ThemeColor::text3;
    row.detailTail = QStringLiteral("+1 folders");
    row.actions = {uninstallAction(QStringLiteral("Keep latest"), QStringLiteral("checkmark.seal"),
                                   ButtonRole::bordered)};
    return row;
}

Row picture()
{
    Row row;
    QPixmap image(64, 40);
    image.fill(themeColor(ThemeColor::raised));
    row.icon = QIcon(image);
    row.iconSize = image.size();
    row.title = QStringLiteral("Screenshot 2025-11-04 at 09.41.07.png");
    row.titleColor = ThemeColor::text2;
    RowCell proposed = RowCell::note(QStringLiteral("2025-11-04_Storage_Growth_By_Quarter.png"), 0);
    proposed.stretch = 1;
    proposed.alignment = Qt::AlignLeft;
    proposed.style = TextStyle::body;
    proposed.color = ThemeColor::accentText;
    row.cells = {proposed, RowCell::number(QStringLiteral("1.4 MB"), 90)};
    return row;
}

Row searchResult()
{
    Row row = folder(QStringLiteral("old harbour panorama.psd"),
                     QStringLiteral("/Pictures/Scans/old harbour panorama.psd"),
                     QStringLiteral("640.8 MB"));
    row.symbol = QStringLiteral("photo");
    row.symbolTint = themeColor(ThemeColor::cyan);
    row.titleSpans = {{4, 7, ThemeColor::accentText}};
    return row;
}

ToolFrame* makeRows()
{
    auto* const frame = new ToolFrame(QStringLiteral("app.dashed"), QStringLiteral("Rows"));
    frame->addAction(QStringLiteral("arrow.clockwise"), QStringLiteral("Refresh"));
    frame->setBusy(QStringLiteral("Scanning /Applications…"));
    frame->setProgressName(QStringLiteral("Share that is done"));
    frame->setProgress(ToolFrame::Progress{0.34, QStringLiteral("Sampling same-size files…"),
                                           QStringLiteral("34%")});
    frame->addProgressCancel(QStringLiteral("Cancel"));
    frame->setSummary({{QStringLiteral("11 apps")}}, {ToolFrame::strong(QStringLiteral("3 queued")),
                                                      ToolFrame::dim(QStringLiteral("· 12.4 GB"))});
    auto* const model = new RowModel(frame);
    const std::vector<int> heights{58, 84, 74, 48, 48, 60, 56, 52, 54};
    model->setHeights([heights](int row) { return heights[static_cast<std::size_t>(row)]; });
    model->setRows({application(), packageRow(), quickWin(), rule(QStringLiteral("Invoices"), true),
                    rule(QStringLiteral("Screen takes"), false), duplicateGroup(), picture(),
                    searchResult(),
                    Row::more(moreAction, QStringLiteral("Show 400 more groups…"))});
    RowMetrics metrics;
    metrics.symbolSide = 20;
    auto* const view = new RowView(*model, metrics);
    view->setAccessibleName(QStringLiteral("Rows of every shape"));
    view->setObjectName(QStringLiteral("initialFocus"));
    view->setHasSeveralHeights(true);
    view->select(model->index(2));
    frame->addList(*view);
    frame->addBottomAction(ToolFrame::Side::left, {}, QStringLiteral("Clear queue"),
                           ButtonRole::revoke);
    frame->addBottomAction(ToolFrame::Side::right, QStringLiteral("trash.fill"),
                           QStringLiteral("Uninstall 3 apps to Trash"), ButtonRole::destructive);
    return frame;
}

ToolFrame* makeSections()
{
    auto* const frame =
        new ToolFrame(QStringLiteral("wrench.and.screwdriver"), QStringLiteral("Sections"));
    frame->addAction(QStringLiteral("house.fill"), QStringLiteral("Deep scan home"));
    std::vector<Row> rows;
    for (const QString& title : {QStringLiteral("Xcode"), QStringLiteral("Package managers")}) {
        rows.push_back(
            Row::section(QStringLiteral("shippingbox"), title, QStringLiteral("71.6 GB")));
        for (int i = 0; i < 4; ++i) {
            Row row = folder(QStringLiteral("CoreSimulator Devices"),
                             QStringLiteral("/Users/mara/Library/Developer/CoreSimulator/Devices"),
                             QStringLiteral("24.6 GB"));
            row.isChecked = i % 2 == 1;
            row.isEnabled = i < 3;
            row.cells.insert(row.cells.begin(),
                             RowCell::note(QStringLiteral("18342 items · Used Nov 3, 2025"), 0));
            rows.push_back(row);
        }
    }
    auto* const model = new RowModel(frame);
    model->setHeights([](int row) { return row % 5 == 0 ? 45 : 48; });
    model->setRows(rows);
    RowMetrics metrics;
    metrics.hasOwnCards = true;
    auto* const view = new RowView(*model, metrics);
    view->setAccessibleName(QStringLiteral("Rows in sections"));
    view->setHasSeveralHeights(true);
    frame->addList(*view);
    return frame;
}

ToolFrame* makeEmpty()
{
    auto* const frame = new ToolFrame(QStringLiteral("bolt"), QStringLiteral("Empty"));
    frame->addEmpty(QStringLiteral("nothing"), QStringLiteral("bolt"),
                    QStringLiteral("Nothing found — clean machine!"),
                    QStringLiteral("We check Xcode DerivedData, iOS Simulators, device backups, "
                                   "build cache directories and common junk folders."),
                    440);
    frame->showEmpty(QStringLiteral("nothing"));
    return frame;
}

} // namespace

ToolGallery::ToolGallery(const QString& page)
{
    setWindowTitle(QStringLiteral("Quorvane gallery"));
    setAccessibleName(windowTitle());
    setFixedSize(1320, 900);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(page == QLatin1String("rows")       ? makeRows()
                      : page == QLatin1String("sections") ? makeSections()
                                                          : makeEmpty());
}

void ToolGallery::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintWindowGround(painter, rect(), themeColor(ThemeColor::wash));
    painter.fillRect(rect(), themeColor(ThemeColor::veil));
}

} // namespace quorvane::gallery

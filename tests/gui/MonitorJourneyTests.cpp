// SPDX-License-Identifier: MIT
#include "MachineFigures.h"
#include "MonitorCharts.h"
#include "ProgramFixture.h"
#include "RowView.h"
#include "SegmentedPicker.h"

#include <QClipboard>
#include <QLabel>
#include <QMenu>
#include <QTimer>

#include <atomic>
#include <string>

namespace quorvane {
namespace {

/// A laptop on battery on which three processes run. Any thread.
class Laptop final : public MachineFigures
{
public:
    ProcessorTicks processorTicks() override
    {
        ++samples;
        return {184, 92, 724, 0};
    }
    MemoryFigures memory() override { return {32 << 20, 16 << 20, 8 << 20, 4 << 20, 2 << 20}; }
    std::optional<NetworkBytes> networkBytes() override { return NetworkBytes{}; }
    PowerFigures power() override
    {
        PowerFigures power;
        power.percent = 84;
        power.onAC = false;
        power.isPresent = true;
        power.cycleCount = 143;
        power.healthPercent = 94;
        power.timeToEmptyMinutes = 342;
        return power;
    }
    std::vector<ProcessFigures> processes() override
    {
        return {
            {71, "busy", 98, 0, 1 << 20}, {72, "big one", 2, 0, 1 << 30}, {73, "idle", 0, 0, 1}};
    }
    std::string processorName() override { return "Laptop"; }
    int processorCount() override { return 4; }
    std::string programOf(std::int32_t pid) override { return "/opt/" + std::to_string(pid); }

    std::atomic<int> samples = 0;
};

class MonitorJourney : public ProgramFixture
{
protected:
    void SetUp() override
    {
        m_platform.machine = &m_machine;
        start();
    }
    RowView& list() { return *find<RowView>("processList"); }
    QString nameAt(int row) { return list().rowOf(list().model()->index(row, 0)).title; }
    QString text(const char* name) { return find<QLabel>(name)->text(); }
    void openMonitor()
    {
        click("toolRow.monitor");
        ASSERT_TRUE(waitUntilShown("monitorView"));
        ASSERT_TRUE(waitFor([this] { return list().model()->rowCount() == 3; }));
    }

    Laptop m_machine;
};

TEST_F(MonitorJourney, TheSidebarLeadsToLiveFigures)
{
    EXPECT_EQ(m_machine.samples, 0) << "nothing is read before the screen is on show";
    openMonitor();
    EXPECT_EQ(text("chipSummary"), QStringLiteral("Laptop • 4 Cores"));
    EXPECT_EQ(text("cpuLoad"), QStringLiteral("27.6%"));
    EXPECT_EQ(text("powerPercent"), QStringLiteral("84%"));
    EXPECT_EQ(text("powerTime"), QStringLiteral("5:42 remaining"));
    EXPECT_EQ(text("powerStatus"), QStringLiteral("On battery"));
    EXPECT_EQ(text("powerCycles"), QStringLiteral("143"));
    EXPECT_EQ(text("powerHealth"), QStringLiteral("94%"));
    EXPECT_EQ(text("powerSource"), QStringLiteral("Battery"));
    EXPECT_EQ(nameAt(0), QStringLiteral("busy"));
    const int first = m_machine.samples;
    EXPECT_TRUE(waitFor([&] { return m_machine.samples > first; })) << "one each second";
    ASSERT_TRUE(waitFor([this] { return !find<Sparkline>("cpuChart")->textAt(0).isEmpty(); }))
        << "two values make a line";
    EXPECT_TRUE(find<Sparkline>("cpuChart")->textAt(0).contains(QLatin1String("User:")));
}

TEST_F(MonitorJourney, AnotherSectionEndsTheSampling)
{
    openMonitor();
    click("toolRow.screenshotRename");
    ASSERT_TRUE(waitFor([this] { return !isShown("monitorView"); }));
    EXPECT_FALSE(find<QTimer>("monitorTimer")->isActive());
    EXPECT_FALSE(state().isSampling.value());
    const int last = m_machine.samples;
    settle();
    EXPECT_LE(m_machine.samples, last + 1) << "one may have been under way";
    click("toolRow.monitor");
    ASSERT_TRUE(waitFor([this] { return find<QTimer>("monitorTimer")->isActive(); }));
    EXPECT_EQ(find<Sparkline>("cpuChart")->textAt(0), QString()) << "the charts begin anew";
}

TEST_F(MonitorJourney, ClicksSortByMemoryAndOpenTheMenuOfAProcess)
{
    openMonitor();
    auto* const order = find<SegmentedPicker>("processOrder");
    QTest::mouseClick(order->segment(1), Qt::LeftButton);
    EXPECT_TRUE(waitFor([this] { return nameAt(0) == QLatin1String("big one"); }));
    EXPECT_EQ(text("processesTitle"), QStringLiteral("Top Processes (by Memory)"));
    const QPoint place = list().visualRect(list().model()->index(0, 0)).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, list().viewport()->mapToGlobal(place));
    QApplication::sendEvent(list().viewport(), &event);
    auto* const menu = window().findChild<QMenu*>(QStringLiteral("processMenu"));
    ASSERT_NE(menu, nullptr);
    ASSERT_EQ(menu->actions().size(), 2);
    menu->actions()[0]->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("72"));
    menu->actions()[1]->trigger();
    EXPECT_EQ(m_platform.workspace.revealed, std::vector{FilePath("/opt/72")});
    menu->close();
}

TEST_F(MonitorJourney, KeysReachTheOrderAndTheProcesses)
{
    openMonitor();
    const auto key = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
    find("toolRow.monitor")->setFocus(Qt::TabFocusReason);
    auto* const order = find<SegmentedPicker>("processOrder");
    for (int i = 0; i < 30 && QApplication::focusWidget() != order->segment(0); ++i) {
        key(Qt::Key_Tab);
    }
    ASSERT_EQ(QApplication::focusWidget(), order->segment(0));
    key(Qt::Key_Right);
    EXPECT_TRUE(waitFor([this] { return nameAt(0) == QLatin1String("big one"); }));
    key(Qt::Key_Tab);
    EXPECT_TRUE(list().hasFocus());
    key(Qt::Key_Down);
    EXPECT_TRUE(list().currentIndex().isValid());
}

} // namespace
} // namespace quorvane

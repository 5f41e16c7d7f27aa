// SPDX-License-Identifier: MIT
#include "MonitorView.h"

#include "AppState.h"
#include "FakePlatform.h"
#include "Gate.h"
#include "Label.h"
#include "MachineFigures.h"
#include "MonitorCharts.h"
#include "RowView.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <QTest>
#include <QTimer>
#include <QToolTip>

#include <atomic>
#include <cmath>
#include <memory>

namespace quorvane {
namespace {

/// A machine without a battery on which two processes run.
class QuietMachine final : public MachineFigures
{
public:
    ProcessorTicks processorTicks() override
    {
        ++samples;
        gate.pass();
        return {20, 10, 60, 10};
    }
    MemoryFigures memory() override
    {
        constexpr std::uint64_t gigabyte = std::uint64_t{1} << 30;
        return {8 * gigabyte, 4 * gigabyte, gigabyte, gigabyte / 2, gigabyte / 4};
    }
    std::optional<NetworkBytes> networkBytes() override { return NetworkBytes{}; }
    PowerFigures power() override { return {}; }
    std::vector<ProcessFigures> processes() override
    {
        return {{7, "small", 90, 0, 1024}, {8, "large", 1, 0, 1 << 20}};
    }
    std::string processorName() override { return "Quiet"; }
    int processorCount() override { return 2; }
    std::string programOf(std::int32_t) override { return "/usr/bin/large"; }

    std::atomic<int> samples = 0;
    Gate gate{Gate::State::open};
};

class MonitorScreen : public ::testing::Test
{
protected:
    MonitorScreen()
    {
        m_platform.machine = &m_machine;
        m_state = std::make_unique<AppState>(m_platform.platform());
        m_view = std::make_unique<MonitorView>(*m_state);
        m_view->resize(1200, 900);
    }

    void show()
    {
        m_view->show();
        ASSERT_TRUE(waitFor([this] { return !text("chipSummary").isEmpty(); }));
    }
    QString text(const char* name)
    {
        const auto* const label = m_view->findChild<QLabel*>(QLatin1String(name));
        return label == nullptr ? QString() : label->text();
    }
    RowView& list() { return *m_view->findChild<RowView*>(QStringLiteral("processList")); }

    QuietMachine m_machine;
    FakePlatform m_platform;
    std::unique_ptr<AppState> m_state;
    std::unique_ptr<MonitorView> m_view;
};

TEST_F(MonitorScreen, TellsTheFiguresOfASample)
{
    show();
    EXPECT_EQ(text("chipSummary"), QStringLiteral("Quiet • 2 Cores"));
    EXPECT_EQ(text("cpuLoad"), QStringLiteral("30.0%"));
    EXPECT_EQ(text("cpuUser"), QStringLiteral("20.0%"));
    EXPECT_EQ(text("cpuSys"), QStringLiteral("10.0%"));
    EXPECT_EQ(text("memoryUsed"), QStringLiteral("4.0 GB"));
    EXPECT_EQ(text("memoryOf"), QStringLiteral("of 8 GB (50%)"));
    EXPECT_EQ(text("memoryWired"), QStringLiteral("512.0 MB"));
    EXPECT_EQ(text("networkDownload"), QStringLiteral("0 B/s"));
    EXPECT_EQ(text("powerStatus"), QStringLiteral("No battery detected"));
    EXPECT_EQ(text("powerSource"), QStringLiteral("Power Adapter"));
    EXPECT_EQ(text("processesTitle"), QStringLiteral("Top Processes (by CPU)"));
    ASSERT_EQ(list().model()->rowCount(), 2);
    const Row first = list().rowOf(list().model()->index(0, 0));
    EXPECT_EQ(first.title, QStringLiteral("small"));
    EXPECT_EQ(first.cells[0].text, QStringLiteral("90.0%"));
    EXPECT_EQ(first.cells[1].text, QStringLiteral("1.0 KB"));
}

TEST_F(MonitorScreen, SamplesOnlyWhileItIsOnShow)
{
    EXPECT_EQ(m_machine.samples, 0);
    show();
    auto* const timer = m_view->findChild<QTimer*>(QStringLiteral("monitorTimer"));
    EXPECT_TRUE(timer->isActive());
    EXPECT_EQ(timer->interval(), 1000);
    m_view->hide();
    EXPECT_FALSE(timer->isActive());
    EXPECT_FALSE(m_state->isSampling.value());
}

TEST_F(MonitorScreen, ASlowSampleSkipsTicks)
{
    m_machine.gate.close();
    m_view->show();
    m_machine.gate.awaitVisitor();
    auto* const timer = m_view->findChild<QTimer*>(QStringLiteral("monitorTimer"));
    int ticks = 0;
    QObject::connect(timer, &QTimer::timeout, m_view.get(), [&ticks] { ++ticks; });
    timer->setInterval(0);
    EXPECT_TRUE(waitFor([&ticks] { return ticks > 3; }));
    EXPECT_EQ(m_machine.samples, 1);
    timer->setInterval(1000);
    m_machine.gate.open();
    EXPECT_TRUE(waitFor([this] { return !m_state->isSampling.value(); }));
}

TEST_F(MonitorScreen, OneJitterMovesBothLinesAndNoNumber)
{
    show();
    auto* const chart = m_view->findChild<Sparkline*>(QStringLiteral("cpuChart"));
    // One more value makes a line.
    m_view->findChild<QTimer*>(QStringLiteral("monitorTimer"))->setInterval(1);
    ASSERT_TRUE(waitFor([chart] { return !chart->textAt(0).isEmpty(); }));
    const auto valueOf = [chart](int line) {
        return chart->textAt(chart->width())
            .section(QLatin1Char('\n'), line, line)
            .section(QLatin1Char(' '), -1)
            .chopped(1)
            .toDouble();
    };
    EXPECT_LE(std::abs(valueOf(0) - 20), 0.61);
    EXPECT_NEAR(valueOf(0) - valueOf(1), 10, 0.11);
    EXPECT_EQ(text("cpuUser"), QStringLiteral("20.0%"));
    EXPECT_EQ(text("cpuSys"), QStringLiteral("10.0%"));
}

TEST_F(MonitorScreen, ThePointerOnAChartTellsThatMoment)
{
    show();
    auto* const chart = m_view->findChild<Sparkline*>(QStringLiteral("networkChart"));
    chart->setSeries({{1024, 2048}, {0, 3}});
    QTest::mouseMove(chart, QPoint(2, 10));
    ASSERT_TRUE(waitFor([] { return !QToolTip::text().isEmpty(); }));
    EXPECT_TRUE(QToolTip::text().contains(QLatin1String("DOWNLOAD 1 K/s")))
        << QToolTip::text().toStdString();
    EXPECT_TRUE(QToolTip::text().contains(QLatin1String("UPLOAD 0 B/s")));
    QToolTip::hideText();
}

TEST_F(MonitorScreen, SortsByMemoryWhenAsked)
{
    show();
    m_state->processOrder = SystemMonitor::ProcessOrder::memory;
    m_state->sampleMachine();
    EXPECT_TRUE(waitFor([this] {
        return list().rowOf(list().model()->index(0, 0)).title == QLatin1String("large");
    }));
    EXPECT_EQ(text("processesTitle"), QStringLiteral("Top Processes (by Memory)"));
}

TEST(MonitorHistory, TheThirtyFirstValueDropsTheFirst)
{
    std::vector<double> history;
    for (int i = 0; i < 31; ++i) {
        MonitorView::push(history, i);
    }
    EXPECT_EQ(history.size(), 30U);
    EXPECT_DOUBLE_EQ(history.front(), 1);
    EXPECT_DOUBLE_EQ(history.back(), 30);
}

TEST(Sparkline, OnePointShowsNothing)
{
    EXPECT_TRUE(Sparkline::points({5}, QSizeF(100, 40), 10).isEmpty());
}

TEST(Sparkline, ValuesSpreadOverTheWidthBelowAFreeTop)
{
    const QPolygonF points = Sparkline::points({0, 10, 5}, QSizeF(100, 43), 10);
    EXPECT_EQ(points, (QPolygonF() << QPointF(0, 43) << QPointF(50, 3) << QPointF(100, 23)));
    EXPECT_EQ(Sparkline::points({4, 4}, QSizeF(10, 43), 0),
              (QPolygonF() << QPointF(0, 43) << QPointF(10, 43)));
}

TEST(Sparkline, TheTopIsTheLargestValueButNotBelowTheFloor)
{
    EXPECT_DOUBLE_EQ(Sparkline::scaleTop({{1, 2}, {3}}, 0), 3);
    EXPECT_DOUBLE_EQ(Sparkline::scaleTop({{1, 2}, {3}}, 24), 24);
    EXPECT_DOUBLE_EQ(Sparkline::scaleTop({{}, {}}, 0), 0);
}

TEST(Sparkline, ThePointerTellsTheValuesOfAMoment)
{
    Sparkline chart(QStringLiteral("Chart"),
                    {{QStringLiteral("a"), Qt::red}, {QStringLiteral("b"), Qt::blue}}, 0, false,
                    [](double value) { return QString::number(value); });
    chart.resize(100, 40);
    EXPECT_EQ(chart.textAt(50), QString());
    chart.setSeries({{1, 2, 3}, {4, 5, 6}});
    EXPECT_EQ(chart.textAt(49), QStringLiteral("a 2\nb 5"));
    EXPECT_EQ(chart.textAt(100), QStringLiteral("a 3\nb 6"));
    EXPECT_EQ(chart.textAt(-1), QString());
}

TEST(MemorySegments, ShareTheWidthWithGapsOfTwo)
{
    const auto segments = MemorySegments::segments({1, 1, 0, 2}, 104);
    ASSERT_EQ(segments.size(), 4U);
    EXPECT_DOUBLE_EQ(segments[0].width, 25);
    EXPECT_DOUBLE_EQ(segments[1].left, 27);
    EXPECT_DOUBLE_EQ(segments[3].left, 54);
    EXPECT_DOUBLE_EQ(segments[3].width, 50);
    EXPECT_TRUE(MemorySegments::segments({0, 0, 0, 0}, 100).empty());
}

} // namespace
} // namespace quorvane

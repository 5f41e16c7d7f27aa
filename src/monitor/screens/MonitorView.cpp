// SPDX-License-Identifier: MIT
#include "MonitorView.h"

#include "ByteFormatter.h"
#include "Card.h"
#include "Label.h"
#include "Menu.h"
#include "MonitorCharts.h"
#include "Painting.h"
#include "Progress.h"
#include "Refresher.h"
#include "RowModel.h"
#include "RowView.h"
#include "SegmentedPicker.h"
#include "Text.h"
#include "Tokens.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QGridLayout>
#include <QGuiApplication>
#include <QPainter>
#include <QRandomGenerator>
#include <QScrollArea>
#include <QShowEvent>

#include <algorithm>
#include <functional>
#include <utility>

namespace quorvane {
namespace {

constexpr int cardHeight = 184;
constexpr int cardPadding = 20;
constexpr int processRow = 28;
constexpr int cpuCell = 90;
constexpr int memoryCell = 120;
constexpr int legendGap = 7;
constexpr double jitterRange = 0.6;
/// Below these a chart would make mountains of nothing: percent, and bytes a second.
constexpr double minCpuScale = 24;
constexpr double minNetworkScale = 64 * 1024;

QString percentText(double value)
{
    return QString::number(value, 'f', 1) + QLatin1Char('%');
}

QString bytesText(std::uint64_t bytes)
{
    return ByteFormatter::string(static_cast<std::int64_t>(bytes), 1);
}

double shareOf(std::uint64_t part, std::uint64_t total)
{
    return total == 0 ? 0 : static_cast<double>(part) / static_cast<double>(total) * 100;
}

/// A disc in the colour of a series.
class SeriesDot : public QWidget
{
public:
    explicit SeriesDot(std::function<QColor()> color)
        : m_color(std::move(color))
    {
        setFixedSize(8, 16);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_color());
        painter.drawEllipse(QRectF(0, 4, 8, 8));
    }

private:
    std::function<QColor()> m_color; ///< of the theme that is on
};

/// The raised ground of a small tile.
class RaisedTile : public QWidget
{
protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        paintPanel(painter, rect(), radius::control, themeColor(ThemeColor::raised),
                   themeColor(ThemeColor::raised));
    }
};

/// The frame of a block: a card with a small heading.
QBoxLayout* makePanel(QWidget*& card, const QString& heading)
{
    card = new Card;
    card->setFixedHeight(cardHeight);
    auto* const column = new QVBoxLayout(card);
    column->setContentsMargins(cardPadding, 16, cardPadding, 12);
    column->setSpacing(spacing::xs);
    column->addWidget(new SectionHeading(heading));
    return column;
}

Label* named(Label* label, const char* name)
{
    label->setObjectName(QLatin1String(name));
    return label;
}

/// A dot, what it stands for, and its value.
Label* addLegend(QBoxLayout& line, std::function<QColor()> color, const QString& text,
                 const char* name)
{
    line.addWidget(new SeriesDot(std::move(color)));
    line.addSpacing(legendGap);
    line.addWidget(new Label(text, TextStyle::caption, ThemeColor::text2));
    line.addSpacing(legendGap);
    Label* const value = named(new Label({}, TextStyle::captionStrong), name);
    line.addWidget(value);
    return value;
}

/// A small tile with a heading and a value.
Label* addBox(QBoxLayout& line, const QString& heading, const char* name)
{
    auto* const box = new RaisedTile;
    box->setFixedSize(104, 56);
    auto* const column = new QVBoxLayout(box);
    column->setContentsMargins(spacing::m, spacing::s, spacing::m, spacing::s);
    column->setSpacing(2);
    column->addWidget(new SectionHeading(heading));
    Label* const value = named(new Label({}, TextStyle::heading), name);
    column->addWidget(value);
    line.addWidget(box);
    return value;
}

} // namespace

MonitorView::MonitorView(AppState& state, QWidget* parent)
    : ToolFrame(QStringLiteral("gauge"), tr("System Monitor"), parent)
    , m_state(MonitorState::of(state))
    , m_refresher(new Refresher(this, [this] { refresh(); }))
    , m_timer(this)
{
    setObjectName(QStringLiteral("monitorView"));
    auto* const content = new QWidget;
    auto* const column = new QVBoxLayout(content);
    // Up to the window's edge, so that the scroll bar stands beside the cards.
    body()->setContentsMargins(measure::screenMargin, 0, 0, 0);
    column->setContentsMargins(0, 0, measure::screenMargin, spacing::l);
    column->setSpacing(spacing::l);
    auto* const grid = new QGridLayout;
    grid->setSpacing(spacing::l);
    grid->addWidget(makeCpuCard(), 0, 0);
    grid->addWidget(makeMemoryCard(), 0, 1);
    grid->addWidget(makeNetworkCard(), 1, 0);
    grid->addWidget(makePowerCard(), 1, 1);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    column->addLayout(grid);
    column->addWidget(makeProcesses());
    column->addStretch();

    auto* const scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(content);
    scroll->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    body()->addWidget(scroll, 1);

    m_timer.setObjectName(QStringLiteral("monitorTimer"));
    m_timer.setInterval(interval);
    connect(&m_timer, &QTimer::timeout, this, [this] { takeSample(); });
    m_refresher->watch(m_state.machineSample, m_state.chipSummary);
    showBody();
}

QWidget* MonitorView::makeCpuCard()
{
    QWidget* card = nullptr;
    QBoxLayout* const column = makePanel(card, tr("CPU LOAD"));
    auto* const line = new QHBoxLayout;
    line->setSpacing(0);
    m_load = named(new NumberCell(QStringLiteral("100.0%"), TextStyle::figure), "cpuLoad");
    m_load->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    line->addWidget(m_load);
    line->addStretch();
    m_user = addLegend(*line, firstSeriesColor, tr("User:"), "cpuUser");
    line->addSpacing(spacing::l);
    m_sys = addLegend(*line, secondSeriesColor, tr("Sys:"), "cpuSys");
    column->addLayout(line);
    m_cpuChart =
        new Sparkline(tr("Processor load of the last seconds"),
                      {{tr("User:"), firstSeriesColor()}, {tr("Sys:"), secondSeriesColor()}},
                      minCpuScale, true, percentText);
    m_cpuChart->setObjectName(QStringLiteral("cpuChart"));
    column->addWidget(m_cpuChart, 1);
    return card;
}

QWidget* MonitorView::makeMemoryCard()
{
    QWidget* card = nullptr;
    QBoxLayout* const column = makePanel(card, tr("MEMORY"));
    auto* const line = new QHBoxLayout;
    line->setSpacing(spacing::s);
    m_used = named(new Label({}, TextStyle::figure), "memoryUsed");
    m_ofTotal = named(new Label({}, TextStyle::body, ThemeColor::text2), "memoryOf");
    line->addWidget(m_used);
    // The two stand on one line, whatever their sizes.
    auto* const beside = new QVBoxLayout;
    beside->addStretch();
    beside->addWidget(m_ofTotal);
    beside->addSpacing(spacing::xs);
    line->addLayout(beside);
    line->addStretch();
    column->addLayout(line);
    column->addSpacing(spacing::l);
    m_segments = new MemorySegments;
    column->addWidget(m_segments);
    column->addSpacing(spacing::l);
    auto* const legend = new QHBoxLayout;
    legend->setSpacing(0);
    const QStringList texts{tr("Apps"), tr("Wired"), tr("Cached"), tr("Free")};
    constexpr const char* names[] = {"memoryApps", "memoryWired", "memoryCached", "memoryFree"};
    for (int i = 0; i < texts.size(); ++i) {
        const auto place = static_cast<std::size_t>(i);
        m_memoryCells.push_back(addLegend(
            *legend, [place] { return MemorySegments::colors()[place]; }, texts[i], names[place]));
        legend->addSpacing(spacing::xl);
    }
    legend->addStretch();
    column->addLayout(legend);
    column->addStretch();
    return card;
}

QWidget* MonitorView::makeNetworkCard()
{
    QWidget* card = nullptr;
    QBoxLayout* const column = makePanel(card, tr("NETWORK"));
    auto* const line = new QHBoxLayout;
    line->setSpacing(spacing::xl);
    const auto addRate = [line](std::function<QColor()> color, const QString& text,
                                const char* name) {
        auto* const rate = new QVBoxLayout;
        rate->setSpacing(0);
        auto* const heading = new QHBoxLayout;
        heading->setSpacing(spacing::xs);
        heading->addWidget(new SeriesDot(std::move(color)));
        heading->addWidget(new SectionHeading(text));
        heading->addStretch();
        rate->addLayout(heading);
        Label* const value =
            named(new NumberCell(QStringLiteral("1024.0 M/s"), TextStyle::title), name);
        value->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        rate->addWidget(value);
        line->addLayout(rate);
        return value;
    };
    m_download = addRate(firstSeriesColor, tr("DOWNLOAD"), "networkDownload");
    m_upload = addRate(secondSeriesColor, tr("UPLOAD"), "networkUpload");
    line->addStretch();
    column->addLayout(line);
    m_networkChart =
        new Sparkline(tr("Network rates of the last seconds"),
                      {{tr("DOWNLOAD"), firstSeriesColor()}, {tr("UPLOAD"), secondSeriesColor()}},
                      minNetworkScale, true, [](double rate) {
                          return QString(NetRateSample::rateText(rate) + QLatin1String("/s"));
                      });
    m_networkChart->setObjectName(QStringLiteral("networkChart"));
    column->addWidget(m_networkChart, 1);
    return card;
}

QWidget* MonitorView::makePowerCard()
{
    QWidget* card = nullptr;
    QBoxLayout* const column = makePanel(card, tr("POWER"));
    auto* const line = new QHBoxLayout;
    line->setSpacing(spacing::m);
    m_percent = named(new Label({}, TextStyle::figure), "powerPercent");
    line->addWidget(m_percent);
    auto* const words = new QVBoxLayout;
    words->setSpacing(0);
    m_time = named(new Label({}, TextStyle::row), "powerTime");
    m_status = named(new Label({}, TextStyle::caption, ThemeColor::text2), "powerStatus");
    words->addStretch();
    words->addWidget(m_time);
    words->addWidget(m_status);
    words->addStretch();
    line->addLayout(words);
    line->addStretch();
    m_cycles = addBox(*line, tr("CYCLES"), "powerCycles");
    m_health = addBox(*line, tr("HEALTH"), "powerHealth");
    column->addLayout(line);
    column->addStretch();
    m_charge = new ProgressBar(tr("Charge of the battery"));
    m_charge->setColor(ThemeColor::green);
    column->addWidget(m_charge);
    column->addStretch();
    auto* const source = new QHBoxLayout;
    source->addWidget(new Label(tr("Source"), TextStyle::caption, ThemeColor::text2));
    source->addStretch();
    m_source = named(new Label({}, TextStyle::captionMedium), "powerSource");
    source->addWidget(m_source);
    column->addLayout(source);
    column->addStretch();
    return card;
}

QWidget* MonitorView::makeProcesses()
{
    auto* const card = new Card;
    auto* const column = new QVBoxLayout(card);
    column->setContentsMargins(1, 1, 1, 1);
    column->setSpacing(0);
    auto* const head = new QHBoxLayout;
    head->setContentsMargins(cardPadding - 1, 5, spacing::s, 5);
    m_processesTitle = named(new Label({}, TextStyle::row), "processesTitle");
    head->addWidget(m_processesTitle);
    head->addStretch();
    m_order = new SegmentedPicker(tr("Order of the processes"));
    m_order->setObjectName(QStringLiteral("processOrder"));
    m_order->addSegment(tr("CPU"));
    m_order->addSegment(tr("Memory"));
    m_order->setCurrentIndex(static_cast<int>(m_state.processOrder.value()));
    connect(m_order, &SegmentedPicker::activated, this, [this](int index) {
        m_state.processOrder = static_cast<SystemMonitor::ProcessOrder>(index);
        takeSample();
    });
    head->addWidget(m_order);
    column->addLayout(head);

    m_rows = new RowModel(this);
    RowMetrics metrics;
    metrics.height = processRow;
    metrics.paddingLeft = cardPadding - 1;
    metrics.paddingRight = cardPadding - 1;
    metrics.clipsTop = false;
    m_list = new RowView(*m_rows, metrics);
    m_list->setObjectName(QStringLiteral("processList"));
    m_list->setAccessibleName(tr("Processes"));
    Row titles;
    titles.title = tr("PROCESS");
    titles.cells = {RowCell::note(tr("CPU"), cpuCell), RowCell::number(tr("MEMORY"), memoryCell)};
    m_list->setTitles(titles);
    connect(m_list, &RowView::contextMenuRequested, this,
            [this](const QModelIndex& index, const QPoint& position) {
                showMenu(index.row(), position);
            });
    column->addWidget(m_list);
    return card;
}

void MonitorView::push(std::vector<double>& history, double value)
{
    history.push_back(value);
    if (history.size() > maxHistory) {
        history.erase(history.begin(), history.end() - static_cast<std::ptrdiff_t>(maxHistory));
    }
}

void MonitorView::takeSample()
{
    if (m_state.isSampling.value()) {
        return;
    }
    // The counters since the start of the machine move slowly: this keeps the chart's lines alive,
    // and no number shows it.
    m_jitter = (QRandomGenerator::global()->generateDouble() * 2 - 1) * jitterRange;
    m_state.sampleMachine();
}

void MonitorView::refresh()
{
    if (!m_timer.isActive()) {
        return;
    }
    const SystemMonitor::Sample sample = m_state.machineSample.value();
    setSubtitle(m_state.chipSummary.value(), QStringLiteral("chipSummary"));
    showCpu(sample.cpu);
    showMemory(sample.memory);
    showNetwork(sample.network);
    showPower(sample.battery);
    m_processes = sample.processes;
    showProcesses();
}

void MonitorView::showCpu(const CPUSample& cpu)
{
    const double user = shareOf(cpu.user, cpu.total);
    const double sys = shareOf(cpu.system, cpu.total);
    m_load->setText(percentText(user + sys));
    m_user->setText(percentText(user));
    m_sys->setText(percentText(sys));
    push(m_cpuUserHistory, std::max(0.0, user + m_jitter));
    push(m_cpuSysHistory, std::max(0.0, sys + m_jitter));
    m_cpuChart->setSeries({m_cpuUserHistory, m_cpuSysHistory});
}

void MonitorView::showMemory(const MemorySample& memory)
{
    constexpr std::uint64_t gigabyte = std::uint64_t{1} << 30;
    m_used->setText(bytesText(memory.usedBytes));
    m_ofTotal->setText(tr("of %1 GB (%2%)")
                           .arg(memory.totalBytes / gigabyte)
                           .arg(memory.usedPercent(), 0, 'f', 0));
    const std::uint64_t known = memory.wiredBytes + memory.compressedBytes;
    const std::uint64_t apps = memory.usedBytes - std::min(known, memory.usedBytes);
    m_segments->setBytes(apps, memory.wiredBytes, memory.compressedBytes, memory.freeBytes);
    m_memoryCells[0]->setText(bytesText(apps));
    m_memoryCells[1]->setText(bytesText(memory.wiredBytes));
    m_memoryCells[2]->setText(bytesText(memory.compressedBytes));
    m_memoryCells[3]->setText(bytesText(memory.freeBytes));
}

void MonitorView::showNetwork(const NetRateSample& network)
{
    m_download->setText(network.formattedRX());
    m_upload->setText(network.formattedTX());
    push(m_downHistory, network.rxBytesPerSec);
    push(m_upHistory, network.txBytesPerSec);
    m_networkChart->setSeries({m_downHistory, m_upHistory});
}

void MonitorView::showPower(const BatterySample& battery)
{
    m_percent->setText(QString::number(battery.percent, 'f', 0) + QLatin1Char('%'));
    m_time->setText(battery.timeRemainingText());
    m_status->setText(battery.statusText());
    m_cycles->setText(QString::number(battery.cycleCount));
    m_health->setText(battery.healthText());
    m_charge->setFraction(battery.percent / 100);
    m_source->setText(battery.onAC ? tr("Power Adapter") : tr("Battery"));
    // Without a battery a charge and a time would be made up.
    m_percent->setVisible(battery.isPresent);
    m_time->setVisible(battery.isPresent);
    m_charge->setVisible(battery.isPresent);
}

void MonitorView::showProcesses()
{
    const bool isByMemory = m_state.processOrder.value() == SystemMonitor::ProcessOrder::memory;
    m_processesTitle->setText(isByMemory ? tr("Top Processes (by Memory)")
                                         : tr("Top Processes (by CPU)"));
    std::vector<Row> rows;
    RowModel::Keys keys;
    for (const ProcessSample& process : m_processes) {
        Row row;
        row.title = displayText(process.name);
        row.titleStyle = TextStyle::body;
        row.cells = {RowCell::note(process.formattedCPU(), cpuCell),
                     RowCell{.text = process.formattedMemory(),
                             .width = memoryCell,
                             .style = TextStyle::body,
                             .color = ThemeColor::text1}};
        rows.push_back(std::move(row));
        keys.push_back(static_cast<quint64>(process.pid));
    }
    m_rows->setRows(std::move(rows), std::move(keys));
    // The screen scrolls as a whole.
    m_list->setFixedHeight(m_list->sizeHint().height());
}

void MonitorView::showMenu(int row, const QPoint& position)
{
    const std::int32_t pid = m_processes[static_cast<std::size_t>(row)].pid;
    auto* const menu = new Menu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setObjectName(QStringLiteral("processMenu"));
    connect(menu->addItem(QStringLiteral("doc.on.doc"), tr("Copy Process ID")), &QAction::triggered,
            this, [pid] { QGuiApplication::clipboard()->setText(QString::number(pid)); });
    connect(menu->addItem(QStringLiteral("magnifyingglass"), tr("Reveal in Finder")),
            &QAction::triggered, this, [this, pid] { m_state.revealProgram(pid); });
    menu->popup(position);
}

void MonitorView::showEvent(QShowEvent* event)
{
    ToolFrame::showEvent(event);
    if (event->spontaneous()) {
        return;
    }
    for (std::vector<double>* const history :
         {&m_cpuUserHistory, &m_cpuSysHistory, &m_downHistory, &m_upHistory}) {
        history->clear();
    }
    m_cpuChart->setSeries({{}, {}});
    m_networkChart->setSeries({{}, {}});
    m_timer.start();
    takeSample();
}

void MonitorView::hideEvent(QHideEvent* event)
{
    ToolFrame::hideEvent(event);
    if (!event->spontaneous()) {
        m_timer.stop();
        m_state.forgetMachine();
    }
}

} // namespace quorvane

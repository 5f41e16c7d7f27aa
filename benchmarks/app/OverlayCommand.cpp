// SPDX-License-Identifier: MIT
#include "OverlayCommand.h"

#include "AppState.h"
#include "BenchApplication.h"
#include "BusyWatch.h"
#include "FakePlatform.h"
#include "GlobalSearch.h"
#include "JsonText.h"
#include "SearchOverlayRoot.h"
#include "TreeSource.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <chrono>
#include <iostream>
#include <string>
#include <vector>

namespace quorvane {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int openings = 9;
/// 150 keystrokes in all.
constexpr int typings = 10;
constexpr int turnsBetweenKeys = 3;
const QString typed = QStringLiteral("image e >1kb a o");

/// Tells when the first frame of a widget is on the screen.
class FirstFrame final : public QObject
{
public:
    explicit FirstFrame(QWidget& widget) { widget.installEventFilter(this); }

    bool isShown() const { return m_shown != Clock::time_point(); }
    Clock::time_point time() const { return m_shown; }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && !m_isPainted) {
            m_isPainted = true;
            // Behind this event, which paints and shows all of the window.
            QMetaObject::invokeMethod(
                this, [this] { m_shown = Clock::now(); }, Qt::QueuedConnection);
        }
        return false;
    }

private:
    bool m_isPainted = false;
    Clock::time_point m_shown;
};

double openOnce()
{
    const auto start = Clock::now();
    GlobalSearch::shared().toggle();
    FirstFrame frame(GlobalSearch::shared().panel()->root());
    runUntil([&frame] { return frame.isShown(); });
    const double milliseconds =
        std::chrono::duration<double, std::milli>(frame.time() - start).count();
    GlobalSearch::shared().close();
    return milliseconds;
}

void press(QWidget& widget, int key, const QString& text)
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QCoreApplication::postEvent(&widget, new QKeyEvent(type, key, Qt::NoModifier, text));
    }
    int turns = 0;
    runUntil([&turns] { return ++turns > turnsBetweenKeys; });
}

double typeForAWhile()
{
    GlobalSearch::shared().toggle();
    SearchOverlayRoot& root = GlobalSearch::shared().panel()->root();
    auto* const field = root.findChild<QLineEdit*>();
    FirstFrame frame(root);
    runUntil([&frame] { return frame.isShown(); });
    BusyWatch watch;
    watch.restart();
    for (int i = 0; i < typings; ++i) {
        for (const QChar letter : typed) {
            press(*field, 0, letter);
        }
        runUntil([&root] { return !root.isSearching(); });
        press(*field, Qt::Key_Escape, {});
    }
    return watch.longestMilliseconds();
}

int runOverlay(const Arguments& arguments)
{
    if (arguments.operands().size() != 1) {
        return complain("overlay takes one folder", exitUsage);
    }
    const QTemporaryDir place;
    qputenv("XDG_CACHE_HOME", place.path().toUtf8());
    BenchApplication application(BenchApplication::Display::ofTheWindow);
    const FilePath folder = folderFromArgument(arguments.operands().front());
    FakePlatform fake(folder);
    MappedFileIndex index(MappedFileIndex::standardFile(), fake.fileSystem);
    if (index.make(folder, LockedFlag()) != MappedFileIndex::Outcome::made) {
        return complain("no index was made", exitFailure);
    }
    AppState state(fake.platform());
    GlobalSearch::shared().install(&state);
    std::vector<double> frames;
    for (int i = 0; i < openings; ++i) {
        frames.push_back(openOnce());
    }
    std::sort(frames.begin(), frames.end());
    const double busy = typeForAWhile();
    GlobalSearch::shared().install(nullptr);
    std::string line;
    JsonObject object(line);
    object.real("firstFrameMilliseconds", frames[frames.size() / 2]);
    object.real("longestFirstFrameMilliseconds", frames.back());
    object.real("longestBusyMilliseconds", busy);
    object.endLine();
    std::cout << line;
    return exitSuccess;
}

} // namespace

const Command overlayCommand{
    "overlay",
    "DIR",
    "Index DIR as if it were the whole machine, open the search overlay over it and type; tell the "
    "time to its first frame and the longest time that the main thread was busy.",
    {},
    runOverlay};

} // namespace quorvane

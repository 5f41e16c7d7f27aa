// SPDX-License-Identifier: MIT
#include "AppState.h"
#include "Chip.h"
#include "DiskTree.h"
#include "EmptyState.h"
#include "FakePlatform.h"
#include "GlobalSearch.h"
#include "Label.h"
#include "OverlayFilters.h"
#include "PreviewPanel.h"
#include "ResultList.h"
#include "SearchOverlayRoot.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QMimeData>
#include <QTest>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace quorvane {
namespace {

/// The overlay over a small home that is all of the machine.
class Overlay : public testing::Test
{
protected:
    Overlay()
    {
        std::filesystem::remove(MappedFileIndex::standardFile().bytes());
        m_disk.file("Downloads/drone.mov", 4000);
        m_disk.file("Downloads/drone flight.mp4", 8000);
        m_disk.file("Documents/drone notes.txt", 30);
        m_disk.file("report.pdf", 20);
        m_state = std::make_unique<AppState>(m_platform.platform());
        GlobalSearch::shared().install(m_state.get(), [this] { ++m_mainWindowShown; });
    }
    ~Overlay() override { GlobalSearch::shared().install(nullptr); }

    void open(const char* text = "")
    {
        if (*text == '\0') {
            GlobalSearch::shared().toggle();
        } else {
            GlobalSearch::shared().show(QString::fromUtf8(text));
        }
        ASSERT_TRUE(QTest::qWaitForWindowExposed(GlobalSearch::shared().panel(), 30'000));
        ASSERT_TRUE(waitFor([this] { return find<QWidget>("overlayField")->hasFocus(); }));
    }

    SearchOverlayRoot& root() { return GlobalSearch::shared().panel()->root(); }
    bool isOpen() { return GlobalSearch::shared().isVisible(); }

    template<class T = QAbstractButton>
    T* find(const char* name)
    {
        T* const found = GlobalSearch::shared().panel()->findChild<T*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    bool isShown(const char* name)
    {
        const auto* const widget =
            GlobalSearch::shared().panel()->findChild<QWidget*>(QLatin1String(name));
        return widget != nullptr && widget->isVisible();
    }

    void type(const char* text)
    {
        QTest::keyClicks(find<QWidget>("overlayField"), QLatin1String(text));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(find<QWidget>("overlayField"), key, modifiers);
    }

    void awaitResults()
    {
        ASSERT_TRUE(waitFor([this] { return !root().isSearching(); }));
    }
    /// Types and waits for the answer.
    void search(const char* text)
    {
        type(text);
        awaitResults();
    }

    std::vector<std::string> names()
    {
        std::vector<std::string> found;
        for (const SearchResult& result : root().results()) {
            found.emplace_back(result.name());
        }
        return found;
    }
    std::string query() { return root().query().toStdString(); }
    std::string text(const char* label) { return find<Label>(label)->text().toStdString(); }
    FilePath path(const char* below) { return m_disk.path(below); }

    DiskTree m_disk;
    FakePlatform m_platform{m_disk.root()};
    std::unique_ptr<AppState> m_state;
    int m_mainWindowShown = 0;
};

using Names = std::vector<std::string>;

TEST_F(Overlay, IsClosedByTheCallThatOpensItAndStartsAfresh)
{
    open();
    press(Qt::Key_Tab);
    search("report");
    EXPECT_EQ(root().scope(), m_disk.root());
    GlobalSearch::shared().toggle();
    EXPECT_FALSE(isOpen());
    open();
    EXPECT_EQ(query(), "");
    EXPECT_EQ(root().scope(), FilePath("/"));
    EXPECT_TRUE(isShown("overlayEmpty"));
}

TEST_F(Overlay, FindsWhatIsTypedAndSelectsTheFirst)
{
    open();
    type("drone");
    EXPECT_TRUE(root().isSearching());
    EXPECT_EQ(text("overlayStatus"), "Searching…");
    awaitResults();
    EXPECT_EQ(root().results().size(), 3U);
    EXPECT_EQ(root().selectedIndex(), 0);
    EXPECT_EQ(text("overlayStatus"), "3 results");
    EXPECT_TRUE(isShown("overlayResults"));
    search(" >5kb");
    EXPECT_EQ(names(), Names{"drone flight.mp4"});
    EXPECT_EQ(text("overlayStatus"), "1 result");
}

TEST_F(Overlay, OpensWithATextThatIsSearchedForAtOnce)
{
    open("report");
    awaitResults();
    EXPECT_EQ(names(), Names{"report.pdf"});
}

TEST_F(Overlay, TheToolBarsTextComesWithoutWhiteSpaceAroundIt)
{
    GlobalSearch::shared().openFromToolbar(QStringLiteral(" r\n"));
    ASSERT_TRUE(isOpen());
    EXPECT_EQ(query(), "r");
    GlobalSearch::shared().openFromToolbar(QStringLiteral("other"));
    EXPECT_EQ(query(), "r");
}

TEST_F(Overlay, TabGoesThroughTheFoldersAndShiftTabBack)
{
    open();
    const std::vector<FilePath> folders{m_disk.root(), path("Documents"), path("Downloads"),
                                        FilePath("/")};
    for (const FilePath& folder : folders) {
        press(Qt::Key_Tab);
        EXPECT_EQ(root().scope(), folder);
    }
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(root().scope(), path("Downloads"));
    EXPECT_EQ(text("overlayScope"), "Scope: Downloads");
}

TEST_F(Overlay, AFolderIsListedWithoutATextAsSoonAsItIsChosen)
{
    open();
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    awaitResults();
    EXPECT_EQ(root().results().size(), 2U);
    EXPECT_TRUE(isShown("overlayResults"));
}

TEST_F(Overlay, TabCompletesAWordThatIsBeingTyped)
{
    open();
    search("ima");
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(query(), "ima");
    EXPECT_EQ(root().scope(), path("Downloads"));
    press(Qt::Key_Tab);
    EXPECT_TRUE(query() == "image " || query() == "images ") << query();
    EXPECT_TRUE(root().results().empty());
    EXPECT_EQ(root().scope(), path("Downloads"));
    press(Qt::Key_Tab);
    EXPECT_EQ(root().scope(), FilePath("/"));
}

TEST_F(Overlay, EscEmptiesTheFieldFirstAndClosesThen)
{
    open();
    search("drone");
    press(Qt::Key_Escape);
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(query(), "");
    EXPECT_TRUE(root().results().empty());
    EXPECT_EQ(root().selectedIndex(), -1);
    press(Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
}

TEST_F(Overlay, TheArrowKeysMoveTheSelectionAndStopAtTheEnds)
{
    open();
    search("drone");
    press(Qt::Key_Up);
    EXPECT_EQ(root().selectedIndex(), 0);
    for (int i = 0; i < 5; ++i) {
        press(Qt::Key_Down);
    }
    EXPECT_EQ(root().selectedIndex(), 2);
}

TEST_F(Overlay, UpOnAnEmptyListLeavesTheIndexAtZeroAndNothingSelected)
{
    open();
    press(Qt::Key_Down);
    EXPECT_EQ(root().selectedIndex(), -1);
    press(Qt::Key_Up);
    EXPECT_EQ(root().selectedIndex(), 0);
    EXPECT_EQ(root().selectedResult(), nullptr);
    press(Qt::Key_Return);
    EXPECT_TRUE(isOpen());
}

TEST_F(Overlay, ReturnOpensAndWithCommandReveals)
{
    open();
    search("report");
    press(Qt::Key_Return);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(m_platform.workspace.opened, std::vector<FilePath>{path("report.pdf")});
    open();
    search("report");
    press(Qt::Key_Enter, Qt::ControlModifier);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(m_platform.workspace.revealed, std::vector<FilePath>{path("report.pdf")});
}

TEST_F(Overlay, ThePathIsCopiedByKey)
{
    open();
    press(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(isOpen());
    search("report");
    press(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), path("report.pdf").displayText());
}

TEST_F(Overlay, ThePreviewStandsInTheOverlayAndFollowsTheSelection)
{
    open();
    search("drone");
    press(Qt::Key_Y, Qt::ControlModifier);
    auto* const preview = find<PreviewPanel>("previewPanel");
    EXPECT_TRUE(preview->isVisible());
    EXPECT_EQ(QuickLookPreview::shared().url(), root().results()[0].path);
    QTest::keyClick(preview, Qt::Key_Down);
    EXPECT_EQ(root().selectedIndex(), 1);
    EXPECT_EQ(QuickLookPreview::shared().url(), root().results()[1].path);
    QTest::keyClick(preview, Qt::Key_Escape);
    EXPECT_FALSE(preview->isVisible());
    EXPECT_EQ(query(), "drone");
    EXPECT_TRUE(isOpen());
}

TEST_F(Overlay, OtherKeysReachTheField)
{
    open();
    search("drone");
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_Delete);
    EXPECT_EQ(query(), "");
}

TEST_F(Overlay, ChipsStandForTheFiltersAndTakeThemAway)
{
    open();
    type("drone video downloads >1kb week");
    EXPECT_EQ(find<Chip>("chip.kind")->text(), QStringLiteral("video"));
    EXPECT_EQ(find<Chip>("chip.location")->text(), QStringLiteral("Downloads"));
    EXPECT_EQ(find<Chip>("chip.size")->text(), QStringLiteral(">1KB"));
    EXPECT_EQ(find<Chip>("chip.date")->text(), QStringLiteral("This week"));
    EXPECT_EQ(find<Chip>("chip.date")->toolTip(), QStringLiteral("Remove this filter"));
    awaitResults();
    EXPECT_EQ(root().results().size(), 2U);
    find("chip.location")->click();
    EXPECT_EQ(query(), "drone video >1kb week ");
    EXPECT_EQ(find<Chip>("chip.scope")->text(), QStringLiteral("in This Mac"));
    EXPECT_TRUE(find<QWidget>("overlayField")->hasFocus());
}

TEST_F(Overlay, WithoutItsLastChipTheFieldHoldsABlankThatMatchesNothing)
{
    open();
    search("pdf");
    find("chip.kind")->click();
    EXPECT_EQ(query(), " ");
    EXPECT_TRUE(isShown("overlayNoMatches"));
    bool isHeaded = false;
    for (const Label* const label : find<EmptyState>("overlayNoMatches")->findChildren<Label*>()) {
        isHeaded = isHeaded || label->text() == QStringLiteral("No matches for “ ”");
    }
    EXPECT_TRUE(isHeaded);
}

TEST_F(Overlay, AChipOfTheHelpAddsItsWordAndTakesItAway)
{
    open();
    type("drone");
    EXPECT_FALSE(isShown("overlayHelp"));
    find("overlayFilters")->click();
    ASSERT_TRUE(isShown("overlayHelp"));
    auto* const help = find<FilterHelp>("overlayHelp");
    auto* const video = help->findChild<Chip*>(QStringLiteral("filter.video"));
    video->click();
    EXPECT_EQ(query(), "drone video ");
    EXPECT_TRUE(video->isActive());
    EXPECT_EQ(video->toolTip(), QStringLiteral("Applied — click to remove"));
    help->findChild<Chip*>(QStringLiteral("filter.image"))->click();
    EXPECT_EQ(query(), "drone image ");
    EXPECT_FALSE(video->isActive());
    help->findChild<Chip*>(QStringLiteral("filter.image"))->click();
    EXPECT_EQ(query(), "drone ");
}

TEST_F(Overlay, AnExampleTakesThePlaceOfTheText)
{
    open();
    find("example.pdf desktop")->click();
    EXPECT_EQ(query(), "pdf desktop ");
    EXPECT_TRUE(isShown("chip.kind"));
}

TEST_F(Overlay, WhatMatchesNothingIsSaidSo)
{
    open();
    search("nothing of that name");
    EXPECT_TRUE(isShown("overlayNoMatches"));
    EXPECT_EQ(text("overlayStatus"), "No results");
    EXPECT_EQ(root().selectedIndex(), -1);
}

TEST_F(Overlay, TheCrossesEmptyTheFieldAndClose)
{
    open();
    EXPECT_FALSE(isShown("overlayClear"));
    search("drone");
    find("overlayClear")->click();
    EXPECT_EQ(query(), "");
    find("overlayClose")->click();
    EXPECT_FALSE(isOpen());
}

TEST_F(Overlay, AClickOpensAndThePointerSelects)
{
    open();
    search("drone");
    auto* const list = find<ResultList>("overlayResults");
    const QModelIndex second = list->model()->index(1, 0);
    const QPoint place = list->visualRect(second).center();
    QTest::mouseMove(list->viewport(), place - QPoint(0, 1));
    QTest::mouseMove(list->viewport(), place);
    EXPECT_TRUE(waitFor([this] { return root().selectedIndex() == 1; }));
    const FilePath wanted = root().results()[1].path;
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(m_platform.workspace.opened, std::vector<FilePath>{wanted});
}

TEST_F(Overlay, ARowsMenuActsAndClosesTheOverlay)
{
    const std::vector<QString> items{QStringLiteral("Open"), QStringLiteral("Reveal in Finder"),
                                     QStringLiteral("Preview (⌘Y)"), QStringLiteral("Copy Path")};
    for (std::size_t i = 0; i < items.size(); ++i) {
        open();
        search("report");
        auto* const list = find<ResultList>("overlayResults");
        Q_EMIT list->contextMenuRequested(list->model()->index(0, 0), QPoint(10, 10));
        auto* const menu = GlobalSearch::shared().panel()->findChild<QMenu*>();
        ASSERT_NE(menu, nullptr);
        ASSERT_EQ(menu->actions().size(), 4);
        EXPECT_EQ(menu->actions()[static_cast<int>(i)]->text(), items[i]);
        menu->actions()[static_cast<int>(i)]->trigger();
        menu->close();
        EXPECT_TRUE(waitFor([this] { return !isOpen(); })) << qPrintable(items[i]);
    }
    EXPECT_EQ(m_platform.workspace.opened, std::vector<FilePath>{path("report.pdf")});
    EXPECT_EQ(m_platform.workspace.revealed, std::vector<FilePath>{path("report.pdf")});
    EXPECT_EQ(QuickLookPreview::shared().url(), path("report.pdf"));
    EXPECT_EQ(m_mainWindowShown, 1);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), path("report.pdf").displayText());
}

TEST_F(Overlay, ARowIsDraggedOutAsAFile)
{
    m_disk.file("per cent %41 and #.pdf", 1);
    open();
    search("\"cent");
    auto* const list = find<ResultList>("overlayResults");
    const std::unique_ptr<QMimeData> data(list->model()->mimeData({list->model()->index(0, 0)}));
    ASSERT_NE(data, nullptr);
    ASSERT_EQ(data->urls().size(), 1);
    EXPECT_EQ(data->urls().front().toLocalFile(), path("per cent %41 and #.pdf").displayText());
}

TEST_F(Overlay, AResultInTheScanIsOpenedInTheMainWindow)
{
    open();
    search("downloads");
    EXPECT_FALSE(isShown("overlayOpenInApp"));
    GlobalSearch::shared().close();
    m_state->startScan(m_disk.root());
    ASSERT_TRUE(waitFor([this] { return m_state->hasScan(); }));
    m_state->section = AppSection::monitor;
    open();
    search("folder \"downloads\"");
    ASSERT_EQ(names(), Names{"Downloads"});
    ASSERT_TRUE(isShown("overlayOpenInApp"));
    find("overlayOpenInApp")->click();
    ASSERT_TRUE(waitFor([this] { return !isOpen(); }));
    EXPECT_EQ(m_mainWindowShown, 1);
    EXPECT_EQ(m_state->section.value(), AppSection::analysis);
    EXPECT_EQ(m_state->focusNode.value()->path(), path("Downloads"));
    EXPECT_TRUE(m_platform.workspace.opened.empty());
}

TEST_F(Overlay, WithoutAModelNothingOpens)
{
    GlobalSearch::shared().install(nullptr);
    GlobalSearch::shared().toggle();
    EXPECT_FALSE(isOpen());
}

TEST_F(Overlay, TheMenusKeyClosesItWhileItIsInFront)
{
    open();
    press(Qt::Key_Space, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_FALSE(isOpen());
}

TEST_F(Overlay, WhatIsShownIsAskedOfANewerIndexAndKeepsItsSelection)
{
    open();
    search("drone");
    press(Qt::Key_Down);
    const FilePath selected = root().selectedResult()->path;
    m_disk.file("drone of today", 1);
    m_state->startScan(m_disk.root());
    ASSERT_TRUE(waitFor([this] { return root().results().size() == 4; }));
    EXPECT_EQ(root().selectedResult()->path, selected);
}

TEST(CenterNearTop, IsCentredAndSixtyBelowTheTop)
{
    EXPECT_EQ(centerNearTop(QRect(100, 30, 1000, 900), QSize(620, 660)),
              QRect(100 + 190, 90, 620, 660));
}

TEST(IndexAge, IsToldInMinutesHoursAndDays)
{
    constexpr std::int64_t minute = 60'000;
    constexpr std::int64_t now = 1'700'000'000'000;
    EXPECT_EQ(indexAgeText(now - 3 * minute - 1, now, false), QStringLiteral("Index 3 min old"));
    EXPECT_EQ(indexAgeText(now + minute, now, false), QStringLiteral("Index 0 min old"));
    EXPECT_EQ(indexAgeText(now - 119 * minute, now, false), QStringLiteral("Index 1 h old"));
    EXPECT_EQ(indexAgeText(now - 48 * 60 * minute, now, false), QStringLiteral("Index 2 days old"));
    EXPECT_EQ(indexAgeText(now, now, true), QStringLiteral("Indexing…"));
    EXPECT_EQ(indexAgeText(std::nullopt, now, false), QString());
}

} // namespace
} // namespace quorvane

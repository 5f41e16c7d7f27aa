// SPDX-License-Identifier: MIT
#include "SearchView.h"

#include "AppState.h"
#include "Chip.h"
#include "DiskTree.h"
#include "EmptyState.h"
#include "FakePlatform.h"
#include "RowView.h"
#include "SegmentedPicker.h"
#include "TextField.h"
#include "WaitFor.h"

#include <QComboBox>
#include <QLabel>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace quorvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FolderSearchScreen : public testing::Test
{
protected:
    FolderSearchScreen()
    {
        m_disk.file("report", 10);
        m_disk.file("docs/annual-report.pdf", 10);
        m_disk.file("docs/myreport.txt", 10);
        m_disk.folder("reports");
    }

    void start()
    {
        m_state = std::make_unique<AppState>(m_platform.platform());
        m_state->startScan(m_disk.root());
        ASSERT_TRUE(waitFor([this] { return m_state->hasScan(); }));
        m_view = std::make_unique<SearchView>(*m_state);
        m_view->resize(1200, 800);
        m_view->show();
    }

    template<class T>
    T& find(const char* name)
    {
        T* const found = m_view->findChild<T*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }

    TextField& field() { return find<TextField>("searchField"); }
    RowView& rows() { return find<RowView>("searchResults"); }

    std::vector<std::string> titles()
    {
        std::vector<std::string> titles;
        for (int i = 0; i < rows().model()->rowCount(); ++i) {
            titles.push_back(rows().rowOf(rows().model()->index(i, 0)).title.toStdString());
        }
        return titles;
    }

    /// Types a text into the empty field and waits for its answer.
    void search(const char* text)
    {
        field().clear();
        QTest::keyClicks(&field(), QLatin1String(text));
        awaitAnswer();
    }

    void awaitAnswer()
    {
        ASSERT_TRUE(waitFor([this] {
            const auto results = m_state->folderSearchResults.value();
            return results && results->query.text == field().text();
        }));
        QCoreApplication::processEvents();
    }

    DiskTree m_disk;
    FakePlatform m_platform{m_disk.root()};
    std::unique_ptr<AppState> m_state;
    std::unique_ptr<SearchView> m_view;
};

TEST_F(FolderSearchScreen, ShowsTheBestMatchesFirst)
{
    start();
    search("report");
    EXPECT_THAT(titles(), ElementsAre("report", "reports", "annual-report.pdf", "myreport.txt"));
    EXPECT_EQ(m_view->selectedIndex(), 0);
    EXPECT_EQ(find<QLabel>("searchCount").text().toStdString(), "4 results");
    const Row row = rows().rowOf(rows().model()->index(2, 0));
    EXPECT_EQ(row.path.toStdString(), "/docs/annual-report.pdf");
    ASSERT_EQ(row.titleSpans.size(), 1U);
    EXPECT_EQ(row.titleSpans.front().start, 7);
    EXPECT_EQ(row.titleSpans.front().length, 6);
}

TEST_F(FolderSearchScreen, SaysWhatItDoesAndWhatIsNotThere)
{
    start();
    EXPECT_TRUE(find<EmptyState>("searchHint").isVisible());
    search("nowhere");
    EXPECT_TRUE(find<EmptyState>("searchNothing").isVisible());
    field().clear();
    EXPECT_TRUE(find<EmptyState>("searchHint").isVisible());
}

TEST_F(FolderSearchScreen, ArrowKeysWrapAtBothEnds)
{
    start();
    search("report");
    QTest::keyClick(&field(), Qt::Key_Up);
    EXPECT_EQ(m_view->selectedIndex(), 3);
    QTest::keyClick(&field(), Qt::Key_Down);
    EXPECT_EQ(m_view->selectedIndex(), 0);
    search("nowhere");
    QTest::keyClick(&field(), Qt::Key_Down);
    EXPECT_EQ(m_view->selectedIndex(), -1);
}

TEST_F(FolderSearchScreen, ReturnOpensTheSelectedNodeInTheAnalysis)
{
    start();
    m_state->section = AppSection::search;
    search("reports");
    QTest::keyClick(&field(), Qt::Key_Return);
    EXPECT_EQ(m_state->section.value(), AppSection::analysis);
    EXPECT_EQ(m_state->selectedNode.value()->name(), "reports");
    EXPECT_EQ(m_state->focusNode.value()->name(), "reports");
}

TEST_F(FolderSearchScreen, EscapeEmptiesTheField)
{
    start();
    search("report");
    QTest::keyClick(&field(), Qt::Key_Escape);
    EXPECT_TRUE(field().text().isEmpty());
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_EQ(m_view->selectedIndex(), -1);
}

TEST_F(FolderSearchScreen, AFilterStandsAsAChipThatTakesItBack)
{
    start();
    search("report");
    auto& category = find<QComboBox>("searchCategory");
    category.setCurrentIndex(category.findText(QStringLiteral("Doc")));
    Q_EMIT category.activated(category.currentIndex());
    ASSERT_TRUE(waitFor([this] { return titles().size() == 2; }));
    EXPECT_THAT(titles(), ElementsAre("annual-report.pdf", "myreport.txt"));
    Chip* chip = nullptr;
    for (Chip* const each : m_view->findChildren<Chip*>()) {
        chip = each->isVisible() ? each : chip;
    }
    ASSERT_NE(chip, nullptr);
    EXPECT_EQ(chip->text().toStdString(), "Doc");
    QTest::mouseClick(chip, Qt::LeftButton);
    EXPECT_EQ(category.currentIndex(), 0);
    EXPECT_TRUE(waitFor([this] { return titles().size() == 4; }));
}

TEST_F(FolderSearchScreen, AnotherScanIsSearchedAnew)
{
    start();
    search("report");
    m_disk.file("report3");
    m_state->rescan();
    EXPECT_TRUE(waitFor([this] { return titles().size() == 5; }));
}

TEST(HighlightedSpans, OverlappingWordsAreOneSpan)
{
    const std::vector<RowSpan> spans =
        highlightedSpans(QStringLiteral("My Report report"), QStringLiteral("rep port REPORT"));
    ASSERT_EQ(spans.size(), 2U);
    EXPECT_EQ(spans[0].start, 3);
    EXPECT_EQ(spans[0].length, 6);
    EXPECT_EQ(spans[1].start, 10);
    EXPECT_TRUE(highlightedSpans(QStringLiteral("name"), QString()).empty());
}

TEST(ShortDate, IsATimeTodayAndADayElse)
{
    const QDateTime noon(QDate(2025, 11, 2), QTime(12, 30));
    const qint64 now = noon.addSecs(3600).toSecsSinceEpoch();
    EXPECT_EQ(shortDate(noon.toSecsSinceEpoch(), now).toStdString(), "12:30");
    EXPECT_EQ(shortDate(noon.addDays(-1).toSecsSinceEpoch(), now).toStdString(), "Nov 1");
    EXPECT_TRUE(shortDate(std::nullopt, now).isEmpty());
}

} // namespace
} // namespace quorvane

// SPDX-License-Identifier: MIT
#include "ScreenshotTool.h"

#include "DiskTree.h"
#include "FaultyFileSystemCalls.h"
#include "FileTextRecognizer.h"
#include "LockedFlag.h"
#include "UnprivilegedRun.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace quorvane {
namespace {

class ScreenshotFolder : public ::testing::Test
{
protected:
    void picture(std::string_view name, std::string_view text)
    {
        m_disk.fileWithContents("folder/" + std::string(name), text);
    }
    std::vector<ScreenshotCandidate> scan()
    {
        std::vector<ScreenshotCandidate> found =
            ScreenshotTool::scan(m_disk.path("folder"), FileSystemCalls::system(), m_recognizer,
                                 QTimeZone::utc(), m_stop);
        std::sort(found.begin(), found.end(),
                  [](const auto& left, const auto& right) { return left.url < right.url; });
        return found;
    }
    ScreenshotCandidate only()
    {
        const std::vector<ScreenshotCandidate> found = scan();
        EXPECT_EQ(found.size(), 1U);
        return found.empty() ? ScreenshotCandidate{} : found.front();
    }
    bool exists(std::string_view name) const
    {
        struct stat status = {};
        return lstat(m_disk.path("folder").appending(name).bytes().c_str(), &status) == 0;
    }
    std::string contents(std::string_view name) const
    {
        std::ifstream file(m_disk.path("folder").appending(name).bytes());
        return {std::istreambuf_iterator<char>(file), {}};
    }

    DiskTree m_disk;
    FileTextRecognizer m_recognizer;
    LockedFlag m_stop;
};

TEST_F(ScreenshotFolder, IsReadWithoutWhatLiesBelowIt)
{
    picture("Screenshot 2024-03-05.png", "quarterly report");
    picture("below/Screenshot 2024-03-05.png", "quarterly report");
    picture("Screenshot – Budget.png", "quarterly report");
    picture(".Screenshot.png", "quarterly report");
    picture("holiday.png", "quarterly report");
    picture("Screenshot.txt", "quarterly report");
    m_disk.folder("folder/Screenshot folder.png");
    m_disk.symbolicLink("holiday.png", "folder/Screenshot link.png");
    std::vector<std::string> proposals;
    for (const ScreenshotCandidate& candidate : scan()) {
        if (candidate.hasProposal()) {
            proposals.push_back(candidate.proposedName);
        }
    }
    EXPECT_EQ(proposals, std::vector<std::string>{"2024-03-05_Quarterly_Report.png"});
    EXPECT_EQ(m_recognizer.read(), std::vector<std::string>{"Screenshot 2024-03-05.png"});
}

TEST_F(ScreenshotFolder, ThatCannotBeListedIsEmpty)
{
    EXPECT_TRUE(scan().empty());
}

TEST_F(ScreenshotFolder, KeepsCandidatesWithoutAProposal)
{
    picture("Screenshot.png", "Cancel OK Done");
    const ScreenshotCandidate candidate = only();
    EXPECT_FALSE(candidate.hasProposal());
    EXPECT_EQ(candidate.sizeBytes, 14);
    EXPECT_FALSE(ScreenshotTool::rename(candidate));
}

TEST_F(ScreenshotFolder, StopsBetweenPictures)
{
    for (int i = 0; i < 5; ++i) {
        picture("Screenshot " + std::to_string(i) + ".png", "quarterly report");
    }
    std::vector<std::size_t> steps;
    ScreenshotTool::scan(m_disk.path("folder"), FileSystemCalls::system(), m_recognizer,
                         QTimeZone::utc(), m_stop, [&](std::size_t done, std::size_t total) {
                             EXPECT_EQ(total, 5U);
                             steps.push_back(done);
                             m_stop.set(done == 1);
                         });
    EXPECT_EQ(steps, (std::vector<std::size_t>{0, 1}));
    EXPECT_EQ(m_recognizer.read().size(), 2U);
}

TEST_F(ScreenshotFolder, GivesTheFileItsNameAndTakesItBack)
{
    picture("Screenshot 2024-03-05.png", "quarterly report");
    const std::optional<ScreenshotCandidate> renamed = ScreenshotTool::rename(only());
    ASSERT_TRUE(renamed);
    EXPECT_EQ(renamed->url.lastComponent(), "2024-03-05_Quarterly_Report.png");
    EXPECT_EQ(contents("2024-03-05_Quarterly_Report.png"), "quarterly report");
    EXPECT_FALSE(exists("Screenshot 2024-03-05.png"));

    const std::optional<ScreenshotCandidate> back = ScreenshotTool::rename(*renamed);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->url.lastComponent(), "Screenshot 2024-03-05.png");
    EXPECT_TRUE(exists("Screenshot 2024-03-05.png"));
}

TEST_F(ScreenshotFolder, TakesARenameBackUnderANumberWhereTheOldNameIsTaken)
{
    picture("Screenshot 2024-03-05.png", "quarterly report");
    const std::optional<ScreenshotCandidate> renamed = ScreenshotTool::rename(only());
    picture("Screenshot 2024-03-05.png", "another");
    ASSERT_TRUE(ScreenshotTool::rename(renamed.value()));
    EXPECT_EQ(contents("Screenshot 2024-03-05.png"), "another");
    EXPECT_EQ(contents("Screenshot 2024-03-05 2.png"), "quarterly report");
}

TEST_F(ScreenshotFolder, NeverTakesTheNameOfAnotherEntry)
{
    picture("Screenshot 2024-03-05.png", "quarterly report");
    picture("2024-03-05_Quarterly_Report.png", "first");
    m_disk.symbolicLink("nowhere", "folder/2024-03-05_Quarterly_Report 2.png");
    ASSERT_TRUE(ScreenshotTool::rename(only()));
    EXPECT_EQ(contents("2024-03-05_Quarterly_Report.png"), "first");
    EXPECT_EQ(contents("2024-03-05_Quarterly_Report 3.png"), "quarterly report");
}

TEST_F(ScreenshotFolder, LeavesAloneWhatIsNoLongerTheFileThatWasRead)
{
    picture("Screenshot 2024-03-05.png", "quarterly report");
    const ScreenshotCandidate candidate = only();
    picture("Screenshot 2024-03-05.png", "another screenshot");
    EXPECT_FALSE(ScreenshotTool::rename(candidate));

    m_disk.remove("folder/Screenshot 2024-03-05.png");
    EXPECT_FALSE(ScreenshotTool::rename(candidate));

    picture("elsewhere.png", "quarterly report");
    m_disk.symbolicLink("elsewhere.png", "folder/Screenshot 2024-03-05.png");
    EXPECT_FALSE(ScreenshotTool::rename(candidate));

    m_disk.remove("folder/Screenshot 2024-03-05.png");
    picture("Screenshot 2024-03-05.png", "quarterly report");
    m_disk.modified("folder/Screenshot 2024-03-05.png", 1'000'000);
    EXPECT_FALSE(ScreenshotTool::rename(candidate));
    EXPECT_TRUE(exists("Screenshot 2024-03-05.png"));
}

TEST_F(ScreenshotFolder, RefusesNamesThatLeadOutOfTheFolder)
{
    picture("Screenshot.png", "quarterly report");
    ScreenshotCandidate candidate = only();
    for (const char* const name : {"../stolen.png", "", ".", ".."}) {
        candidate.proposedName = name;
        EXPECT_FALSE(ScreenshotTool::rename(candidate)) << name;
    }
    EXPECT_TRUE(exists("Screenshot.png"));
}

TEST_F(ScreenshotFolder, StaysAsItIsWhereRenamingIsNotPermitted)
{
    picture("Screenshot 2024-03-05.png", "quarterly report");
    const ScreenshotCandidate candidate = only();
    m_disk.mode("folder", 0555);
    asUnprivilegedUser([&candidate] { EXPECT_FALSE(ScreenshotTool::rename(candidate)); });
    EXPECT_TRUE(exists("Screenshot 2024-03-05.png"));
}

TEST_F(ScreenshotFolder, RenamesNamesThatAreNotUtf8)
{
    picture("Screenshot \xff 2024-03-05.png", "quarterly report");
    ASSERT_TRUE(ScreenshotTool::rename(only()));
    EXPECT_TRUE(exists("2024-03-05_Quarterly_Report.png"));
}

} // namespace
} // namespace quorvane

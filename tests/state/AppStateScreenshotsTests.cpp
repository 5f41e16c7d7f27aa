// SPDX-License-Identifier: MIT
#include "FileTextRecognizer.h"
#include "Gate.h"
#include "StateFixture.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace quorvane {
namespace {

class AppStateScreenshots : public StateFixture
{
protected:
    AppStateScreenshots()
    {
        platform.textRecognizer = &recognizer;
        recognizer.beforeReading = [this](const FilePath&) { gate.pass(); };
        disk.folder("shots");
    }
    /// Nothing waits for the test any more.
    ~AppStateScreenshots() override { gate.open(); }

    void picture(const std::string& path, const std::string& text)
    {
        disk.fileWithContents(path, text);
    }
    FilePath shots() const { return disk.path("shots"); }
    bool exists(const std::string& name) const
    {
        return std::filesystem::exists(shots().appending(name).bytes());
    }
    std::string contents(const std::string& name) const
    {
        std::ifstream file(shots().appending(name).bytes());
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void awaitReading()
    {
        ASSERT_TRUE(waitFor([this] {
            return !state().isScreenshotScanning.value() && !state().isRenamingScreenshots.value();
        }));
    }
    void read(const FilePath& folder)
    {
        state().scanScreenshots(folder);
        awaitReading();
    }
    std::vector<std::string> names()
    {
        std::vector<std::string> result;
        for (const ScreenshotCandidate& candidate : state().screenshotCandidates.value()) {
            result.emplace_back(candidate.url.lastComponent());
        }
        return result;
    }
    std::string status()
    {
        return state().screenshotStatus.value().value_or(QString()).toStdString();
    }

    FileTextRecognizer recognizer;
    Gate gate{Gate::State::open};
};

using Names = std::vector<std::string>;

TEST_F(AppStateScreenshots, StartsWithNothing)
{
    start();
    EXPECT_TRUE(state().screenshotCandidates.value().empty());
    EXPECT_FALSE(state().isScreenshotScanning.value());
    EXPECT_EQ(state().screenshotStatus.value(), std::nullopt);
    EXPECT_EQ(state().screenshotScanFolder(), std::nullopt);
    EXPECT_FALSE(state().isRenamingScreenshots.value());
    EXPECT_EQ(state().screenshotRenameProgress.value(), 0);
}

TEST_F(AppStateScreenshots, AScanPublishesWhatCanBeRenamedByName)
{
    picture("shots/Screenshot b.png", "quarterly report");
    picture("shots/Screenshot B.png", "travel plans");
    picture("shots/Screenshot a.png", "harbour permit");
    picture("shots/Screenshot c.png", "Cancel OK Done");
    gate.close();
    state().scanScreenshots(shots());
    EXPECT_TRUE(state().isScreenshotScanning.value());
    EXPECT_EQ(status(), "Running OCR…");
    EXPECT_EQ(state().screenshotScanFolder(), shots());
    gate.open();
    awaitReading();
    EXPECT_EQ(names(), (Names{"Screenshot B.png", "Screenshot a.png", "Screenshot b.png"}));
    EXPECT_EQ(status(), "3 screenshots ready to rename.");
}

TEST_F(AppStateScreenshots, OneIsCountedWithoutAPluralAndNoneAreTold)
{
    picture("shots/Screenshot.png", "quarterly report");
    read(shots());
    EXPECT_EQ(status(), "1 screenshot ready to rename.");
    read(disk.path("missing"));
    EXPECT_EQ(status(), "No screenshots found to rename in this folder.");
    EXPECT_TRUE(names().empty());
}

TEST_F(AppStateScreenshots, AScanOfTheSameFolderIsNotBegunTwice)
{
    picture("shots/Screenshot.png", "quarterly report");
    gate.close();
    state().scanScreenshots(shots());
    gate.awaitVisitor();
    state().scanScreenshots(shots());
    gate.open();
    awaitReading();
    EXPECT_EQ(recognizer.read().size(), 1U);
    read(shots());
    EXPECT_EQ(recognizer.read().size(), 2U) << "a scan that has ended is no hindrance";
}

TEST_F(AppStateScreenshots, AScanOfAnotherFolderStopsTheOneBeforeBetweenItsFiles)
{
    for (int i = 0; i < 20; ++i) {
        picture("shots/Screenshot " + std::to_string(i) + ".png", "quarterly report");
    }
    picture("other/Screenshot other.png", "travel plans");
    gate.close();
    state().scanScreenshots(shots());
    gate.awaitVisitor();
    state().scanScreenshots(disk.path("other"));
    EXPECT_EQ(state().screenshotScanFolder(), disk.path("other"));
    int published = 0;
    const auto watch = state().screenshotCandidates.addNotifier([&published] { ++published; });
    gate.open();
    awaitReading();
    EXPECT_EQ(names(), Names{"Screenshot other.png"});
    end();
    EXPECT_EQ(published, 1);
    EXPECT_EQ(recognizer.read().size(), 2U)
        << "the file under way, and the one of the other folder";
}

TEST_F(AppStateScreenshots, AScanTellsHowFarItIs)
{
    for (int i = 0; i < 3; ++i) {
        picture("shots/Screenshot " + std::to_string(i) + ".png", "quarterly report");
    }
    gate.close();
    state().scanScreenshots(shots());
    EXPECT_EQ(state().screenshotScanProgress.value(), ScreenshotScanProgress{});
    gate.awaitVisitor();
    EXPECT_TRUE(waitFor([this] {
        return state().screenshotScanProgress.value() == ScreenshotScanProgress{0, 3};
    }));
    std::vector<std::size_t> steps;
    const auto watch = state().screenshotScanProgress.addNotifier(
        [&] { steps.push_back(state().screenshotScanProgress.value().done); });
    gate.open();
    awaitReading();
    EXPECT_TRUE(std::is_sorted(steps.begin(), steps.end()));
    EXPECT_EQ(state().screenshotScanProgress.value(), (ScreenshotScanProgress{2, 3}));
}

TEST_F(AppStateScreenshots, ARenameOfSomeBringsTheOthersBackThroughAScan)
{
    picture("shots/Screenshot 2024-03-05 a.png", "quarterly report");
    picture("shots/Screenshot 2024-03-05 b.png", "travel plans");
    read(shots());
    std::vector<std::string> told;
    const auto watch = state().screenshotStatus.addNotifier([&] { told.push_back(status()); });
    state().renameScreenshots({state().screenshotCandidates.value().front()}, shots());
    EXPECT_TRUE(state().isRenamingScreenshots.value());
    EXPECT_EQ(state().screenshotRenameProgress.value(), 0);
    EXPECT_TRUE(names().empty());
    awaitReading();
    EXPECT_EQ(told, (Names{"Renaming…", "Renamed 1 of 1…", "Renamed 1 file.", "Running OCR…",
                           "1 screenshot ready to rename."}));
    EXPECT_EQ(state().screenshotRenameProgress.value(), 1);
    EXPECT_TRUE(exists("2024-03-05_Quarterly_Report.png"));
    EXPECT_EQ(names(), Names{"Screenshot 2024-03-05 b.png"});
}

TEST_F(AppStateScreenshots, AFileThatCannotBeRenamedDoesNotCountAndComesBack)
{
    picture("shots/Screenshot 2024-03-05 a.png", "quarterly report");
    picture("shots/Screenshot 2024-03-05 b.png", "travel plans");
    picture("shots/Screenshot 2024-03-05 c.png", "harbour permit");
    read(shots());
    picture("shots/Screenshot 2024-03-05 a.png", "another quarterly report");
    std::vector<std::string> told;
    const auto watch = state().screenshotStatus.addNotifier([&] { told.push_back(status()); });
    state().renameScreenshots(state().screenshotCandidates.value(), shots());
    awaitReading();
    ASSERT_EQ(told.size(), 7U);
    EXPECT_EQ(told[3], "Renamed 3 of 3…");
    EXPECT_EQ(told[4], "Renamed 2 files.");
    EXPECT_EQ(names(), Names{"Screenshot 2024-03-05 a.png"});
    EXPECT_EQ(state().renamedScreenshots.value().size(), 2U);
}

TEST_F(AppStateScreenshots, NoFilesAndABatchDuringABatchChangeNothing)
{
    start();
    state().renameScreenshots({}, shots());
    EXPECT_EQ(state().screenshotStatus.value(), std::nullopt);
    EXPECT_FALSE(state().isRenamingScreenshots.value());

    picture("shots/Screenshot 2024-03-05 a.png", "quarterly report");
    picture("shots/Screenshot 2024-03-05 b.png", "travel plans");
    read(shots());
    const std::vector<ScreenshotCandidate> both = state().screenshotCandidates.value();
    state().renameScreenshots({both[0]}, shots());
    state().renameScreenshots({both[1]}, shots());
    awaitReading();
    EXPECT_EQ(names(), Names{"Screenshot 2024-03-05 b.png"});
}

TEST_F(AppStateScreenshots, ABatchEndsTheScanUnderWay)
{
    picture("shots/Screenshot 2024-03-05 a.png", "quarterly report");
    picture("shots/Screenshot 2024-03-05 b.png", "travel plans");
    read(shots());
    const std::vector<ScreenshotCandidate> both = state().screenshotCandidates.value();
    gate.close();
    state().scanScreenshots(shots());
    gate.awaitVisitor();
    state().renameScreenshots(both, shots());
    EXPECT_FALSE(state().isScreenshotScanning.value());
    gate.open();
    awaitReading();
    EXPECT_TRUE(exists("2024-03-05_Quarterly_Report.png"));
    EXPECT_TRUE(exists("2024-03-05_Travel_Plans.png"));
    EXPECT_TRUE(names().empty());
}

TEST_F(AppStateScreenshots, UndoGivesTheFormerNamesBack)
{
    picture("shots/Screenshot 2024-03-05 a.png", "quarterly report");
    picture("shots/Screenshot 2024-03-05 b.png", "quarterly report");
    read(shots());
    state().renameScreenshots(state().screenshotCandidates.value(), shots());
    awaitReading();
    ASSERT_TRUE(exists("2024-03-05_Quarterly_Report 2.png"));
    ASSERT_EQ(state().renamedScreenshots.value().size(), 2U)
        << "the scan behind a batch keeps them";

    state().undoScreenshotRenames(shots());
    awaitReading();
    EXPECT_EQ(names(), (Names{"Screenshot 2024-03-05 a.png", "Screenshot 2024-03-05 b.png"}));
    EXPECT_FALSE(exists("2024-03-05_Quarterly_Report.png"));
    EXPECT_TRUE(state().renamedScreenshots.value().empty());
    state().undoScreenshotRenames(shots());
    EXPECT_FALSE(state().isRenamingScreenshots.value());
}

TEST_F(AppStateScreenshots, UndoLeavesAloneWhatHasTakenAFormerName)
{
    picture("shots/Screenshot 2024-03-05 a.png", "quarterly report");
    picture("shots/Screenshot 2024-03-05 b.png", "travel plans");
    read(shots());
    state().renameScreenshots(state().screenshotCandidates.value(), shots());
    awaitReading();
    picture("shots/Screenshot 2024-03-05 a.png", "a new one");
    state().undoScreenshotRenames(shots());
    awaitReading();
    EXPECT_EQ(contents("Screenshot 2024-03-05 a.png"), "a new one");
    EXPECT_EQ(contents("Screenshot 2024-03-05 a 2.png"), "quarterly report");
    EXPECT_EQ(contents("Screenshot 2024-03-05 b.png"), "travel plans");
}

TEST_F(AppStateScreenshots, AnotherScanEndsTheUndo)
{
    picture("shots/Screenshot 2024-03-05 a.png", "quarterly report");
    read(shots());
    state().renameScreenshots(state().screenshotCandidates.value(), shots());
    awaitReading();
    ASSERT_FALSE(state().renamedScreenshots.value().empty());
    state().scanScreenshots(shots());
    EXPECT_TRUE(state().renamedScreenshots.value().empty());
    state().undoScreenshotRenames(shots());
    awaitReading();
    EXPECT_TRUE(exists("2024-03-05_Quarterly_Report.png"));
}

TEST_F(AppStateScreenshots, WithoutItsPackageNothingIsReadUntilItIsThere)
{
    picture("shots/Screenshot 2024-03-05.png", "quarterly report");
    recognizer.setMissing("tesseract-ocr-eng");
    read(shots());
    EXPECT_EQ(state().textRecognition.value().missingPackage, QStringLiteral("tesseract-ocr-eng"));
    EXPECT_EQ(status(), "No screenshots found to rename in this folder.");
    EXPECT_TRUE(recognizer.read().empty());
    recognizer.setMissing({});
    recognizer.setFurther("tesseract-ocr-fin");
    read(shots());
    EXPECT_EQ(state().textRecognition.value(),
              (TextRecognition{true, {}, QStringLiteral("tesseract-ocr-fin")}));
    EXPECT_EQ(names().size(), 1U);
}

TEST_F(AppStateScreenshots, WithoutAnyEngineNothingIsFound)
{
    picture("shots/Screenshot.png", "quarterly report");
    platform.textRecognizer = nullptr;
    read(shots());
    EXPECT_FALSE(state().textRecognition.value().isThere);
    EXPECT_TRUE(names().empty());
}

TEST_F(AppStateScreenshots, FoldersOfTheDesktopStandInForThemselvesOrForTheHomeFolder)
{
    start();
    EXPECT_EQ(state().screenshotFolder(UserFolder::downloads), disk.root());
    end();
    platform.userFolder = [this](UserFolder folder) -> std::optional<FilePath> {
        return folder == UserFolder::desktop ? std::nullopt : std::optional(shots());
    };
    start();
    EXPECT_EQ(state().screenshotFolder(UserFolder::downloads), shots());
    EXPECT_EQ(state().screenshotFolder(UserFolder::desktop), disk.root());
    state().findDesktopScreenshotFolder();
    EXPECT_TRUE(waitFor([this] { return state().desktopScreenshotFolder.value() == shots(); }));
}

TEST_F(AppStateScreenshots, TheChooserAnswersWithAnotherFolder)
{
    start();
    state().pickScreenshotFolder();
    ASSERT_EQ(platform.folderChooser.requests.size(), 1U);
    EXPECT_EQ(state().otherScreenshotFolder.value(), std::nullopt);
    platform.folderChooser.confirm(shots());
    EXPECT_TRUE(waitFor([this] { return state().otherScreenshotFolder.value() == shots(); }));
    EXPECT_FALSE(state().isScreenshotScanning.value()) << "the user starts a scan";
}

TEST_F(AppStateScreenshots, AStateThatGoesDuringAScanEndsIt)
{
    for (int i = 0; i < 20; ++i) {
        picture("shots/Screenshot " + std::to_string(i) + ".png", "quarterly report");
    }
    int passed = 0;
    recognizer.beforeReading = [&passed, this](const FilePath&) {
        gate.pass();
        ++passed;
    };
    gate.close();
    state().scanScreenshots(shots());
    gate.awaitVisitor();
    state().jobs().close();
    gate.open();
    end();
    EXPECT_EQ(passed, 1);
}

} // namespace
} // namespace quorvane

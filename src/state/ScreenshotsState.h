// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "JobSlot.h"
#include "ScreenshotTool.h"
#include "UserFolders.h"

#include <QProperty>
#include <QString>

#include <cstddef>
#include <optional>
#include <vector>

namespace quorvane {

class AppState;
class FacetHost;

/// How far a scan for screenshots has come, in pictures.
struct ScreenshotScanProgress
{
    std::size_t done = 0;
    std::size_t total = 0; ///< 0 until the folder is listed

    friend bool operator==(const ScreenshotScanProgress&, const ScreenshotScanProgress&) = default;
};

/// What the reading of pictures lacked at the last scan.
struct TextRecognition
{
    bool isThere = true;    ///< the program has a way to read pictures at all
    QString missingPackage; ///< without it nothing was read; empty when it is installed
    QString furtherPackage; ///< would let it read the desktop's language; empty for none

    friend bool operator==(const TextRecognition&, const TextRecognition&) = default;
};

/// The search for screenshots in a folder and their renaming. Works on the disk, not on the tree.
/// Main thread.
class ScreenshotsState
{
public:
    static ScreenshotsState& of(AppState& state);

    explicit ScreenshotsState(FacetHost& host);

    /// Those of the last scan that can be renamed, by name.
    QProperty<std::vector<ScreenshotCandidate>> screenshotCandidates;
    QProperty<bool> isScreenshotScanning{false};
    QProperty<std::optional<QString>> screenshotStatus; ///< the status line of the screen
    QProperty<bool> isRenamingScreenshots{false};
    QProperty<double> screenshotRenameProgress{0}; ///< 0 to 1
    QProperty<ScreenshotScanProgress> screenshotScanProgress;
    QProperty<TextRecognition> textRecognition;
    /// What the last batch has renamed, each with its former name as the proposal. Empty once the
    /// user starts another scan, and after they have their names back.
    QProperty<std::vector<ScreenshotCandidate>> renamedScreenshots;
    /// The desktop's own folder for screenshots; absent where it has none.
    QProperty<std::optional<FilePath>> desktopScreenshotFolder;
    /// What the user has chosen in the folder chooser last.
    QProperty<std::optional<FilePath>> otherScreenshotFolder;

    /// The folder of the last scan begun.
    const std::optional<FilePath>& screenshotScanFolder() const { return m_scanFolder; }
    /// The user's folder of that kind, or the home folder where the desktop names none.
    FilePath screenshotFolder(UserFolder folder) const;
    const FilePath& screenshotHome() const;
    /// Finds desktopScreenshotFolder in the background.
    void findDesktopScreenshotFolder();
    /// Shows the folder chooser; otherScreenshotFolder tells of the answer.
    void pickScreenshotFolder();

    /// Reads the screenshots of a folder in the background; nothing while this very folder is read.
    /// The scan of another folder ends at its next picture, and nothing of it is published.
    void scanScreenshots(const FilePath& folder);
    /// Gives the files their proposed names, one after the other, and scans the folder again.
    /// Nothing for no files and while other files are renamed.
    void renameScreenshots(std::vector<ScreenshotCandidate> candidates, const FilePath& folder);
    /// Gives renamedScreenshots their former names back, with a number where one is taken again,
    /// and scans the folder again.
    void undoScreenshotRenames(const FilePath& folder);

    void revealScreenshot(const FilePath& file);

private:
    struct Found
    {
        std::vector<ScreenshotCandidate> candidates;
        TextRecognition recognition;
    };

    void startScreenshotScan(const FilePath& folder);
    void publishScreenshots(Found found);
    void startRenaming(std::vector<ScreenshotCandidate> candidates, const FilePath& folder,
                       bool isUndo);

    FacetHost& m_host;
    JobSlot m_screenshotSlot; ///< the scan
    JobSlot m_renameSlot;
    JobSlot m_screenshotFolderSlot;
    std::optional<FilePath> m_scanFolder;
};

} // namespace quorvane

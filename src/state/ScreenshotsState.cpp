// SPDX-License-Identifier: MIT
#include "ScreenshotsState.h"

#include "FacetHost.h"
#include "FolderChooser.h"
#include "TextRecognizer.h"
#include "Workspace.h"

#include <QCoreApplication>
#include <QTimeZone>

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

QString pluralEnding(std::size_t count)
{
    return count == 1 ? QString() : QStringLiteral("s");
}

} // namespace

ScreenshotsState::ScreenshotsState(FacetHost& host)
    : m_host(host)
    , m_screenshotSlot(host.jobs(), {&isScreenshotScanning})
    , m_renameSlot(host.jobs(),
                   {&isRenamingScreenshots, &screenshotRenameProgress, &screenshotStatus})
    , m_screenshotFolderSlot(host.jobs())
{}

const FilePath& ScreenshotsState::screenshotHome() const
{
    return m_host.platform().home;
}

FilePath ScreenshotsState::screenshotFolder(UserFolder folder) const
{
    const auto& userFolder = m_host.platform().userFolder;
    return userFolder ? userFolder(folder).value_or(screenshotHome()) : screenshotHome();
}

void ScreenshotsState::findDesktopScreenshotFolder()
{
    if (!m_host.platform().userFolder) {
        return;
    }
    m_screenshotFolderSlot.restart(
        JobPriority::userInitiated,
        [userFolder = m_host.platform().userFolder](const JobRun&) {
            return userFolder(UserFolder::screenshots);
        },
        [this](std::optional<FilePath> folder) { desktopScreenshotFolder = std::move(folder); });
}

void ScreenshotsState::pickScreenshotFolder()
{
    m_host.platform().folderChooser.chooseFolder(
        QCoreApplication::translate("AppState", "Choose"),
        QCoreApplication::translate("AppState", "Choose a folder with screenshots"),
        [this, post = m_host.jobs().poster()](const FilePath& folder) {
            if (!folder.isEmpty()) {
                post([this, folder] { otherScreenshotFolder = folder; });
            }
        });
}

void ScreenshotsState::scanScreenshots(const FilePath& folder)
{
    if (isScreenshotScanning.value() && m_scanFolder == folder) {
        return;
    }
    renamedScreenshots = std::vector<ScreenshotCandidate>();
    startScreenshotScan(folder);
}

void ScreenshotsState::startScreenshotScan(const FilePath& folder)
{
    m_scanFolder = folder;
    screenshotScanProgress = ScreenshotScanProgress();
    m_screenshotSlot.restart(
        JobPriority::userInitiated,
        [this, folder, calls = &m_host.platform().fileSystem,
         recognizer = m_host.platform().textRecognizer,
         zone = QTimeZone::systemTimeZone()](const JobRun& run) {
            Found found;
            if (recognizer == nullptr) {
                found.recognition.isThere = false;
                return found;
            }
            found.recognition.missingPackage = QString::fromStdString(recognizer->missingPackage());
            found.recognition.furtherPackage = QString::fromStdString(recognizer->furtherPackage());
            if (!found.recognition.missingPackage.isEmpty()) {
                return found;
            }
            const auto report = [&run, this](std::size_t done, std::size_t total) {
                run.report([this, done, total] {
                    screenshotScanProgress = ScreenshotScanProgress{done, total};
                });
            };
            found.candidates = ScreenshotTool::proposals(
                ScreenshotTool::scan(folder, *calls, *recognizer, zone, run.discardFlag(), report));
            return found;
        },
        [this](Found found) { publishScreenshots(std::move(found)); },
        [this] { publishScreenshots({}); });
    screenshotStatus = QCoreApplication::translate("AppState", "Running OCR…");
    screenshotCandidates = std::vector<ScreenshotCandidate>();
}

void ScreenshotsState::publishScreenshots(Found found)
{
    const std::size_t count = found.candidates.size();
    textRecognition = std::move(found.recognition);
    screenshotCandidates = std::move(found.candidates);
    screenshotStatus =
        count == 0 ? QCoreApplication::translate("AppState",
                                                 "No screenshots found to rename in this folder.")
                   : QCoreApplication::translate("AppState", "%1 screenshot%2 ready to rename.")
                         .arg(QString::number(count), pluralEnding(count));
}

void ScreenshotsState::renameScreenshots(std::vector<ScreenshotCandidate> candidates,
                                         const FilePath& folder)
{
    startRenaming(std::move(candidates), folder, false);
}

void ScreenshotsState::undoScreenshotRenames(const FilePath& folder)
{
    // Last renamed, first restored: what one file gave up another may have taken.
    std::vector<ScreenshotCandidate> renamed = renamedScreenshots.value();
    std::reverse(renamed.begin(), renamed.end());
    startRenaming(std::move(renamed), folder, true);
}

void ScreenshotsState::startRenaming(std::vector<ScreenshotCandidate> candidates,
                                     const FilePath& folder, bool isUndo)
{
    if (candidates.empty() || isRenamingScreenshots.value()) {
        return;
    }
    m_screenshotSlot.stop();
    renamedScreenshots = std::vector<ScreenshotCandidate>();
    const auto publish = [this, folder, isUndo](std::vector<ScreenshotCandidate> renamed) {
        screenshotRenameProgress = 1;
        screenshotStatus = QCoreApplication::translate("AppState", "Renamed %1 file%2.")
                               .arg(QString::number(renamed.size()), pluralEnding(renamed.size()));
        startScreenshotScan(folder);
        if (!isUndo) {
            renamedScreenshots = std::move(renamed);
        }
    };
    m_renameSlot.restart(
        JobPriority::userInitiated,
        [candidates = std::move(candidates)](const JobRun& run) {
            std::vector<ScreenshotCandidate> renamed;
            const std::size_t total = candidates.size();
            for (std::size_t i = 0; i < total && !run.isUnwanted(); ++i) {
                if (auto now = ScreenshotTool::rename(candidates[i])) {
                    renamed.push_back(std::move(*now));
                }
                run.reportAndWait(static_cast<double>(i + 1) / static_cast<double>(total),
                                  QCoreApplication::translate("AppState", "Renamed %1 of %2…")
                                      .arg(i + 1)
                                      .arg(total));
            }
            return renamed;
        },
        publish, [publish] { publish({}); });
    screenshotStatus = QCoreApplication::translate("AppState", "Renaming…");
    screenshotCandidates = std::vector<ScreenshotCandidate>();
}

void ScreenshotsState::revealScreenshot(const FilePath& file)
{
    m_host.platform().workspace.reveal(file);
}

} // namespace quorvane

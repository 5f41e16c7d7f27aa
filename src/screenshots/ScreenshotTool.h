// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "FileSystemCalls.h"

#include <QTimeZone>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quorvane {

class LockedFlag;
class TextRecognizer;

/// A screenshot and the name that it could have, identified by where it is.
struct ScreenshotCandidate
{
    FilePath url;
    std::string proposedName; ///< a whole file name, with extension
    std::int64_t sizeBytes = 0;
    EntryStatus seen; ///< what it was when it was read

    bool hasProposal() const { return proposedName != url.lastComponent(); }
};

/// Finds screenshots that lie directly in a folder, reads them, and gives them their names. Any
/// thread but the main one.
struct ScreenshotTool
{
    /// Called before each picture is read with how many have been and how many there are.
    using Progress = std::function<void(std::size_t done, std::size_t total)>;

    /// Candidates in the order of the listing, those without a proposal included; one picture after
    /// the other. Empty for a folder that cannot be listed. Ends early when stopped.
    static std::vector<ScreenshotCandidate> scan(const FilePath& folder, FileSystemCalls& calls,
                                                 TextRecognizer& recognizer, const QTimeZone& zone,
                                                 const LockedFlag& stop,
                                                 const Progress& onProgress = {});

    /// Those that can be renamed, by their present name in the order of its bytes.
    static std::vector<ScreenshotCandidate> proposals(std::vector<ScreenshotCandidate> candidates);

    /// Gives the file its proposed name, or that name with the first number from 2 on that is free.
    /// Never takes the place of another file, and leaves alone what is no longer the file that was
    /// read. The candidate as it lies now, its proposal being the former name, so that renaming it
    /// takes the rename back; nothing when the file stayed as it was.
    static std::optional<ScreenshotCandidate> rename(const ScreenshotCandidate& candidate);
};

} // namespace quorvane

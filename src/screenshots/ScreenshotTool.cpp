// SPDX-License-Identifier: MIT
#include "ScreenshotTool.h"

#include "LockedFlag.h"
#include "PinnedEntry.h"
#include "ScreenshotNaming.h"
#include "TextRecognizer.h"

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

/// An open folder that closes itself.
class OpenFolder
{
public:
    OpenFolder(FileSystemCalls& calls, const FilePath& path)
        : m_calls(calls)
        , m_descriptor(calls.openDirectory(FileSystemCalls::noDirectory(), path.bytes().c_str()))
    {}
    OpenFolder(const OpenFolder&) = delete;
    OpenFolder& operator=(const OpenFolder&) = delete;
    ~OpenFolder()
    {
        if (m_descriptor >= 0) {
            m_calls.close(m_descriptor);
        }
    }

    /// Screenshots in the order of the listing; none for a folder that cannot be listed.
    std::vector<std::string> screenshotNames()
    {
        NameList names;
        std::vector<std::string> result;
        if (m_descriptor < 0 || !m_calls.appendNames(m_descriptor, names)) {
            return result;
        }
        for (const NameList::Span& span : names.spans) {
            const std::string_view name(names.bytes.data() + span.offset, span.length);
            if (!name.starts_with('.') && ScreenshotNaming::isImageName(name) &&
                ScreenshotNaming::matchesScreenshotName(name) &&
                !ScreenshotNaming::alreadyRenamed(name)) {
                result.emplace_back(name);
            }
        }
        return result;
    }

    bool status(const std::string& name, EntryStatus& status)
    {
        return m_calls.status(m_descriptor, name.c_str(), status);
    }
    std::optional<std::int64_t> creationDate(const std::string& name)
    {
        std::int64_t seconds = 0;
        return m_calls.creationDate(m_descriptor, name.c_str(), seconds) ? std::optional(seconds)
                                                                         : std::nullopt;
    }

private:
    FileSystemCalls& m_calls;
    int m_descriptor;
};

bool isSameFile(const EntryStatus& seen, const EntryStatus& now)
{
    return now.kind == EntryStatus::Kind::regularFile && seen.kind == now.kind &&
           seen.size == now.size && seen.modifiedSeconds == now.modifiedSeconds;
}

/// More files of one title than a person takes in a year.
constexpr int maxNumber = 100'000;

} // namespace

std::vector<ScreenshotCandidate>
ScreenshotTool::scan(const FilePath& folder, FileSystemCalls& calls, TextRecognizer& recognizer,
                     const QTimeZone& zone, const LockedFlag& stop, const Progress& onProgress)
{
    OpenFolder open(calls, folder);
    const std::vector<std::string> names = open.screenshotNames();
    std::vector<ScreenshotCandidate> result;
    result.reserve(names.size());
    for (std::size_t i = 0; i < names.size() && !stop.get(); ++i) {
        if (onProgress) {
            onProgress(i, names.size());
        }
        ScreenshotCandidate candidate;
        candidate.url = folder.appending(names[i]);
        candidate.proposedName = names[i];
        // What the file is, is asked before it is read: a change meanwhile shows at the rename.
        if (open.status(names[i], candidate.seen) &&
            candidate.seen.kind == EntryStatus::Kind::regularFile) {
            candidate.sizeBytes = candidate.seen.size;
            const std::vector<QString> lines = recognizer.lines(candidate.url, stop);
            candidate.proposedName =
                ScreenshotNaming::proposeName(names[i], lines, open.creationDate(names[i]), zone);
        }
        result.push_back(std::move(candidate));
    }
    return result;
}

std::vector<ScreenshotCandidate>
ScreenshotTool::proposals(std::vector<ScreenshotCandidate> candidates)
{
    std::erase_if(candidates,
                  [](const ScreenshotCandidate& candidate) { return !candidate.hasProposal(); });
    std::sort(candidates.begin(), candidates.end(),
              [](const ScreenshotCandidate& left, const ScreenshotCandidate& right) {
                  return left.url.lastComponent() < right.url.lastComponent();
              });
    return candidates;
}

std::optional<ScreenshotCandidate> ScreenshotTool::rename(const ScreenshotCandidate& candidate)
{
    if (!candidate.hasProposal()) {
        return std::nullopt;
    }
    const FilePath folder = candidate.url.parent();
    PinnedEntry entry = PinnedEntry::reach(folder, candidate.url);
    EntryStatus now;
    if (entry.failure() != PinnedEntry::Failure::none || !entry.pin(now) ||
        !isSameFile(candidate.seen, now)) {
        return std::nullopt;
    }
    std::string name = candidate.proposedName;
    for (int number = 2; number < maxNumber; ++number) {
        switch (entry.renameTo(name)) {
        case PinnedEntry::Renaming::renamed:
            return ScreenshotCandidate{folder.appending(name),
                                       std::string(candidate.url.lastComponent()), now.size, now};
        case PinnedEntry::Renaming::nameTaken:
            name = ScreenshotNaming::numbered(candidate.proposedName, number);
            break;
        case PinnedEntry::Renaming::refused:
            return std::nullopt;
        }
    }
    return std::nullopt;
}

} // namespace quorvane

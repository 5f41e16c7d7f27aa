// SPDX-License-Identifier: MIT
#pragma once

#include "ContentReader.h"
#include "TagEngine.h"
#include "TagRule.h"
#include "TextNeedle.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quorvane::TagEngine {

/// What conditions ask about the folder that a file lies in. One row for each folder, made once for
/// all files in it.
struct FolderRow
{
    bool isReadable = true;               ///< files in it may be opened for their contents
    std::span<const char> containsNeedle; ///< of each folderContains condition, in their order
};

/// The conditions of one rule, made ready. Const calls may come from any thread.
class RuleTest
{
public:
    explicit RuleTest(const TagRule& rule);

    bool readsContents() const { return m_readsContents; }
    /// The operands of the folderContains conditions, as comparableText() gives them.
    const std::vector<std::string>& folderNeedles() const { return m_folderNeedles; }

    /// Whether the conditions hold, tried in their order up to the one that decides. Nothing is
    /// read without a reader or once isCancelled.
    bool holdsFor(const FileNode& node, const FolderRow& folder, ContentReader* reader,
                  const std::function<bool()>& isCancelled) const;

private:
    struct Condition
    {
        TagConditionType type;
        std::string value;  ///< trimmed, comparableText()
        TextNeedle needle;  ///< of filenameContains and contentContains
        std::size_t folder; ///< place in folderNeedles()
        std::optional<std::int64_t> bytes;
    };

    static bool nameHolds(const Condition& condition, std::string_view name);

    std::vector<Condition> m_conditions;
    std::vector<std::string> m_folderNeedles;
    bool m_matchAny;
    bool m_readsContents = false;
};

/// The rows of all folders of a tree for one rule.
class FolderFacts
{
public:
    FolderFacts(const RuleTest& test, const ScanFiles& files,
                std::span<const MountedVolume> volumes);

    FolderRow rowOf(std::uint32_t folder) const;

private:
    void findNeedle(std::size_t needle, const std::string& text, const ScanFiles& files);
    void findVolumes(const ScanFiles& files, std::span<const MountedVolume> volumes);

    std::size_t m_needles;
    std::vector<char> m_containsNeedle; ///< folder after folder
    std::vector<char> m_isReadable;     ///< empty when all are
};

/// The same row for one path, without a tree. The needles' answers go to the buffer, which has to
/// outlive the row.
FolderRow folderRowOf(const FilePath& folder, const RuleTest& test,
                      std::span<const MountedVolume> volumes, std::vector<char>& buffer);

} // namespace quorvane::TagEngine

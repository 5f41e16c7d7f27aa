// SPDX-License-Identifier: MIT
#pragma once

#include "FileContentCalls.h"
#include "FileNode.h"
#include "FilePath.h"
#include "FileSystemCalls.h"
#include "MountTable.h"
#include "TagMatch.h"
#include "TagRule.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

/// Applies tag rules to a finished tree. Keeps no state; every function may run on any thread.
namespace quorvane::TagEngine {

/// How files are read, and what a scan obeys.
struct Options
{
    FileSystemCalls& fileSystem = FileSystemCalls::system();
    FileContentCalls& contents = FileContentCalls::system();
    /// What is mounted, in the order of mounting. No file of a volume that is not local is
    /// opened, so that a server that does not answer holds nothing up.
    std::vector<MountedVolume> volumes = {};
    /// Polled on every thread before every file that is read and every few hundred others.
    std::function<bool()> isCancelled = [] { return false; };
    int workers = 0; ///< threads; 0 for as many as there are processors
};

/// What is mounted now, for Options::volumes; one volume that must not be read where the system
/// does not tell. Asks the system's table and no volume.
std::vector<MountedVolume> volumesNow();

/// The regular files of a tree in the order in which rules meet them, made once for many rules.
/// Holds no share in the tree.
class ScanFiles
{
public:
    struct File
    {
        FileNode* node;
        std::uint32_t folder; ///< place in folders()
    };
    struct Folder
    {
        FileNode* node;       ///< null for what lies above the root
        std::uint32_t parent; ///< place in folders(), before this one
    };

    /// Depth first, later siblings first.
    explicit ScanFiles(FileNode& root);

    FileNode& root() const { return m_root; }
    const std::vector<File>& files() const { return m_files; }
    /// Parents before what they hold; the first stands for what lies above the root.
    const std::vector<Folder>& folders() const { return m_folders; }

private:
    FileNode& m_root;
    std::vector<File> m_files;
    std::vector<Folder> m_folders;
};

/// The regular files that the rule matches, depth first and later siblings first; fewer once
/// isCancelled. A rule without conditions matches every file, a disabled one none.
std::vector<FileNode*> matches(const TagRule& rule, FileNode& root, const Options& options = {});
/// Whether the rule's conditions hold for the node, enabled or not.
bool matchesRule(const FileNode& node, const TagRule& rule, const Options& options = {});
bool matchCondition(const TagCondition& condition, const FileNode& node,
                    const Options& options = {});

/// Applies the enabled rules one after the other. onProgress: the share of them that is done, after
/// each, on the calling thread.
TagMatches scan(std::span<const TagRule> rules, const NodePointer& root, const Options& options,
                const std::function<void(double)>& onProgress);

} // namespace quorvane::TagEngine

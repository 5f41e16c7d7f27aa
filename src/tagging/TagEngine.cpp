// SPDX-License-Identifier: MIT
#include "TagEngine.h"

#include "ContentReader.h"
#include "RuleTest.h"
#include "Workers.h"

#include <algorithm>
#include <atomic>
#include <optional>
#include <utility>

namespace quorvane::TagEngine {
namespace {

/// Files that a worker takes at a time: enough to make the taking cheap, few enough that large
/// files at one place do not leave the other workers without work.
constexpr std::size_t batchFiles = 256;

std::size_t workerCount(const Options& options, std::size_t batches)
{
    const std::size_t wanted =
        options.workers > 0 ? static_cast<std::size_t>(options.workers) : processorCount();
    return std::min(wanted, batches);
}

} // namespace

std::vector<MountedVolume> volumesNow()
{
    if (const std::optional<MountTable> table = MountTable::read()) {
        return table->volumes();
    }
    return {{FilePath("/"), MountKind::remote}};
}

ScanFiles::ScanFiles(FileNode& root)
    : m_root(root)
    , m_folders{{nullptr, 0}}
{
    m_files.reserve(static_cast<std::size_t>(std::max<std::int64_t>(root.fileCount(), 0)));
    std::vector<File> stack{{&root, 0}};
    while (!stack.empty()) {
        const File next = stack.back();
        stack.pop_back();
        if (next.node->isRegularFile()) {
            m_files.push_back(next);
        }
        if (!next.node->isDirectory()) {
            continue;
        }
        const auto place = static_cast<std::uint32_t>(m_folders.size());
        m_folders.push_back({next.node, next.folder});
        for (FileNode& child : next.node->children()) {
            stack.push_back({&child, place});
        }
    }
}

std::vector<FileNode*> matches(const TagRule& rule, const ScanFiles& files, const Options& options)
{
    if (!rule.isEnabled) {
        return {};
    }
    const RuleTest test(rule);
    const FolderFacts facts(test, files, options.volumes);
    const std::vector<ScanFiles::File>& all = files.files();
    const std::size_t batches = (all.size() + batchFiles - 1) / batchFiles;
    std::vector<std::vector<FileNode*>> found(batches);
    std::atomic<std::size_t> nextBatch = 0;
    runOnWorkers(workerCount(options, batches), [&] {
        std::optional<ContentReader> reader;
        if (test.readsContents()) {
            reader.emplace(options.fileSystem, options.contents);
        }
        for (;;) {
            const std::size_t batch = nextBatch++;
            if (batch >= batches || options.isCancelled()) {
                return;
            }
            const std::size_t end = std::min((batch + 1) * batchFiles, all.size());
            for (std::size_t i = batch * batchFiles; i < end; ++i) {
                if (test.holdsFor(*all[i].node, facts.rowOf(all[i].folder),
                                  reader ? &*reader : nullptr, options.isCancelled)) {
                    found[batch].push_back(all[i].node);
                }
            }
        }
    });
    std::vector<FileNode*> result;
    for (const std::vector<FileNode*>& part : found) {
        result.insert(result.end(), part.begin(), part.end());
    }
    return result;
}

std::vector<FileNode*> matches(const TagRule& rule, FileNode& root, const Options& options)
{
    return rule.isEnabled ? matches(rule, ScanFiles(root), options) : std::vector<FileNode*>();
}

bool matchesRule(const FileNode& node, const TagRule& rule, const Options& options)
{
    const RuleTest test(rule);
    std::vector<char> buffer;
    const FolderRow folder = folderRowOf(node.path().parent(), test, options.volumes, buffer);
    std::optional<ContentReader> reader;
    if (test.readsContents()) {
        reader.emplace(options.fileSystem, options.contents);
    }
    return test.holdsFor(node, folder, reader ? &*reader : nullptr, options.isCancelled);
}

bool matchCondition(const TagCondition& condition, const FileNode& node, const Options& options)
{
    TagRule rule;
    rule.conditions.push_back(condition);
    return matchesRule(node, rule, options);
}

TagMatches scan(std::span<const TagRule> rules, const NodePointer& root, const Options& options,
                const std::function<void(double)>& onProgress)
{
    std::vector<TagRule> enabled;
    std::copy_if(rules.begin(), rules.end(), std::back_inserter(enabled),
                 [](const TagRule& rule) { return rule.isEnabled; });
    if (enabled.empty()) {
        return {};
    }
    const ScanFiles files(*root);
    std::vector<TagMatches::Match> all;
    for (std::uint32_t i = 0; i < enabled.size() && !options.isCancelled(); ++i) {
        for (FileNode* const node : matches(enabled[i], files, options)) {
            all.push_back({node, i});
        }
        onProgress((i + 1.0) / static_cast<double>(enabled.size()));
    }
    return {root, std::move(enabled), std::move(all)};
}

} // namespace quorvane::TagEngine

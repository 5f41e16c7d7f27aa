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

/// The files that each of the tests holds for, in the order of ScanFiles. The tests take turns at
/// each batch of files, which stays in the processor's cache meanwhile.
std::vector<std::vector<FileNode*>> matchesOf(std::span<const RuleTest> tests,
                                              const ScanFiles& files, const Options& options)
{
    std::vector<FolderFacts> facts;
    for (const RuleTest& test : tests) {
        facts.emplace_back(test, files, options.volumes);
    }
    const bool readsContents = std::any_of(
        tests.begin(), tests.end(), [](const RuleTest& test) { return test.readsContents(); });
    const std::vector<ScanFiles::File>& all = files.files();
    const std::size_t batches = (all.size() + batchFiles - 1) / batchFiles;
    std::vector<std::vector<FileNode*>> found(batches * tests.size());
    std::atomic<std::size_t> nextBatch = 0;
    runOnWorkers(workerCount(options, batches), [&] {
        std::optional<ContentReader> reader;
        if (readsContents) {
            reader.emplace(options.fileSystem, options.contents);
        }
        for (;;) {
            const std::size_t batch = nextBatch++;
            if (batch >= batches || options.isCancelled()) {
                return;
            }
            const std::span part = std::span(all).subspan(
                batch * batchFiles, std::min(batchFiles, all.size() - batch * batchFiles));
            for (std::size_t test = 0; test < tests.size(); ++test) {
                for (const ScanFiles::File& file : part) {
                    if (tests[test].holdsFor(*file.node, facts[test].rowOf(file.folder),
                                             reader ? &*reader : nullptr, options.isCancelled)) {
                        found[test * batches + batch].push_back(file.node);
                    }
                }
            }
        }
    });
    std::vector<std::vector<FileNode*>> matches(tests.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        std::vector<FileNode*>& whole = matches[i / batches];
        whole.insert(whole.end(), found[i].begin(), found[i].end());
    }
    return matches;
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

std::vector<FileNode*> matches(const TagRule& rule, FileNode& root, const Options& options)
{
    if (!rule.isEnabled) {
        return {};
    }
    const RuleTest test(rule);
    return matchesOf({&test, 1}, ScanFiles(root), options).front();
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
    const std::vector<RuleTest> tests(enabled.begin(), enabled.end());
    std::vector<TagMatches::Match> all;
    for (std::size_t first = 0; first < tests.size() && !options.isCancelled();) {
        // Rules that read no file are cheap and go through the files together; one that does goes
        // alone, so that its progress shows.
        std::size_t end = first + 1;
        while (!tests[first].readsContents() && end < tests.size() && !tests[end].readsContents()) {
            ++end;
        }
        const auto found = matchesOf(std::span(tests).subspan(first, end - first), files, options);
        for (std::size_t i = 0; i < found.size(); ++i) {
            for (FileNode* const node : found[i]) {
                all.push_back({node, static_cast<std::uint32_t>(first + i)});
            }
            onProgress(static_cast<double>(first + i + 1) / static_cast<double>(tests.size()));
        }
        first = end;
    }
    return {root, std::move(enabled), std::move(all)};
}

} // namespace quorvane::TagEngine

// SPDX-License-Identifier: MIT
#include "RandomTree.h"

#include <algorithm>
#include <array>
#include <deque>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane::test {
namespace {

constexpr std::array<std::string_view, 24> folderNames{"Library",
                                                       "Documents",
                                                       "documents",
                                                       "node_modules",
                                                       ".gradle",
                                                       "Caches",
                                                       "src",
                                                       "Projects",
                                                       "Photos",
                                                       "build",
                                                       "usr",
                                                       "Work",
                                                       "default project",
                                                       "Movies",
                                                       ".npm",
                                                       "Contents",
                                                       "MyBuildTools",
                                                       "DerivedData",
                                                       "docker",
                                                       "App Support",
                                                       "Support",
                                                       "\xC3\x89t\xC3\xA9",
                                                       "bad\xFF"
                                                       "bytes",
                                                       "x"};

constexpr std::array<std::string_view, 24> fileNames{
    "a.mp4",  "B.JPG",    "c.txt", "d.swift", "e.JS",     "f.py",     "g.zip",    "h.mp3",
    "i",      ".profile", "...",   "README",  "Makefile", "k.tar.gz", "l.o",      "m.unknown",
    "n.json", "o.wav",    "p.key", "q.dmg",   "r.bin",    "s.mov",    "cache.db", "t.\xC3\xA4"};

class Builder
{
public:
    Builder(std::uint64_t seed, const RandomTreeOptions& options)
        : m_dice(seed)
        , m_options(options)
    {}

    std::shared_ptr<FileTree> build()
    {
        NodeValues root;
        root.name = m_options.rootPath.lastComponent();
        root.metadata.isDirectory = true;
        root.metadata.dateModified = 0;
        auto tree = FileTree::create(m_options.rootPath, root);
        m_waiting.push_back({&tree->root(), 0});
        while (!m_waiting.empty() && m_left > 0) {
            const Open next = m_waiting.front();
            m_waiting.pop_front();
            fill(*tree, next);
        }
        tree->root().finalizeTree();
        return tree;
    }

private:
    struct Open
    {
        FileNode* folder;
        std::size_t depth;
    };

    void fill(FileTree& tree, const Open& open)
    {
        const bool mayNest = open.depth + 1 < m_options.maxDepth;
        const bool isChain = open.depth > 0 && mayNest && m_dice.chance(m_options.chainShare);
        const std::size_t most = std::min(m_left, m_options.maxChildren);
        const std::size_t lowest = open.depth == 0 ? 1 : 0;
        const std::size_t count =
            isChain ? 1 : lowest + static_cast<std::size_t>(m_dice.below(most - lowest + 1));
        std::deque<std::string> names;
        std::set<std::string> taken;
        std::vector<NodeValues> values;
        for (std::size_t i = 0; i < count; ++i) {
            const bool isFolder = isChain || (mayNest && m_dice.chance(m_options.folderShare));
            std::string name = pickName(isFolder);
            if (!taken.insert(name).second) {
                name = std::to_string(i) + name;
                taken.insert(name);
            }
            names.push_back(name);
            values.push_back(
                {++m_lastID, names.back(), isFolder ? folderMetadata() : fileMetadata()});
        }
        m_left -= count;
        if (values.empty()) {
            return;
        }
        for (FileNode& child : tree.addChildren(*open.folder, values)) {
            if (child.isDirectory()) {
                m_waiting.push_back({&child, open.depth + 1});
            }
        }
    }

    std::string pickName(bool isFolder)
    {
        std::string name(isFolder ? folderNames[m_dice.below(folderNames.size())]
                                  : fileNames[m_dice.below(fileNames.size())]);
        if (m_dice.chance(0.5)) {
            name.insert(0, 1, static_cast<char>('a' + m_dice.below(26)));
        }
        return name;
    }

    ItemMetadata folderMetadata()
    {
        ItemMetadata metadata;
        metadata.isDirectory = true;
        metadata.logicalSize = 4096;
        metadata.sizeOnDisk = 4096;
        metadata.dateModified = static_cast<std::int64_t>(m_dice.below(1U << 30));
        return metadata;
    }

    ItemMetadata fileMetadata()
    {
        ItemMetadata metadata;
        const std::uint64_t kind = m_dice.below(20);
        metadata.isSymbolicLink = kind == 0;
        metadata.isRegularFile = kind > 1;
        metadata.logicalSize = pickSize();
        // Mostly whole blocks, now and then a file with holes.
        metadata.sizeOnDisk = m_dice.chance(0.2) ? metadata.logicalSize / 7
                                                 : (metadata.logicalSize + 4095) / 4096 * 4096;
        metadata.dateModified = static_cast<std::int64_t>(m_dice.below(1U << 30));
        return metadata;
    }

    std::int64_t pickSize()
    {
        if (m_dice.chance(m_options.zeroShare)) {
            return 0;
        }
        if (m_dice.chance(m_options.equalShare)) {
            return static_cast<std::int64_t>(1 + m_dice.below(3) * 4096);
        }
        const auto power = m_dice.below(m_options.largestPower + 1);
        return static_cast<std::int64_t>(m_dice.below(std::uint64_t{1} << power) + 1);
    }

    Dice m_dice;
    const RandomTreeOptions& m_options;
    std::size_t m_left = m_options.entries;
    std::int64_t m_lastID = 0;
    std::deque<Open> m_waiting;
};

} // namespace

std::shared_ptr<FileTree> randomTree(std::uint64_t seed, const RandomTreeOptions& options)
{
    return Builder(seed, options).build();
}

} // namespace quorvane::test

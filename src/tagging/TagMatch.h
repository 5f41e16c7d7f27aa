// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"
#include "FilePath.h"
#include "TagRule.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace quorvane {

/// One file that a rule matched.
struct TagMatch
{
    std::int64_t nodeID = 0;
    QString name; ///< for the screen only
    FilePath url;
    std::int64_t bytes = 0; ///< scannedBytes
    QString tagName;
    std::string_view tagColorRaw;
};

/// What a tag scan found, largest file first. Sixteen bytes a match: a rule without conditions
/// matches millions of files, so names and paths are made when one is asked for. Holds the tree.
/// Read from any thread.
class TagMatches
{
public:
    struct Match
    {
        FileNode* node;
        std::uint32_t rule; ///< place in the list of rules
    };

    TagMatches() = default;
    /// Sorts the matches, which belong to the root's tree and come rule by rule, stably by their
    /// bytes.
    TagMatches(NodePointer root, std::vector<TagRule> rules, std::vector<Match> matches);

    std::size_t size() const { return m_matches.size(); }
    bool isEmpty() const { return m_matches.empty(); }
    TagMatch at(std::size_t index) const;
    NodePointer nodeAt(std::size_t index) const;
    const TagRule& ruleAt(std::size_t index) const;
    /// The rules that matched the node, in the order of the list. Any node, of any tree.
    std::vector<const TagRule*> rulesOf(const FileNode& node) const;

    /// "Tagged {n} files with {k} tags."
    QString summary() const;

private:
    NodePointer m_root;
    std::vector<TagRule> m_rules;
    std::vector<Match> m_matches;
    std::vector<Match> m_byNode; ///< the same by address and rule
};

} // namespace quorvane

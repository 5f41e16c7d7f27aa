// SPDX-License-Identifier: MIT
#include "TagMatch.h"

#include <QSet>

#include <algorithm>
#include <functional>
#include <utility>

namespace quorvane {
namespace {

QString counted(std::size_t count, const QString& word)
{
    return QString::number(count) + QLatin1Char(' ') + word +
           (count == 1 ? QString() : QStringLiteral("s"));
}

bool isBefore(const TagMatches::Match& a, const TagMatches::Match& b)
{
    return a.node == b.node ? a.rule < b.rule : std::less<>()(a.node, b.node);
}

/// Largest first, stable. The sizes are copied, so that the sort stays in the cache.
std::vector<TagMatches::Match> sortedBySize(const std::vector<TagMatches::Match>& matches)
{
    struct Key
    {
        std::int64_t bytes;
        std::size_t place;
    };
    std::vector<Key> keys;
    keys.reserve(matches.size());
    for (std::size_t i = 0; i < matches.size(); ++i) {
        keys.push_back({matches[i].node->scannedBytes(), i});
    }
    std::sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) {
        return a.bytes == b.bytes ? a.place < b.place : a.bytes > b.bytes;
    });
    std::vector<TagMatches::Match> sorted;
    sorted.reserve(matches.size());
    for (const Key& key : keys) {
        sorted.push_back(matches[key.place]);
    }
    return sorted;
}

} // namespace

TagMatches::TagMatches(NodePointer root, std::vector<TagRule> rules, std::vector<Match> matches)
    : m_root(std::move(root))
    , m_rules(std::move(rules))
    , m_matches(sortedBySize(matches))
    , m_byNode(std::move(matches))
{
    std::sort(m_byNode.begin(), m_byNode.end(), isBefore);
}

TagMatch TagMatches::at(std::size_t index) const
{
    const FileNode& node = *m_matches[index].node;
    const TagRule& rule = ruleAt(index);
    return {node.id(),           node.displayName(), node.path(),
            node.scannedBytes(), rule.tagName,       rawValue(rule.tagColor)};
}

NodePointer TagMatches::nodeAt(std::size_t index) const
{
    return {m_root, m_matches[index].node};
}

const TagRule& TagMatches::ruleAt(std::size_t index) const
{
    return m_rules[m_matches[index].rule];
}

std::vector<const TagRule*> TagMatches::rulesOf(const FileNode& node) const
{
    std::vector<const TagRule*> rules;
    const auto isBeforeNode = [](const Match& match, const FileNode* sought) {
        return std::less<>()(match.node, sought);
    };
    auto match = std::lower_bound(m_byNode.begin(), m_byNode.end(), &node, isBeforeNode);
    for (; match != m_byNode.end() && match->node == &node; ++match) {
        rules.push_back(&m_rules[match->rule]);
    }
    return rules;
}

QString TagMatches::summary() const
{
    std::vector<bool> isMatched(m_rules.size());
    for (const Match& match : m_matches) {
        isMatched[match.rule] = true;
    }
    QSet<QString> tags;
    for (std::size_t i = 0; i < m_rules.size(); ++i) {
        if (isMatched[i]) {
            tags.insert(m_rules[i].tagName);
        }
    }
    return QStringLiteral("Tagged ") + counted(m_matches.size(), QStringLiteral("file")) +
           QStringLiteral(" with ") +
           counted(static_cast<std::size_t>(tags.size()), QStringLiteral("tag")) + QLatin1Char('.');
}

} // namespace quorvane

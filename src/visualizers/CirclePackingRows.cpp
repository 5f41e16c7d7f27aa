// SPDX-License-Identifier: MIT
#include "CirclePacking.h"

#include <algorithm>
#include <cmath>

namespace quorvane {

void CirclePacking::arrangeRows()
{
    const std::size_t rowCount = 2 * m_chains.size() + 2;
    m_rows.resize(std::max(m_rows.size(), rowCount));
    m_rowMembers.resize(m_rows.size());
    m_openRows.clear();
    for (Index i = 0; i < m_sights.size(); ++i) {
        const Index row = m_sights[i].row;
        if (row != 0) {
            if (m_rowMembers[row].empty()) {
                m_openRows.push_back(row);
            }
            m_rowMembers[row].push_back(i);
        }
    }
    for (const Index row : m_openRows) {
        arrangeRow(m_rowMembers[row]);
        m_rowMembers[row].clear();
    }
}

/// Sights of a row lie side by side. Posts are sights of which each is apart from the next on the
/// whole way across the ring, so no two of them meet; a sight that is apart from the posts around
/// it cannot meet anything beyond them. What is not apart from them leaves the row.
void CirclePacking::arrangeRow(std::vector<Index>& members)
{
    constexpr std::size_t minMembers = 8;
    if (members.size() < minMembers) {
        for (const Index member : members) {
            m_sights[member].row = 0;
        }
        return;
    }
    m_order.clear();
    for (const Index member : members) {
        m_order.push_back({m_sights[member].ends.nearAngle, member});
    }
    std::sort(m_order.begin(), m_order.end());
    std::transform(m_order.begin(), m_order.end(), members.begin(),
                   [](const auto& place) { return place.second; });
    setPosts(members);
    for (const Index member : members) {
        Sight& sight = m_sights[member];
        if (sight.row != 0 && !isBetweenPosts(sight)) {
            sight.row = 0;
        }
    }
    std::erase_if(members, [&](Index member) { return m_sights[member].row == 0; });
    weighNeighbours(members);
}

/// Each sight that is apart from the last post is the next one.
void CirclePacking::setPosts(const std::vector<Index>& members)
{
    m_posts.clear();
    std::size_t patience = 16;
    std::size_t conflicts = 0;
    for (std::size_t i = 0; i < members.size(); ++i) {
        Sight& sight = m_sights[members[i]];
        if (sight.row == 0) {
            continue;
        }
        if (m_posts.empty() || isApart(m_sights[members[m_posts.back()]], sight)) {
            m_posts.push_back(i);
            conflicts = 0;
        } else if (++conflicts > patience) {
            // One sight that crosses many others is no good post.
            i = m_posts.back();
            m_sights[members[i]].row = 0;
            m_posts.pop_back();
            patience *= 2;
            conflicts = 0;
        }
    }
    std::size_t slot = 0;
    for (std::size_t i = 0; i < members.size(); ++i) {
        Sight& sight = m_sights[members[i]];
        sight.isPost = slot < m_posts.size() && m_posts[slot] == i;
        slot += sight.isPost ? 1 : 0;
        sight.slot = slot;
    }
    for (std::size_t& post : m_posts) {
        post = members[post];
    }
}

/// The slot of a sight counts the posts up to it.
bool CirclePacking::isBetweenPosts(const Sight& sight) const
{
    if (sight.isPost) {
        return true;
    }
    return (sight.slot < 2 || isApart(m_sights[m_posts[sight.slot - 2]], sight)) &&
           (sight.slot + 1 >= m_posts.size() || isApart(sight, m_sights[m_posts[sight.slot + 1]]));
}

/// Whether the first sight lies before the other all the way. Angles that differ by no more than
/// rounding tell nothing; on which side of each other's line they lie does.
bool CirclePacking::isApart(const Sight& one, const Sight& other) const
{
    const ArcPlace first = placeOf(one, other);
    const ArcPlace second = placeOf(other, one);
    if (first == ArcPlace::across || second == ArcPlace::across) {
        return false;
    }
    if (other.ends.nearAngle - one.ends.nearAngle > m_orderSlack) {
        return true;
    }
    const bool isLeft = one.row % 2 == 0;
    return first == (isLeft ? ArcPlace::outside : ArcPlace::inside) &&
           second == (isLeft ? ArcPlace::inside : ArcPlace::outside);
}

/// Of the sights of a row, only those within a few posts of each other can meet.
void CirclePacking::weighNeighbours(const std::vector<Index>& members)
{
    constexpr std::size_t near = 2;
    for (std::size_t i = 0; i < members.size(); ++i) {
        const Sight& sight = m_sights[members[i]];
        for (std::size_t j = i + 1; j < members.size(); ++j) {
            const Sight& other = m_sights[members[j]];
            if (other.slot > sight.slot + near) {
                break;
            }
            ++m_work.looks;
            if (!sight.isPost || !other.isPost) {
                weighMeeting(sight, other);
            }
        }
    }
}

} // namespace quorvane

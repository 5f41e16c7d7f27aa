// SPDX-License-Identifier: MIT
#include "SunburstLayout.h"

#include "LayoutWalk.h"

#include <algorithm>

namespace quorvane {
namespace {

using Slice = SunburstLayout::Slice;

class RingWriter
{
public:
    RingWriter(double ringWidth, const BloatKeys& hidden, const LockedFlag* stop)
        : m_ringWidth(ringWidth)
        , m_hidden(hidden)
        , m_stop(stop)
    {}

    /// Goes at most maxDepth levels deeper than the folder, so that the recursion is bounded.
    void append(const FileNode& folder, double innerRadius, int maxDepth, double startAngle,
                SizeMode mode)
    {
        m_isStopped = m_isStopped || isStopped(m_stop);
        if (m_isStopped) {
            return;
        }
        const std::vector<WeightedNode> children = rankedChildren(folder, mode, m_hidden);
        const auto total = static_cast<double>(totalWeight(children));
        const double outerRadius = innerRadius + m_ringWidth;
        double start = startAngle;
        for (const WeightedNode& child : children) {
            const double end =
                start + static_cast<double>(child.weight) / total * SunburstLayout::twoPi;
            m_slices.push_back(
                {child.node->id(), child.node, innerRadius, outerRadius, start, end, 0});
            if (child.node->isDirectory() && maxDepth >= 1) {
                append(*child.node, outerRadius, maxDepth - 1, start, SizeMode::logical);
            }
            start = end;
        }
    }

    std::vector<Slice> take() { return m_isStopped ? std::vector<Slice>() : std::move(m_slices); }

private:
    double m_ringWidth;
    const BloatKeys& m_hidden;
    const LockedFlag* m_stop;
    bool m_isStopped = false;
    std::vector<Slice> m_slices;
};

} // namespace

std::vector<Slice> SunburstLayout::layout(FileNode& root, const Options& options,
                                          const BloatKeys& excludedBloat, const LockedFlag* stop)
{
    RingWriter writer(options.ringWidth, excludedBloat, stop);
    writer.append(root, options.innerRadius, options.maxDepth, options.startAngle,
                  options.sizeMode);
    return writer.take();
}

SunburstLayout::Options SunburstLayout::screenOptions(double width, double height,
                                                      SizeMode sizeMode)
{
    const double ring = std::min(width, height) * ringShare;
    return {ring, ring, screenMaxDepth, defaultStartAngle, sizeMode};
}

std::string SunburstLayout::key(const FileNode* root, double width, double height)
{
    const auto truncated = [](double side) {
        return std::to_string(static_cast<std::int64_t>(side));
    };
    return std::to_string(root != nullptr ? root->id() : 0) + '-' + truncated(width) + 'x' +
           truncated(height);
}

} // namespace quorvane

// SPDX-License-Identifier: MIT
#include "TaggingState.h"

#include "FacetHost.h"
#include "Preferences.h"
#include "TagEngine.h"

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

constexpr std::string_view tagRulesKey = "tessaryl.tagRules";

std::vector<TagRule> storedRules(const Preferences& preferences)
{
    const auto data = preferences.read<QByteArray>(tagRulesKey).value_or(QByteArray());
    return decodeTagRules({data.constData(), static_cast<std::size_t>(data.size())})
        .value_or(std::vector<TagRule>());
}

} // namespace

TaggingState::TaggingState(FacetHost& host)
    : tagResults(std::make_shared<const TagMatches>())
    , m_host(host)
    , m_tagScanSlot(host.jobs(), {nullptr, &tagScanProgress})
    , m_storedRules(storedRules(host.platform().preferences))
{}

void TaggingState::addTagRule(const TagRule& rule)
{
    std::vector<TagRule> rules = tagRules.value();
    rules.push_back(rule);
    tagRules = std::move(rules);
    persistTagRules();
}

void TaggingState::updateTagRule(const TagRule& rule)
{
    std::vector<TagRule> rules = tagRules.value();
    const auto known = std::find_if(rules.begin(), rules.end(),
                                    [&](const TagRule& each) { return each.id == rule.id; });
    if (known == rules.end()) {
        return;
    }
    *known = rule;
    tagRules = std::move(rules);
    persistTagRules();
}

void TaggingState::deleteTagRule(const TagRule& rule)
{
    std::vector<TagRule> rules = tagRules.value();
    std::erase_if(rules, [id = rule.id](const TagRule& each) { return each.id == id; });
    tagRules = std::move(rules);
    persistTagRules();
}

void TaggingState::bringBackTagRules()
{
    if (tagRules.value().empty() && !m_storedRules.empty()) {
        tagRules = m_storedRules;
        persistTagRules();
    }
}

void TaggingState::persistTagRules()
{
    m_host.platform().preferences.setValue(tagRulesKey, encodeTagRules(tagRules.value()));
}

void TaggingState::runTagScan()
{
    const NodePointer root = m_host.scannedRoot();
    if (!root || isTagScanRunning) {
        return;
    }
    isTagScanRunning = true;
    tagScanSummary = std::nullopt;
    dropTagResults();
    m_tagScanSlot.restart(
        JobPriority::userInitiated,
        [root, rules = tagRules.value(), fileSystem = &m_host.platform().fileSystem,
         contents = m_host.platform().fileContents](const JobRun& run) {
            FileContentCalls& reading =
                contents != nullptr ? *contents : FileContentCalls::system();
            TagEngine::Options options{*fileSystem, reading, TagEngine::volumesNow()};
            options.isCancelled = [&run] { return run.isUnwanted(); };
            return std::make_shared<const TagMatches>(
                TagEngine::scan(rules, root, options, [&run](double share) { run.report(share); }));
        },
        [this](std::shared_ptr<const TagMatches> found) {
            tagScanSummary = found->summary();
            tagResults = std::move(found);
            isTagScanRunning = false;
            tagScanProgress = 1;
        });
}

void TaggingState::dropTagResults()
{
    auto old = tagResults.value();
    tagResults = std::make_shared<const TagMatches>();
    // It holds the tree: both end in the background.
    m_host.jobs().release(std::move(old));
}

} // namespace quorvane

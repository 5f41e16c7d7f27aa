// SPDX-License-Identifier: MIT
#include "BloatFilterBar.h"

#include "BloatFilter.h"
#include "Refresher.h"
#include "SettingsState.h"
#include "Symbols.h"
#include "Tokens.h"
#include "ToolRows.h"

#include <QCheckBox>
#include <QHBoxLayout>

#include <map>
#include <string>

namespace quorvane {
namespace {

constexpr int barHeight = 40;

} // namespace

BloatFilterBar::BloatFilterBar(SettingsState& settings, QWidget* parent)
    : Card(parent)
    , m_settings(settings)
    , m_refresher(new Refresher(this, [this] { refresh(); }))
{
    setObjectName(QStringLiteral("bloatFilters"));
    setFixedHeight(barHeight);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(spacing::l, 0, spacing::l, 0);
    row->setSpacing(spacing::xl);
    for (const BloatFilter::Item& item : BloatFilter::items()) {
        auto* const box = new QCheckBox(toolrows::text(item.key));
        box->setObjectName(QStringLiteral("filter ") + toolrows::text(item.key));
        box->setIcon(symbolIcon(toolrows::text(item.icon), ThemeColor::text2));
        connect(box, &QCheckBox::clicked, this, [this, key = std::string(item.key)](bool shown) {
            std::map<std::string, bool> filters = m_settings.bloatFilters();
            filters[key] = shown;
            m_settings.setBloatFilters(filters);
        });
        row->addWidget(box);
        m_boxes.push_back(box);
    }
    row->addStretch();
    m_refresher->watch(m_settings.storageBloatFilters);
    refresh();
}

void BloatFilterBar::refresh()
{
    const std::map<std::string, bool>& filters = m_settings.bloatFilters();
    for (std::size_t i = 0; i < m_boxes.size(); ++i) {
        const auto shown = filters.find(std::string(BloatFilter::items()[i].key));
        m_boxes[i]->setChecked(shown == filters.end() || shown->second);
    }
}

} // namespace quorvane

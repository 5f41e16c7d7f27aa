// SPDX-License-Identifier: MIT
#include "SettingsView.h"

#include "Button.h"
#include "Label.h"
#include "NavigationRow.h"
#include "NavigationState.h"
#include "ScreenHeader.h"
#include "SearchState.h"
#include "SettingsPages.h"
#include "SettingsState.h"
#include "Tokens.h"

#include <QHBoxLayout>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace quorvane {
namespace {

constexpr int categoriesWidth = 208;
constexpr int categoryGap = 2;
constexpr int closeSymbolSide = 14;

} // namespace

QString title(SettingsCategory category)
{
    switch (category) {
    case SettingsCategory::general:
        return SettingsView::tr("General");
    case SettingsCategory::appearance:
        return SettingsView::tr("Appearance");
    case SettingsCategory::about:
        break;
    }
    return SettingsView::tr("About Quorvane");
}

QString systemImage(SettingsCategory category)
{
    switch (category) {
    case SettingsCategory::general:
        return QStringLiteral("gearshape");
    case SettingsCategory::appearance:
        return QStringLiteral("paintpalette");
    case SettingsCategory::about:
        break;
    }
    return QStringLiteral("info.circle");
}

SettingsView::SettingsView(AppState& state, QWidget* parent)
    : QWidget(parent)
    , m_navigation(NavigationState::of(state))
    , m_pages(new QStackedWidget(this))
{
    setObjectName(QStringLiteral("settingsView"));
    m_pages->addWidget(makeGeneralPage(SearchState::of(state)));
    m_pages->addWidget(makeAppearancePage(SettingsState::of(state)));
    m_pages->addWidget(makeAboutPage());

    auto* const columns = new QHBoxLayout;
    columns->setSpacing(0);
    columns->addWidget(makeCategories());
    columns->addWidget(new Hairline(Qt::Vertical));
    columns->addWidget(m_pages, 1);
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->setSpacing(0);
    whole->addWidget(makeHeader());
    whole->addWidget(new Hairline);
    whole->addLayout(columns, 1);

    auto* const escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(escape, &QShortcut::activated, this, [this] { m_navigation.closeSettings(); });
    setSelectedCategory(m_selectedCategory);
}

QWidget* SettingsView::makeHeader()
{
    auto* const header = new ScreenHeader({}, tr("Settings"), this);
    auto* const close = new ToolButton(QStringLiteral("xmark"), tr("Close Settings (Esc)"));
    close->setObjectName(QStringLiteral("closeSettingsButton"));
    close->setSymbolSide(closeSymbolSide);
    connect(close, &QAbstractButton::clicked, this, [this] { m_navigation.closeSettings(); });
    header->addAction(close);
    return header;
}

QWidget* SettingsView::makeCategories()
{
    auto* const list = new QWidget(this);
    list->setFixedWidth(categoriesWidth);
    auto* const column = new QVBoxLayout(list);
    column->setContentsMargins(spacing::m, spacing::l, spacing::m, spacing::l);
    column->setSpacing(categoryGap);
    for (const SettingsCategory category : allSettingsCategories) {
        auto* const row = new NavigationRow(systemImage(category), title(category));
        row->setObjectName(QLatin1String("settingsCategory.") %
                           QString::number(static_cast<int>(category)));
        connect(row, &QAbstractButton::clicked, this,
                [this, category] { setSelectedCategory(category); });
        column->addWidget(row);
        m_rows[static_cast<std::size_t>(category)] = row;
    }
    column->addStretch();
    return list;
}

void SettingsView::setSelectedCategory(SettingsCategory category)
{
    m_selectedCategory = category;
    m_pages->setCurrentIndex(static_cast<int>(category));
    for (const SettingsCategory each : allSettingsCategories) {
        m_rows[static_cast<std::size_t>(each)]->setCurrent(each == category);
    }
}

} // namespace quorvane

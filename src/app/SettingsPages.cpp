// SPDX-License-Identifier: MIT
#include "SettingsPages.h"

#include "AppVersion.h"
#include "BrandMark.h"
#include "Button.h"
#include "Card.h"
#include "Label.h"
#include "Refresher.h"
#include "SearchState.h"
#include "SegmentedPicker.h"
#include "SettingsChoices.h"
#include "SettingsState.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

constexpr int columnWidth = 640;
constexpr int columnLeft = 40;
constexpr int titleGap = 10;
constexpr int markSide = 84;

QString translated(const char* text)
{
    return QCoreApplication::translate("SettingsView", text);
}

class SymbolView : public QWidget
{
public:
    explicit SymbolView(const QString& symbol)
        : m_symbol(symbol)
    {
        setObjectName(QLatin1String("symbol.") % symbol);
        setFixedSize(measure::iconRow, measure::iconRow);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        paintSymbol(painter, m_symbol, rect(), measure::iconRow, themeColor(ThemeColor::text2));
    }

private:
    QString m_symbol;
};

/// A column of cards, each below its title.
class Page : public QScrollArea
{
public:
    explicit Page(const char* objectName)
        : m_column(new QVBoxLayout)
    {
        setObjectName(QLatin1String(objectName));
        setFrameShape(QFrame::NoFrame);
        setWidgetResizable(true);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setFocusPolicy(Qt::NoFocus);
        auto* const content = new QWidget;
        auto* const place = new QHBoxLayout(content);
        place->setContentsMargins(columnLeft, 0, columnLeft, spacing::xl);
        auto* const body = new QWidget;
        body->setMaximumWidth(columnWidth);
        body->setLayout(m_column);
        place->addWidget(body, 1);
        place->addStretch();
        m_column->setContentsMargins(0, 0, 0, 0);
        m_column->setSpacing(0);
        setWidget(content);
        viewport()->setAutoFillBackground(false);
        content->setAutoFillBackground(false);
    }

    /// The card's own layout, with the given margins at its sides.
    QVBoxLayout* addCard(const QString& title, const QString& symbol, int side, int above,
                         int below)
    {
        m_column->addSpacing(spacing::xl);
        auto* const heading = new QHBoxLayout;
        heading->setSpacing(spacing::s);
        if (!symbol.isEmpty()) {
            heading->addWidget(new SymbolView(symbol));
        }
        heading->addWidget(new Label(title, TextStyle::strong), 1);
        m_column->addLayout(heading);
        m_column->addSpacing(titleGap);
        auto* const card = new Card;
        auto* const inside = new QVBoxLayout(card);
        inside->setContentsMargins(side, above, side, below);
        inside->setSpacing(0);
        m_column->addWidget(card);
        return inside;
    }

    QVBoxLayout* column() { return m_column; }
    void finish() { m_column->addStretch(); }

private:
    QVBoxLayout* m_column;
};

void addTextCard(Page& page, const QString& title, const char* symbol, const QString& text)
{
    QVBoxLayout* const card =
        page.addCard(title, QLatin1String(symbol), spacing::l, spacing::l, spacing::l);
    auto* const label = new Label(text, TextStyle::body, ThemeColor::text2);
    label->setWordWrap(true);
    card->addWidget(label);
}

/// What calls the floating search, as it is now.
QString callText(const SearchState& search)
{
    switch (search.hotKeyState.value()) {
    case GlobalHotKey::State::inForce: {
        const QString trigger = search.hotKeyTrigger.value();
        return translated("Press %1 in any app for floating search.")
            .arg(trigger.isEmpty() ? QStringLiteral("⌘⇧Space") : trigger);
    }
    case GlobalHotKey::State::askable:
        return translated("This desktop gives out a key for floating search once you agree.");
    case GlobalHotKey::State::taken:
        return search.isInstanceReachable.value()
                   ? translated("Another program holds ⌘⇧Space. In the desktop's settings, bind a "
                                "key of your own to this command:")
                   : translated("Another program holds ⌘⇧Space. Floating search opens from the "
                                "Search menu.");
    case GlobalHotKey::State::none:
        break;
    }
    return search.isInstanceReachable.value()
               ? translated("This desktop gives no keys to programs. In its settings, bind one to "
                            "this command:")
               : translated("This desktop gives no keys to programs. Floating search opens from "
                            "the Search menu.");
}

/// A line to bind to a key, ready to copy.
QWidget* makeCommandLine(const QString& command)
{
    auto* const line = new QWidget;
    line->setObjectName(QStringLiteral("searchCommand"));
    auto* const row = new QHBoxLayout(line);
    row->setContentsMargins(0, spacing::m, 0, 0);
    auto* const words = new QLabel(command);
    words->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    words->setTextInteractionFlags(Qt::TextSelectableByMouse);
    row->addWidget(words, 1);
    auto* const copy = new Button(QStringLiteral("doc.on.clipboard"), translated("Copy"));
    copy->setObjectName(QStringLiteral("copySearchCommand"));
    copy->setAccessibleName(translated("Copy Command"));
    QObject::connect(copy, &QAbstractButton::clicked, copy,
                     [command] { QGuiApplication::clipboard()->setText(command); });
    row->addWidget(copy);
    return line;
}

void addSearchCard(Page& page, SearchState& search)
{
    QVBoxLayout* const card =
        page.addCard(translated("Global search"), QStringLiteral("magnifyingglass"), spacing::l,
                     spacing::l, spacing::l);
    auto* const text = new Label({}, TextStyle::body, ThemeColor::text2);
    text->setObjectName(QStringLiteral("searchCallText"));
    text->setWordWrap(true);
    card->addWidget(text);
    QWidget* const command = makeCommandLine(QStringLiteral("quorvane --search"));
    card->addWidget(command);
    auto* const ask = new Button(translated("Choose Key…"));
    ask->setObjectName(QStringLiteral("askForHotKey"));
    QObject::connect(ask, &QAbstractButton::clicked, ask, [&search] { search.askForHotKey(); });
    auto* const askLine = new QHBoxLayout;
    askLine->setContentsMargins(0, 0, 0, 0);
    askLine->addWidget(ask);
    askLine->addStretch();
    card->addLayout(askLine);
    auto* const refresher = new Refresher(text, [&search, text, command, ask, askLine] {
        const GlobalHotKey::State state = search.hotKeyState.value();
        const bool isAskable = state == GlobalHotKey::State::askable;
        text->setText(callText(search));
        command->setVisible(state != GlobalHotKey::State::inForce && !isAskable &&
                            search.isInstanceReachable.value());
        ask->setVisible(isAskable);
        askLine->setContentsMargins(0, isAskable ? spacing::m : 0, 0, 0);
    });
    refresher->watch(search.hotKeyState, search.hotKeyTrigger, search.isInstanceReachable);
    refresher->refreshNow();
}

void addThemeCard(Page& page, SettingsState& state, std::vector<std::function<void()>>& refresh)
{
    auto* const picker = new SegmentedPicker(translated("Theme"));
    picker->setObjectName(QStringLiteral("themePicker"));
    for (const AppTheme theme : allAppThemes) {
        picker->addSegment(title(theme));
    }
    QObject::connect(picker, &SegmentedPicker::activated, picker, [&state](int index) {
        state.setTheme(allAppThemes[static_cast<std::size_t>(index)]);
    });
    refresh.emplace_back([picker, &state] {
        const auto* const current =
            std::find(allAppThemes.begin(), allAppThemes.end(), state.theme.value());
        picker->setCurrentIndex(static_cast<int>(current - allAppThemes.begin()));
    });
    page.addCard(translated("Theme"), {}, spacing::l, spacing::l, spacing::l)->addWidget(picker);
}

void addAccentCard(Page& page, SettingsState& state, std::vector<std::function<void()>>& refresh)
{
    auto* const row = new QHBoxLayout;
    row->setSpacing(0);
    for (const AccentChoice accent : allAccentChoices) {
        auto* const swatch = new AccentSwatch(accent);
        swatch->setObjectName(QLatin1String("accentSwatch.") %
                              QString::fromStdString(std::string(rawValue(accent))));
        QObject::connect(swatch, &QAbstractButton::clicked, swatch,
                         [&state, accent] { state.setAccent(accent); });
        refresh.emplace_back(
            [swatch, &state] { swatch->setChecked(swatch->accent() == state.accent.value()); });
        row->addWidget(swatch, 1);
    }
    page.addCard(translated("Accent color"), {}, spacing::m, spacing::m, spacing::m)
        ->addLayout(row);
}

void addPaletteCard(Page& page, SettingsState& state, std::vector<std::function<void()>>& refresh)
{
    QVBoxLayout* const card = page.addCard(translated("Palette"), {}, 1, 1, 1);
    for (const AppPalette palette : allAppPalettes) {
        if (card->count() > 0) {
            card->addWidget(new Hairline);
        }
        auto* const row = new PaletteRow(palette);
        row->setObjectName(QLatin1String("paletteRow.") %
                           QString::fromStdString(std::string(rawValue(palette))));
        QObject::connect(row, &QAbstractButton::clicked, row,
                         [&state, palette] { state.setPalette(palette); });
        refresh.emplace_back([row, &state] { row->setCurrent(row->palette() == state.palette()); });
        card->addWidget(row);
    }
}

} // namespace

QWidget* makeGeneralPage(SearchState& search)
{
    auto* const page = new Page("settingsGeneral");
    addSearchCard(*page, search);
    addTextCard(*page, translated("Privacy"), "hand.raised",
                translated("Everything runs locally. Scans, snapshots and trashes never leave this "
                           "machine."));
    page->finish();
    return page;
}

QWidget* makeAppearancePage(SettingsState& state)
{
    auto* const page = new Page("settingsAppearance");
    std::vector<std::function<void()>> refresh;
    addThemeCard(*page, state, refresh);
    addAccentCard(*page, state, refresh);
    addPaletteCard(*page, state, refresh);
    page->finish();
    auto* const refresher = new Refresher(page, [refresh = std::move(refresh)] {
        for (const auto& show : refresh) {
            show();
        }
    });
    refresher->watch(state.theme, state.accent, state.storagePalette);
    refresher->refreshNow();
    return page;
}

QWidget* makeAboutPage()
{
    auto* const page = new Page("settingsAbout");
    QVBoxLayout* const card =
        page->addCard(translated("About Quorvane"), {}, spacing::l, spacing::xl, 0);
    card->addWidget(new BrandMark(markSide), 0, Qt::AlignHCenter);
    card->addSpacing(spacing::l);
    card->addWidget(new Wordmark(TextStyle::figure), 0, Qt::AlignHCenter);
    card->addSpacing(spacing::s);
    auto* const text = new Label(translated("See what is taking up space on your Mac."),
                                 TextStyle::body, ThemeColor::text2);
    card->addWidget(text, 0, Qt::AlignHCenter);
    card->addSpacing(spacing::xl);
    card->addWidget(new Hairline);
    auto* const row = new QHBoxLayout;
    row->setContentsMargins(0, spacing::m, 0, spacing::m);
    row->addWidget(new Label(translated("Version"), TextStyle::body, ThemeColor::text2));
    row->addStretch();
    auto* const version = new Label(shownVersion(QCoreApplication::applicationVersion()));
    version->setObjectName(QStringLiteral("versionText"));
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    row->addWidget(version);
    card->addLayout(row);
    page->finish();
    return page;
}

QString shownVersion(const QString& bundleVersion)
{
    const bool isUnfilled = bundleVersion.isEmpty() || bundleVersion == QLatin1String("$(VERSION)");
    return isUnfilled ? QString::fromLatin1(AppVersion::string) : bundleVersion;
}

} // namespace quorvane

// SPDX-License-Identifier: MIT
#include "AppVersion.h"
#include "BrandMark.h"
#include "Button.h"
#include "Label.h"
#include "NavigationRow.h"
#include "ProgramFixture.h"
#include "ScriptedHotKey.h"
#include "SegmentedPicker.h"
#include "SettingsChoices.h"
#include "SettingsPages.h"
#include "SettingsView.h"
#include "Theme.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>

#include <memory>
#include <string>

namespace quorvane {
namespace {

class Settings : public ProgramFixture
{
protected:
    void SetUp() override
    {
        start();
        state().openSettings();
        ASSERT_TRUE(waitUntilShown("settingsView"));
    }

    void showAppearance()
    {
        click("settingsCategory.1");
        ASSERT_TRUE(waitUntilShown("settingsAppearance"));
    }

    static QStringList labels(QWidget& page)
    {
        QStringList texts;
        for (const QLabel* const label : page.findChildren<QLabel*>()) {
            texts.push_back(label->text());
        }
        return texts;
    }
};

TEST_F(Settings, OpenOnTheGeneralPage)
{
    EXPECT_TRUE(isShown("settingsGeneral"));
    const QStringList texts = labels(*find("settingsGeneral"));
    EXPECT_TRUE(texts.contains(QStringLiteral("Privacy")));
    EXPECT_TRUE(texts.contains(QStringLiteral(
        "Everything runs locally. Scans, snapshots and trashes never leave this machine.")));
    EXPECT_TRUE(isShown("symbol.hand.raised"));
    EXPECT_TRUE(texts.contains(QStringLiteral("Global search")));
    EXPECT_TRUE(isShown("symbol.magnifyingglass"));
}

/// The card "Global search" on a desktop that the test is.
class SettingsOfSearch : public ProgramFixture
{
protected:
    void openWith(GlobalHotKey::State state)
    {
        m_key = std::make_unique<ScriptedHotKey>(state);
        m_platform.hotKey = m_key.get();
        start();
        this->state().openSettings();
        ASSERT_TRUE(waitUntilShown("searchCallText"));
    }
    /// The program ends before its key.
    ~SettingsOfSearch() override { m_program.reset(); }

    QString text() { return find<QLabel>("searchCallText")->text(); }
    bool becomes(const char* shown)
    {
        return waitFor([&] { return text() == QString::fromUtf8(shown); });
    }

    std::unique_ptr<ScriptedHotKey> m_key;
};

TEST_F(SettingsOfSearch, TellTheKeyThatIsInForce)
{
    openWith(GlobalHotKey::State::inForce);
    EXPECT_EQ(text(), QStringLiteral("Press ⌘⇧Space in any app for floating search."));
    EXPECT_FALSE(isShown("searchCommand"));
    EXPECT_FALSE(isShown("askForHotKey"));
    m_key->chosen = "Meta+F1";
    m_key->become(GlobalHotKey::State::inForce);
    EXPECT_TRUE(becomes("Press Meta+F1 in any app for floating search."));
}

TEST_F(SettingsOfSearch, HaveTheDesktopAskForAKey)
{
    openWith(GlobalHotKey::State::askable);
    EXPECT_FALSE(isShown("searchCommand"));
    click("askForHotKey");
    EXPECT_EQ(m_key->asked, 1);
    m_key->become(GlobalHotKey::State::inForce);
    EXPECT_TRUE(becomes("Press ⌘⇧Space in any app for floating search."));
    EXPECT_FALSE(isShown("askForHotKey"));
}

TEST_F(SettingsOfSearch, OfferTheCommandWhereNoKeyIsGivenOut)
{
    openWith(GlobalHotKey::State::none);
    EXPECT_FALSE(isShown("searchCommand"));
    m_program->setReachable();
    ASSERT_TRUE(waitUntilShown("searchCommand"));
    click("copySearchCommand");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("quorvane --search"));
    m_key->become(GlobalHotKey::State::taken);
    EXPECT_TRUE(becomes("Another program holds ⌘⇧Space. In the desktop's settings, bind a key of "
                        "your own to this command:"));
    EXPECT_TRUE(isShown("searchCommand"));
}

TEST_F(Settings, ListTheirCategories)
{
    const struct
    {
        const char* title;
        const char* symbol;
    } categories[] = {{"General", "gearshape"},
                      {"Appearance", "paintpalette"},
                      {"About Quorvane", "info.circle"}};
    int number = 0;
    for (const auto& category : categories) {
        const std::string name = "settingsCategory." + std::to_string(number++);
        auto* const row = find<NavigationRow>(name.c_str());
        EXPECT_EQ(row->text(), QLatin1String(category.title));
        EXPECT_EQ(row->symbol(), QLatin1String(category.symbol));
    }
    EXPECT_TRUE(labels(*find("settingsView")).contains(QStringLiteral("Settings")));
    auto* const close = find<ToolButton>("closeSettingsButton");
    EXPECT_EQ(close->toolTip(), QStringLiteral("Close Settings (Esc)"));
    EXPECT_EQ(close->symbol(), QStringLiteral("xmark"));
}

TEST_F(Settings, NameThemselvesOnce)
{
    const auto titles = [this] {
        int count = 0;
        for (const QLabel* const label : window().findChildren<QLabel*>()) {
            count += label->isVisible() && label->text() == QLatin1String("Settings") ? 1 : 0;
        }
        return count;
    };
    EXPECT_EQ(titles(), 1);
    EXPECT_EQ(window().windowTitle(), QStringLiteral("Settings"));
    EXPECT_FALSE(isShown("sectionTitle"));
    state().closeSettings();
    ASSERT_TRUE(waitUntilShown("sectionTitle"));
    EXPECT_EQ(find<QLabel>("sectionTitle")->text(), QStringLiteral("Analysis"));
}

TEST_F(Settings, NameWhatCanBeChosen)
{
    showAppearance();
    const QStringList texts = labels(*find("settingsAppearance"));
    for (const char* const title : {"Theme", "Accent color", "Palette"}) {
        EXPECT_TRUE(texts.contains(QLatin1String(title))) << title;
    }
    const auto* const picker = find<SegmentedPicker>("themePicker");
    EXPECT_EQ(picker->segment(0)->text(), QStringLiteral("System"));
    EXPECT_EQ(picker->segment(1)->text(), QStringLiteral("Light"));
    EXPECT_EQ(picker->segment(2)->text(), QStringLiteral("Dark"));
    for (const char* const accent : {"blue", "purple", "teal", "orange", "pink", "green"}) {
        const std::string name = std::string("accentSwatch.") + accent;
        EXPECT_EQ(find<AccentSwatch>(name.c_str())->text().toLower(), QLatin1String(accent));
    }
    for (const AppPalette palette : allAppPalettes) {
        const std::string name = "paletteRow." + std::string(rawValue(palette));
        auto* const row = find<PaletteRow>(name.c_str());
        EXPECT_EQ(row->text(), title(palette));
        EXPECT_EQ(row->accessibleDescription(), subtitle(palette));
    }
}

TEST_F(Settings, EscapeAndTheCrossLeadBack)
{
    QTest::keyClick(&window(), Qt::Key_Escape);
    EXPECT_EQ(state().section.value(), AppSection::analysis);
    state().openSettings();
    ASSERT_TRUE(waitUntilShown("settingsView"));
    click("closeSettingsButton");
    EXPECT_EQ(state().section.value(), AppSection::analysis);
}

TEST_F(Settings, TheThemeTakesEffectAtOnce)
{
    showAppearance();
    auto* const picker = find<SegmentedPicker>("themePicker");
    ASSERT_EQ(picker->count(), 3);
    EXPECT_EQ(picker->currentIndex(), 2) << "dark at first";
    EXPECT_TRUE(theme().isDark());
    QTest::mouseClick(picker->segment(1), Qt::LeftButton);
    EXPECT_FALSE(theme().isDark());
    EXPECT_EQ(m_platform.preferences.read<QString>("tessaryl.theme"), QStringLiteral("light"));
}

TEST_F(Settings, AnAccentTakesEffectAtOnce)
{
    showAppearance();
    EXPECT_TRUE(find<AccentSwatch>("accentSwatch.blue")->isChecked());
    click("accentSwatch.pink");
    EXPECT_EQ(theme().accent(), AccentChoice::pink);
    EXPECT_EQ(m_platform.preferences.read<QString>("tessaryl.accent"), QStringLiteral("pink"));
    settle();
    EXPECT_TRUE(find<AccentSwatch>("accentSwatch.pink")->isChecked());
    EXPECT_FALSE(find<AccentSwatch>("accentSwatch.blue")->isChecked());
}

TEST_F(Settings, APaletteTakesEffectAtOnce)
{
    showAppearance();
    EXPECT_EQ(find("paletteRow.slate")->toolTip(), QStringLiteral("Currently selected palette"));
    click("paletteRow.forest");
    EXPECT_EQ(state().palette(), AppPalette::forest);
    EXPECT_EQ(m_platform.preferences.read<QString>("tessaryl.palette"), QStringLiteral("forest"));
    settle();
    EXPECT_TRUE(find<PaletteRow>("paletteRow.forest")->isChecked());
    EXPECT_FALSE(find<PaletteRow>("paletteRow.slate")->isChecked());
    EXPECT_TRUE(find("paletteRow.slate")->toolTip().isEmpty());
}

TEST_F(Settings, AboutTellsTheVersion)
{
    click("settingsCategory.2");
    ASSERT_TRUE(waitUntilShown("settingsAbout"));
    EXPECT_TRUE(labels(*find("settingsAbout"))
                    .contains(QStringLiteral("See what is taking up space on your Mac.")));
    EXPECT_NE(find("settingsAbout")->findChild<BrandMark*>(), nullptr);
    EXPECT_NE(find("settingsAbout")->findChild<Wordmark*>(), nullptr);
    EXPECT_STREQ(AppVersion::string, "1.2.0");
    EXPECT_STREQ(AppVersion::build, "1");
    EXPECT_EQ(find<QLabel>("versionText")->text(), QStringLiteral("1.2.0"));
    EXPECT_TRUE(labels(*find("settingsAbout")).contains(QStringLiteral("Version")));
    EXPECT_EQ(shownVersion(QString()), QLatin1String(AppVersion::string));
    EXPECT_EQ(shownVersion(QStringLiteral("$(VERSION)")), QLatin1String(AppVersion::string));
    EXPECT_EQ(shownVersion(QStringLiteral("3.0")), QStringLiteral("3.0"));
}

} // namespace
} // namespace quorvane

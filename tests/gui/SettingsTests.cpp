// SPDX-License-Identifier: MIT
#include "AppVersion.h"
#include "Label.h"
#include "ProgramFixture.h"
#include "SegmentedPicker.h"
#include "SettingsChoices.h"
#include "SettingsPages.h"
#include "SettingsView.h"
#include "Theme.h"

#include <QLabel>

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
    EXPECT_FALSE(texts.contains(QStringLiteral("Global search"))) << "nobody answers its key";
    const std::unique_ptr<QWidget> page(makeGeneralPage(true));
    EXPECT_TRUE(
        labels(*page).contains(QStringLiteral("Press ⌘⇧Space in any app for floating search.")));
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
    EXPECT_EQ(shownVersion(QString()), QLatin1String(AppVersion::string));
    EXPECT_EQ(shownVersion(QStringLiteral("$(VERSION)")), QLatin1String(AppVersion::string));
    EXPECT_EQ(shownVersion(QStringLiteral("3.0")), QStringLiteral("3.0"));
}

} // namespace
} // namespace quorvane

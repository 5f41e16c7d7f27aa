// SPDX-License-Identifier: MIT
#include "JsonPreferences.h"
#include "NodeColors.h"
#include "ProgramFixture.h"
#include "SegmentedPicker.h"
#include "SettingsChoices.h"
#include "Theme.h"

#include <QFile>

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace quorvane {
namespace {

/// The program over a preferences file on the disk.
class StoredSettings : public ProgramFixture
{
protected:
    static constexpr const char* store = "config/Quorvane/preferences.json";

    void startStored()
    {
        m_preferences = std::make_unique<JsonPreferences>(m_disk.path(store).displayText());
        const Platform below = m_platform.platform();
        m_program = std::make_unique<QuorvaneApp>(
            *qApp,
            Platform{below.fileSystem, *m_preferences, below.workspace, below.folderChooser,
                     below.trash, below.home, below.lowerThisThread},
            AppScreens::standard());
        QApplication::setQuitOnLastWindowClosed(false);
        m_program->showWindow();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window(), patience));
    }

    /// Runs the program in a process of its own that clicks and is killed at once. Returns the
    /// status of its end.
    int crashAfter(const std::vector<std::string>& clicks)
    {
        std::vector<std::string> environment{"XDG_CONFIG_HOME=" + m_disk.path("config").bytes(),
                                             "QT_QPA_PLATFORM=offscreen"};
        for (char** entry = environ; *entry != nullptr; ++entry) {
            const std::string_view text(*entry);
            if (!text.starts_with("XDG_CONFIG_HOME=") && !text.starts_with("QT_QPA_PLATFORM=")) {
                environment.emplace_back(text);
            }
        }
        std::vector<std::string> arguments{QUORVANE_CRASH_PROGRAM};
        arguments.insert(arguments.end(), clicks.begin(), clicks.end());
        std::vector<char*> argv = pointers(arguments);
        std::vector<char*> envp = pointers(environment);
        pid_t child = 0;
        EXPECT_EQ(posix_spawn(&child, argv.front(), nullptr, nullptr, argv.data(), envp.data()), 0);
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        return status;
    }

    bool wasKilled(const std::vector<std::string>& clicks)
    {
        const int status = crashAfter(clicks);
        return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    }

    std::string contentsOf(const char* name)
    {
        QFile file(m_disk.path(name).displayText());
        return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : "(none)";
    }

    std::unique_ptr<JsonPreferences> m_preferences;

private:
    static std::vector<char*> pointers(std::vector<std::string>& texts)
    {
        std::vector<char*> all;
        for (std::string& text : texts) {
            all.push_back(text.data());
        }
        all.push_back(nullptr);
        return all;
    }
};

TEST_F(StoredSettings, AThemeOutlivesTheDeathOfTheProcessRightAfterTheClick)
{
    ASSERT_TRUE(wasKilled({"themePicker:1"}));
    startStored();
    EXPECT_EQ(state().theme.value(), AppTheme::light);
    EXPECT_FALSE(theme().isDark());
}

TEST_F(StoredSettings, AnAccentOutlivesTheDeathOfTheProcessRightAfterTheClick)
{
    ASSERT_TRUE(wasKilled({"accentSwatch.orange"}));
    startStored();
    EXPECT_EQ(state().accent.value(), AccentChoice::orange);
}

TEST_F(StoredSettings, APaletteOutlivesTheDeathOfTheProcessRightAfterTheClick)
{
    ASSERT_TRUE(wasKilled({"paletteRow.forest"}));
    startStored();
    EXPECT_EQ(state().palette(), AppPalette::forest);
    EXPECT_EQ(NodeColors::activePalette(), AppPalette::forest);
}

TEST_F(StoredSettings, EachOfManyChangesIsThere)
{
    ASSERT_TRUE(wasKilled({"paletteRow.ocean", "themePicker:1", "accentSwatch.pink",
                           "themePicker:0", "paletteRow.midnight"}));
    startStored();
    EXPECT_EQ(state().theme.value(), AppTheme::system);
    EXPECT_EQ(state().accent.value(), AccentChoice::pink);
    EXPECT_EQ(state().palette(), AppPalette::midnight);
}

TEST_F(StoredSettings, NothingIsStoredThatNobodyChanged)
{
    ASSERT_TRUE(wasKilled({}));
    EXPECT_EQ(contentsOf(store), "(none)");
}

class BrokenSettings : public StoredSettings, public testing::WithParamInterface<const char*>
{};

TEST_P(BrokenSettings, ReadAsDefaultsAndAreKeptAside)
{
    m_disk.fileWithContents(store, GetParam());
    startStored();
    EXPECT_EQ(state().theme.value(), AppTheme::dark);
    EXPECT_EQ(state().accent.value(), AccentChoice::blue);
    EXPECT_EQ(state().palette(), AppPalette::slate);
    EXPECT_EQ(contentsOf(store), GetParam()) << "reading changes nothing";
    click("settingsButton");
    ASSERT_TRUE(waitUntilShown("settingsView"));
    click("settingsCategory.1");
    ASSERT_TRUE(waitUntilShown("accentSwatch.teal"));
    EXPECT_EQ(find<SegmentedPicker>("themePicker")->currentIndex(), 2);
    click("accentSwatch.teal");
    EXPECT_EQ(contentsOf("config/Quorvane/preferences.json.broken"), GetParam());
    EXPECT_EQ(JsonPreferences(m_disk.path(store).displayText()).read<QString>("tessaryl.accent"),
              QStringLiteral("teal"));
}

INSTANTIATE_TEST_SUITE_P(Contents, BrokenSettings,
                         testing::Values("{\"tessaryl.theme\": \"li", "", "\xff\xfe garbage"));

} // namespace
} // namespace quorvane

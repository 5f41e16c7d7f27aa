// SPDX-License-Identifier: MIT
#include "Gate.h"
#include "StateFixture.h"

#include <QStringList>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace quorvane {
namespace {

using Outcome = Trash::Outcome;

Outcome takeAway(const FilePath& path)
{
    std::error_code error;
    return std::filesystem::remove_all(path.bytes(), error) > 0 ? Outcome::moved : Outcome::missing;
}

/// A home with an AppImage, a bundle, a Flatpak and a package.
class AppStateUninstall : public StateFixture
{
protected:
    AppStateUninstall()
    {
        platform.system = disk.path("system");
        disk.fileWithContents("Applications/Halyard-4.2.AppImage", std::string("\x7F"
                                                                               "ELF\x02\x01\x01\x00"
                                                                               "AI\x02",
                                                                               11));
        disk.mode("Applications/Halyard-4.2.AppImage", 0755);
        disk.file(".config/Halyard/settings", 100);
        disk.file(".cache/Halyard/pages", 200);
        disk.file("Applications/Cinder.app/Contents/program", 50000);
        disk.file("Library/Logs/Cinder/log", 300);
        disk.file(".var/app/org.sketch.S/data/drawing", 400);
        platform.programs.answers["flatpak"] = {0, "org.sketch.S\tSketchpad\t2.4 GB\tuser\n"};
        disk.fileWithContents("system/usr/share/applications/wavefold.desktop",
                              "[Desktop Entry]\nType=Application\nName=Wavefold\nExec=wavefold\n");
        disk.fileWithContents("system/var/lib/dpkg/info/wavefold.list",
                              "/usr/bin/wavefold\n/usr/share/applications/wavefold.desktop\n");
        disk.file("system/usr/bin/wavefold", 70000);
        disk.file(".config/wavefold/rc", 500);
    }

    void list()
    {
        state().refreshInstalledApps();
        ASSERT_TRUE(waitFor([this] { return !state().isUninstallerLoading.value(); }));
    }

    UninstallableApp app(std::string_view name)
    {
        const std::vector<UninstallableApp>& apps = state().installedApps.value();
        const auto found =
            std::find_if(apps.begin(), apps.end(),
                         [name](const UninstallableApp& each) { return each.name == name; });
        EXPECT_NE(found, apps.end()) << name;
        return found == apps.end() ? UninstallableApp() : *found;
    }

    void queue(std::string_view name) { state().toggleUninstall(app(name)); }

    /// Works the queue off and returns what it told: "{status} {progress}".
    QStringList run()
    {
        QStringList told;
        const auto status = state().uninstallStatus.addNotifier([this, &told] {
            told << state().uninstallStatus.value().value_or(QString()) % QLatin1Char(' ') %
                        QString::number(state().uninstallProgress.value());
        });
        state().runUninstallQueue();
        EXPECT_TRUE(waitFor(
            [this] { return !state().isUninstalling.value() && !state().isScanning.value(); }));
        return told;
    }

    bool isThere(std::string_view path) { return std::filesystem::exists(disk.path(path).bytes()); }
};

TEST_F(AppStateUninstall, ListsApplicationsOfEveryKindWithoutAScan)
{
    list();
    std::vector<std::string> names;
    for (const UninstallableApp& each : state().installedApps.value()) {
        names.push_back(each.name);
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"Cinder", "Halyard", "Sketchpad", "Wavefold"}));
    EXPECT_FALSE(state().hasScan());
}

TEST_F(AppStateUninstall, ARefreshDuringARefreshChangesNothing)
{
    Gate gate;
    calls.before(FaultyFileSystemCalls::Call::openDirectory,
                 [&gate](int, std::string_view) { gate.pass(); });
    state().refreshInstalledApps();
    gate.awaitVisitor();
    state().refreshInstalledApps();
    EXPECT_TRUE(state().isUninstallerLoading.value());
    gate.open();
    ASSERT_TRUE(waitFor([this] { return !state().isUninstallerLoading.value(); }));
    EXPECT_EQ(state().installedApps.value().size(), 4U);
    EXPECT_EQ(platform.programs.started().size(), 2U) << "one list of Flatpaks and one of snaps";
}

TEST_F(AppStateUninstall, AScanRefreshesTheListOnlyOnceItHasBeenLoaded)
{
    scan(disk.root());
    EXPECT_FALSE(state().isUninstallerLoading.value());
    EXPECT_TRUE(state().installedApps.value().empty());
    list();
    disk.remove("Applications/Cinder.app");
    scan(disk.root());
    ASSERT_TRUE(waitFor([this] { return !state().isUninstallerLoading.value(); }));
    EXPECT_EQ(state().installedApps.value().size(), 3U);
}

TEST_F(AppStateUninstall, TheQueueKeepsTheOrderOfTheClicksAndOutlivesARefresh)
{
    list();
    queue("Halyard");
    queue("Cinder");
    EXPECT_TRUE(state().isQueuedForUninstall(app("Halyard")));
    EXPECT_EQ(state().uninstallQueueBytes(),
              app("Halyard").totalBytes() + app("Cinder").totalBytes());
    list();
    ASSERT_EQ(state().uninstallQueue.value().size(), 2U);
    EXPECT_EQ(state().uninstallQueue.value().front().name, "Halyard");
    queue("Halyard");
    EXPECT_FALSE(state().isQueuedForUninstall(app("Halyard")));
    state().clearUninstallQueue();
    EXPECT_TRUE(state().uninstallQueue.value().empty());
    EXPECT_EQ(state().uninstallQueueBytes(), 0);
}

TEST_F(AppStateUninstall, OnlyTheExtrasOfAPackageCount)
{
    list();
    queue("Wavefold");
    EXPECT_EQ(state().uninstallQueueBytes(), app("Wavefold").extraBytes());
    EXPECT_GT(app("Wavefold").bundleBytes, 0);
}

TEST_F(AppStateUninstall, ARunOfOneTellsItsThreeTexts)
{
    list();
    queue("Cinder");
    platform.trash.answer = takeAway;
    EXPECT_EQ(run(), (QStringList{QStringLiteral("Preparing uninstall… 0"),
                                  QStringLiteral("Uninstalling Cinder… 0"),
                                  QStringLiteral("Uninstalled 1 app. 1")}));
    EXPECT_EQ(platform.trash.asked(), (std::vector{disk.path("Applications/Cinder.app"),
                                                   disk.path("Library/Logs/Cinder")}));
    EXPECT_TRUE(isThere("Library/Logs"));
    EXPECT_TRUE(state().uninstallFailures.value().empty());
    EXPECT_TRUE(state().uninstallQueue.value().empty());
}

TEST_F(AppStateUninstall, WithoutARootNothingIsScannedAndTheListStays)
{
    list();
    queue("Cinder");
    platform.trash.answer = takeAway;
    run();
    EXPECT_FALSE(state().hasScan());
    EXPECT_EQ(state().installedApps.value().size(), 4U);
}

TEST_F(AppStateUninstall, WithARootTheScanAndTheListFollow)
{
    scan(disk.root());
    list();
    queue("Cinder");
    platform.trash.answer = takeAway;
    const NodePointer before = state().rootNode.value();
    run();
    EXPECT_NE(state().rootNode.value(), before);
    ASSERT_TRUE(waitFor([this] { return !state().isUninstallerLoading.value(); }));
    EXPECT_EQ(state().installedApps.value().size(), 3U);
}

TEST_F(AppStateUninstall, ABundleThatStaysDoesNotKeepItsLeftovers)
{
    scan(disk.root());
    list();
    queue("Cinder");
    platform.trash.answer = [this](const FilePath& path) {
        return path == disk.path("Applications/Cinder.app") ? Outcome::notPermitted
                                                            : takeAway(path);
    };
    run();
    EXPECT_FALSE(isThere("Library/Logs/Cinder"));
    ASSERT_TRUE(waitFor([this] { return !state().isUninstallerLoading.value(); }));
    const UninstallFailure& failure = state().uninstallFailures.value().at(app("Cinder").id);
    EXPECT_EQ(failure.outcome, TrashOutcome::notPermitted);
    EXPECT_EQ(failure.path, disk.path("Applications/Cinder.app"));
    // Until a run takes it.
    queue("Cinder");
    platform.trash.answer = takeAway;
    run();
    EXPECT_TRUE(state().uninstallFailures.value().empty());
}

TEST_F(AppStateUninstall, AFlatpakGoesByItsToolAndItsDataToTheTrash)
{
    list();
    queue("Sketchpad");
    platform.trash.answer = takeAway;
    run();
    EXPECT_EQ(platform.programs.started().back(),
              (std::vector<std::string>{"flatpak", "uninstall", "--noninteractive", "--assumeyes",
                                        "--user", "org.sketch.S"}));
    EXPECT_EQ(platform.trash.asked(), std::vector{disk.path(".var/app/org.sketch.S")});
}

TEST_F(AppStateUninstall, AFlatpakThatItsToolRefusesIsKnown)
{
    list();
    const UninstallableApp sketchpad = app("Sketchpad");
    queue("Sketchpad");
    platform.programs.answers["flatpak"].exitCode = 1;
    run();
    EXPECT_EQ(state().uninstallFailures.value().at(sketchpad.id),
              (UninstallFailure{TrashOutcome::failed, {}}));
}

TEST_F(AppStateUninstall, OfAPackageOnlyTheLeftoversGo)
{
    list();
    queue("Wavefold");
    platform.trash.answer = takeAway;
    const std::size_t before = platform.programs.started().size();
    run();
    EXPECT_EQ(platform.trash.asked(), std::vector{disk.path(".config/wavefold")});
    EXPECT_EQ(platform.programs.started().size(), before);
    EXPECT_TRUE(isThere("system/usr/bin/wavefold"));
}

TEST_F(AppStateUninstall, AnAppImageThatWasReplacedStays)
{
    list();
    queue("Halyard");
    disk.file("Applications/Halyard-4.2.AppImage", 99);
    platform.trash.answer = takeAway;
    const UninstallableApp halyard = app("Halyard");
    run();
    EXPECT_TRUE(isThere("Applications/Halyard-4.2.AppImage"));
    EXPECT_FALSE(isThere(".config/Halyard"));
    EXPECT_EQ(state().uninstallFailures.value().at(halyard.id).outcome, TrashOutcome::changed);
}

TEST_F(AppStateUninstall, NothingOfTheSystemIsMovedWhateverARowSays)
{
    UninstallableApp app;
    app.id = "bad";
    app.bundleURL = FilePath("/usr/share/doc");
    for (const char* const path : {"/usr/bin", "/bin/sh", "/lib", "/etc/passwd"}) {
        app.components.push_back({FilePath(path), 1, "Caches"});
    }
    state().toggleUninstall(app);
    run();
    EXPECT_TRUE(platform.trash.asked().empty());
    EXPECT_EQ(state().uninstallFailures.value().at("bad").outcome, TrashOutcome::protectedPlace);
}

TEST_F(AppStateUninstall, ARunGoesOnToItsEndWhenTheModelGoes)
{
    list();
    queue("Cinder");
    queue("Halyard");
    Gate gate;
    platform.trash.answer = [&gate](const FilePath& path) {
        gate.pass();
        return takeAway(path);
    };
    state().runUninstallQueue();
    ASSERT_TRUE(waitFor([&gate] { return gate.hasVisitor(); }));
    gate.open();
    end();
    EXPECT_EQ(platform.trash.asked().size(), 5U);
}

} // namespace
} // namespace quorvane

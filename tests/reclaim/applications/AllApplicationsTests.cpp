// SPDX-License-Identifier: MIT
#include "AppUninstaller.h"

#include "DiskTree.h"
#include "FileContentCalls.h"
#include "FileSystemCalls.h"
#include "PropertyLists.h"
#include "ScriptedPrograms.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

namespace quorvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// A machine with one application of each kind.
class Machine
{
public:
    Machine()
    {
        const std::string elf("\x7F"
                              "ELF\x02\x01\x01\x00",
                              8);
        disk.fileWithContents("home/Applications/Halyard-4.2.AppImage", elf + "AI\x02...");
        disk.mode("home/Applications/Halyard-4.2.AppImage", 0755);
        disk.fileWithContents("home/Applications/Cinder.app/Contents/Info.plist",
                              test::binaryList("org.cinder"));
        disk.file("opt/lantern/run", 100000);
        entry("usr/share/applications/lantern.desktop", "Lantern",
              disk.path("opt/lantern/run").bytes());
        entry("usr/share/applications/wavefold.desktop", "Wavefold Studio", "wavefold");
        disk.file("usr/bin/wavefold", 20000);
        disk.fileWithContents("var/lib/dpkg/info/wavefold-studio.list",
                              "/usr/bin/wavefold\n/usr/share/applications/wavefold.desktop\n");
        disk.fileWithContents("var/lib/dpkg/info/git.list", "/usr/bin/git\n");
        entry("var/lib/flatpak/exports/share/applications/org.sketch.S.desktop", "Sketchpad",
              "flatpak run org.sketch.S");
        programs.answers["flatpak"] = {0, "org.sketch.S\tS\t2.4 GB\tsystem\n"};
        programs.answers["snap"] = {0, "Name Version Rev Tracking Publisher Notes\n"
                                       "plover 1 42 latest/stable x -\n"};
        disk.file("var/lib/snapd/snaps/plover_42.snap", 3000);
    }

    void entry(const std::string& path, const std::string& name, const std::string& exec)
    {
        disk.fileWithContents(path, "[Desktop Entry]\nType=Application\nName=" + name +
                                        "\nIcon=icon\nExec=" + exec + "\n");
    }

    std::map<std::string, UninstallableApp> apps()
    {
        HomeFolders folders = HomeFolders::below(disk.path("home"));
        folders.system = disk.root();
        FileSystemCalls& calls = FileSystemCalls::system();
        AppUninstaller::Sources sources = AppUninstaller::Sources::of(folders, calls);
        std::map<std::string, UninstallableApp> byName;
        for (UninstallableApp& app : AppUninstaller::allApplications(
                 sources, {}, calls, FileContentCalls::system(), programs)) {
            byName.emplace(app.name, std::move(app));
        }
        return byName;
    }

    std::vector<std::string> leftovers(const std::string& name)
    {
        std::vector<std::string> paths;
        const FilePath home = disk.path("home");
        const std::map<std::string, UninstallableApp> all = apps();
        for (const UninstallComponent& component : all.at(name).components) {
            paths.push_back(component.url.bytes().substr(home.bytes().size() + 1));
        }
        return paths;
    }

    DiskTree disk;
    ScriptedPrograms programs;
};

TEST(AllApplications, EveryKindIsListedUnderTheNameThatTheDesktopShows)
{
    Machine machine;
    std::map<std::string, AppKind> kinds;
    for (const auto& [name, app] : machine.apps()) {
        kinds.emplace(name, app.kind);
    }
    EXPECT_EQ(kinds, (std::map<std::string, AppKind>{{"Halyard", AppKind::appImage},
                                                     {"Cinder", AppKind::bundle},
                                                     {"Lantern", AppKind::folder},
                                                     {"Sketchpad", AppKind::flatpak},
                                                     {"plover", AppKind::snap},
                                                     {"Wavefold Studio", AppKind::package}}));
    EXPECT_GE(machine.apps().at("Lantern").bundleBytes, 100000);
}

TEST(AllApplications, AnEntryThatTheUserHasHiddenIsNoApplication)
{
    Machine machine;
    machine.disk.fileWithContents("home/.local/share/applications/wavefold.desktop",
                                  "[Desktop Entry]\nType=Application\nHidden=true\n");
    EXPECT_EQ(machine.apps().count("Wavefold Studio"), 0U);
}

TEST(AllApplications, EachKindFindsItsLeftovers)
{
    Machine machine;
    for (const char* const path :
         {".config/Halyard/a", ".cache/wavefold/a", ".local/share/wavefold-studio/a",
          ".var/app/org.sketch.S/data/a", "snap/plover/a", ".local/state/lantern/a",
          ".config/autostart/lantern.desktop", "Library/Caches/org.cinder/a", ".config/Cinder/a"}) {
        machine.disk.file("home/" + std::string(path), 10);
    }
    EXPECT_THAT(machine.leftovers("Halyard"), ElementsAre(".config/Halyard"));
    EXPECT_THAT(machine.leftovers("Wavefold Studio"),
                UnorderedElementsAre(".cache/wavefold", ".local/share/wavefold-studio"));
    EXPECT_THAT(machine.leftovers("Sketchpad"), ElementsAre(".var/app/org.sketch.S"));
    EXPECT_THAT(machine.leftovers("plover"), ElementsAre("snap/plover"));
    EXPECT_THAT(machine.leftovers("Lantern"),
                UnorderedElementsAre(".local/state/lantern", ".config/autostart/lantern.desktop"));
    EXPECT_THAT(machine.leftovers("Cinder"), ElementsAre("Library/Caches/org.cinder"));
}

TEST(AllApplications, WhatAPackageWithoutAnEntryIsCalledLikeIsNotAnAppImages)
{
    Machine machine;
    machine.disk.fileWithContents("home/Downloads/git.AppImage", std::string("\x7F"
                                                                             "ELF\x02\x01\x01\x00"
                                                                             "AI\x02",
                                                                             11));
    machine.disk.mode("home/Downloads/git.AppImage", 0755);
    machine.disk.file("home/.config/git/config", 10);
    machine.disk.file("home/.config/git.AppImage/a", 10);
    EXPECT_THAT(machine.leftovers("git"), ElementsAre(".config/git.AppImage"));
}

TEST(AllApplications, WhatRunsIsMarked)
{
    Machine machine;
    machine.programs.processes = {{machine.disk.path("usr/bin/wavefold").bytes(), ""},
                                  {"", "/app.slice/app-flatpak-org.sketch.S-77.scope"}};
    const auto apps = machine.apps();
    for (const auto& [name, app] : apps) {
        EXPECT_EQ(app.isRunning, name == "Wavefold Studio" || name == "Sketchpad") << name;
    }
}

TEST(AllApplications, WithoutFlatpakAndSnapTheRestIsListed)
{
    Machine machine;
    machine.programs.answers.clear();
    EXPECT_EQ(machine.apps().size(), 4U);
}

TEST(AllApplications, WithoutASystemOnlyTheHomeIsSearched)
{
    Machine machine;
    machine.programs.answers.clear();
    FileSystemCalls& calls = FileSystemCalls::system();
    const auto sources =
        AppUninstaller::Sources::of(HomeFolders::below(machine.disk.path("home")), calls);
    EXPECT_EQ(AppUninstaller::allApplications(sources, {}, calls, FileContentCalls::system(),
                                              machine.programs)
                  .size(),
              2U);
}

TEST(AllApplications, ACancelledLookGivesNothing)
{
    Machine machine;
    FileSystemCalls& calls = FileSystemCalls::system();
    const auto sources =
        AppUninstaller::Sources::of(HomeFolders::below(machine.disk.path("home")), calls);
    EXPECT_THAT(
        AppUninstaller::allApplications(
            sources, [] { return true; }, calls, FileContentCalls::system(), machine.programs),
        IsEmpty());
}

} // namespace
} // namespace quorvane

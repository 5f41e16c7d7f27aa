// SPDX-License-Identifier: MIT
#include "InstalledApps.h"

#include "DiskReader.h"
#include "DiskTree.h"
#include "FileContentCalls.h"
#include "PropertyLists.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace quorvane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

const DiskReader& reader()
{
    static const DiskReader reader(FileSystemCalls::system(), FileContentCalls::system());
    return reader;
}

std::vector<std::string> idsOf(const std::vector<FoundApp>& apps)
{
    std::vector<std::string> ids;
    for (const FoundApp& found : apps) {
        ids.push_back(found.app.id);
    }
    return ids;
}

DesktopEntry entry(std::string id, std::string name, std::string program = {})
{
    DesktopEntry entry;
    entry.id = std::move(id);
    entry.path = FilePath("/usr/share/applications/" + entry.id + ".desktop");
    entry.name = std::move(name);
    entry.icon = entry.id + "-icon";
    entry.program = std::move(program);
    entry.isApplication = true;
    return entry;
}

/// The first bytes of an ELF file that is an AppImage of that type.
std::string appImageOf(char type)
{
    std::string bytes = "\x7F"
                        "ELF";
    bytes.resize(8, '\x01');
    bytes.append("AI").push_back(type);
    return bytes.append("rest of the file");
}

TEST(Bundles, AreFoldersWithTheExtensionInItsExactCase)
{
    DiskTree disk;
    disk.fileWithContents("apps/Foo.app/Contents/Info.plist", test::xmlList("org.foo"));
    disk.folder("apps/Plain.app");
    disk.folder("apps/Bar.APP");
    disk.folder("apps/.Hidden.app");
    disk.file("apps/File.app", 10);
    disk.fileWithContents("apps/Sub/Deep.app/Contents/Info.plist", test::xmlList("org.deep"));
    disk.symbolicLink("../apps/Foo.app", "apps/Link.app");
    const FilePath folders[] = {disk.path("absent"), disk.path("apps")};
    std::vector<std::string> found;
    for (const InstalledApps::Bundle& bundle : InstalledApps::bundles(folders, reader())) {
        found.push_back(bundle.found.app.id + "=" + bundle.found.app.name);
    }
    // The link has the identifier of what it leads to and comes later.
    EXPECT_THAT(found, ElementsAre("org.foo=Link", "Plain=Plain"));
}

TEST(Bundles, OneIdentifierGivesOneRowWithTheLaterPath)
{
    DiskTree disk;
    disk.fileWithContents("a/Foo.app/Contents/Info.plist", test::xmlList("org.foo"));
    disk.fileWithContents("b/Foo.app/Contents/Info.plist", test::binaryList("org.foo"));
    const FilePath folders[] = {disk.path("a"), disk.path("b")};
    const auto bundles = InstalledApps::bundles(folders, reader());
    ASSERT_EQ(bundles.size(), 1U);
    EXPECT_EQ(bundles[0].found.app.bundleURL, disk.path("b/Foo.app"));
    EXPECT_THAT(bundles[0].earlierCopies, ElementsAre(disk.path("a/Foo.app")));
}

TEST(AppImages, AreExecutableFilesWithTheMagicOfTypeTwo)
{
    DiskTree disk;
    disk.fileWithContents("a/Good.AppImage", appImageOf('\x02'));
    disk.fileWithContents("a/plain-name", appImageOf('\x02'));
    disk.fileWithContents("a/TypeOne.AppImage", appImageOf('\x01'));
    disk.fileWithContents("a/NotExecutable.AppImage", appImageOf('\x02'));
    disk.fileWithContents("a/Short.AppImage", "AI");
    disk.file("a/Empty.AppImage");
    disk.symbolicLink("Good.AppImage", "a/Link.AppImage");
    disk.fileWithContents("a/sub/Deep.AppImage", appImageOf('\x02'));
    for (const char* const name : {"Good", "TypeOne", "Short", "Empty"}) {
        disk.mode("a/" + std::string(name) + ".AppImage", 0755);
    }
    disk.mode("a/NotExecutable.AppImage", 0644);
    disk.mode("a/plain-name", 0700);
    const FilePath folders[] = {disk.path("a"), disk.path("absent")};
    const auto found = InstalledApps::appImages(folders, {}, reader());
    EXPECT_THAT(idsOf(found), ElementsAre(disk.path("a/Good.AppImage").bytes(),
                                          disk.path("a/plain-name").bytes()));
    EXPECT_GT(found[0].app.bundleBytes, 0);
    EXPECT_EQ(found[0].app.kind, AppKind::appImage);
}

TEST(AppImages, TakeNameAndIconFromTheEntryThatStartsThem)
{
    DiskTree disk;
    disk.fileWithContents("Halyard-4.2-x86_64.AppImage", appImageOf('\x02'));
    disk.mode("Halyard-4.2-x86_64.AppImage", 0755);
    const FilePath folder = disk.root();
    const DesktopEntry entries[] = {
        entry("appimagekit-halyard", "Halyard Deck",
              disk.path("Halyard-4.2-x86_64.AppImage").bytes()),
        entry("other", "Other", "/elsewhere/Halyard-4.2-x86_64.AppImage")};
    const auto found = InstalledApps::appImages({&folder, 1}, entries, reader());
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].app.name, "Halyard Deck");
    EXPECT_EQ(found[0].app.icon, "appimagekit-halyard-icon");
    EXPECT_THAT(found[0].names.programs, IsSupersetOf({"Halyard", "appimagekit-halyard"}));
    EXPECT_THAT(found[0].names.desktopIds, ElementsAre("appimagekit-halyard"));
}

TEST(AppImages, ProductNamesLeaveOutVersionAndArchitecture)
{
    const std::pair<const char*, const char*> names[] = {
        {"Halyard-4.2.AppImage", "Halyard"},
        {"meridian-maps-x86_64.AppImage", "meridian-maps"},
        {"Ferrywell_Chess.AppImage", "Ferrywell_Chess"},
        {"tern-notes.appimage", "tern-notes"},
        {"App-v1.2.3-beta-x86_64.AppImage", "App-v1.2.3-beta"},
        {"App-1.2-3-amd64.AppImage", "App"},
        {"Tool-linux-arm64.AppImage", "Tool"},
        {"-1.AppImage", "-1"},
        {"plain", "plain"},
        {".AppImage", ""}};
    for (const auto& [file, product] : names) {
        EXPECT_EQ(InstalledApps::productName(file), product) << file;
    }
}

/// A small system with package lists, entries and files.
struct System
{
    DiskTree disk;

    void package(const std::string& name, const std::vector<std::string>& files,
                 std::int64_t bytesEach = 5000)
    {
        std::string list = "/.\n/usr\n/usr/bin\n";
        for (const std::string& file : files) {
            list += file + "\n";
            if (!file.ends_with(".desktop")) {
                disk.file(file.substr(1), bytesEach);
            }
        }
        disk.fileWithContents("var/lib/dpkg/info/" + name + ".list", list);
        disk.fileWithContents("var/lib/dpkg/info/" + name + ".md5sums", "/usr/bin/wrong\n");
    }
};

TEST(DebianPackages, AreThoseThatOwnAVisibleEntry)
{
    System system;
    system.package("wavefold-studio", {"/usr/bin/wavefold", "/usr/lib/wavefold/core",
                                       "/usr/share/applications/wavefold-studio.desktop"});
    system.package("libfoo:amd64", {"/usr/lib/libfoo.so"});
    system.package("hidden-tool", {"/usr/share/applications/hidden.desktop"});
    const DesktopEntry entries[] = {entry("wavefold-studio", "Wavefold Studio", "wavefold")};
    const auto lists = InstalledApps::packageLists(system.disk.root(), entries, reader());
    EXPECT_TRUE(lists.names.contains("libfoo"));
    EXPECT_EQ(lists.programs.at("wavefold"), "wavefold-studio");
    EXPECT_FALSE(lists.programs.contains("wrong"));
    const auto found = InstalledApps::debianPackages(lists, system.disk.root(), entries, reader());
    ASSERT_THAT(idsOf(found), ElementsAre("package:wavefold-studio"));
    EXPECT_EQ(found[0].app.name, "Wavefold Studio");
    EXPECT_EQ(found[0].app.icon, "wavefold-studio-icon");
    EXPECT_EQ(found[0].app.command(), "sudo apt remove wavefold-studio");
    EXPECT_EQ(found[0].app.bundleBytes, 2 * 8192);
    EXPECT_TRUE(found[0].app.isForAdministrator());
    EXPECT_THAT(found[0].names.programs, IsSupersetOf({"wavefold-studio", "wavefold"}));
    EXPECT_THAT(found[0].programs, ElementsAre(system.disk.path("usr/bin/wavefold")));
}

TEST(DebianPackages, AProgramOfAnotherPackageIsNoNameOfThisOne)
{
    System system;
    system.package("office-common", {"/usr/bin/office"});
    system.package("office-writer", {"/usr/share/applications/writer.desktop"});
    system.package("tool", {"/usr/share/applications/tool.desktop"});
    const DesktopEntry entries[] = {entry("writer", "Writer", "office"),
                                    entry("tool", "Tool", "/usr/bin/python3")};
    const auto lists = InstalledApps::packageLists(system.disk.root(), entries, reader());
    for (const FoundApp& found :
         InstalledApps::debianPackages(lists, system.disk.root(), entries, reader())) {
        EXPECT_THAT(found.names.programs, Not(Contains("office")));
        EXPECT_THAT(found.names.programs, Not(Contains("python3")));
        EXPECT_THAT(found.programs, IsEmpty());
    }
}

TEST(DebianPackages, AnArchitectureBelongsToTheCommandButToNoName)
{
    System system;
    system.package("multi:i386", {"/usr/share/applications/multi.desktop"});
    const DesktopEntry entries[] = {entry("multi", "Multi")};
    const auto lists = InstalledApps::packageLists(system.disk.root(), entries, reader());
    const auto found = InstalledApps::debianPackages(lists, system.disk.root(), entries, reader());
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].app.command(), "sudo apt remove multi:i386");
    EXPECT_EQ(found[0].names.programs.front(), "multi");
}

TEST(OptFolders, AreThoseThatAnEntryStartsAndNoPackageOwns)
{
    System system;
    system.disk.file("opt/halyard/bin/run", 10);
    system.disk.file("opt/vendor/chrome/chrome", 10);
    system.disk.file("opt/unused/run", 10);
    system.disk.file("opt/loose", 10);
    system.package("vendor-chrome", {"/opt/vendor/chrome/chrome"});
    const auto program = [&](const char* path) { return system.disk.path(path).bytes(); };
    system.disk.symbolicLink(program("opt/halyard/bin/run"), "links/halyard");
    const DesktopEntry entries[] = {entry("org.halyard", "Halyard", program("links/halyard")),
                                    entry("chrome", "Chrome", program("opt/vendor/chrome/chrome")),
                                    entry("loose", "Loose", program("opt/loose")),
                                    entry("opt", "Opt", program("opt")),
                                    entry("gone", "Gone", program("opt/gone/run"))};
    const auto lists = InstalledApps::packageLists(system.disk.root(), entries, reader());
    const auto found = InstalledApps::optFolders(lists, system.disk.root(), entries, reader());
    ASSERT_THAT(idsOf(found), ElementsAre(program("opt/halyard")));
    EXPECT_EQ(found[0].app.name, "Halyard");
    EXPECT_TRUE(found[0].app.goesToTrash());
    EXPECT_THAT(found[0].names.desktopIds, ElementsAre("org.halyard"));
}

TEST(Flatpaks, AreReadFromTheColumnsOfTheirList)
{
    HomeFolders folders = HomeFolders::below(FilePath("/h"));
    folders.system = FilePath("/");
    const DesktopEntry entries[] = {entry("org.sketchpad.Sketchpad", "Sketchpad Pro")};
    const auto found = InstalledApps::flatpaks(
        "org.sketchpad.Sketchpad\tSketchpad\t2.4\xC2\xA0GB\tsystem\n"
        "org.outliner.Outliner\t\t96.3 MB\tuser\n"
        "broken line\n\n../../x\tX\t1 MB\tuser\n-y.z\tX\t1 MB\tuser\nnodot\tX\t1 MB\tuser\n"
        "Application ID\tName\tSize\tInstallation\n",
        folders, entries);
    ASSERT_THAT(idsOf(found), ElementsAre("flatpak:system:org.sketchpad.Sketchpad",
                                          "flatpak:user:org.outliner.Outliner"));
    EXPECT_EQ(found[0].app.name, "Sketchpad Pro");
    EXPECT_EQ(found[0].app.bundleURL.bytes(), "/var/lib/flatpak/app/org.sketchpad.Sketchpad");
    EXPECT_EQ(found[0].app.bundleBytes, 2400000000);
    EXPECT_TRUE(found[0].app.goesByOwnTool());
    EXPECT_FALSE(found[0].app.goesToTrash());
    EXPECT_EQ(found[1].app.name, "org.outliner.Outliner");
    EXPECT_EQ(found[1].app.bundleURL.bytes(), "/h/.local/share/flatpak/app/org.outliner.Outliner");
    EXPECT_THAT(found[1].app.removal(),
                ElementsAre("flatpak", "uninstall", "--noninteractive", "--assumeyes", "--user",
                            "org.outliner.Outliner"));
}

TEST(Flatpaks, NeverGoWithTheirData)
{
    UninstallableApp app;
    app.kind = AppKind::flatpak;
    for (const char* const installation : {"user", "system", "extra"}) {
        app.installation = installation;
        EXPECT_THAT(app.removal(), Not(Contains("--delete-data")));
    }
    EXPECT_THAT(app.removal(), Contains("--installation=extra"));
}

TEST(Flatpaks, SizesAreInPowersOfAThousand)
{
    EXPECT_EQ(InstalledApps::bytesFromText("612.4 MB"), 612400000);
    EXPECT_EQ(InstalledApps::bytesFromText("1.6\xC2\xA0GB"), 1600000000);
    EXPECT_EQ(InstalledApps::bytesFromText("1,6 GB"), 1600000000);
    EXPECT_EQ(InstalledApps::bytesFromText("12 bytes"), 12);
    EXPECT_EQ(InstalledApps::bytesFromText("3 kB"), 3000);
    for (const char* const text : {"", "MB", "1 XB", "-1 MB", "1.2.3 MB", "99999999999 PB"}) {
        EXPECT_EQ(InstalledApps::bytesFromText(text), 0) << text;
    }
}

TEST(Snaps, AreTheApplicationsOfTheirList)
{
    System system;
    system.disk.file("var/lib/snapd/snaps/plover_42.snap", 5000);
    DesktopEntry own = entry("plover_plover", "Plover Terminal");
    own.snap = "plover";
    const DesktopEntry entries[] = {own};
    const auto found =
        InstalledApps::snaps("Name    Version   Rev    Tracking       Publisher   Notes\n"
                             "core22  2024      1380   latest/stable  canonical   base\n"
                             "snapd   2.63      21759  latest/stable  canonical   snapd\n"
                             "plover  1.0       42     latest/stable  someone     -\n"
                             "short\n",
                             system.disk.root(), entries, reader());
    ASSERT_THAT(idsOf(found), ElementsAre("snap:plover"));
    EXPECT_EQ(found[0].app.name, "Plover Terminal");
    EXPECT_EQ(found[0].app.bundleBytes, 8192);
    EXPECT_EQ(found[0].app.command(), "sudo snap remove plover");
    EXPECT_EQ(found[0].names.snap, "plover");
}

} // namespace
} // namespace quorvane

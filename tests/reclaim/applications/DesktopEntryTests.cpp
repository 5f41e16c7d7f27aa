// SPDX-License-Identifier: MIT
#include "DesktopEntry.h"

#include "DiskReader.h"
#include "DiskTree.h"
#include "FileContentCalls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorvane {
namespace {

using testing::ElementsAre;

DesktopEntry parsed(const std::string& lines, std::string_view locale = {})
{
    return parseDesktopEntry("[Desktop Entry]\n" + lines, locale);
}

TEST(DesktopEntry, ReadsWhatAnApplicationSaysOfItself)
{
    const DesktopEntry entry = parsed("Type=Application\nName=Halyard\nIcon=halyard\n"
                                      "Exec=/opt/halyard/run %U\nX-SnapInstanceName=hal\n");
    EXPECT_TRUE(entry.isApplication);
    EXPECT_EQ(entry.name, "Halyard");
    EXPECT_EQ(entry.icon, "halyard");
    EXPECT_EQ(entry.program, "/opt/halyard/run");
    EXPECT_EQ(entry.programName(), "run");
    EXPECT_EQ(entry.snap, "hal");
    EXPECT_TRUE(entry.isVisible({}));
}

TEST(DesktopEntry, OtherGroupsCommentsAndBlanksDoNotCount)
{
    const DesktopEntry entry =
        parseDesktopEntry("# Name=Comment\nName=Before\n[Other]\nName=Other\n"
                          "[Desktop Entry]\r\n  Name = Right \r\n\n"
                          "[Desktop Action New]\nName=Action\n",
                          {});
    EXPECT_EQ(entry.name, "Right");
    EXPECT_FALSE(entry.isApplication);
}

TEST(DesktopEntry, TheNameIsThatOfTheClosestLocale)
{
    const std::string names = "Name[de]=Deutsch\nName=Plain\nName[de_AT]=Austria\n"
                              "Name[sr@latin]=Latin\nName[fr]=French\n";
    EXPECT_EQ(parsed(names).name, "Plain");
    EXPECT_EQ(parsed(names, "de_DE").name, "Deutsch");
    EXPECT_EQ(parsed(names, "de_AT.UTF-8").name, "Austria");
    EXPECT_EQ(parsed(names, "sr_RS@latin").name, "Latin");
    EXPECT_EQ(parsed(names, "nl_NL").name, "Plain");
}

TEST(DesktopEntry, HiddenOnesAndThoseOfOtherDesktopsAreNotVisible)
{
    const std::string base = "Type=Application\nName=N\n";
    const std::string gnome[] = {"GNOME", "Classic"};
    EXPECT_FALSE(parsed(base + "Hidden=true\n").isVisible(gnome));
    EXPECT_FALSE(parsed(base + "NoDisplay=true\n").isVisible(gnome));
    EXPECT_TRUE(parsed(base + "NoDisplay=false\n").isVisible(gnome));
    EXPECT_FALSE(parsed(base + "OnlyShowIn=KDE;\n").isVisible(gnome));
    EXPECT_TRUE(parsed(base + "OnlyShowIn=KDE;GNOME;\n").isVisible(gnome));
    EXPECT_FALSE(parsed(base + "NotShowIn=GNOME\n").isVisible(gnome));
    EXPECT_FALSE(parsed(base + "OnlyShowIn=KDE;\n").isVisible({}));
    EXPECT_FALSE(parsed("Type=Link\nName=N\n").isVisible({}));
    EXPECT_FALSE(parsed("Type=Application\n").isVisible({}));
}

TEST(DesktopEntry, TheProgramIsTheFirstWordThatNamesOne)
{
    EXPECT_EQ(programOfExec("vim %F"), "vim");
    EXPECT_EQ(programOfExec("\"/opt/with blank/run\" --x"), "/opt/with blank/run");
    EXPECT_EQ(programOfExec("\"/opt/a\\\"b\""), "/opt/a\"b");
    EXPECT_EQ(programOfExec("env LANG=C /usr/bin/env -u X A=b /opt/run"), "/opt/run");
    EXPECT_EQ(programOfExec("  \t "), "");
    EXPECT_EQ(programOfExec(""), "");
    EXPECT_EQ(programOfExec("env A=b"), "");
}

TEST(DesktopEntry, EscapesOfTheFileComeBeforeTheQuotesOfTheLine)
{
    EXPECT_EQ(parsed("Exec=\"/opt/a\\\\\\\\b\"\n").program, "/opt/a\\b");
    EXPECT_EQ(parsed("Name=a\\sb\\\\c\\t\n").name, "a b\\c\t");
}

TEST(DesktopEntries, AnEarlierFolderHidesTheSameIdOfALaterOne)
{
    DiskTree disk;
    disk.fileWithContents("a/vim.desktop", "[Desktop Entry]\nName=Mine\n");
    disk.fileWithContents("b/vim.desktop", "[Desktop Entry]\nName=System\n");
    disk.fileWithContents("b/kde/ark.desktop", "[Desktop Entry]\nName=Ark\n");
    disk.fileWithContents("b/readme.txt", "[Desktop Entry]\nName=No\n");
    disk.fileWithContents("elsewhere", "[Desktop Entry]\nName=Linked\n");
    disk.symbolicLink("../elsewhere", "b/linked.desktop");
    disk.symbolicLink("nowhere", "b/broken.desktop");
    const DiskReader reader(FileSystemCalls::system(), FileContentCalls::system());
    const FilePath folders[] = {disk.path("a"), disk.path("absent"), disk.path("b")};
    std::vector<std::string> found;
    for (const DesktopEntry& entry : desktopEntries(folders, {}, reader)) {
        found.push_back(entry.id + "=" + entry.name);
    }
    EXPECT_THAT(found, ElementsAre("broken=", "kde-ark=Ark", "linked=Linked", "vim=Mine"));
}

TEST(DiskReader, ALoopOfLinksEnds)
{
    DiskTree disk;
    disk.symbolicLink("b", "a");
    disk.symbolicLink("a", "b");
    const DiskReader reader(FileSystemCalls::system(), FileContentCalls::system());
    EXPECT_EQ(reader.linkedText(disk.path("a")), std::nullopt);
}

TEST(DiskReader, TextsAreReadWholeOrNotAtAll)
{
    DiskTree disk;
    disk.fileWithContents("a", "12345");
    disk.folder("folder");
    disk.fifo("pipe");
    const DiskReader reader(FileSystemCalls::system(), FileContentCalls::system());
    EXPECT_EQ(reader.text(disk.path("a"), 5), "12345");
    EXPECT_EQ(reader.text(disk.path("a"), 4), std::nullopt);
    EXPECT_EQ(reader.head(disk.path("a"), 3), "123");
    EXPECT_EQ(reader.text(disk.path("folder")), std::nullopt);
    EXPECT_EQ(reader.text(disk.path("pipe")), std::nullopt);
    EXPECT_EQ(reader.text(disk.path("absent")), std::nullopt);
}

} // namespace
} // namespace quorvane

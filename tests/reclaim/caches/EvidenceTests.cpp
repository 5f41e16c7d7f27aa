// SPDX-License-Identifier: MIT
#include "Evidence.h"

#include "DiskTree.h"
#include "FileContentCalls.h"
#include "FileSystemCalls.h"

#include <gtest/gtest.h>

#include <string>

namespace quorvane {
namespace {

constexpr std::string_view signature = "Signature: 8a477f597d28d172789f06886806bc55\n# a cache";

Evidence judged(const FilePath& folder)
{
    return evidenceFor(folder, FileSystemCalls::system(), FileContentCalls::system());
}

TEST(Evidence, AManifestBesideAFolderSpeaksForIt)
{
    const std::pair<const char*, const char*> pairs[] = {{"node_modules", "package.json"},
                                                         {"target", "Cargo.toml"},
                                                         {"target", "pom.xml"},
                                                         {"Pods", "Podfile"},
                                                         {".build", "Package.swift"},
                                                         {"vendor", "composer.json"},
                                                         {"vendor", "go.mod"},
                                                         {"dist", "package.json"},
                                                         {"build", "build.gradle"}};
    for (const auto& [folder, manifest] : pairs) {
        SCOPED_TRACE(folder);
        DiskTree disk;
        disk.folder(folder);
        EXPECT_EQ(judged(disk.path(folder)).basis, "");
        disk.file(manifest, 1);
        EXPECT_EQ(judged(disk.path(folder)).basis, std::string(manifest) + " beside it");
        EXPECT_EQ(judged(disk.path(folder)).caution, "");
    }
}

TEST(Evidence, ABuildFolderIsKnownByTheCacheOfCMakeInIt)
{
    DiskTree disk;
    disk.file("build/CMakeCache.txt", 1);
    EXPECT_EQ(judged(disk.path("build")).basis, "CMakeCache.txt in it");
}

TEST(Evidence, CommonNamesWithoutAManifestGetACaution)
{
    for (const char* const name : {"vendor", "build", "dist", "target"}) {
        SCOPED_TRACE(name);
        DiskTree disk;
        disk.folder(name);
        EXPECT_EQ(judged(disk.path(name)).caution, hasNoManifest);
    }
    DiskTree disk;
    disk.folder("node_modules");
    EXPECT_EQ(judged(disk.path("node_modules")).caution, "");
}

TEST(Evidence, AManifestOfAnotherToolDoesNotSpeakForAFolder)
{
    DiskTree disk;
    disk.folder("target");
    disk.file("package.json", 1);
    EXPECT_EQ(judged(disk.path("target")).caution, hasNoManifest);
}

TEST(Evidence, AFolderOrALinkInAManifestsPlaceSpeaksForNothing)
{
    DiskTree disk;
    disk.folder("target");
    disk.folder("Cargo.toml");
    EXPECT_EQ(judged(disk.path("target")).caution, hasNoManifest);
}

TEST(Evidence, AGitFolderAlwaysHoldsHistory)
{
    DiskTree disk;
    disk.fileWithContents(".git/CACHEDIR.TAG", signature);
    disk.file("package.json", 1);
    EXPECT_EQ(judged(disk.path(".git")).caution, "holds history: not made again");
    EXPECT_EQ(judged(disk.path(".git")).basis, "");
}

TEST(Evidence, ACacheTagSpeaksForAFolderOnlyWithItsSignature)
{
    DiskTree disk;
    disk.fileWithContents("a/target/CACHEDIR.TAG", signature);
    EXPECT_EQ(judged(disk.path("a/target")).basis, "CACHEDIR.TAG in it");
    EXPECT_EQ(judged(disk.path("a/target")).caution, "");
    disk.fileWithContents("b/target/CACHEDIR.TAG", "Signature: 8a477f597d28d172789f06886806bc5");
    EXPECT_EQ(judged(disk.path("b/target")).caution, hasNoManifest);
    disk.fileWithContents("c/target/CACHEDIR.TAG", " " + std::string(signature));
    EXPECT_EQ(judged(disk.path("c/target")).caution, hasNoManifest);
}

} // namespace
} // namespace quorvane

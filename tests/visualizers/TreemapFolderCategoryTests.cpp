// SPDX-License-Identifier: MIT
#include "FileNode.h"
#include "TreeText.h"
#include "TreemapLayout.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quorvane {
namespace {

using enum FileTypeCategory;

/// The category of a folder of that name that holds what the lines say.
FileTypeCategory categoryOf(const std::string& name, const std::string& contents = "a.mp3 5\n",
                            const std::string& rootPath = "/scan")
{
    const auto tree = test::treeFromText(name + "/\n  " + contents, {FilePath(rootPath), true});
    return TreemapLayout::folderCategory(tree->root().children().front(), false);
}

FileTypeCategory dominantOf(const std::string& text, int maxWalkDepth, int nodeBudget = 512,
                            bool disk = false)
{
    const auto tree = test::treeFromText(text);
    return TreemapLayout::dominantCategory(tree->root(), disk, maxWalkDepth, nodeBudget);
}

TEST(DominantCategory, TheCategoryOfMostBytesWins)
{
    EXPECT_EQ(dominantOf("a.mp4 5\nb.zip 3\nc.zip 3\n", 3), archive);
    EXPECT_EQ(dominantOf("a.mp4 7\nb.zip 3\nc.zip 3\n", 3), video);
}

TEST(DominantCategory, NothingSeenIsOther)
{
    EXPECT_EQ(dominantOf("", 3), other);
    EXPECT_EQ(dominantOf("empty/\n", 3), other);
}

TEST(DominantCategory, ZeroBytesCountAsOne)
{
    EXPECT_EQ(dominantOf("a.zip 0\n", 3), archive);
    EXPECT_EQ(dominantOf("a.mp4 1\nb.zip 0\nc.zip 0\n", 3), archive);
}

TEST(DominantCategory, EqualBytesGoToTheFirstCase)
{
    EXPECT_EQ(dominantOf("a.zip 4\nb.mp4 4\n", 3), video);
    EXPECT_EQ(dominantOf("a.zip 4\nb.unknown 4\n", 3), archive);
}

TEST(DominantCategory, TheSizeFieldIsTheCallers)
{
    EXPECT_EQ(dominantOf("a.mp4 9 0\nb.zip 1 4096\n", 3, 512, false), video);
    EXPECT_EQ(dominantOf("a.mp4 9 0\nb.zip 1 4096\n", 3, 512, true), archive);
}

TEST(DominantCategory, FoldersBelowTheDepthAreNotEntered)
{
    const std::string text = "a.zip 1\n"
                             "d/\n"
                             "  e/\n"
                             "    f.mp4 100\n";
    EXPECT_EQ(dominantOf(text, 0), archive);
    EXPECT_EQ(dominantOf(text, 1), archive);
    EXPECT_EQ(dominantOf(text, 2), video);
    EXPECT_EQ(dominantOf(text, -1), other);
}

TEST(DominantCategory, EachEntryOnTheWayCostsOne)
{
    // Order of the walk: d, f.mp4, a.zip, b.zip.
    const std::string text = "d/\n"
                             "  f.mp4 30\n"
                             "a.zip 20\n"
                             "b.zip 15\n";
    EXPECT_EQ(dominantOf(text, 3, 0), other);
    EXPECT_EQ(dominantOf(text, 3, 1), other);
    EXPECT_EQ(dominantOf(text, 3, 2), video);
    EXPECT_EQ(dominantOf(text, 3, 3), video);
    EXPECT_EQ(dominantOf(text, 3, 4), archive);
}

TEST(DominantCategory, TheBudgetIs512WhenNotGiven)
{
    // 511 videos of 2 bytes, then archives of 1 byte: the first archive is the last one seen.
    std::string text;
    for (int i = 0; i < 511; ++i) {
        text += "v" + std::to_string(i) + ".mp4 2\n";
    }
    for (int i = 0; i < 3000; ++i) {
        text += "z" + std::to_string(i) + ".zip 1\n";
    }
    EXPECT_EQ(dominantOf(text, 3), video);
    EXPECT_EQ(dominantOf(text, 3, 4000), archive);
}

TEST(FolderCategory, NamesOfProjects)
{
    for (const char* name :
         {"documents", "projects", "project", "quorvane", "marrowkit", "default project",
          "veltrane", "frontend", "portfolio", "work", "apps", "repos", "code"}) {
        EXPECT_EQ(categoryOf(name), project) << name;
    }
    EXPECT_EQ(categoryOf("WORK"), project);
    EXPECT_EQ(categoryOf(".Code"), project);
}

TEST(FolderCategory, NamesOfDevelopment)
{
    for (const char* name : {"node_modules", "npm",    ".npm",     ".m2",
                             "m2",           "vendor", "pods",     "deriveddata",
                             ".gradle",      "gradle", "src",      "build",
                             "dist",         "node",   "packages", "bower_components",
                             "venv",         "bin",    "target",   "carthage",
                             "support"}) {
        EXPECT_EQ(categoryOf(name), dev) << name;
    }
    EXPECT_EQ(categoryOf("DerivedData"), dev);
    EXPECT_EQ(categoryOf(".venv"), dev);
}

TEST(FolderCategory, AnEntryWithADotDoesNotMatchItself)
{
    // The key of ".swiftpm" is "swiftpm", which no set holds; so what it holds decides.
    EXPECT_EQ(categoryOf(".swiftpm", "a.mp3 5\n"), audio);
}

TEST(FolderCategory, NamesOfTheSystem)
{
    for (const char* name :
         {"system", "library", "caches", "cache", "applicationsupport", "containers", "groups",
          "usr", "contents", "sbin", "etc", "var", "frameworks", "kernel", "applications",
          "coreservices", "preferences"}) {
        EXPECT_EQ(categoryOf(name), FileTypeCategory::system) << name;
    }
    EXPECT_EQ(categoryOf("Library"), FileTypeCategory::system);
    EXPECT_EQ(categoryOf(".cache"), FileTypeCategory::system);
}

TEST(FolderCategory, OnlyOneLeadingDotIsRemoved)
{
    EXPECT_EQ(categoryOf("..cache"), audio);
    EXPECT_EQ(categoryOf("x.cache"), audio);
}

TEST(FolderCategory, UnknownNamesGoByWhatTheyHold)
{
    EXPECT_EQ(categoryOf("Stuff", "a.mp3 5\n"), audio);
    EXPECT_EQ(categoryOf("Stuff", "a.unknown 5\n"), other);
    EXPECT_EQ(categoryOf("Stuff", "a.swift 5\n"), project);
    EXPECT_EQ(categoryOf("Stuff", "a.py 5\n"), project);
}

TEST(FolderCategory, BelowADocumentsFolderAllIsProjectButDevelopment)
{
    for (const char* root : {"/home/x/Documents", "/DOCUMENTS", "/home/documents/y"}) {
        EXPECT_EQ(categoryOf("Music", "a.mp3 5\n", root), project) << root;
        EXPECT_EQ(categoryOf("Library", "a.mp3 5\n", root), project) << root;
        EXPECT_EQ(categoryOf("work", "a.mp3 5\n", root), project) << root;
        EXPECT_EQ(categoryOf("build", "a.mp3 5\n", root), dev) << root;
    }
}

TEST(FolderCategory, OnlyAWholePathComponentIsADocumentsFolder)
{
    for (const char* root : {"/home/MyDocuments", "/home/documents.old/x", "/documents2", "/"}) {
        EXPECT_EQ(categoryOf("Music", "a.mp3 5\n", root), audio) << root;
    }
}

TEST(FolderCategory, FindsDocumentsAnywhereOnTheWayUp)
{
    const auto tree = test::treeFromText("a/\n"
                                         "  DocuMents/\n"
                                         "    b/\n"
                                         "      Library/\n"
                                         "        x.mp3 1\n"
                                         "  Documentsx/\n"
                                         "    y.mp3 1\n");
    const auto category = [&](const char* path) {
        return TreemapLayout::folderCategory(test::nodeAt(tree->root(), path), false);
    };
    EXPECT_EQ(category("a/DocuMents"), project);
    EXPECT_EQ(category("a/DocuMents/b"), project);
    EXPECT_EQ(category("a/DocuMents/b/Library"), project);
    EXPECT_EQ(category("a/Documentsx"), audio);
    EXPECT_EQ(category("a"), audio);
    EXPECT_EQ(category(""), audio);
}

TEST(FolderCategory, ARootNamedByItsWholePathGoesByTheLastComponent)
{
    NodeValues root;
    root.name = "/opt/Cache";
    root.metadata.isDirectory = true;
    const auto tree = FileTree::create(FilePath("/opt/Cache"), root);
    EXPECT_EQ(TreemapLayout::folderCategory(tree->root(), false), FileTypeCategory::system);
    root.name = "/";
    const auto whole = FileTree::create(FilePath("/"), root);
    EXPECT_EQ(TreemapLayout::folderCategory(whole->root(), false), other);
}

} // namespace
} // namespace quorvane

// SPDX-License-Identifier: MIT
#include "InspectorFacts.h"

#include "TreeText.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <memory>
#include <optional>
#include <string>

namespace quorvane {
namespace {

constexpr std::int64_t now = 1'000'000;

class InspectorFactsTests : public testing::Test
{
protected:
    const FileNode& node(const char* path) { return test::nodeAt(m_tree->root(), path); }

    /// "label=value" of one line of the panel; nothing when the panel leaves it out.
    std::optional<std::string> value(const char* path, const char* label,
                                     std::optional<std::int64_t> created = std::nullopt)
    {
        for (const InspectorFact& fact : inspectorFacts(node(path), created, now)) {
            if (fact.label == QLatin1String(label)) {
                return fact.value.toStdString();
            }
        }
        return std::nullopt;
    }

    std::shared_ptr<FileTree> m_tree = test::treeFromText("folder/\n"
                                                          "  packed 3072 1024 @999880\n"
                                                          "  padded 1024 4096\n"
                                                          "empty/\n"
                                                          "zeros/\n"
                                                          "  nothing 0\n"
                                                          "link@ 12\n");
};

TEST_F(InspectorFactsTests, TellsAFolderInOrder)
{
    QStringList labels;
    for (const InspectorFact& fact : inspectorFacts(node("folder"), std::nullopt, now)) {
        labels.append(fact.label);
    }
    EXPECT_EQ(labels, (QStringList{QStringLiteral("Size"), QStringLiteral("Size on disk"),
                                   QStringLiteral("Folders"), QStringLiteral("Files"),
                                   QStringLiteral("Share of parent"), QStringLiteral("Modified")}));
    EXPECT_EQ(value("folder", "Size"), "4.0 KB");
    EXPECT_EQ(value("folder", "Size on disk"), "5.0 KB");
    EXPECT_EQ(value("folder", "Folders"), "1");
    EXPECT_EQ(value("folder", "Files"), "2");
}

TEST_F(InspectorFactsTests, TellsWhatTheFileSystemSavesOnlyWhenItDoes)
{
    EXPECT_EQ(value("folder/packed", "Saved by FS"), "2.0 KB");
    EXPECT_EQ(value("folder/padded", "Saved by FS"), std::nullopt);
    EXPECT_EQ(value("zeros/nothing", "Saved by FS"), std::nullopt);
}

TEST_F(InspectorFactsTests, TheShareIsOneOfLogicalBytes)
{
    EXPECT_EQ(value("folder/packed", "Share of parent"), "75.0%");
    EXPECT_EQ(value("folder/padded", "Share of parent"), "25.0%");
    EXPECT_EQ(value("zeros/nothing", "Share of parent"), std::nullopt);
    EXPECT_EQ(value("", "Share of parent"), std::nullopt);
}

TEST_F(InspectorFactsTests, TellsDatesAgainstNow)
{
    EXPECT_EQ(value("folder/packed", "Modified"), "2 min. ago");
    EXPECT_EQ(value("folder/packed", "Created", now - 3600), "1 hr. ago");
    EXPECT_EQ(value("folder/packed", "Created"), std::nullopt);
}

TEST_F(InspectorFactsTests, OnlyAFolderWithNothingInsideTellsItsCreation)
{
    EXPECT_EQ(value("folder", "Created", now), std::nullopt);
    EXPECT_EQ(value("empty", "Created", now), "0 sec. ago");
    EXPECT_TRUE(tellsCreation(node("empty")));
    EXPECT_FALSE(tellsCreation(node("folder")));
    EXPECT_TRUE(tellsCreation(node("link")));
}

TEST_F(InspectorFactsTests, NamesTheKinds)
{
    EXPECT_EQ(kindOf(node("folder")), QStringLiteral("Folder"));
    EXPECT_EQ(kindOf(node("link")), QStringLiteral("Symbolic Link"));
    EXPECT_EQ(kindOf(node("folder/packed")), QStringLiteral("File"));
}

} // namespace
} // namespace quorvane

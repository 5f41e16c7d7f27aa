// SPDX-License-Identifier: MIT
#include "DiskListing.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace quorvane {
namespace {

using testing::TemporaryFolder;

/// A root of one folder over the whole canvas, which holds a half and two quarters.
constexpr const char* plainDump = R"({"id":0,"path":"/r","isDirectory":true}
{"id":1,"path":"/r/box","isDirectory":true}
{"id":2,"path":"/r/box/half.mp4","isDirectory":false,"isRegularFile":true,"logicalSize":2000,"sizeOnDisk":1}
{"id":3,"path":"/r/box/node_modules","isDirectory":true}
{"id":4,"path":"/r/box/node_modules/a.js","isDirectory":false,"isRegularFile":true,"logicalSize":1000,"sizeOnDisk":8}
{"id":5,"path":"/r/box/quarter.txt","isDirectory":false,"isRegularFile":true,"logicalSize":1000,"sizeOnDisk":1}
)";

class TreemapCommand : public ::testing::Test
{
protected:
    TreemapCommand() { std::ofstream(m_folder.path("dump")) << plainDump; }

    std::vector<QJsonObject> slices(const std::string& options)
    {
        std::ostringstream command;
        command << QUORVANE_BENCH " treemap --dump " << m_folder.path("dump") << ' ' << options
                << " >" << m_folder.path("slices") << " 2>" << m_folder.path("messages");
        EXPECT_EQ(std::system(command.str().c_str()), 0);
        std::vector<QJsonObject> result;
        std::ifstream in(m_folder.path("slices"));
        for (std::string line; std::getline(in, line);) {
            result.push_back(QJsonDocument::fromJson(QByteArray::fromStdString(line)).object());
        }
        return result;
    }

    std::string messages()
    {
        std::ostringstream text;
        text << std::ifstream(m_folder.path("messages")).rdbuf();
        return text.str();
    }

private:
    TemporaryFolder m_folder;
};

std::vector<std::int64_t> idsOf(const std::vector<QJsonObject>& slices)
{
    std::vector<std::int64_t> ids;
    for (const QJsonObject& slice : slices) {
        ids.push_back(slice[QLatin1String("id")].toInteger());
    }
    return ids;
}

TEST_F(TreemapCommand, PrintsEverySliceWithAllItsMembers)
{
    const std::vector<QJsonObject> found = slices("--size 1000x800 --mode logical");
    ASSERT_EQ(idsOf(found), (std::vector<std::int64_t>{1, 2, 3, 4, 5}));
    const QJsonObject& box = found.front();
    EXPECT_EQ(box[QLatin1String("path")].toString(), QStringLiteral("/r/box"));
    EXPECT_EQ(box[QLatin1String("nodeID")].toInteger(), 1);
    EXPECT_EQ(box[QLatin1String("depth")].toInteger(-1), 0);
    EXPECT_EQ(box[QLatin1String("width")].toDouble(), 1000);
    // The top zone gives two points to the gutter, though no band follows.
    EXPECT_EQ(box[QLatin1String("height")].toDouble(), 798);
    EXPECT_TRUE(box[QLatin1String("isFolder")].toBool());
    EXPECT_TRUE(box[QLatin1String("labelOverride")].isNull());
    EXPECT_TRUE(box[QLatin1String("folderBodyCategory")].isString());
    EXPECT_FALSE(box[QLatin1String("isAggregateTile")].toBool(true));
    for (const char* key :
         {"x", "y", "aggregateCount", "aggregateBytes", "aggregateCategory", "rootIndex"}) {
        EXPECT_TRUE(box.contains(QLatin1String(key))) << key;
    }
    EXPECT_TRUE(found[1][QLatin1String("folderBodyCategory")].isNull());
    EXPECT_EQ(found[2][QLatin1String("folderBodyCategory")].toString(), QStringLiteral("dev"));
    EXPECT_TRUE(messages().starts_with("layout seconds: ")) << messages();
}

TEST_F(TreemapCommand, ModeDecidesTheMeasure)
{
    // On disk the folder is the heaviest and comes before the film.
    EXPECT_EQ(idsOf(slices("--size 1000x800 --mode disk")),
              (std::vector<std::int64_t>{1, 3, 4, 2, 5}));
}

TEST_F(TreemapCommand, HiddenFamiliesTakeNoPart)
{
    EXPECT_EQ(idsOf(slices("--size 1000x800 --mode logical --hide Node.js")),
              (std::vector<std::int64_t>{1, 2, 5}));
}

TEST_F(TreemapCommand, FocusLaysOutTheFolderAtThatPath)
{
    const std::vector<std::int64_t> expected{2, 3, 5, 4};
    EXPECT_EQ(idsOf(slices("--size 1000x800 --mode logical --focus box")), expected);
    EXPECT_EQ(idsOf(slices("--size 1000x800 --mode logical --focus /r/box")), expected);
}

} // namespace
} // namespace quorvane

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

/// Half a day after the epoch, so that the month is the same in every time zone.
constexpr const char* plainDump = R"({"id":0,"path":"/r","isDirectory":true}
{"id":1,"path":"/r/box","isDirectory":true}
{"id":2,"path":"/r/box/a.mp4","isDirectory":false,"isRegularFile":true,"logicalSize":60000000,"sizeOnDisk":1,"dateModified":1296000}
{"id":3,"path":"/r/b.txt","isDirectory":false,"isRegularFile":true,"logicalSize":20000000,"sizeOnDisk":3,"dateModified":1296000}
)";

class LayoutCommand : public ::testing::Test
{
protected:
    LayoutCommand() { std::ofstream(m_folder.path("dump")) << plainDump; }

    int run(const std::string& words)
    {
        const std::string command = std::string(QUORVANE_BENCH) + " layout " + words + " --dump " +
                                    m_folder.path("dump") + " >" + m_folder.path("out") + " 2>" +
                                    m_folder.path("messages");
        return std::system(command.c_str());
    }

    std::vector<QJsonObject> lines(const std::string& words)
    {
        EXPECT_EQ(run(words), 0) << words;
        std::vector<QJsonObject> result;
        std::ifstream in(m_folder.path("out"));
        for (std::string line; std::getline(in, line);) {
            result.push_back(QJsonDocument::fromJson(QByteArray::fromStdString(line)).object());
        }
        std::ostringstream text;
        text << std::ifstream(m_folder.path("messages")).rdbuf();
        EXPECT_TRUE(text.str().starts_with("layout seconds: ")) << text.str();
        return result;
    }

    std::string firstLine(const std::string& words)
    {
        EXPECT_EQ(run(words), 0) << words;
        std::ifstream in(m_folder.path("out"));
        std::string line;
        std::getline(in, line);
        return line;
    }

    static QStringList paths(const std::vector<QJsonObject>& lines)
    {
        QStringList result;
        for (const QJsonObject& line : lines) {
            result.push_back(line[QLatin1String("path")].toString());
        }
        return result;
    }

    static void expectMembers(const QJsonObject& line, const QStringList& keys)
    {
        QStringList sorted = keys;
        sorted.sort();
        EXPECT_EQ(line.keys(), sorted);
    }

private:
    TemporaryFolder m_folder;
};

const QStringList boxAndFiles{QStringLiteral("/r/box"), QStringLiteral("/r/box/a.mp4"),
                              QStringLiteral("/r/b.txt")};

TEST_F(LayoutCommand, PrintsTheSunburst)
{
    const auto found = lines("sunburst --size 800x800 --mode logical");
    EXPECT_EQ(paths(found), boxAndFiles);
    expectMembers(found[0], {QStringLiteral("path"), QStringLiteral("innerRadius"),
                             QStringLiteral("outerRadius"), QStringLiteral("startAngle"),
                             QStringLiteral("endAngle"), QStringLiteral("depth")});
    EXPECT_EQ(found[0][QLatin1String("outerRadius")].toDouble(), 200);
}

TEST_F(LayoutCommand, WritesMembersInOrderAndNumbersWithSeventeenDigits)
{
    // Twelve o'clock, and three quarters of a turn further.
    EXPECT_EQ(firstLine("sunburst --size 801x803 --mode logical"),
              R"({"path":"/r/box","innerRadius":100.125,"outerRadius":200.25,)"
              R"("startAngle":-1.5707963267948966,"endAngle":3.1415926535897931,"depth":0})");
    EXPECT_EQ(firstLine("flame --size 801x803 --mode logical"),
              R"({"path":"/r/box","x":4,"y":8,"width":797,"height":31})");
    EXPECT_EQ(firstLine("mindmap --mode logical"),
              R"({"path":"/r/box","inner":8,"outer":78,"start":-1.5707963267948966,)"
              R"("end":0.78539816339744828,"weight":0.75,"hasChildren":true})");
    EXPECT_EQ(firstLine("agemap --mode logical"), R"({"month":"1970-01","bytes":80000000})");
    EXPECT_EQ(firstLine("topsizes --mode logical"), R"({"rank":1,"path":"/r","bytes":80000000})");
}

TEST_F(LayoutCommand, PrintsTheFlameGraph)
{
    const auto found = lines("flame --size 800x800 --mode logical");
    EXPECT_EQ(paths(found),
              (QStringList{QStringLiteral("/r/box"), QStringLiteral("/r/box/a.mp4")}));
    expectMembers(found[0], {QStringLiteral("path"), QStringLiteral("x"), QStringLiteral("y"),
                             QStringLiteral("width"), QStringLiteral("height")});
}

TEST_F(LayoutCommand, PrintsTheBubblesInTheOrderOfPainting)
{
    const auto found = lines("bubbles --size 800x800 --mode logical");
    EXPECT_EQ(paths(found), (QStringList{QStringLiteral("/r/b.txt"), QStringLiteral("/r/box")}));
    expectMembers(found[0], {QStringLiteral("path"), QStringLiteral("x"), QStringLiteral("y"),
                             QStringLiteral("radius"), QStringLiteral("level")});
    const auto nested = lines("bubbles --size 800x800 --focus box");
    EXPECT_EQ(nested[0][QLatin1String("level")].toInt(-1), 0);
    // 800 × 0.5 - 30, nine tenths of it.
    EXPECT_DOUBLE_EQ(nested[0][QLatin1String("radius")].toDouble(), 333);
}

TEST_F(LayoutCommand, PrintsTheMindMap)
{
    const auto found = lines("mindmap --mode logical");
    EXPECT_EQ(paths(found), (QStringList{QStringLiteral("/r/box"), QStringLiteral("/r/b.txt"),
                                         QStringLiteral("/r/box/a.mp4")}));
    expectMembers(found[0],
                  {QStringLiteral("path"), QStringLiteral("inner"), QStringLiteral("outer"),
                   QStringLiteral("start"), QStringLiteral("end"), QStringLiteral("weight"),
                   QStringLiteral("hasChildren")});
}

TEST_F(LayoutCommand, PrintsMonthsBeforeUntouchedFiles)
{
    const auto found = lines("agemap --mode logical");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0][QLatin1String("month")].toString(), QStringLiteral("1970-01"));
    EXPECT_EQ(found[0][QLatin1String("bytes")].toInteger(), 80000000);
    EXPECT_EQ(found[1][QLatin1String("path")].toString(), QStringLiteral("/r/box/a.mp4"));
    EXPECT_EQ(found[1][QLatin1String("bytes")].toInteger(), 60000000);
}

TEST_F(LayoutCommand, RanksTheWholeTreeWhateverIsInFocus)
{
    const auto found = lines("topsizes --mode disk --focus box");
    EXPECT_EQ(paths(found),
              (QStringList{QStringLiteral("/r"), QStringLiteral("/r/b.txt"),
                           QStringLiteral("/r/box/a.mp4"), QStringLiteral("/r/box")}));
    EXPECT_EQ(found[1][QLatin1String("rank")].toInt(), 2);
    EXPECT_EQ(found[1][QLatin1String("bytes")].toInt(), 3);
}

TEST_F(LayoutCommand, UnknownKindIsWrongUsage)
{
    EXPECT_EQ(WEXITSTATUS(run("pie")), 2);
}

} // namespace
} // namespace quorvane

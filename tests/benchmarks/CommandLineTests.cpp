// SPDX-License-Identifier: MIT
#include "Arguments.h"
#include "CanvasArguments.h"
#include "DiskListing.h"
#include "DumpReader.h"
#include "TreeSource.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace quorvane {
namespace {

using testing::TemporaryFolder;

constexpr OptionRule rules[] = {{"size", true}, {"floor", false}};

Arguments::Result parsed(const std::vector<const char*>& words)
{
    return Arguments::parse(words, rules);
}

struct Outcome
{
    int code = -1;
    std::string output; ///< standard output and standard error together
};

Outcome run(const std::string& arguments)
{
    Outcome outcome;
    FILE* const pipe = popen((QUORVANE_BENCH " " + arguments + " 2>&1").c_str(), "r");
    std::array<char, 4096> chunk;
    while (const std::size_t got = std::fread(chunk.data(), 1, chunk.size(), pipe)) {
        outcome.output.append(chunk.data(), got);
    }
    outcome.code = WEXITSTATUS(pclose(pipe));
    return outcome;
}

TEST(Arguments, OptionsAndOperandsMixFreely)
{
    const auto result = parsed({"a", "--size", "1x2", "--floor", "b", "--size=3x4", "--", "--c"});
    const Arguments& arguments = std::get<Arguments>(result);
    EXPECT_EQ(arguments.operands(), (std::vector<std::string_view>{"a", "b", "--c"}));
    EXPECT_TRUE(arguments.has("floor"));
    EXPECT_EQ(arguments.value("size"), "3x4");
    EXPECT_EQ(arguments.values("size"), (std::vector<std::string_view>{"1x2", "3x4"}));
    EXPECT_FALSE(arguments.has("other"));
}

TEST(Arguments, FaultsNameTheOption)
{
    EXPECT_EQ(std::get<std::string>(parsed({"--wide"})), "unknown option --wide");
    EXPECT_EQ(std::get<std::string>(parsed({"--size"})), "--size needs a value");
    EXPECT_EQ(std::get<std::string>(parsed({"--floor=1"})), "--floor takes no value");
}

TEST(CanvasSize, IsTwoLengthsWithACross)
{
    const std::optional<CanvasSize> size = canvasSizeFromText("800.5x600");
    ASSERT_TRUE(size);
    EXPECT_EQ(size->width, 800.5);
    EXPECT_EQ(size->height, 600);
    for (const char* text : {"", "x", "800", "800x", "x600", "-1x5", "1x2x3", "infx1", "1 x2"}) {
        EXPECT_FALSE(canvasSizeFromText(text)) << text;
    }
}

TEST(TreeSource, NodesAreFoundByRelativeAndAbsolutePaths)
{
    std::istringstream in(R"({"id":0,"path":"/r/s","isDirectory":true}
{"id":1,"path":"/r/s/d","isDirectory":true}
{"id":2,"path":"/r/s/d/e","isDirectory":true}
)");
    const DumpResult result = readDump(in);
    FileTree& tree = *std::get<std::shared_ptr<FileTree>>(result);
    EXPECT_EQ(nodeAt(tree, ""), &tree.root());
    EXPECT_EQ(nodeAt(tree, "."), &tree.root());
    EXPECT_EQ(nodeAt(tree, "/r/s/"), &tree.root());
    ASSERT_NE(nodeAt(tree, "d/e"), nullptr);
    EXPECT_EQ(nodeAt(tree, "d/e")->id(), 2);
    EXPECT_EQ(nodeAt(tree, "/r/s/d/e"), nodeAt(tree, "./d//e/"));
    EXPECT_EQ(nodeAt(tree, "/r"), nullptr);
    EXPECT_EQ(nodeAt(tree, "/d/e"), nullptr);
    EXPECT_EQ(nodeAt(tree, "d/x"), nullptr);
}

TEST(TreeSource, FoldersAreTakenFromTheCurrentOne)
{
    const std::string here = std::filesystem::current_path().native();
    EXPECT_EQ(folderFromArgument("a/./b/").bytes(), here + "/a/b");
    EXPECT_EQ(folderFromArgument(".").bytes(), here);
    EXPECT_EQ(folderFromArgument("/").bytes(), "/");
    EXPECT_EQ(folderFromArgument("//x/../y").bytes(), "/x/../y");
}

TEST(BenchProgram, EndsWith2ForWrongUsage)
{
    for (const char* arguments : {"",
                                  "fly",
                                  "scan",
                                  "scan a b",
                                  "scan / --workers many",
                                  "tree",
                                  "tree x --entries 5",
                                  "tree x --entries -1 --seed 1",
                                  "dump",
                                  "dump / --dump x",
                                  "treemap / --size big",
                                  "treemap / --mode both",
                                  "treemap / --hide Everything",
                                  "dump / --sideways",
                                  "duplicates",
                                  "duplicates a b",
                                  "duplicates / --threads -1",
                                  "duplicates / --threads 257",
                                  "duplicate-corpus",
                                  "duplicate-corpus x --files 5 --bytes 10240",
                                  "duplicate-corpus x --files 0 --bytes 10240 --seed 1",
                                  "duplicate-corpus x --files 5 --bytes 10239 --seed 1"}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.code, 2) << arguments;
        EXPECT_FALSE(outcome.output.empty()) << arguments;
    }
}

TEST(BenchProgram, EndsWith1WhenTheWorkFails)
{
    const TemporaryFolder folder;
    for (const std::string& arguments :
         {std::string("scan ") + folder.path("none") + " --json",
          std::string("scan --floor ") + folder.path("none"),
          std::string("dump ") + folder.path("none"), "dump --dump " + folder.path("none"),
          "dump --dump " + folder.path(), "treemap " + folder.path() + " --focus none",
          "duplicates " + folder.path("none"),
          "duplicate-corpus " + folder.path("none/x") + " --files 1 --bytes 2048 --seed 1"}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.code, 1) << arguments << outcome.output;
    }
    EXPECT_EQ(run("scan " + folder.path("none")).output,
              "quorvane-bench: Cannot access " + folder.path("none") + "\n");
}

TEST(BenchProgram, EndsWith2ForAMalformedDump)
{
    const TemporaryFolder folder;
    std::ofstream(folder.path("bad")) << "{\"id\":0,\"path\":\"/\",\"isDirectory\":true}\nxyz\n";
    const Outcome outcome = run("treemap --dump " + folder.path("bad"));
    EXPECT_EQ(outcome.code, 2);
    EXPECT_NE(outcome.output.find("line 2: "), std::string::npos) << outcome.output;
}

TEST(BenchProgram, PaintsWhereItIsBuiltWithTheScreens)
{
    const TemporaryFolder folder;
    testing::makeFile(folder.path("one.mp4"), 5000);
    testing::makeFile(folder.path("two.txt"), 5000);
    const Outcome outcome = run("paint " + folder.path() + " --size 300x200");
    if (!QUORVANE_BENCH_PAINTS) {
        EXPECT_EQ(outcome.code, 2);
        return;
    }
    ASSERT_EQ(outcome.code, 0) << outcome.output;
    const std::size_t start = outcome.output.find('{');
    const QJsonObject times =
        QJsonDocument::fromJson(QByteArray::fromStdString(outcome.output.substr(start))).object();
    EXPECT_EQ(times[QLatin1String("slices")].toInteger(), 2);
    for (const char* key : {"layoutMilliseconds", "repaintMilliseconds", "hoverMilliseconds"}) {
        EXPECT_GT(times[QLatin1String(key)].toDouble(), 0) << key;
    }
    EXPECT_EQ(run("paint " + folder.path() + " --size 300x200 --scale 2").code, 0);
    const Outcome refused = run("paint " + folder.path() + " --scale 5");
    EXPECT_EQ(refused.code, 2);
    EXPECT_NE(refused.output.find("--scale needs a number from 1 to 4"), std::string::npos);
}

TEST(BenchProgram, ScanAndFloorAgreeOnWhatIsThere)
{
    const TemporaryFolder folder;
    const std::string tree = folder.path("tree");
    ASSERT_EQ(run("tree " + tree + " --entries 2000 --seed 4").code, 0);
    testing::settle(tree);
    const auto measured = [&](const std::string& options) {
        const Outcome outcome = run("scan " + tree + " --json " + options);
        EXPECT_EQ(outcome.code, 0);
        return QJsonDocument::fromJson(QByteArray::fromStdString(outcome.output)).object();
    };
    const QJsonObject scan = measured("--workers 2");
    const QJsonObject floor = measured("--workers 2 --floor");
    EXPECT_EQ(scan[QLatin1String("entries")].toInteger(), 2000);
    for (const char* key :
         {"entries", "files", "directories", "logicalBytes", "diskBytes", "workers"}) {
        EXPECT_TRUE(scan.contains(QLatin1String(key))) << key;
        EXPECT_EQ(scan[QLatin1String(key)], floor[QLatin1String(key)]) << key;
    }
    for (const char* key : {"wallSeconds", "cpuSeconds", "finalPassSeconds", "peakMemoryBytes",
                            "treeBytes", "bytesPerEntry", "dropSeconds"}) {
        EXPECT_TRUE(scan[QLatin1String(key)].isDouble()) << key;
        EXPECT_TRUE(floor[QLatin1String(key)].isDouble()) << key;
    }
    EXPECT_GT(scan[QLatin1String("treeBytes")].toInteger(), 2000 * 15);
}

std::vector<QJsonObject> linesOf(const std::string& output)
{
    std::vector<QJsonObject> lines;
    std::istringstream in(output);
    for (std::string line; std::getline(in, line);) {
        // Standard error tells seconds in between.
        if (line.starts_with('{')) {
            lines.push_back(QJsonDocument::fromJson(QByteArray::fromStdString(line)).object());
        }
    }
    return lines;
}

void fill(const std::filesystem::path& file, std::size_t bytes)
{
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << std::string(bytes, 'x');
}

TEST(QuickWinsCommand, PrintsHomeTargetsAndHitsSortedAsOneAndHidesFamilies)
{
    const TemporaryFolder folder;
    fill(folder.path("Library/WebKit/a"), 20000);
    fill(folder.path("p/node_modules/a"), 900000);
    fill(folder.path("q/plain/.git/a"), 300);
    const std::string home = folder.path();
    const std::string command = "quick-wins --home " + home + " " + home;
    const auto wins = linesOf(run(command).output);
    ASSERT_EQ(wins.size(), 3U);
    EXPECT_EQ(wins[0][QStringLiteral("name")].toString(), QStringLiteral("node_modules"));
    EXPECT_EQ(wins[0][QStringLiteral("bytes")].toInteger(), 900000);
    EXPECT_EQ(wins[0][QStringLiteral("family")].toString(), QStringLiteral("Node.js"));
    EXPECT_EQ(wins[1][QStringLiteral("id")].toString(), QStringLiteral("Library/WebKit"));
    EXPECT_EQ(wins[2][QStringLiteral("name")].toString(), QStringLiteral(".git"));
    EXPECT_FALSE(wins[2].contains(QStringLiteral("family")));
    EXPECT_EQ(linesOf(run(command + " --hide Node.js --hide Caches").output).size(), 1U);
    EXPECT_EQ(linesOf(run(command + " --limit 1").output).size(), 2U);
    EXPECT_EQ(run("quick-wins " + home).code, 2);
    EXPECT_EQ(run(command + " --limit x").code, 2);
}

TEST(DevCachesCommand, PrintsCachesAndDeepBuildFolders)
{
    const TemporaryFolder folder;
    fill(folder.path(".npm/_cacache/a"), 100);
    fill(folder.path("p/node_modules/a"), 200);
    const std::string command = "dev-caches --home " + folder.path();
    const auto caches = linesOf(run(command).output);
    ASSERT_EQ(caches.size(), 1U);
    EXPECT_EQ(caches[0][QStringLiteral("name")].toString(), QStringLiteral("npm Cache"));
    EXPECT_EQ(caches[0][QStringLiteral("category")].toString(), QStringLiteral("packageManagers"));
    EXPECT_EQ(caches[0][QStringLiteral("bytes")].toInteger(), 100);
    EXPECT_EQ(caches[0][QStringLiteral("itemCount")].toInteger(), 1);
    EXPECT_TRUE(caches[0].contains(QStringLiteral("lastModified")));
    const auto found = linesOf(run(command + " --deep").output);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0][QStringLiteral("bytes")].toInteger(), 200);
    EXPECT_EQ(run("dev-caches").code, 2);
}

TEST(DirectoryBytesCommand, PrintsEachPathInTheOrderGiven)
{
    const TemporaryFolder folder;
    fill(folder.path("a"), 123);
    const std::string home = folder.path();
    const auto sizes = linesOf(run("directory-bytes " + home + "/a " + home + "/none").output);
    ASSERT_EQ(sizes.size(), 2U);
    EXPECT_EQ(sizes[0][QStringLiteral("bytes")].toInteger(), 123);
    EXPECT_EQ(sizes[1][QStringLiteral("bytes")].toInteger(), 0);
    EXPECT_EQ(run("directory-bytes").code, 2);
}

} // namespace
} // namespace quorvane

// SPDX-License-Identifier: MIT
#include "DiskListing.h"
#include "DiskScanner.h"
#include "DumpReader.h"
#include "DumpWriter.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <set>
#include <sstream>

namespace quorvane {
namespace {

using testing::DiskListing;
using testing::ListedEntry;
using testing::TemporaryFolder;

std::shared_ptr<FileTree> scanned(const std::string& folder)
{
    return std::get<std::shared_ptr<FileTree>>(DiskScanner(2).scan(FilePath(folder)));
}

std::string dumpOf(FileTree& tree)
{
    std::ostringstream out;
    EXPECT_TRUE(writeDump(tree.root(), out));
    return out.str();
}

std::shared_ptr<FileTree> treeOf(const std::string& dump)
{
    std::istringstream in(dump);
    const DumpResult result = readDump(in);
    if (const DumpFault* fault = std::get_if<DumpFault>(&result)) {
        ADD_FAILURE() << fault->text();
        return nullptr;
    }
    return std::get<std::shared_ptr<FileTree>>(result);
}

DumpFault faultOf(const std::string& dump)
{
    std::istringstream in(dump);
    const DumpResult result = readDump(in);
    const DumpFault* const fault = std::get_if<DumpFault>(&result);
    EXPECT_NE(fault, nullptr) << dump;
    return fault == nullptr ? DumpFault{} : *fault;
}

std::vector<QJsonObject> objectsOf(const std::string& dump)
{
    std::vector<QJsonObject> objects;
    std::istringstream in(dump);
    for (std::string line; std::getline(in, line);) {
        objects.push_back(QJsonDocument::fromJson(QByteArray::fromStdString(line)).object());
        EXPECT_FALSE(objects.back().isEmpty()) << line;
    }
    return objects;
}

std::string rawPath(const QJsonObject& object)
{
    const QString hex = object[QLatin1String("rawPath")].toString();
    return hex.isEmpty() ? object[QLatin1String("path")].toString().toStdString()
                         : QByteArray::fromHex(hex.toLatin1()).toStdString();
}

ListedEntry entryOf(const QJsonObject& object)
{
    const auto number = [&](const char* key) { return object[QLatin1String(key)].toInteger(-1); };
    const auto flag = [&](const char* key) { return object[QLatin1String(key)].toBool(); };
    ListedEntry entry;
    entry.isDirectory = flag("isDirectory");
    entry.isSymbolicLink = flag("isSymbolicLink");
    entry.isRegularFile = flag("isRegularFile");
    entry.logicalSize = number("logicalSize");
    entry.sizeOnDisk = number("sizeOnDisk");
    entry.dateModified = number("dateModified");
    entry.scannedBytes = number("scannedBytes");
    entry.scannedBytesOnDisk = number("scannedBytesOnDisk");
    entry.fileCount = number("fileCount");
    entry.directoryCount = number("directoryCount");
    return entry;
}

TEST(Dump, TellsOfANastyTreeWhatTheDiskTells)
{
    const TemporaryFolder folder;
    testing::makeNastyTree(folder.path());
    DiskListing listing = testing::listDisk(folder.path());
    const std::vector<std::string> order = testing::depthFirst(listing);
    const std::vector<QJsonObject> objects = objectsOf(dumpOf(*scanned(folder.path())));
    ASSERT_EQ(objects.size(), order.size());
    std::set<std::int64_t> ids;
    for (std::size_t i = 0; i < order.size(); ++i) {
        const std::string path = order[i].empty() ? folder.path() : folder.path(order[i]);
        ListedEntry& expected = listing.at(order[i]);
        expected.children.clear();
        ASSERT_EQ(rawPath(objects[i]), path);
        ASSERT_EQ(entryOf(objects[i]), expected) << path;
        ids.insert(objects[i][QLatin1String("id")].toInteger(-1));
    }
    EXPECT_EQ(ids.size(), order.size());
    EXPECT_EQ(*ids.begin(), 0);
}

TEST(Dump, NamesThatAreNotUtf8ShowReplacementCharactersAndCarryTheirBytes)
{
    const TemporaryFolder folder;
    testing::makeFile(folder.path("bad\xFF.txt"), 2);
    testing::makeFile(folder.path("fine.txt"), 1);
    const std::vector<QJsonObject> objects = objectsOf(dumpOf(*scanned(folder.path())));
    ASSERT_EQ(objects.size(), 3U);
    const QString name = QStringLiteral("bad\uFFFD.txt");
    EXPECT_EQ(objects[1][QLatin1String("name")].toString(), name);
    EXPECT_EQ(objects[1][QLatin1String("path")].toString(),
              QString::fromStdString(folder.path()) + QLatin1Char('/') + name);
    EXPECT_TRUE(objects[1][QLatin1String("rawPath")].toString().endsWith(
        QLatin1String("626164ff2e747874")));
    EXPECT_FALSE(objects[2].contains(QLatin1String("rawPath")));
}

TEST(Dump, ReadAndWrittenAgainIsTheSame)
{
    const TemporaryFolder folder;
    testing::makeNastyTree(folder.path());
    const std::string dump = dumpOf(*scanned(folder.path()));
    const auto tree = treeOf(dump);
    ASSERT_NE(tree, nullptr);
    EXPECT_TRUE(dumpOf(*tree) == dump);
}

TEST(Dump, IdsOrderAndRollupsStandAsTheyAreGiven)
{
    const std::string dump =
        R"({"id":7,"path":"/","name":"/","isDirectory":true,"isSymbolicLink":false,"isRegularFile":false,"logicalSize":1,"sizeOnDisk":2,"scannedBytes":9007199254740993,"scannedBytesOnDisk":4,"fileCount":5,"directoryCount":6,"dateModified":-7})"
        "\n"
        R"({"id":9223372036854775807,"path":"/small","name":"small","isDirectory":false,"isSymbolicLink":false,"isRegularFile":true,"logicalSize":3,"sizeOnDisk":4,"scannedBytes":30,"scannedBytesOnDisk":40,"fileCount":50,"directoryCount":60,"dateModified":null})"
        "\n"
        R"({"id":-3,"path":"/large","name":"large","isDirectory":false,"isSymbolicLink":true,"isRegularFile":false,"logicalSize":9223372036854775807,"sizeOnDisk":0,"scannedBytes":9223372036854775807,"scannedBytesOnDisk":0,"fileCount":0,"directoryCount":0,"dateModified":1700000000})"
        "\n";
    const auto tree = treeOf(dump);
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(dumpOf(*tree), dump);
}

TEST(Dump, RollupsThatAreNotGivenAreSummedUp)
{
    const auto tree = treeOf(R"({"id":0,"path":"/r","isDirectory":true,"logicalSize":4096}
{"id":1,"path":"/r/d","isDirectory":true,"logicalSize":4096,"fileCount":12}
{"id":2,"path":"/r/d/f","isDirectory":false,"isRegularFile":true,"logicalSize":10,"sizeOnDisk":512}
{"id":3,"path":"/r/l","isDirectory":false,"isSymbolicLink":true,"logicalSize":5}
)");
    ASSERT_NE(tree, nullptr);
    const FileNode& root = tree->root();
    EXPECT_EQ(root.name(), "r");
    EXPECT_EQ(root.scannedBytes(), 15);
    EXPECT_EQ(root.scannedBytesOnDisk(), 512);
    EXPECT_EQ(root.fileCount(), 12);
    EXPECT_EQ(root.directoryCount(), 2);
    EXPECT_EQ(root.logicalSize(), 4096);
    EXPECT_EQ(root.dateModified(), std::nullopt);
    EXPECT_EQ(root.children().front().fileCount(), 12);
}

TEST(Dump, LinesOfAFolderMayStandApart)
{
    const auto tree = treeOf(R"({"id":0,"path":"r","isDirectory":true}
{"id":1,"path":"r/a","isDirectory":true}
{"id":2,"path":"r/b","isDirectory":true}
{"id":3,"path":"r/a/x","isDirectory":true}

{"id":4,"path":"r/b/y","isDirectory":false}
{"id":5,"path":"r/a/x/z","isDirectory":false,"dateModified":12.9,"other":{"a":[1]}}
)");
    ASSERT_NE(tree, nullptr);
    const FileNode& a = tree->root().children().front();
    ASSERT_EQ(a.children().size(), 1U);
    ASSERT_EQ(a.children().front().children().size(), 1U);
    const FileNode& z = a.children().front().children().front();
    EXPECT_EQ(z.id(), 5);
    EXPECT_EQ(z.path().bytes(), "r/a/x/z");
    EXPECT_EQ(z.dateModified(), 12);
    EXPECT_EQ(tree->root().children().back().children().front().path().bytes(), "r/b/y");
}

TEST(Dump, RawPathWinsOverPath)
{
    const auto tree =
        treeOf(R"({"id":0,"path":"/\ufffd","rawPath":"2fff","name":"\ufffd","isDirectory":true}
{"id":1,"rawPath":"2fff2f41","path":"/\ufffd/B","isDirectory":false}
)");
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(tree->root().name(), "\xFF");
    EXPECT_EQ(tree->root().children().front().path().bytes(), "/\xFF/A");
}

struct Malformed
{
    const char* second; ///< the line behind a good root
    const char* message;
};

TEST(Dump, MalformedLinesAreNamedByNumber)
{
    const std::string root = "{\"id\":0,\"path\":\"/r\",\"isDirectory\":true}\n";
    for (const Malformed& bad : {
             Malformed{"no", "is not a JSON object"},
             Malformed{R"({"id":1,"path":"/r/a"})", "\"isDirectory\" is missing"},
             Malformed{R"({"id":1,"isDirectory":true})", "\"path\" is missing"},
             Malformed{"{\"id\":1,\"path\":\"/r/\xFF\",\"isDirectory\":true}", "is not UTF-8"},
             Malformed{R"({"id":1,"path":"","isDirectory":true})", "\"path\" is empty"},
             Malformed{R"({"path":"/r/a","isDirectory":true})", "\"id\" is missing"},
             Malformed{R"({"id":1.5,"path":"/r/a","isDirectory":true})",
                       "\"id\" is not a whole number of 64 bits"},
             Malformed{R"({"id":9223372036854775808,"path":"/r/a","isDirectory":true})",
                       "\"id\" is not a whole number of 64 bits"},
             Malformed{R"({"id":1,"path":7,"isDirectory":true})", "\"path\" is not a string"},
             Malformed{R"({"id":1,"path":"/r/a","isDirectory":1})",
                       "\"isDirectory\" is not true or false"},
             Malformed{R"({"id":1,"rawPath":"2f7","isDirectory":true})",
                       "\"rawPath\" is not an even number of hexadecimal digits"},
             Malformed{R"({"id":1,"rawPath":"2f-1","isDirectory":true})",
                       "\"rawPath\" is not an even number of hexadecimal digits"},
             Malformed{R"({"id":1,"path":"/r/a","isDirectory":true,"dateModified":"now"})",
                       "\"dateModified\" is not a number of seconds"},
             Malformed{R"({"id":1,"path":"/s/a","isDirectory":true})",
                       "no earlier line is the folder of \"path\""},
             Malformed{R"({"id":1,"path":"/rr","isDirectory":true})",
                       "no earlier line is the folder of \"path\""},
             Malformed{R"({"id":1,"path":"/r/a","name":"b","isDirectory":true})",
                       "\"name\" is not the last component of \"path\""},
             Malformed{R"({"id":1,"path":"/r/a","isDirectory":true,"logicalSize":"4"})",
                       "\"logicalSize\" is not a whole number of 64 bits"},
         }) {
        const DumpFault fault = faultOf(root + bad.second + "\n");
        EXPECT_EQ(fault.text(), std::string("line 2: ") + bad.message) << bad.second;
    }
}

TEST(Dump, FilesHaveNoEntriesBelow)
{
    const DumpFault fault = faultOf(R"({"id":0,"path":"/r","isDirectory":true}
{"id":1,"path":"/r/f","isDirectory":false}
{"id":2,"path":"/r/f/a","isDirectory":false}
)");
    EXPECT_EQ(fault.line, 3U);
}

TEST(Dump, TextWithoutARootIsRefused)
{
    EXPECT_EQ(faultOf("").text(), "line 1: no line tells the root");
    EXPECT_EQ(faultOf("\n\n").text(), "line 3: no line tells the root");
}

TEST(Dump, SumsBeyond64BitsAreAFaultOfTheirFolder)
{
    const DumpFault fault = faultOf(R"({"id":0,"path":"/r","isDirectory":true,"scannedBytes":0}
{"id":1,"path":"/r/d","isDirectory":true}
{"id":2,"path":"/r/d/a","isDirectory":false,"logicalSize":9223372036854775807}
{"id":3,"path":"/r/d/b","isDirectory":false,"logicalSize":1}
)");
    EXPECT_EQ(fault.text(), "line 2: the sums below this folder do not fit into 64 bits");
}

TEST(Dump, StreamThatFailsIsTold)
{
    const TemporaryFolder folder;
    const auto tree = scanned(folder.path());
    std::ostringstream out;
    out.setstate(std::ios::badbit);
    EXPECT_FALSE(writeDump(tree->root(), out));
}

} // namespace
} // namespace quorvane

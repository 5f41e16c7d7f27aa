// SPDX-License-Identifier: MIT
#include "CorpusGenerator.h"
#include "DiskListing.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace quorvane {
namespace {

using testing::TemporaryFolder;

std::string contentsOf(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// What stands at each path: the bytes of a file, the target of a link.
std::map<std::string, std::string> everything(const std::string& folder)
{
    std::map<std::string, std::string> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::string path = entry.path().native().substr(folder.size() + 1);
        if (entry.is_symlink()) {
            found[path] = "-> " + std::filesystem::read_symlink(entry.path()).native();
        } else if (entry.is_regular_file()) {
            found[path] = contentsOf(entry.path());
        }
    }
    return found;
}

std::map<std::string, std::string> generated(const CorpusShape& shape)
{
    const TemporaryFolder folder;
    EXPECT_EQ(generateCorpus(FilePath(folder.path()), shape), std::nullopt);
    return everything(folder.path());
}

QJsonObject duplicatesIn(const std::string& folder)
{
    const std::string command = QUORVANE_BENCH " duplicates --threads 2 --json " + folder;
    FILE* const pipe = popen(command.c_str(), "r");
    std::string output;
    std::array<char, 4096> chunk;
    while (const std::size_t got = std::fread(chunk.data(), 1, chunk.size(), pipe)) {
        output.append(chunk.data(), got);
    }
    EXPECT_EQ(pclose(pipe), 0);
    EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 1);
    return QJsonDocument::fromJson(QByteArray::fromStdString(output)).object();
}

TEST(DuplicateCorpus, SameSeedGivesTheSameFilesAndAnotherSeedOthers)
{
    const auto first = generated({300, 2'000'000, 7});
    EXPECT_EQ(first, generated({300, 2'000'000, 7}));
    EXPECT_NE(first, generated({300, 2'000'000, 8}));
}

TEST(DuplicateCorpus, HoldsAsManyFilesAndBytesAsAskedFor)
{
    for (const CorpusShape& shape :
         {CorpusShape{1, 2048, 1}, CorpusShape{2, 4096, 1}, CorpusShape{49, 200'001, 3},
          CorpusShape{1000, 9'000'000, 2}}) {
        const TemporaryFolder folder;
        ASSERT_EQ(generateCorpus(FilePath(folder.path()), shape), std::nullopt);
        std::int64_t names = 0;
        std::map<ino_t, std::int64_t> bytes;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
            struct stat status = {};
            ASSERT_EQ(lstat(entry.path().c_str(), &status), 0);
            names += S_ISDIR(status.st_mode) ? 0 : 1;
            if (S_ISREG(status.st_mode)) {
                bytes[status.st_ino] = status.st_size;
            }
        }
        std::int64_t sum = 0;
        for (const auto& item : bytes) {
            sum += item.second;
        }
        EXPECT_EQ(names, shape.files);
        EXPECT_EQ(sum, shape.bytes);
    }
}

TEST(DuplicateCorpus, OfSmallFilesHoldsLinksAndLargeFilesWithHoles)
{
    const CorpusShape shape{1000, 140'000'000, 4, CorpusKind::small};
    const TemporaryFolder folder;
    ASSERT_EQ(generateCorpus(FilePath(folder.path()), shape), std::nullopt);
    std::int64_t names = 0;
    std::map<ino_t, struct stat> files;
    std::vector<std::string> large;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
        if (entry.is_directory()) {
            continue;
        }
        struct stat status = {};
        ASSERT_EQ(lstat(entry.path().c_str(), &status), 0);
        ++names;
        files[status.st_ino] = status;
        if (status.st_size > 16384) {
            large.push_back(entry.path());
            // Two parts in 33 megabytes are there.
            EXPECT_LE(status.st_blocks * 512, 4 * 1048576);
        }
    }
    EXPECT_EQ(names, shape.files);
    EXPECT_EQ(files.size(), 1000U - 99);
    std::int64_t sum = 0;
    for (const auto& item : files) {
        sum += item.second.st_size;
        EXPECT_GE(item.second.st_size, 1024);
    }
    EXPECT_EQ(sum, shape.bytes);
    ASSERT_EQ(large.size(), 4U);
    std::multiset<std::string> contents;
    for (const std::string& path : large) {
        contents.insert(contentsOf(path));
    }
    const std::string& copy =
        *std::find_if(contents.begin(), contents.end(),
                      [&](const auto& each) { return contents.count(each) == 2; });
    std::multiset<std::size_t> differences;
    for (const std::string& each : contents) {
        std::size_t count = each.size() - std::min(each.size(), copy.size());
        for (std::size_t i = 0; i < std::min(each.size(), copy.size()); ++i) {
            count += each[i] != copy[i] ? 1 : 0;
        }
        differences.insert(count);
    }
    EXPECT_EQ(std::vector(differences.begin(), std::next(differences.begin(), 3)),
              (std::vector<std::size_t>{0, 0, 1}));
    EXPECT_GT(*differences.rbegin(), 1'000'000U);
    const auto found = duplicatesIn(folder.path())[QLatin1String("groups")].toArray();
    EXPECT_EQ(found[0].toObject()[QLatin1String("paths")].toArray().size(), 2);
    EXPECT_GT(found.size(), 100);
}

TEST(DuplicateCorpus, HoldsEveryKindOfFile)
{
    const CorpusPlan plan({2000, 40'000'000, 1});
    std::size_t links = 0;
    std::size_t aliases = 0;
    std::size_t small = 0;
    std::set<std::int64_t> changes;
    std::map<std::pair<std::uint64_t, std::int64_t>, std::size_t> copies;
    for (const CorpusPlan::Entry& entry : plan.entries()) {
        links += entry.kind == CorpusPlan::Kind::hardLink ? 1 : 0;
        aliases += entry.kind == CorpusPlan::Kind::symbolicLink ? 1 : 0;
        small += entry.bytes < 1024 ? 1 : 0;
        if (entry.changedByte >= 0) {
            changes.insert(entry.changedByte == 0                 ? 0
                           : entry.changedByte == entry.bytes - 1 ? 2
                                                                  : 1);
        } else if (entry.kind == CorpusPlan::Kind::file) {
            ++copies[{entry.content, entry.bytes}];
        }
    }
    EXPECT_EQ(links, 20U);
    EXPECT_EQ(aliases, 20U);
    EXPECT_GE(small, 90U);
    EXPECT_EQ(changes, (std::set<std::int64_t>{0, 1, 2}));
    const auto groups = std::count_if(copies.begin(), copies.end(),
                                      [](const auto& item) { return item.second > 1; });
    EXPECT_EQ(groups, 160);
}

TEST(DuplicateCorpus, CopiesHaveDatesOfTheirOwnThatTheSeedGives)
{
    std::vector<std::map<std::string, std::int64_t>> runs;
    std::map<std::string, std::set<std::int64_t>> byContents;
    std::map<std::string, std::size_t> copies;
    for (int run = 0; run < 2; ++run) {
        const TemporaryFolder folder;
        ASSERT_EQ(generateCorpus(FilePath(folder.path()), {400, 4'000'000, 9}), std::nullopt);
        runs.emplace_back();
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
            struct stat status = {};
            ASSERT_EQ(lstat(entry.path().c_str(), &status), 0);
            if (!S_ISREG(status.st_mode) || status.st_nlink > 1) {
                continue;
            }
            runs.back()[entry.path().native().substr(folder.path().size())] = status.st_mtime;
            EXPECT_GE(status.st_mtime, 1'300'000'000);
            EXPECT_LT(status.st_mtime, 1'700'000'000);
            if (run == 0 && status.st_size >= 1024) {
                const std::string contents = contentsOf(entry.path());
                byContents[contents].insert(status.st_mtime);
                ++copies[contents];
            }
        }
    }
    EXPECT_EQ(runs[0], runs[1]);
    std::size_t groups = 0;
    for (const auto& item : copies) {
        groups += item.second > 1 ? 1 : 0;
        EXPECT_EQ(byContents[item.first].size(), item.second);
    }
    EXPECT_GE(groups, 20U);
}

TEST(DuplicateCorpus, RefusesAFolderThatHoldsSomething)
{
    const TemporaryFolder folder;
    testing::makeFile(folder.path("x"), 1);
    EXPECT_EQ(generateCorpus(FilePath(folder.path()), {10, 20480, 1}),
              folder.path() + ": the folder is not empty");
}

TEST(DuplicatesCommand, GroupsAreThoseOfAPlainComparison)
{
    const TemporaryFolder folder;
    ASSERT_EQ(generateCorpus(FilePath(folder.path()), {800, 30'000'000, 5}), std::nullopt);
    std::map<std::string, std::set<std::string>> byContents;
    for (const auto& item : everything(folder.path())) {
        if (item.second.size() >= 1024 && !item.second.starts_with("-> ")) {
            byContents[item.second].insert(folder.path(item.first));
        }
    }
    std::set<std::pair<qint64, std::vector<std::string>>> expected;
    for (const auto& item : byContents) {
        if (item.second.size() > 1) {
            expected.insert(
                {static_cast<qint64>(item.first.size()), {item.second.begin(), item.second.end()}});
        }
    }
    const QJsonObject result = duplicatesIn(folder.path());
    std::set<std::pair<qint64, std::vector<std::string>>> found;
    for (const auto& group : result[QLatin1String("groups")].toArray()) {
        const QJsonObject object = group.toObject();
        std::vector<std::string> paths;
        for (const auto& path : object[QLatin1String("paths")].toArray()) {
            paths.push_back(path.toString().toStdString());
        }
        found.insert({object[QLatin1String("size")].toInteger(), paths});
        EXPECT_FALSE(object.contains(QLatin1String("rawPaths")));
    }
    EXPECT_GE(expected.size(), 64U);
    EXPECT_EQ(found, expected);
}

TEST(DuplicatesCommand, TellsWhatEachPassTook)
{
    const TemporaryFolder folder;
    testing::makeFile(folder.path("a"), 600'000);
    testing::makeFile(folder.path("b"), 600'000);
    const QJsonObject result = duplicatesIn(folder.path());
    const QJsonArray passes = result[QLatin1String("passes")].toArray();
    const std::array<const char*, 4> names{"walk", "sampling", "verifying", "building"};
    // The folder and its files; the head of each, then both ends; all of each; one group.
    const std::array<qint64, 4> files{3, 2, 2, 1};
    const std::array<qint64, 4> bytes{0, 2 * (4096 + 524'288), 1'200'000, 0};
    ASSERT_EQ(passes.size(), 4);
    for (int i = 0; i < 4; ++i) {
        const QJsonObject pass = passes[i].toObject();
        const auto place = static_cast<std::size_t>(i);
        EXPECT_EQ(pass[QLatin1String("name")].toString(), QLatin1String(names[place]));
        EXPECT_EQ(pass[QLatin1String("files")].toInteger(), files[place]);
        EXPECT_EQ(pass[QLatin1String("bytesRead")].toInteger(), bytes[place]);
        EXPECT_GT(pass[QLatin1String("peakMemoryBytes")].toInteger(), 1 << 20);
        EXPECT_GE(pass[QLatin1String("seconds")].toDouble(), 0);
    }
    EXPECT_GT(result[QLatin1String("memoryBeforeBytes")].toInteger(), 1 << 20);
    EXPECT_GT(result[QLatin1String("seconds")].toDouble(), 0);
}

TEST(DuplicatesCommand, TellsThePathsThatAreNotTextInBytes)
{
    const TemporaryFolder folder;
    testing::makeFile(folder.path("a"), 5000);
    testing::makeFile(folder.path("b\xFF"), 5000);
    const QJsonObject group =
        duplicatesIn(folder.path())[QLatin1String("groups")].toArray()[0].toObject();
    const QJsonArray paths = group[QLatin1String("paths")].toArray();
    const QJsonArray raw = group[QLatin1String("rawPaths")].toArray();
    ASSERT_EQ(paths.size(), 2);
    ASSERT_EQ(raw.size(), 2);
    EXPECT_TRUE(paths[1].toString().endsWith(QStringLiteral("b\uFFFD")));
    EXPECT_TRUE(raw[0].isNull());
    EXPECT_EQ(QByteArray::fromHex(raw[1].toString().toLatin1()).toStdString(),
              folder.path("b\xFF"));
}

} // namespace
} // namespace quorvane

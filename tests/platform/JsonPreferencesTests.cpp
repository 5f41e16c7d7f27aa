// SPDX-License-Identifier: MIT
#include "JsonPreferences.h"

#include "DiskTree.h"
#include "UnprivilegedRun.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <latch>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace quorvane {
namespace {

using Flags = std::map<std::string, bool>;

QString fileIn(const DiskTree& disk)
{
    return disk.path("config/Quorvane/preferences.json").displayText();
}

std::string contentsOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string("(none)");
}

/// A store of its own, as the next run of the program would have it.
std::optional<PreferenceValue> readAnew(const DiskTree& disk, std::string_view key)
{
    return JsonPreferences(fileIn(disk)).value(key);
}

TEST(JsonPreferences, MissingFileIsAnEmptyStoreAndIsNotMade)
{
    const DiskTree disk;
    const JsonPreferences store(fileIn(disk));
    EXPECT_EQ(store.value("key"), std::nullopt);
    EXPECT_FALSE(QFile::exists(fileIn(disk)));
}

TEST(JsonPreferences, EachKindOfValueComesBackAsItWas)
{
    const DiskTree disk;
    JsonPreferences store(fileIn(disk));
    std::string bytes("\0\xFF{\"}", 5);
    const std::map<std::string, PreferenceValue> values{
        {"text", QString::fromUtf8("slate \xE2\x80\x9C\xF0\x9F\x97\x91\" \\ \n")},
        {"empty text", QString()},
        {"on", true},
        {"off", false},
        {"flags", Flags{{"Node.js", false}, {"Caches", true}}},
        {"no flags", Flags{}},
        {"flag called data", Flags{{"data", true}}},
        {"data", QByteArray::fromStdString(bytes)},
        {"empty data", QByteArray()},
        {"", QStringLiteral("empty key")}};
    for (const auto& [key, value] : values) {
        EXPECT_TRUE(store.setValue(key, value));
    }
    for (const auto& [key, value] : values) {
        EXPECT_EQ(store.value(key), value) << key;
        EXPECT_EQ(readAnew(disk, key), value) << key;
    }
}

TEST(JsonPreferences, ValueOfAnotherTypeIsNotReadAsThisOne)
{
    const DiskTree disk;
    JsonPreferences store(fileIn(disk));
    store.setValue("key", QStringLiteral("true"));
    EXPECT_EQ(store.read<bool>("key"), std::nullopt);
    EXPECT_EQ(store.read<QByteArray>("key"), std::nullopt);
    EXPECT_EQ(store.read<Flags>("key"), std::nullopt);
    EXPECT_EQ(store.read<QString>("key"), QStringLiteral("true"));
}

TEST(JsonPreferences, ChangeReplacesTheValueAndItsType)
{
    const DiskTree disk;
    JsonPreferences store(fileIn(disk));
    store.setValue("key", true);
    store.setValue("key", QStringLiteral("text"));
    EXPECT_EQ(readAnew(disk, "key"), PreferenceValue(QStringLiteral("text")));
}

TEST(JsonPreferences, ValuesOfNoKnownTypeAreNoValuesButAreKept)
{
    DiskTree disk;
    disk.fileWithContents("config/Quorvane/preferences.json",
                          R"({"number":3,"list":[1],"nothing":null,"mixed":{"a":true,"b":1}})");
    JsonPreferences store(fileIn(disk));
    for (const char* const key : {"number", "list", "nothing", "mixed"}) {
        EXPECT_EQ(store.value(key), std::nullopt) << key;
    }
    EXPECT_TRUE(store.setValue("mine", true));
    const std::string contents = contentsOf(fileIn(disk));
    for (const char* const key : {"\"number\": 3", "\"list\"", "\"nothing\": null", "\"b\": 1"}) {
        EXPECT_NE(contents.find(key), std::string::npos) << key;
    }
}

std::string keyOf(int writer, int round)
{
    return std::to_string(writer) + "-" + std::to_string(round);
}

/// As a process of ours does while it writes; the descriptor that holds the lock.
int lockFolderOf(const QString& file)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(file).path());
    const int descriptor = open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    EXPECT_EQ(flock(descriptor, LOCK_EX | LOCK_NB), 0);
    return descriptor;
}

class BrokenPreferences : public testing::TestWithParam<const char*>
{};

TEST_P(BrokenPreferences, ReadAsEmptyAndAreKeptAsideAtTheFirstWrite)
{
    DiskTree disk;
    disk.fileWithContents("config/Quorvane/preferences.json", GetParam());
    JsonPreferences store(fileIn(disk));
    EXPECT_EQ(store.value("tessaryl.theme"), std::nullopt);
    // Reading leaves the file alone.
    EXPECT_EQ(contentsOf(fileIn(disk)), GetParam());
    EXPECT_TRUE(store.setValue("tessaryl.accent", QStringLiteral("pink")));
    EXPECT_EQ(contentsOf(fileIn(disk) + QLatin1String(".broken")), GetParam());
    EXPECT_EQ(readAnew(disk, "tessaryl.accent"), PreferenceValue(QStringLiteral("pink")));
    EXPECT_EQ(readAnew(disk, "tessaryl.theme"), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Contents, BrokenPreferences,
                         testing::Values("", "{\"tessaryl.theme\": \"li", "[]", "not JSON",
                                         "{\"tessaryl.theme\": \"light\"} x", "\xFF\xFE"));

TEST(JsonPreferences, SecondBrokenFileDoesNotReplaceTheFirstOneAside)
{
    DiskTree disk;
    for (const char* const contents : {"one", "two", "three"}) {
        disk.fileWithContents("config/Quorvane/preferences.json", contents);
        EXPECT_TRUE(JsonPreferences(fileIn(disk)).setValue("key", true));
    }
    EXPECT_EQ(contentsOf(fileIn(disk) + QLatin1String(".broken")), "one");
    EXPECT_EQ(contentsOf(fileIn(disk) + QLatin1String(".broken-2")), "two");
    EXPECT_EQ(contentsOf(fileIn(disk) + QLatin1String(".broken-3")), "three");
}

TEST(JsonPreferences, FileThatBreaksDuringTheRunIsKeptAsideAndTheRunsValuesStay)
{
    DiskTree disk;
    JsonPreferences store(fileIn(disk));
    store.setValue("a", true);
    disk.fileWithContents("config/Quorvane/preferences.json", "{");
    EXPECT_TRUE(store.setValue("b", true));
    EXPECT_EQ(contentsOf(fileIn(disk) + QLatin1String(".broken")), "{");
    EXPECT_EQ(readAnew(disk, "a"), PreferenceValue(true));
    EXPECT_EQ(readAnew(disk, "b"), PreferenceValue(true));
}

TEST(JsonPreferences, FileThatVanishesDuringTheRunIsWrittenWhole)
{
    DiskTree disk;
    JsonPreferences store(fileIn(disk));
    store.setValue("a", true);
    disk.remove("config");
    EXPECT_TRUE(store.setValue("b", false));
    EXPECT_EQ(readAnew(disk, "a"), PreferenceValue(true));
    EXPECT_EQ(readAnew(disk, "b"), PreferenceValue(false));
}

TEST(JsonPreferences, SecondWriterLosesNothingOfTheFirst)
{
    const DiskTree disk;
    JsonPreferences first(fileIn(disk));
    JsonPreferences second(fileIn(disk));
    first.setValue("a", QStringLiteral("first"));
    second.setValue("b", QStringLiteral("second"));
    first.setValue("c", QStringLiteral("first"));
    second.setValue("a", QStringLiteral("second"));
    first.setValue("d", true);
    EXPECT_EQ(readAnew(disk, "a"), PreferenceValue(QStringLiteral("second")));
    EXPECT_EQ(readAnew(disk, "b"), PreferenceValue(QStringLiteral("second")));
    EXPECT_EQ(readAnew(disk, "c"), PreferenceValue(QStringLiteral("first")));
    EXPECT_EQ(readAnew(disk, "d"), PreferenceValue(true));
}

TEST(JsonPreferences, WritersOfTheSameInstantLoseNothing)
{
    constexpr int writers = 3;
    constexpr int rounds = 8;
    const DiskTree disk;
    JsonPreferences(fileIn(disk)).setValue("before", true);
    for (int round = 0; round < rounds; ++round) {
        std::latch start(writers);
        std::vector<std::thread> threads;
        for (int writer = 0; writer < writers; ++writer) {
            threads.emplace_back([&disk, &start, key = keyOf(writer, round)] {
                JsonPreferences store(fileIn(disk));
                start.arrive_and_wait();
                EXPECT_TRUE(store.setValue(key, true));
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    for (int round = 0; round < rounds; ++round) {
        for (int writer = 0; writer < writers; ++writer) {
            const std::string key = keyOf(writer, round);
            EXPECT_EQ(readAnew(disk, key), PreferenceValue(true)) << key;
        }
    }
    EXPECT_EQ(readAnew(disk, "before"), PreferenceValue(true));
    EXPECT_EQ(QDir(QFileInfo(fileIn(disk)).path()).entryList(QDir::Files | QDir::Hidden),
              QStringList(QStringLiteral("preferences.json")));
}

TEST(JsonPreferences, WriterThatDiesInTheMiddleHoldsNobodyUp)
{
    const DiskTree disk;
    JsonPreferences(fileIn(disk)).setValue("a", true);
    const int status = endOfChildProcess([&disk] {
        lockFolderOf(fileIn(disk));
        kill(getpid(), SIGKILL);
    });
    ASSERT_TRUE(WIFSIGNALED(status));
    // Would wait for ever behind a lock that outlives its process.
    JsonPreferences store(fileIn(disk), std::chrono::milliseconds::max());
    EXPECT_TRUE(store.setValue("b", true));
    EXPECT_EQ(readAnew(disk, "a"), PreferenceValue(true));
    EXPECT_EQ(readAnew(disk, "b"), PreferenceValue(true));
}

/// Longer than any test.
constexpr std::chrono::hours forEver{1};

/// What a change may hold the window up while another process has the lock.
constexpr std::chrono::milliseconds promisedWait{50};
static_assert(JsonPreferences::maxLockWait < promisedWait, "the rest is for waking up");

TEST(JsonPreferences, HeldLockHoldsACallerUpNoLongerThanPromised)
{
    // A change waits for two threads to be woken. On a busy machine each of them may have to wait
    // for the time slices of the others, some ten milliseconds; hardly ever in every round.
    constexpr std::chrono::milliseconds schedulingSlack{50};
    constexpr int rounds = 10;
    const DiskTree disk;
    JsonPreferences(fileIn(disk)).setValue("before", true);
    const int held = lockFolderOf(fileIn(disk));
    JsonPreferences store(fileIn(disk), forEver);
    auto shortest = std::chrono::steady_clock::duration::max();
    for (int round = 0; round < rounds; ++round) {
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_TRUE(store.setValue("a", QString::number(round)));
        shortest = std::min(shortest, std::chrono::steady_clock::now() - begin);
    }
    EXPECT_LT(shortest, promisedWait + schedulingSlack);
    close(held);
}

TEST(JsonPreferences, HeldLockHoldsNoCallerUpAndLosesNoChange)
{
    const DiskTree disk;
    JsonPreferences(fileIn(disk)).setValue("before", true);
    const int held = lockFolderOf(fileIn(disk));
    JsonPreferences store(fileIn(disk), forEver);
    // Each returns, though nobody lets go of the lock.
    EXPECT_TRUE(store.setValue("a", QStringLiteral("first")));
    EXPECT_TRUE(store.setValue("b", true));
    EXPECT_TRUE(store.setValue("a", QStringLiteral("last")));
    EXPECT_EQ(store.value("a"), PreferenceValue(QStringLiteral("last")));
    EXPECT_EQ(readAnew(disk, "a"), std::nullopt);
    close(held);
    ASSERT_TRUE(store.finish(forEver));
    EXPECT_EQ(readAnew(disk, "a"), PreferenceValue(QStringLiteral("last")));
    EXPECT_EQ(readAnew(disk, "b"), PreferenceValue(true));
    EXPECT_EQ(readAnew(disk, "before"), PreferenceValue(true));
}

TEST(JsonPreferences, EndOfTheStoreWaitsForWhatIsNotYetWritten)
{
    const DiskTree disk;
    JsonPreferences(fileIn(disk)).setValue("before", true);
    const int held = lockFolderOf(fileIn(disk));
    std::thread release;
    {
        JsonPreferences store(fileIn(disk), forEver);
        store.setValue("a", true);
        release = std::thread([held] { close(held); });
    }
    release.join();
    EXPECT_EQ(readAnew(disk, "a"), PreferenceValue(true));
}

TEST(JsonPreferences, WhileTheProgramRunsNothingIsWrittenBehindAHeldLock)
{
    DiskTree disk;
    JsonPreferences(fileIn(disk)).setValue("before", true);
    const int held = lockFolderOf(fileIn(disk));
    JsonPreferences store(fileIn(disk), std::chrono::milliseconds(0));
    EXPECT_TRUE(store.setValue("ours", true));
    EXPECT_EQ(readAnew(disk, "ours"), std::nullopt);
    // What the holder has made of the file it read before.
    disk.fileWithContents("config/Quorvane/preferences.json", R"({"before":true,"theirs":true})");
    close(held);
    ASSERT_TRUE(store.finish(forEver));
    EXPECT_EQ(readAnew(disk, "ours"), PreferenceValue(true));
    EXPECT_EQ(readAnew(disk, "theirs"), PreferenceValue(true));
    EXPECT_EQ(readAnew(disk, "before"), PreferenceValue(true));
}

TEST(JsonPreferences, WriterThatHangsForGoodIsPassedByInTheEnd)
{
    const DiskTree disk;
    JsonPreferences(fileIn(disk)).setValue("a", true);
    const int hanging = lockFolderOf(fileIn(disk));
    {
        JsonPreferences store(fileIn(disk), std::chrono::milliseconds(0));
        EXPECT_TRUE(store.setValue("b", true));
        EXPECT_EQ(readAnew(disk, "b"), std::nullopt);
    }
    EXPECT_EQ(readAnew(disk, "b"), PreferenceValue(true));
    close(hanging);
}

TEST(JsonPreferences, WriterThatHangsForGoodIsPassedByAtAnEndWithoutDestructors)
{
    const DiskTree disk;
    JsonPreferences(fileIn(disk)).setValue("a", true);
    const int hanging = lockFolderOf(fileIn(disk));
    JsonPreferences store(fileIn(disk), forEver);
    EXPECT_TRUE(store.setValue("b", true));
    store.finish(std::chrono::milliseconds(2));
    // The earlier end counts.
    ASSERT_TRUE(store.finish(forEver));
    EXPECT_EQ(readAnew(disk, "b"), PreferenceValue(true));
    close(hanging);
}

/// Runs the test in a process that gets no further thread.
void withoutThreads(const std::function<void()>& test)
{
    asUnprivilegedUser([&test] {
        const rlimit none{0, 0};
        ASSERT_EQ(setrlimit(RLIMIT_NPROC, &none), 0);
        test();
    });
}

TEST(JsonPreferences, WhereNoThreadCanBeHadTheCallerWrites)
{
    withoutThreads([] {
        const DiskTree disk;
        JsonPreferences store(fileIn(disk));
        EXPECT_TRUE(store.setValue("a", true));
        EXPECT_EQ(readAnew(disk, "a"), PreferenceValue(true));
    });
}

TEST(JsonPreferences, WhereNoThreadCanBeHadAHeldLockLeavesTheChangeToTheNextOneOrTheEnd)
{
    withoutThreads([] {
        const DiskTree disk;
        JsonPreferences(fileIn(disk)).setValue("before", true);
        const int held = lockFolderOf(fileIn(disk));
        {
            JsonPreferences store(fileIn(disk), std::chrono::milliseconds(0));
            EXPECT_FALSE(store.setValue("a", true));
            EXPECT_EQ(readAnew(disk, "a"), std::nullopt);
            flock(held, LOCK_UN);
            EXPECT_TRUE(store.setValue("b", true));
            EXPECT_EQ(readAnew(disk, "a"), PreferenceValue(true));
            ASSERT_EQ(flock(held, LOCK_EX | LOCK_NB), 0);
            EXPECT_FALSE(store.setValue("c", true));
            EXPECT_EQ(readAnew(disk, "c"), std::nullopt);
        }
        EXPECT_EQ(readAnew(disk, "c"), PreferenceValue(true));
        close(held);
    });
}

TEST(JsonPreferences, LinkToTheFileStaysALink)
{
    DiskTree disk;
    disk.fileWithContents("dotfiles/prefs.json", "{}");
    disk.symbolicLink("../../dotfiles/prefs.json", "config/Quorvane/preferences.json");
    EXPECT_TRUE(JsonPreferences(fileIn(disk)).setValue("key", true));
    struct stat status = {};
    ASSERT_EQ(lstat(disk.path("config/Quorvane/preferences.json").bytes().c_str(), &status), 0);
    EXPECT_TRUE(S_ISLNK(status.st_mode));
    EXPECT_NE(contentsOf(disk.path("dotfiles/prefs.json").displayText()).find("key"),
              std::string::npos);
}

TEST(JsonPreferences, ReadOnlyFolderRefusesTheWriteAndKeepsTheFile)
{
    DiskTree disk;
    disk.fileWithContents("config/Quorvane/preferences.json", R"({"a":true})");
    disk.mode("config/Quorvane", 0555);
    asUnprivilegedUser([&disk] {
        JsonPreferences store(fileIn(disk));
        EXPECT_FALSE(store.setValue("b", true));
        // The value counts for this run.
        EXPECT_EQ(store.value("b"), PreferenceValue(true));
        EXPECT_EQ(store.value("a"), PreferenceValue(true));
        EXPECT_EQ(readAnew(disk, "b"), std::nullopt);
    });
    EXPECT_EQ(contentsOf(fileIn(disk)), R"({"a":true})");
}

TEST(JsonPreferences, BrokenFileThatCannotBeMovedAsideIsNotOverwritten)
{
    DiskTree disk;
    disk.fileWithContents("config/Quorvane/preferences.json", "{");
    disk.mode("config/Quorvane/preferences.json", 0666);
    disk.mode("config/Quorvane", 0555);
    asUnprivilegedUser([&disk] {
        JsonPreferences store(fileIn(disk));
        EXPECT_FALSE(store.setValue("b", true));
        EXPECT_EQ(store.value("b"), PreferenceValue(true));
    });
    EXPECT_EQ(contentsOf(fileIn(disk)), "{");
}

TEST(JsonPreferences, FileThatMayNotBeReadIsLeftAsItIs)
{
    DiskTree disk;
    disk.fileWithContents("config/Quorvane/preferences.json", R"({"a":true})");
    disk.mode("config/Quorvane", 0777);
    disk.mode("config/Quorvane/preferences.json", 0000);
    asUnprivilegedUser([&disk] {
        JsonPreferences store(fileIn(disk));
        EXPECT_EQ(store.value("a"), std::nullopt);
        EXPECT_FALSE(store.setValue("b", true));
        EXPECT_EQ(store.value("b"), PreferenceValue(true));
    });
    EXPECT_EQ(contentsOf(fileIn(disk)), R"({"a":true})");
    EXPECT_FALSE(QFile::exists(fileIn(disk) + QStringLiteral(".broken")));
}

TEST(JsonPreferences, FolderThatCannotBeMadeRefusesTheWrite)
{
    DiskTree disk;
    disk.file("config");
    JsonPreferences store(fileIn(disk));
    EXPECT_FALSE(store.setValue("a", true));
    EXPECT_EQ(store.value("a"), PreferenceValue(true));
}

TEST(JsonPreferences, RefusedWriteIsMadeUpForByTheNextOne)
{
    asUnprivilegedUser([] {
        DiskTree disk;
        JsonPreferences(fileIn(disk)).setValue("a", QStringLiteral("old"));
        JsonPreferences store(fileIn(disk));
        disk.mode("config/Quorvane", 0555);
        EXPECT_FALSE(store.setValue("a", QStringLiteral("new")));
        disk.mode("config/Quorvane", 0755);
        JsonPreferences(fileIn(disk)).setValue("b", true);
        EXPECT_EQ(store.value("a"), PreferenceValue(QStringLiteral("new")));
        EXPECT_TRUE(store.setValue("c", true));
        EXPECT_EQ(readAnew(disk, "a"), PreferenceValue(QStringLiteral("new")));
        EXPECT_EQ(readAnew(disk, "b"), PreferenceValue(true));
        EXPECT_EQ(readAnew(disk, "c"), PreferenceValue(true));
        // Once written it is no longer ours alone to tell.
        JsonPreferences(fileIn(disk)).setValue("a", QStringLiteral("newest"));
        store.setValue("d", true);
        EXPECT_EQ(readAnew(disk, "a"), PreferenceValue(QStringLiteral("newest")));
    });
}

TEST(JsonPreferences, ValueOutlivesAKillRightAfterTheCall)
{
    const DiskTree disk;
    const int status = endOfChildProcess([&disk] {
        JsonPreferences store(fileIn(disk));
        store.setValue("a", QStringLiteral("written"));
        kill(getpid(), SIGKILL);
    });
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGKILL);
    EXPECT_EQ(readAnew(disk, "a"), PreferenceValue(QStringLiteral("written")));
}

TEST(JsonPreferences, StandardPlaceIsBelowTheConfigurationFolder)
{
    const QString config = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (config.isEmpty()) {
        GTEST_SKIP() << "XDG_CONFIG_HOME is not set";
    }
    EXPECT_EQ(JsonPreferences::standardFilePath(),
              config + QLatin1String("/Quorvane/preferences.json"));
}

} // namespace
} // namespace quorvane

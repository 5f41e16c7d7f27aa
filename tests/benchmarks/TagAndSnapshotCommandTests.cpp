// SPDX-License-Identifier: MIT
#include "DiskListing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>

namespace quorvane {
namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using testing::TemporaryFolder;

/// Two rules as the program stores them: texts with a word in them, and all large files.
constexpr const char* storedRules =
    R"([{"id":"00000000-0000-4000-8000-000000000001","name":"Bills","tagName":"Invoices",)"
    R"("tagColor":"orange","isEnabled":true,"conditions":[{"id":)"
    R"("00000000-0000-4000-8000-000000000002","type":"contentContains","value":"invoice"}],)"
    R"("matchAny":false},{"id":"00000000-0000-4000-8000-000000000003","name":"Big",)"
    R"("tagName":"Big\/Large","tagColor":"red","isEnabled":true,"conditions":[{"id":)"
    R"("00000000-0000-4000-8000-000000000004","type":"sizeGT","value":"1 KB"}],)"
    R"("matchAny":false}])";

class TagAndSnapshotCommands : public ::testing::Test
{
protected:
    void file(const std::string& name, const std::string& contents)
    {
        const std::filesystem::path path(m_folder.path("disk/" + name));
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << contents;
    }

    void store(const std::string& name, const std::string& contents)
    {
        std::ofstream(m_folder.path(name)) << contents;
    }

    /// Standard output; fails unless the command ends with the code.
    std::string run(const std::string& words, int code = 0)
    {
        const std::string command = std::string(QUORVANE_BENCH) + " " + words + " >" +
                                    m_folder.path("out") + " 2>" + m_folder.path("messages");
        EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), code) << words << messages();
        return textOf("out");
    }

    std::string messages() const { return textOf("messages"); }
    std::string textOf(const std::string& name) const
    {
        std::ostringstream text;
        text << std::ifstream(m_folder.path(name)).rdbuf();
        return text.str();
    }

    std::string disk() const { return m_folder.path("disk"); }
    std::string at(const std::string& name) const { return m_folder.path(name); }

private:
    TemporaryFolder m_folder;
};

TEST_F(TagAndSnapshotCommands, MatchesAreALineEachLargestFirstThenTheSummary)
{
    store("rules", storedRules);
    file("a.txt", "An Invoice");
    file("b.txt", "nothing");
    file("sub/large", std::string(2000, 'x'));
    const std::string out = run("tag --rules " + at("rules") + " " + disk());
    EXPECT_EQ(out, R"({"path":")" + disk() +
                       R"(/sub/large","bytes":2000,"tagName":"Big/Large","tagColor":"red"})"
                       "\n"
                       R"({"path":")" +
                       disk() +
                       R"(/a.txt","bytes":10,"tagName":"Invoices","tagColor":"orange"})"
                       "\n"
                       R"({"summary":"Tagged 2 files with 2 tags."})"
                       "\n");
    EXPECT_THAT(messages(), HasSubstr("tag seconds: "));
}

TEST_F(TagAndSnapshotCommands, NoFileIsReadWhereTheKernelMakesItUp)
{
    store("rules", std::regex_replace(std::string(storedRules), std::regex("invoice"), "linux"));
    file("version", "Linux it says here");
    const std::string dump = run("dump " + disk());
    store("dump", dump);
    EXPECT_THAT(run("tag --rules " + at("rules") + " --dump " + at("dump")),
                HasSubstr("Tagged 1 file with 1 tag."));
    // Of /proc/version, which says the same.
    store("dump", std::regex_replace(dump, std::regex(disk()), "/proc"));
    EXPECT_EQ(run("tag --rules " + at("rules") + " --dump " + at("dump")),
              "{\"summary\":\"Tagged 0 files with 0 tags.\"}\n");
}

TEST_F(TagAndSnapshotCommands, RulesAreEchoedAsTheyAreStored)
{
    store("rules", storedRules);
    EXPECT_EQ(run("tag --echo --rules " + at("rules")), std::string(storedRules) + "\n");
}

TEST_F(TagAndSnapshotCommands, WhatIsNoListOfRulesIsRefused)
{
    run("tag " + disk(), 2);
    run("tag --echo --rules " + at("missing"), 1);
    store("rules", R"([{"id":"x"}])");
    run("tag --echo --rules " + at("rules"), 2);
    store("rules", storedRules);
    run("tag --echo --rules " + at("rules") + " " + disk(), 2);
}

TEST_F(TagAndSnapshotCommands, ACapturedSnapshotHasItsKeysSortedAndItsSlashesEscaped)
{
    file("small", std::string(65535, 'x'));
    file("sub/large", std::string(65536, 'x'));
    run("snapshot capture " + disk() + " --out " + at("s.json"));
    const std::string json = textOf("s.json");
    EXPECT_THAT(json, MatchesRegex(R"(\{"date":[0-9.]+,"id":"[0-9A-F-]{36}","items":\[.*\].*)"));
    EXPECT_THAT(json, HasSubstr(R"("items":[{"bytes":65536,"path":"\/sub\/large"}],)"
                                R"("rootBytes":131071,"rootPath":"\/)"));
    EXPECT_THAT(messages(), HasSubstr("capture seconds: "));
}

TEST_F(TagAndSnapshotCommands, TwoSnapshotsAreComparedLargestChangeFirst)
{
    file("gone", std::string(80000, 'x'));
    file("grown", std::string(70000, 'x'));
    file("same", std::string(90000, 'x'));
    run("snapshot capture " + disk() + " --out " + at("past"));
    std::filesystem::remove(at("disk/gone"));
    file("grown", std::string(70100, 'x'));
    run("snapshot capture " + disk() + " --out " + at("present"));
    EXPECT_EQ(run("snapshot diff " + at("past") + " " + at("present")),
              R"({"path":"/gone","pastBytes":80000,"presentBytes":0,"delta":-80000})"
              "\n"
              R"({"path":"/grown","pastBytes":70000,"presentBytes":70100,"delta":100})"
              "\n"
              R"({"path":"/same","pastBytes":90000,"presentBytes":90000,"delta":0})"
              "\n");
    run("snapshot diff " + at("past"), 2);
    store("broken", "{}");
    run("snapshot diff " + at("past") + " " + at("broken"), 2);
    run("snapshot diff " + at("past") + " " + at("missing"), 1);
}

TEST_F(TagAndSnapshotCommands, TheSnapshotsInAFolderAreListedNewestFirst)
{
    std::filesystem::create_directories(at("saved"));
    file("a", std::string(70000, 'x'));
    run("snapshot capture " + disk() + " --out " + at("saved/first.json"));
    file("b", std::string(1, 'x'));
    run("snapshot capture " + disk() + " --out " + at("saved/second.json"));
    store("saved/broken.json", "{");
    store("saved/other.JSON", textOf("saved/first.json"));
    const std::string out = run("snapshot list " + at("saved"));
    EXPECT_LT(out.find("70001"), out.find("70000"));
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 2);
}

} // namespace
} // namespace quorvane

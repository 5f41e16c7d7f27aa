// SPDX-License-Identifier: MIT
#include "DiskListing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace quorvane {
namespace {

using ::testing::HasSubstr;
using testing::TemporaryFolder;

class SearchCommands : public ::testing::Test
{
protected:
    void file(const std::string& name, std::size_t bytes = 0)
    {
        const std::filesystem::path path(m_folder.path("disk/" + name));
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << std::string(bytes, 'x');
    }

    /// Standard output; fails unless the command ends with the code.
    std::string run(const std::string& words, const std::string& input = {}, int code = 0)
    {
        std::ofstream(m_folder.path("in")) << input;
        const std::string command = std::string(QUORVANE_BENCH) + " " + words + " <" +
                                    m_folder.path("in") + " >" + m_folder.path("out") + " 2>" +
                                    m_folder.path("messages");
        EXPECT_EQ(std::system(command.c_str()), code << 8) << words;
        std::ostringstream text;
        text << std::ifstream(m_folder.path("out")).rdbuf();
        return text.str();
    }

    std::string disk() const { return m_folder.path("disk"); }

private:
    TemporaryFolder m_folder;
};

TEST_F(SearchCommands, AQueryIsReadAndEdited)
{
    EXPECT_EQ(
        run("query --home /h --now 86400000",
            R"({"op":"parse","raw":"pdf desktop today >1kb a do"})"
            "\n"),
        R"({"tokens":[{"start":0,"end":3,"type":"kind"},{"start":4,"end":11,"type":"location"},)"
        R"({"start":12,"end":17,"type":"date"},{"start":18,"end":22,"type":"size"},)"
        R"({"start":23,"end":24,"type":"term"},{"start":25,"end":27,"type":"term"}],)"
        R"("terms":["a","do"],"kind":"pdf","locationLabel":"Desktop",)"
        R"("locationPath":"/h/Desktop","size":{"minBytes":1024,"label":">1KB"},)"
        R"("date":{"fromMs":0,"label":"Today"},"searchable":true,"termQuery":"a do"})"
        "\n");
    EXPECT_EQ(run("query", R"({"op":"parse","raw":""})"
                           "\n"
                           R"({"op":"replacing","word":"image","raw":"video report"})"
                           "\n"
                           R"({"op":"removing","category":"kind","raw":"pdf"})"
                           "\n"
                           R"({"op":"category","word":">5gb"})"
                           "\n"
                           R"({"op":"category","word":"x"})"
                           "\n"),
              R"({"tokens":[],"terms":[],"searchable":false,"termQuery":""})"
              "\n"
              R"({"raw":"report image "})"
              "\n"
              R"({"raw":" "})"
              "\n"
              R"({"category":"size"})"
              "\n{}\n");
    EXPECT_EQ(run("query", "{\"op\":\"removing\",\"category\":\"kind\",\"raw\":"
                           "\"\xF0\x9F\x98\x80\xF0\x9F\x98\x80 pdf\"}\n"),
              "{\"raw\":\"\xF0\x9F\x98\x80\\ud83ddf \"}\n");
}

TEST_F(SearchCommands, ALineThatIsNotUnderstoodEndsTheCommand)
{
    for (const char* line : {"nonsense", "{}", R"({"op":"none"})",
                             R"({"op":"removing","category":"none","raw":""})"}) {
        run("query", std::string(line) + "\n", 2);
    }
    run("classify", "{\"name\":\"a\"}\n", 2);
    run("format --now 1", "{}\n", 2);
    run("format", "", 2);
}

TEST_F(SearchCommands, FindTellsEachResult)
{
    file("b/Report.PDF", 1536);
    file("report.txt", 1);
    const std::string found = run("find " + disk() + " --query REPORT --now 9e15");
    EXPECT_EQ(std::count(found.begin(), found.end(), '\n'), 2);
    EXPECT_LT(found.find("report.txt"), found.find("Report.PDF"));
    EXPECT_THAT(found, HasSubstr(R"("name":"Report.PDF","kind":"PDF","size":1536,"modifiedMS":)"));
    EXPECT_THAT(found, HasSubstr(R"("sizeLabel":"1.5 KB","dateLabel":")"));
    EXPECT_EQ(run("find " + disk()), "") << "no word and no filter";
    EXPECT_THAT(run("find " + disk() + " --kind pdf --min-bytes 1535 --max-bytes 1537"),
                HasSubstr("Report.PDF"));
    EXPECT_THAT(run("find " + disk() + " --scope " + disk()), HasSubstr("report.txt"));
    EXPECT_EQ(run("find " + disk() + " --query report --from-ms 9e15"), "");
    run("find " + disk() + " --kind none", {}, 2);
    run("find " + disk() + " --min-bytes x", {}, 2);
    run("find " + disk() + "/none --query x", {}, 1);
}

TEST_F(SearchCommands, AnIndexIsMadeOnceAndSearchedOften)
{
    file("hit");
    EXPECT_THAT(run("index " + disk() + " --out " + disk() + "/index"), HasSubstr("\"entries\":1"));
    EXPECT_THAT(run("find --index " + disk() + "/index --query hit --times 3"),
                HasSubstr("/hit\""));
    run("find --index " + disk() + "/none --query hit", {}, 1);
}

TEST_F(SearchCommands, KindsAndTextsAreTold)
{
    EXPECT_EQ(run("classify",
                  "{\"name\":\"a.TAR.gz\",\"isDir\":false}\n{\"name\":\"x\",\"isDir\":true}\n"),
              "{\"kind\":\"Archive\"}\n{\"kind\":\"Folder\"}\n");
    EXPECT_EQ(run("format --now 86400000000", "{\"bytes\":1536}\n{\"ms\":1}\n{\"ms\":0}\n"),
              "{\"text\":\"1.5 KB\"}\n{\"text\":\"2 years ago\"}\n{\"text\":\"\"}\n");
}

TEST_F(SearchCommands, FolderSearchTellsPathsAndScores)
{
    file("report");
    file("a/my report.txt");
    const std::string found = run("folder-search " + disk() + " --query report --kind files");
    EXPECT_EQ(found, "{\"path\":\"" + disk() + "/report\",\"score\":1100}\n{\"path\":\"" + disk() +
                         "/a/my report.txt\",\"score\":400}\n");
    EXPECT_EQ(run("folder-search " + disk() + " --category doc"),
              "{\"path\":\"" + disk() + "/a/my report.txt\",\"score\":0}\n");
    EXPECT_EQ(run("folder-search " + disk() + " --min-bytes mb1 --age lastYear --now 1"), "");
    for (const char* wrong :
         {"--kind all", "--category Doc", "--min-bytes 5", "--age old", "--now x", "--times 0"}) {
        run("folder-search " + disk() + " " + wrong, {}, 2);
    }
}

} // namespace
} // namespace quorvane

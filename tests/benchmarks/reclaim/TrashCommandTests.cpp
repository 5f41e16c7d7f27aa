// SPDX-License-Identifier: MIT
#include "DiskListing.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

namespace quorvane {
namespace {

namespace fs = std::filesystem;
using testing::TemporaryFolder;
using Outcomes = std::map<std::string, std::string>;

class TrashCommandTests : public ::testing::Test
{
protected:
    void SetUp() override
    {
        const char* const data = std::getenv("XDG_DATA_HOME");
        ASSERT_TRUE(data != nullptr &&
                    std::string(data).find("quorvane-test.") != std::string::npos)
            << "run through cmake/run-isolated: the user's own Trash is not for tests";
        m_trash = fs::path(data) / "Trash";
        fs::remove_all(m_trash);
    }

    void file(const std::string& name, const std::string& contents = "contents")
    {
        fs::create_directories(fs::path(m_disk.path(name)).parent_path());
        std::ofstream(m_disk.path(name)) << contents;
    }
    bool isThere(const std::string& name) const
    {
        return fs::exists(fs::symlink_status(m_disk.path(name)));
    }
    bool isInTrash(const std::string& name) const
    {
        return fs::exists(fs::symlink_status(m_trash / "files" / name));
    }

    /// Runs the command; m_code is its exit status. Outcomes by path below the folder.
    Outcomes trash(const std::string& arguments)
    {
        const std::string command = std::string(QUORVANE_BENCH) + " trash " + arguments;
        FILE* const pipe = popen((command + " 2>/dev/null").c_str(), "r");
        std::string output;
        std::array<char, 4096> chunk;
        while (const std::size_t got = std::fread(chunk.data(), 1, chunk.size(), pipe)) {
            output.append(chunk.data(), got);
        }
        m_code = WEXITSTATUS(pclose(pipe));
        Outcomes outcomes;
        std::istringstream lines(output);
        for (std::string line; std::getline(lines, line);) {
            const QJsonObject object =
                QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
            const std::string path = object.value(QLatin1String("path")).toString().toStdString();
            outcomes[path.substr(m_disk.path().size() + 1)] =
                object.value(QLatin1String("outcome")).toString().toStdString();
        }
        return outcomes;
    }

    /// What a scan says now, to be sent later.
    std::string dump()
    {
        const std::string file = m_aside.path("dump");
        EXPECT_EQ(
            std::system(
                (std::string(QUORVANE_BENCH) + " dump " + m_disk.path() + " >" + file).c_str()),
            0);
        return "--dump " + file;
    }

    TemporaryFolder m_disk;
    TemporaryFolder m_aside;
    fs::path m_trash;
    int m_code = -1;
};

TEST_F(TrashCommandTests, MovesWhatIsNamedAndNothingElse)
{
    file("a/one");
    file("a/two");
    file("b/three");
    EXPECT_EQ(trash(m_disk.path() + " a/one " + m_disk.path("b")),
              (Outcomes{{"a/one", "moved"}, {"b", "moved"}}));
    EXPECT_EQ(m_code, 0);
    EXPECT_FALSE(isThere("a/one") || isThere("b"));
    EXPECT_TRUE(isThere("a/two") && isInTrash("one") && isInTrash("b"));
}

TEST_F(TrashCommandTests, ADumpSaysWhatWasScanned)
{
    file("same");
    file("edited");
    file("gone");
    file("folder/inner");
    file("kind");
    const std::string scanned = dump();
    file("edited", "longer contents");
    fs::remove(m_disk.path("gone"));
    fs::rename(m_disk.path("folder"), m_disk.path("elsewhere"));
    fs::create_directory_symlink("elsewhere", m_disk.path("folder"));
    fs::remove(m_disk.path("kind"));
    fs::create_directory(m_disk.path("kind"));
    EXPECT_EQ(trash(scanned + " same edited gone folder/inner folder kind"),
              (Outcomes{{"same", "moved"},
                        {"edited", "changed"},
                        {"gone", "missing"},
                        {"folder/inner", "behindLink"},
                        {"folder", "otherKind"},
                        {"kind", "otherKind"}}));
    EXPECT_EQ(m_code, 0);
    EXPECT_TRUE(isThere("edited") && isThere("elsewhere/inner") && isThere("kind"));
}

TEST_F(TrashCommandTests, KeepsALastCopyUnlessItsLossIsAccepted)
{
    const std::string picture(5000, 'p');
    file("a/picture", picture);
    file("b/picture", picture);
    EXPECT_EQ(trash(m_disk.path() + " a/picture b"),
              (Outcomes{{"a/picture", "lastCopy"}, {"b", "lastCopy"}}));
    EXPECT_TRUE(isThere("a/picture") && isThere("b/picture"));
    EXPECT_EQ(trash(m_disk.path() + " --accept-losses a/picture b"),
              (Outcomes{{"a/picture", "moved"}, {"b", "moved"}}));
    EXPECT_FALSE(isThere("a/picture") || isThere("b"));
}

TEST_F(TrashCommandTests, MovesNothingWhenAPathIsNotInTheTree)
{
    file("one");
    EXPECT_TRUE(trash(m_disk.path() + " one two").empty());
    EXPECT_EQ(m_code, 1);
    EXPECT_TRUE(isThere("one"));
}

TEST_F(TrashCommandTests, NeedsATreeAndAPath)
{
    trash("");
    EXPECT_EQ(m_code, 2);
    trash(m_disk.path());
    EXPECT_EQ(m_code, 2);
}

} // namespace
} // namespace quorvane

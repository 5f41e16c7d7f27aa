// SPDX-License-Identifier: MIT
#include "TrashBatch.h"

#include "DiskScanner.h"
#include "DiskTree.h"
#include "DuplicateFinder.h"
#include "FileTree.h"
#include "GroupTexts.h"
#include "Trash.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace quorvane {
namespace {

namespace fs = std::filesystem;

/// A Trash that is a folder of the test's own: a rename and nothing else.
class FolderTrash final : public Trash
{
public:
    explicit FolderTrash(const FilePath& folder)
        : m_folder(folder)
    {}

    Outcome moveToTrash(const FilePath& path) override
    {
        std::error_code error;
        fs::rename(path.bytes(), m_folder.appending(std::to_string(m_count++)).bytes(), error);
        return error ? Outcome::failed : Outcome::moved;
    }

private:
    FilePath m_folder;
    int m_count = 0;
};

/// A scanned and searched folder on the disk, with a folder beside it that serves as a Trash.
struct SearchedDisk
{
    explicit SearchedDisk(DiskTree::Place place = DiskTree::Place::memory)
        : disk(place)
    {
        disk.folder("trash");
        disk.folder("root");
    }

    void search()
    {
        const DiskScanner::Result result = DiskScanner(1).scan(disk.path("root"));
        tree = std::get<std::shared_ptr<FileTree>>(result);
        DuplicateFinder::Options options;
        options.workers = 1;
        groups = std::make_shared<const DuplicateFinder::Groups>(DuplicateFinder::find(
            tree->rootPointer(), DuplicateFinder::defaultMinimumBytes, [](double) {},
            DuplicateFinder::neverCancelled, options));
    }

    NodePointer node(std::string_view relative)
    {
        const FileNode* const found = nodeAt(tree->root(), disk.path("root").appending(relative));
        EXPECT_NE(found, nullptr) << relative;
        return {tree, const_cast<FileNode*>(found)};
    }
    TrashBatch batch(const std::vector<NodePointer>& queue, const AcceptedLosses& accepted = {})
    {
        return {entriesOf(queue), groups, accepted, CheckedTrash(trash, disk.path("home"))};
    }
    QueueCautions cautions(const std::vector<NodePointer>& queue)
    {
        return cautionsOf(entriesOf(queue), groups, CheckedTrash(trash, disk.path("home")),
                          [] { return false; })
            .value();
    }

    DiskTree disk;
    FolderTrash trash{disk.path("trash")};
    std::shared_ptr<FileTree> tree;
    std::shared_ptr<const DuplicateFinder::Groups> groups;
};

const std::string picture(2000, 'p');
const std::string song(3000, 's');

class LastCopyTests : public testing::Test
{
protected:
    /// Two copies of a picture and three of a song.
    void SetUp() override
    {
        for (const char* const name : {"a/picture", "b/picture"}) {
            m_disk.disk.fileWithContents(std::string("root/") + name, picture);
        }
        for (const char* const name : {"a/song", "b/song", "c/deep/song"}) {
            m_disk.disk.fileWithContents(std::string("root/") + name, song);
        }
        m_disk.search();
        ASSERT_EQ(m_disk.groups->size(), 2u);
    }

    std::vector<NodePointer> queue(std::initializer_list<const char*> names)
    {
        std::vector<NodePointer> nodes;
        for (const char* const name : names) {
            nodes.push_back(m_disk.node(name));
        }
        return nodes;
    }
    std::vector<TrashOutcome> send(const std::vector<NodePointer>& nodes,
                                   const AcceptedLosses& accepted = {})
    {
        const TrashBatch batch = m_disk.batch(nodes, accepted);
        std::vector<TrashOutcome> outcomes;
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            outcomes.push_back(batch.send(i));
        }
        return outcomes;
    }

    SearchedDisk m_disk;
};

using Outcomes = std::vector<TrashOutcome>;
using Kind = QueueCaution::Kind;
constexpr TrashOutcome moved = TrashOutcome::moved;
constexpr TrashOutcome lastCopy = TrashOutcome::lastCopy;

TEST_F(LastCopyTests, ACopyGoesWhileAnotherStays)
{
    EXPECT_EQ(send(queue({"a/picture", "a/song", "b/song"})), (Outcomes{moved, moved, moved}));
}

TEST_F(LastCopyTests, CopiesThatAreAllStagedAllStay)
{
    EXPECT_EQ(send(queue({"a/picture", "b/picture", "a/song"})),
              (Outcomes{lastCopy, lastCopy, moved}));
}

TEST_F(LastCopyTests, CopiesThatAreAllStagedGoOnceTheirLossIsAccepted)
{
    const std::vector<NodePointer> both = queue({"a/picture", "b/picture"});
    EXPECT_EQ(send(both, m_disk.cautions(both).losses), (Outcomes{moved, moved}));
}

TEST_F(LastCopyTests, AnAcceptedLossIsNotOneOfOtherGroups)
{
    const AcceptedLosses accepted = m_disk.cautions(queue({"a/picture", "b/picture"})).losses;
    EXPECT_EQ(send(queue({"a", "b", "c"}), accepted), (Outcomes{lastCopy, lastCopy, lastCopy}));
}

TEST_F(LastCopyTests, AnAcceptedLossEndsWithTheSearchThatItWasShownFor)
{
    AcceptedLosses accepted = m_disk.cautions(queue({"a/picture", "b/picture"})).losses;
    accepted.groups = std::make_shared<const DuplicateFinder::Groups>(*m_disk.groups);
    EXPECT_EQ(send(queue({"a/picture", "b/picture"}), accepted), (Outcomes{lastCopy, lastCopy}));
}

TEST_F(LastCopyTests, AnAcceptedLossDoesNotCountOnceACopyIsToBeKept)
{
    const AcceptedLosses accepted = m_disk.cautions(queue({"a/picture", "b/picture"})).losses;
    m_disk.disk.remove("root/b/picture");
    EXPECT_EQ(send(queue({"a/picture"}), accepted), (Outcomes{lastCopy}));
}

TEST_F(LastCopyTests, AKeeperBelowAStagedFolderIsNone)
{
    EXPECT_EQ(send(queue({"a/picture", "b"})), (Outcomes{lastCopy, lastCopy}));
}

TEST_F(LastCopyTests, AKeeperThatHasChangedOrGoneIsNone)
{
    m_disk.disk.fileWithContents("root/b/picture", picture + "edited");
    EXPECT_EQ(send(queue({"a/picture"})), (Outcomes{lastCopy}));
    m_disk.disk.remove("root/b/picture");
    EXPECT_EQ(send(queue({"a/picture"})), (Outcomes{lastCopy}));
    m_disk.disk.symbolicLink("../a/picture", "root/b/picture");
    EXPECT_EQ(send(queue({"a/picture"})), (Outcomes{lastCopy}));
}

TEST_F(LastCopyTests, AKeeperWhoseReadingBrokeOffIsNone)
{
    const std::vector<NodePointer> both = queue({"a/picture", "b/picture"});
    DuplicateFinder::GroupTexts texts;
    m_disk.groups = std::make_shared<const DuplicateFinder::Groups>(DuplicateFinder::Groups{
        {2000, {both[0].get(), both[1].get()}, both[0], texts, {{}, {both[1].get()}}}});
    EXPECT_EQ(send({both[0]}), (Outcomes{lastCopy}));
    EXPECT_EQ(send({both[1]}), (Outcomes{moved})) << "the whole one stays";
}

TEST_F(LastCopyTests, AKeeperThatChangesDuringTheBatchStopsTheRest)
{
    const std::vector<NodePointer> nodes = queue({"a/song", "b/song"});
    const TrashBatch batch = m_disk.batch(nodes);
    EXPECT_EQ(batch.send(0), moved);
    m_disk.disk.modified("root/c/deep/song", 1);
    EXPECT_EQ(batch.send(1), lastCopy);
}

TEST_F(LastCopyTests, AStandAloneEntryOnAFolderCountsAsThatFolder)
{
    std::vector<NodePointer> nodes = queue({"a/picture"});
    nodes.push_back(FileTree::stagedItem("b", m_disk.disk.path("root/b"), 1));
    EXPECT_EQ(send(nodes), (Outcomes{lastCopy, lastCopy}));
    nodes.back() = FileTree::stagedItem("disk", m_disk.disk.root(), 1);
    EXPECT_EQ(send(nodes), (Outcomes{lastCopy, lastCopy}));
    nodes.back() = FileTree::stagedItem("elsewhere", m_disk.disk.path("root/none"), 1);
    EXPECT_EQ(send(nodes).front(), moved);
}

TEST_F(LastCopyTests, AStandAloneEntryReachedThroughALinkCountsAsTheFolderItIs)
{
    m_disk.disk.symbolicLink(m_disk.disk.path("root").bytes(), "again");
    m_disk.disk.folder("beside");
    std::vector<NodePointer> nodes = queue({"a/picture"});
    nodes.push_back(FileTree::stagedItem("b", m_disk.disk.path("again/b"), 1));
    EXPECT_EQ(send(nodes), (Outcomes{lastCopy, lastCopy}));
    // The link itself is not the folder that it leads to.
    nodes.back() = FileTree::stagedItem("again", m_disk.disk.path("again"), 1);
    EXPECT_EQ(send(nodes), (Outcomes{moved, moved}));
}

TEST_F(LastCopyTests, WithoutASearchNothingIsHeldBack)
{
    m_disk.groups = nullptr;
    EXPECT_EQ(send(queue({"a/picture", "b/picture"})), (Outcomes{moved, moved}));
}

TEST_F(LastCopyTests, CautionsTellWhatABatchWouldDo)
{
    m_disk.disk.modified("root/c/deep/song", 1);
    const QueueCautions cautions =
        m_disk.cautions(queue({"a/picture", "b/picture", "a/song", "c/deep/song", "c"}));
    EXPECT_EQ(cautions.cautions[0].kind, Kind::none) << "the other copy is the last one to go";
    EXPECT_EQ(cautions.cautions[1].kind, Kind::takesLastCopy);
    EXPECT_EQ(cautions.cautions[1].copies, 2u);
    EXPECT_EQ(cautions.cautions[1].lostGroups, 1u);
    EXPECT_EQ(cautions.cautions[1].example, m_disk.node("b/picture").get());
    EXPECT_EQ(cautions.losses.indices.size(), 1u);
    EXPECT_EQ(cautions.cautions[2].kind, Kind::none);
    EXPECT_EQ(cautions.cautions[3].kind, Kind::willStay);
    EXPECT_EQ(cautions.cautions[3].obstacle, TrashOutcome::changed);
    EXPECT_EQ(cautions.cautions[4].kind, Kind::none);
    EXPECT_FALSE(cautions.isEmpty());
    EXPECT_TRUE(m_disk.cautions(queue({"a/picture"})).isEmpty());
}

TEST_F(LastCopyTests, ACautionTellsThatTheKeeperHasGone)
{
    m_disk.disk.remove("root/b/picture");
    const QueueCautions cautions = m_disk.cautions(queue({"a/picture"}));
    EXPECT_EQ(cautions.cautions[0].kind, Kind::noKeeperLeft);
    EXPECT_TRUE(cautions.losses.indices.empty());
}

TEST_F(LastCopyTests, AnEntryThatStaysTakesNoLastCopy)
{
    m_disk.disk.modified("root/b/picture", 1);
    const QueueCautions cautions = m_disk.cautions(queue({"a/picture", "b/picture"}));
    EXPECT_EQ(cautions.cautions[0].kind, Kind::takesLastCopy);
    EXPECT_EQ(cautions.cautions[1].kind, Kind::willStay);
}

TEST_F(LastCopyTests, AFolderNamesAFileInItAndCountsTheRest)
{
    const QueueCautions cautions = m_disk.cautions(queue({"c", "a", "b"}));
    EXPECT_EQ(cautions.cautions[0].kind, Kind::none);
    EXPECT_EQ(cautions.cautions[1].kind, Kind::none);
    EXPECT_EQ(cautions.cautions[2].kind, Kind::takesLastCopy);
    EXPECT_EQ(cautions.cautions[2].lostGroups, 2u);
    ASSERT_NE(cautions.cautions[2].example, nullptr);
    EXPECT_EQ(cautions.cautions[2].example->parent(), m_disk.node("b").get());
}

TEST_F(LastCopyTests, ACancelledLookAtTheQueueGivesNothing)
{
    EXPECT_FALSE(cautionsOf(entriesOf(queue({"a"})), m_disk.groups,
                            CheckedTrash(m_disk.trash, m_disk.disk.path("home")),
                            [] { return true; }));
}

// ---- Property: whatever is staged, and whatever happens to the disk meanwhile, no move of a batch
// takes the last copy of a group that the person has not given up.

struct Tally
{
    int cases = 0;
    int groups = 0;
    int moves = 0;
    int heldBack = 0;
    int otherwiseStayed = 0;
    int acceptedLosses = 0;
};

class RandomBatch
{
public:
    RandomBatch(std::uint32_t seed, Trash* trash, DiskTree::Place place)
        : m_random(seed)
        , m_disk(place)
        , m_trash(trash != nullptr ? trash : &m_disk.trash)
    {}

    void run(Tally& tally)
    {
        makeFiles();
        m_disk.search();
        const std::vector<NodePointer> queue = chooseQueue();
        AcceptedLosses accepted;
        if (below(3) == 0) {
            accepted = m_disk.cautions(queue).losses;
        }
        ++tally.cases;
        tally.groups += static_cast<int>(m_disk.groups->size());
        tally.acceptedLosses += static_cast<int>(accepted.indices.size());
        for (unsigned i = below(3); i > 0; --i) {
            changeSomething();
        }
        const TrashBatch batch(entriesOf(queue), m_disk.groups, accepted,
                               CheckedTrash(*m_trash, m_disk.disk.path("home")));
        for (std::size_t i = 0; i < queue.size(); ++i) {
            const std::vector<int> before = intactCopies();
            const TrashOutcome outcome = batch.send(i);
            tally.moves += outcome == moved ? 1 : 0;
            tally.heldBack += outcome == lastCopy ? 1 : 0;
            tally.otherwiseStayed += outcome != moved && outcome != lastCopy ? 1 : 0;
            const std::vector<int> after = intactCopies();
            for (std::size_t group = 0; group < before.size(); ++group) {
                const bool isGivenUp =
                    std::count(accepted.indices.begin(), accepted.indices.end(), group) != 0;
                EXPECT_TRUE(after[group] > 0 || before[group] == 0 || isGivenUp)
                    << "group " << group << " lost by " << queue[i]->path().bytes();
            }
            if (below(6) == 0) {
                changeSomething();
            }
        }
    }

private:
    unsigned below(unsigned limit)
    {
        return std::uniform_int_distribution<unsigned>(0, limit - 1)(m_random);
    }

    void makeFiles()
    {
        static constexpr std::array<const char*, 7> folders{"a",   "a/x", "a/x/y", "b",
                                                            "b/x", "c",   "."};
        const unsigned count = 3 + below(9);
        for (unsigned i = 0; i < count; ++i) {
            const std::string contents(1024 + 512 * below(2), static_cast<char>('0' + below(3)));
            const std::string name =
                std::string(folders[below(folders.size())]) + "/f" + std::to_string(i);
            const std::string relative = "root/" + (name.starts_with("./") ? name.substr(2) : name);
            m_disk.disk.fileWithContents(relative, contents);
            m_disk.disk.modified(relative, 1'000'000 + below(3));
        }
    }

    std::vector<FileNode*> allNodes()
    {
        std::vector<FileNode*> nodes;
        std::vector<FileNode*> stack{&m_disk.tree->root()};
        while (!stack.empty()) {
            FileNode* const node = stack.back();
            stack.pop_back();
            for (FileNode& child : node->children()) {
                nodes.push_back(&child);
                stack.push_back(&child);
            }
        }
        return nodes;
    }

    /// Any nodes, in any order; now and then all copies of a group, or all but one; some of them as
    /// stand-alone entries.
    std::vector<NodePointer> chooseQueue()
    {
        std::vector<FileNode*> chosen;
        const unsigned share = 1 + below(4);
        for (FileNode* const node : allNodes()) {
            if (below(5) < share && (!node->isDirectory() || below(2) == 0)) {
                chosen.push_back(node);
            }
        }
        if (!m_disk.groups->empty() && below(2) == 0) {
            const auto& files =
                (*m_disk.groups)[below(static_cast<unsigned>(m_disk.groups->size()))].files();
            const std::size_t spared =
                below(2) == 0 ? files.size() : below(static_cast<unsigned>(files.size()));
            for (std::size_t i = 0; i < files.size(); ++i) {
                if (i != spared && std::count(chosen.begin(), chosen.end(), files[i]) == 0) {
                    chosen.push_back(files[i]);
                }
            }
        }
        std::shuffle(chosen.begin(), chosen.end(), m_random);
        std::vector<NodePointer> queue;
        for (FileNode* const node : chosen) {
            queue.push_back(below(8) == 0 ? FileTree::stagedItem(node->name(), node->path(), 1)
                                          : NodePointer(m_disk.tree, node));
        }
        return queue;
    }

    /// What people and programs do meanwhile: a file changes, goes, or becomes something else; a
    /// folder moves and leaves a link. The size or the date always tells of a changed file.
    void changeSomething()
    {
        const std::vector<FileNode*> nodes = allNodes();
        if (nodes.empty()) {
            return;
        }
        const FileNode& node = *nodes[below(static_cast<unsigned>(nodes.size()))];
        const fs::path path = node.path().bytes();
        const fs::file_status status = fs::symlink_status(path);
        if (fs::is_regular_file(status)) {
            switch (below(4)) {
            case 0:
                std::ofstream(path, std::ios::app) << "more";
                break;
            case 1:
                fs::last_write_time(path, fs::last_write_time(path) + std::chrono::seconds(100));
                break;
            case 2:
                fs::remove(path);
                break;
            default:
                fs::remove(path);
                fs::create_symlink("nowhere", path);
            }
        } else if (fs::is_directory(status)) {
            const fs::path aside = path.string() + ".aside";
            if (!fs::exists(fs::symlink_status(aside))) {
                fs::rename(path, aside);
                fs::create_directory_symlink(aside.filename(), path);
            }
        }
    }

    /// By reading the disk: how many files of each group are where the finder saw them, with the
    /// bytes and the date that they had.
    std::vector<int> intactCopies()
    {
        std::vector<int> counts;
        for (const DuplicateFinder::Group& group : *m_disk.groups) {
            int count = 0;
            for (const FileNode* const file : group.files()) {
                const fs::path path = file->path().bytes();
                std::error_code error;
                if (!fs::is_regular_file(fs::symlink_status(path)) ||
                    fs::canonical(path, error) !=
                        canonicalRoot() /
                            fs::path(path).lexically_relative(m_disk.disk.root().bytes())) {
                    continue;
                }
                struct stat status = {};
                std::ifstream stream(path, std::ios::binary);
                const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
                count += stat(path.c_str(), &status) == 0 &&
                                 status.st_mtime == file->dateModified() &&
                                 static_cast<std::int64_t>(bytes.size()) == group.bytes()
                             ? 1
                             : 0;
            }
            counts.push_back(count);
        }
        return counts;
    }

    fs::path canonicalRoot() const { return fs::canonical(m_disk.disk.root().bytes()); }

    std::mt19937 m_random;
    SearchedDisk m_disk;
    Trash* m_trash;
};

void runBatches(std::uint32_t firstSeed, std::uint32_t count, Trash* trash, DiskTree::Place place)
{
    Tally tally;
    for (std::uint32_t seed = firstSeed; seed < firstSeed + count; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomBatch(seed, trash, place).run(tally);
        if (testing::Test::HasFailure()) {
            return;
        }
    }
    std::printf(
        "%d batches, %d groups: %d entries moved, %d held back for a last copy, %d stayed for "
        "other reasons, %d losses accepted\n",
        tally.cases, tally.groups, tally.moves, tally.heldBack, tally.otherwiseStayed,
        tally.acceptedLosses);
    // A run in which nothing is at stake proves nothing.
    EXPECT_GT(tally.moves, tally.cases);
    EXPECT_GT(tally.heldBack, tally.cases / 2);
    EXPECT_GT(tally.otherwiseStayed, tally.cases / 10);
    EXPECT_GT(tally.acceptedLosses, tally.cases / 10);
}

TEST(LastCopyPropertyTests, NoMoveTakesALastCopyThatWasNotGivenUp)
{
    runBatches(1, 2500, nullptr, DiskTree::Place::memory);
}

TEST(LastCopyPropertyTests, NorDoesOneIntoTheRealTrash)
{
    const char* const data = std::getenv("XDG_DATA_HOME");
    ASSERT_TRUE(data != nullptr && std::string(data).find("quorvane-test.") != std::string::npos);
    runBatches(100'000, 300, &Trash::system(), DiskTree::Place::temporaryFolder);
}

} // namespace
} // namespace quorvane

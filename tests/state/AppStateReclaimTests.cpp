// SPDX-License-Identifier: MIT
#include "StateFixture.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace quorvane {
namespace {

using CacheItem = DevCacheCleaner::CacheItem;

/// Homes made at random of everything that the tables know, of what looks like it, and of what a
/// person has besides.
class RandomHome
{
public:
    RandomHome(DiskTree& disk, unsigned seed)
        : m_disk(disk)
        , m_random(seed)
    {}

    bool chance(int percent) { return static_cast<int>(m_random() % 100) < percent; }

    template<class T>
    const T& oneOf(const std::vector<T>& all)
    {
        return all[m_random() % all.size()];
    }

    void fill()
    {
        for (const QuickWins::FolderTarget& target : QuickWins::homeTargets()) {
            place(std::string(target.relativePath));
        }
        for (const DevCacheCleaner::Location& location : DevCacheCleaner::curatedLocations()) {
            place(std::string(location.subpath));
        }
        for (const HomePlace& known : linuxPlaces()) {
            placeOf(known);
        }
        for (int i = 0; i < 12; ++i) {
            project("work/project" + std::to_string(i));
        }
        applications();
        for (const char* const own :
             {"Documents/letter.txt", "Pictures/cat.jpg", ".ssh/id_ed25519", ".config/Code/User/a",
              ".ollama/id_ed25519", ".cache/pypoetry/virtualenvs/a", ".mozilla/firefox/logins",
              ".local/share/Trash/files/old", "work/notes.md"}) {
            m_disk.file(own, 100);
        }
    }

private:
    void place(const std::string& folder)
    {
        const auto there = std::filesystem::symlink_status(m_disk.path(folder).bytes());
        if (std::filesystem::exists(there) || !chance(40)) {
            return;
        }
        if (chance(15)) {
            const std::string elsewhere = "big disk/" + std::to_string(m_random() % 100'000);
            m_disk.file(elsewhere + "/kept", 5000);
            m_disk.file(folder + " sibling/kept", 10);
            m_disk.symbolicLink(m_disk.path(elsewhere).bytes(), folder);
            return;
        }
        m_disk.file(folder + "/a", 5000);
        m_disk.file(folder + "/deeper/b", 500);
    }

    void placeOf(const HomePlace& known)
    {
        std::string path(known.path);
        if (const std::size_t star = path.find('*'); star != std::string::npos) {
            path.replace(star, 1, "org.example.App");
        }
        switch (known.base) {
        case HomePlace::Base::home:
            return place(path);
        case HomePlace::Base::cache:
            return place(".cache/" + path);
        case HomePlace::Base::config:
            return place(".config/" + path);
        case HomePlace::Base::data:
            return place(".local/share/" + path);
        default:
            return;
        }
    }

    void project(const std::string& folder)
    {
        m_disk.file(folder + "/main.cpp", 10);
        for (int i = 0; i < 3; ++i) {
            const std::string name = oneOf<std::string>(
                {"node_modules", "build", "target", ".venv", "vendor", "dist", "Node_modules",
                 "__pycache__", "bazel-out", "src", ".git", "builds"});
            const std::string inside = chance(30) ? "/node_modules" : "";
            const std::string made = folder + '/' + name + inside + "/x" + std::to_string(i);
            m_disk.file(made, 1000);
        }
    }

    void applications()
    {
        for (const char* const name : {"Halyard", "Cinder", "data", "Cinder Two"}) {
            if (chance(60)) {
                const std::string bundle = "Applications/" + std::string(name) + ".app";
                m_disk.file(bundle + "/Contents/program", 2000);
            }
            m_disk.file("Library/Application Support/" + std::string(name) + "/a", 100);
            m_disk.file("Library/Logs/" + std::string(name) + "/a", 100);
        }
    }

    DiskTree& m_disk;
    std::mt19937 m_random;
};

class AppStateReclaim : public StateFixture
{
protected:
    void SetUp() override
    {
        const char* const data = std::getenv("XDG_DATA_HOME");
        ASSERT_TRUE(data != nullptr &&
                    std::string(data).find("quorvane-test.") != std::string::npos)
            << "run through cmake/run-isolated: the user's own Trash is not for tests";
        platform.trash.answer = [](const FilePath& path) {
            return Trash::system().moveToTrash(path);
        };
    }

    std::set<FilePath> everything() const
    {
        std::set<FilePath> paths;
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(disk.root().bytes())) {
            paths.insert(FilePath(entry.path().string()));
        }
        return paths;
    }

    void look()
    {
        scan(disk.root());
        ASSERT_TRUE(waitFor([this] { return !state().isQuickWinsLoading.value(); }));
        state().refreshInstalledApps();
        ASSERT_TRUE(waitFor([this] { return !state().isUninstallerLoading.value(); }));
        for (const bool deep : {false, true}) {
            bool isAnswered = false;
            const auto take = [&](std::optional<std::vector<CacheItem>> items) {
                caches = DevCacheCleaner::merged(caches, items.value_or(std::vector<CacheItem>()));
                isAnswered = true;
            };
            deep ? state().deepScanBuildDirs(take) : state().scanDevCaches(take);
            ASSERT_TRUE(waitFor([&] { return isAnswered; }));
        }
    }

    void name(const FilePath& path, bool mayGo)
    {
        if (mayGo) {
            named.insert(path);
        }
    }

    void trashCaches(const std::vector<CacheItem>& items)
    {
        bool isDone = false;
        state().trashDevCaches(
            items, [](std::size_t) {},
            [&isDone](const std::vector<DevCachesState::Move>&) { isDone = true; });
        ASSERT_TRUE(waitFor([&] { return isDone; }));
    }

    void settle()
    {
        ASSERT_TRUE(waitFor([this] {
            return !state().isTrashingStaged.value() && !state().isUninstalling.value() &&
                   !state().isScanning.value() && !state().isQuickWinsLoading.value() &&
                   !state().isUninstallerLoading.value();
        }));
    }

    std::vector<CacheItem> caches;
    std::set<FilePath> named;
};

class RandomHomes : public AppStateReclaim, public testing::WithParamInterface<unsigned>
{};

TEST_P(RandomHomes, NothingOutsideWhatTheChosenRowsNameIsEverMoved)
{
    RandomHome home(disk, GetParam());
    home.fill();
    look();
    const std::set<FilePath> before = everything();

    std::vector<CacheItem> chosen;
    for (const CacheItem& item : caches) {
        if (home.chance(50)) {
            chosen.push_back(item);
            name(item.path, item.isMovable());
        }
    }
    for (const UninstallableApp& app : state().installedApps.value()) {
        if (home.chance(50)) {
            state().toggleUninstall(app);
            name(app.bundleURL, app.goesToTrash());
            for (const UninstallComponent& component : app.components) {
                name(component.url, true);
            }
        }
    }
    for (const QuickWin& win : state().quickWins.value()) {
        if (home.chance(50) && !state().isStagedQuickWin(win)) {
            state().stageQuickWin(win);
            name(win.url, win.isStageable());
        }
    }
    ASSERT_FALSE(named.empty());
    state().sendStagedToTrash();
    settle();
    trashCaches(chosen);
    state().runUninstallQueue();
    settle();

    const std::set<FilePath> after = everything();
    for (const FilePath& path : before) {
        const bool isNamed = std::any_of(named.begin(), named.end(),
                                         [&](const FilePath& each) { return each.holds(path); });
        EXPECT_EQ(after.contains(path), !isNamed) << path.bytes();
    }
    for (const FilePath& path : after) {
        EXPECT_TRUE(before.contains(path)) << path.bytes();
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomHomes, testing::Range(1U, 9U));

} // namespace
} // namespace quorvane

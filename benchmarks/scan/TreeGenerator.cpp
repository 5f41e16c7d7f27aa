// SPDX-License-Identifier: MIT
#include "TreeGenerator.h"

#include "EntryNames.h"
#include "GeneratorRun.h"
#include "SeededRandom.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <vector>

namespace quorvane {
namespace {

constexpr std::int64_t oldestDate = 1'300'000'000; // March 2011
constexpr std::uint64_t dateSpan = 400'000'000;    // up to November 2023
constexpr std::uint64_t streamOfNames = 1'000'000'007;
constexpr std::uint64_t streamOfContent = 2'000'000'011;
constexpr std::uint64_t linkShare = 200;       ///< one file in so many is a symbolic link
constexpr std::uint64_t writtenShare = 4;      ///< one in so many holds a written block
constexpr std::uint64_t allocatedShare = 2000; ///< one in so many holds many allocated blocks
constexpr std::size_t blockBytes = 4096;

struct Timestamps
{
    std::array<timespec, 2> values;
};

Timestamps someDate(SeededRandom& random)
{
    timespec time = {};
    time.tv_sec = oldestDate + static_cast<std::int64_t>(random.below(dateSpan));
    time.tv_nsec = static_cast<long>(random.below(1'000'000'000));
    return {{time, time}};
}

/// Small files are many and large ones few: an even spread over the powers of two.
std::int64_t someSize(SeededRandom& random)
{
    if (random.oneIn(30)) {
        return 0;
    }
    const std::uint64_t bits = random.oneIn(500) ? 20 + random.below(11) : 4 + random.below(16);
    const std::uint64_t least = std::uint64_t{1} << bits;
    return static_cast<std::int64_t>(least + random.below(least));
}

class Generator
{
public:
    explicit Generator(const TreeShape& shape)
        : m_plan(shape)
        , m_block(blockBytes, 'q')
    {}

    std::optional<std::string> run(int top)
    {
        fillWithFiles(top, 0);
        const std::span<const std::size_t> branches = m_plan.subfolders(0);
        runOnSomeThreads([&](std::atomic<std::size_t>& next) {
            for (std::size_t i = next++; i < branches.size() && !m_fault.isNoted(); i = next++) {
                growBranch(top, branches[i]);
            }
        });
        date(top, 0);
        return m_fault.message();
    }

private:
    struct OpenFolder
    {
        int descriptor;
        std::size_t folder;
        std::size_t nextSubfolder = 0;
    };

    /// Makes a folder and everything below it, depth first with a stack of open folders. A folder
    /// gets its date when nothing more is made in it.
    void growBranch(int top, std::size_t branch)
    {
        std::vector<OpenFolder> stack;
        open(stack, top, branch);
        while (!stack.empty()) {
            OpenFolder& current = stack.back();
            const std::span<const std::size_t> subfolders = m_plan.subfolders(current.folder);
            if (current.nextSubfolder < subfolders.size() && !m_fault.isNoted()) {
                const std::size_t subfolder = subfolders[current.nextSubfolder++];
                open(stack, current.descriptor, subfolder);
                continue;
            }
            date(current.descriptor, current.folder);
            close(current.descriptor);
            stack.pop_back();
        }
    }

    void open(std::vector<OpenFolder>& stack, int parent, std::size_t folder)
    {
        SeededRandom random(m_plan.shape().seed + streamOfNames, folder);
        const TreePlan::Folder& planned = m_plan.folders()[folder];
        const std::string name =
            generatedFolderName(random, planned.placeInParent, planned.parent == 0);
        if (mkdirat(parent, name.c_str(), 0755) != 0) {
            m_fault.note(name);
            return;
        }
        const int descriptor =
            openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (descriptor < 0) {
            m_fault.note(name);
            return;
        }
        fillWithFiles(descriptor, folder);
        stack.push_back({descriptor, folder});
    }

    void fillWithFiles(int directory, std::size_t folder)
    {
        SeededRandom random(m_plan.shape().seed + streamOfContent, folder);
        const auto count = static_cast<std::size_t>(m_plan.folders()[folder].files);
        std::string previous = "nothing";
        for (std::size_t i = 0; i < count && !m_fault.isNoted(); ++i) {
            const std::string name = generatedFileName(random, i);
            const bool isMade = random.oneIn(linkShare)
                                    ? makeLink(directory, name, previous, random)
                                    : makeFile(directory, name, random);
            if (!isMade) {
                m_fault.note(name);
            }
            previous = name;
        }
    }

    static bool makeLink(int directory, const std::string& name, const std::string& target,
                         SeededRandom& random)
    {
        const Timestamps date = someDate(random);
        return symlinkat(target.c_str(), directory, name.c_str()) == 0 &&
               utimensat(directory, name.c_str(), date.values.data(), AT_SYMLINK_NOFOLLOW) == 0;
    }

    bool makeFile(int directory, const std::string& name, SeededRandom& random) const
    {
        const Timestamps date = someDate(random);
        const std::int64_t size = someSize(random);
        const bool isWritten = random.oneIn(writtenShare);
        const bool isAllocated = random.oneIn(allocatedShare);
        const auto allocated = static_cast<off_t>((16 + random.below(112)) * blockBytes);
        const int file = openat(directory, name.c_str(),
                                O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644);
        if (file < 0) {
            return false;
        }
        bool isDone = true;
        if (isAllocated) {
            isDone = posix_fallocate(file, 0, allocated) == 0;
        } else if (isWritten) {
            const auto part = std::min(static_cast<std::size_t>(size), blockBytes);
            isDone = write(file, m_block.data(), part) == static_cast<ssize_t>(part);
        }
        const bool isResized = isAllocated ? allocated < size : size > 0;
        isDone = isDone && (!isResized || ftruncate(file, size) == 0) &&
                 futimens(file, date.values.data()) == 0;
        return close(file) == 0 && isDone;
    }

    void date(int descriptor, std::size_t folder)
    {
        SeededRandom random(m_plan.shape().seed ^ streamOfContent, folder);
        if (futimens(descriptor, someDate(random).values.data()) != 0) {
            m_fault.note("a folder's date");
        }
    }

    const TreePlan m_plan;
    const std::string m_block;
    FirstFault m_fault;
};

} // namespace

std::optional<std::string> generateTree(const FilePath& destination, const TreeShape& shape)
{
    return fillEmptyFolder(destination,
                           [&](int descriptor) { return Generator(shape).run(descriptor); });
}

} // namespace quorvane

// SPDX-License-Identifier: MIT
#include "DiskListing.h"

#include <fcntl.h>
#include <fts.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <stdexcept>

namespace quorvane::testing {
namespace {

void require(bool isDone, const std::string& what)
{
    if (!isDone) {
        throw std::runtime_error("cannot make " + what);
    }
}

/// Visits every entry twice when it is a folder (before and after its content), else once.
void walk(const std::string& folder, const std::function<void(FTSENT&)>& visit)
{
    std::string name = folder;
    char* roots[] = {name.data(), nullptr};
    FTS* const tree = fts_open(roots, FTS_PHYSICAL, nullptr);
    require(tree != nullptr, "a listing of " + folder);
    while (FTSENT* const entry = fts_read(tree)) {
        visit(*entry);
    }
    fts_close(tree);
}

std::string relativePath(const FTSENT& entry, const std::string& folder)
{
    const std::string whole(entry.fts_path, entry.fts_pathlen);
    return whole.size() > folder.size() ? whole.substr(folder.size() + 1) : std::string();
}

std::string parentOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

std::string joined(const std::string& folder, const std::string& name)
{
    return folder.empty() ? name : folder + "/" + name;
}

void addToAncestors(DiskListing& listing, const std::string& path, const ListedEntry& entry)
{
    std::string at = path;
    while (!at.empty()) {
        at = parentOf(at);
        ListedEntry& folder = listing.at(at);
        if (entry.isDirectory) {
            ++folder.directoryCount;
            continue;
        }
        folder.scannedBytes += entry.logicalSize;
        folder.scannedBytesOnDisk += entry.sizeOnDisk;
        folder.fileCount += entry.isRegularFile ? 1 : 0;
    }
}

void sortChildren(DiskListing& listing)
{
    for (auto& item : listing) {
        const std::string& path = item.first;
        std::vector<std::string>& names = item.second.children;
        std::sort(names.begin(), names.end(), [&](const std::string& a, const std::string& b) {
            const std::int64_t bytesOfA = listing.at(joined(path, a)).scannedBytes;
            const std::int64_t bytesOfB = listing.at(joined(path, b)).scannedBytes;
            return bytesOfA != bytesOfB ? bytesOfA > bytesOfB : a < b;
        });
    }
}

void makeSocket(const std::string& path)
{
    // A socket's address holds a hundred bytes; the folder may be deeper than that.
    const std::string before = std::filesystem::current_path();
    std::filesystem::current_path(parentOf(path));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1, path.rfind('/') + 1);
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    const bool isDone =
        bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(descriptor);
    std::filesystem::current_path(before);
    require(isDone, path);
}

} // namespace

TemporaryFolder::TemporaryFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "bench-XXXXXX").native();
    require(mkdtemp(name.data()) != nullptr, name);
    m_path = name;
}

TemporaryFolder::~TemporaryFolder()
{
    walk(m_path, [](FTSENT& entry) {
        if (entry.fts_info == FTS_DP) {
            rmdir(entry.fts_accpath);
        } else if (entry.fts_info != FTS_D) {
            unlink(entry.fts_accpath);
        }
    });
}

DiskListing listDisk(const std::string& folder)
{
    DiskListing listing;
    walk(folder, [&](FTSENT& found) {
        if (found.fts_info == FTS_DP) {
            return;
        }
        const struct stat& status = *found.fts_statp;
        const std::string path = relativePath(found, folder);
        ListedEntry entry;
        entry.isDirectory = S_ISDIR(status.st_mode);
        entry.isSymbolicLink = S_ISLNK(status.st_mode);
        entry.isRegularFile = S_ISREG(status.st_mode);
        entry.logicalSize = status.st_size;
        entry.sizeOnDisk = status.st_blocks * 512;
        entry.dateModified = status.st_mtim.tv_sec;
        entry.scannedBytes = entry.isDirectory ? 0 : entry.logicalSize;
        entry.scannedBytesOnDisk = entry.isDirectory ? 0 : entry.sizeOnDisk;
        entry.fileCount = entry.isRegularFile ? 1 : 0;
        entry.directoryCount = entry.isDirectory ? 1 : 0;
        listing.emplace(path, entry);
        if (!path.empty()) {
            listing.at(parentOf(path)).children.push_back(path.substr(path.rfind('/') + 1));
            addToAncestors(listing, path, entry);
        }
    });
    sortChildren(listing);
    return listing;
}

std::vector<std::string> depthFirst(const DiskListing& listing)
{
    std::vector<std::string> order;
    std::vector<std::string> waiting{std::string()};
    while (!waiting.empty()) {
        const std::string path = waiting.back();
        waiting.pop_back();
        order.push_back(path);
        const std::vector<std::string>& names = listing.at(path).children;
        for (auto name = names.rbegin(); name != names.rend(); ++name) {
            waiting.push_back(joined(path, *name));
        }
    }
    return order;
}

void makeChain(const std::string& folder, const std::string& name, int depth)
{
    int at = open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    for (int i = 0; i < depth; ++i) {
        require(mkdirat(at, name.c_str(), 0755) == 0, name);
        const int next = openat(at, name.c_str(), O_RDONLY | O_DIRECTORY);
        close(at);
        at = next;
    }
    const int file = openat(at, "end", O_WRONLY | O_CREAT, 0644);
    require(file >= 0 && ftruncate(file, 77) == 0, "a chain's end");
    close(file);
    close(at);
}

void makeFile(const std::string& path, std::size_t bytes)
{
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0644);
    require(file >= 0, path);
    const std::string content(bytes, 'x');
    require(write(file, content.data(), bytes) == static_cast<ssize_t>(bytes), path);
    close(file);
}

void settle(const std::string& folder)
{
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    const bool isDone = syncfs(descriptor) == 0;
    close(descriptor);
    require(isDone, "settled sizes in " + folder);
}

void makeNastyTree(const std::string& folder)
{
    const auto at = [&](const std::string& name) { return folder + "/" + name; };
    for (const char* name : {"empty", "bad\xFF\xFEname", "line\nbreak", ".hidden", "\xE2\x82"}) {
        require(mkdir(at(name).c_str(), 0755) == 0, name);
    }
    makeFile(at("plain.txt"), 5000);
    makeFile(at("twin a"), 300);
    makeFile(at("twin B"), 300);
    makeFile(at("zero"), 0);
    makeFile(at("line\nbreak/quote\"back\\slash"), 11);
    makeFile(at("line\nbreak/tab\tbell\adelete\x7F"), 12);
    makeFile(at("bad\xFF\xFEname/inside"), 13);
    makeFile(at("bad\xFF\xFEname/\xC0\xAF overlong"), 14);
    makeFile(at("\xE2\x82/\xAC.txt"), 15);
    makeFile(at(".hidden/ünïcode-日本-🗂"), 16);
    makeFile(at(".hidden/separator\xE2\x80\xA8line"), 17);
    makeFile(at("hole"), 1);
    require(truncate(at("hole").c_str(), 1 << 30) == 0, "a hole");
    require(symlink("..", at("link to parent").c_str()) == 0, "a link");
    require(symlink("gone/\xFF", at("empty/dangling").c_str()) == 0, "a link");
    require(mkfifo(at("pipe").c_str(), 0644) == 0, "a pipe");
    makeSocket(at("socket"));
    require(mkdir(at("chains").c_str(), 0755) == 0, "a folder");
    makeChain(at("chains"), "d", 2000);
    settle(folder);
}

} // namespace quorvane::testing

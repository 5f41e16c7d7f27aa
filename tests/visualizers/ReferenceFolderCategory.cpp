// SPDX-License-Identifier: MIT
#include "FileNode.h"
#include "ReferenceTreemap.h"
#include "Text.h"

#include <cstdint>
#include <functional>
#include <map>
#include <regex>

namespace quorvane::test::reference {

FileTypeCategory largest(const std::map<FileTypeCategory, std::int64_t>& table)
{
    FileTypeCategory best = FileTypeCategory::other;
    std::int64_t most = 0;
    for (const auto& [category, bytes] : table) {
        if (bytes > most) {
            best = category;
            most = bytes;
        }
    }
    return best;
}

std::int64_t weightOf(const FileNode& node, bool disk)
{
    const std::int64_t size = disk ? node.scannedBytesOnDisk() : node.scannedBytes();
    return size < 1 ? 1 : size;
}

FileTypeCategory folderCategory(const FileNode& node, bool disk)
{
    static const std::set<std::string> projects{
        "documents", "projects", "project",   "quorvane", "marrowkit", "default project",
        "veltrane",  "frontend", "portfolio", "work",     "apps",      "repos",
        "code"};
    static const std::set<std::string> development{"node_modules",
                                                   "npm",
                                                   "m2",
                                                   "vendor",
                                                   "pods",
                                                   "deriveddata",
                                                   "gradle",
                                                   "src",
                                                   "build",
                                                   "dist",
                                                   "node",
                                                   "packages",
                                                   "bower_components",
                                                   "venv",
                                                   "bin",
                                                   "target",
                                                   "carthage",
                                                   "support",
                                                   ".npm",
                                                   ".m2",
                                                   ".gradle",
                                                   ".swiftpm"};
    static const std::set<std::string> systems{
        "system",       "library",    "caches",     "cache",    "applicationsupport",
        "containers",   "groups",     "usr",        "contents", "sbin",
        "etc",          "var",        "frameworks", "kernel",   "applications",
        "coreservices", "preferences"};
    const std::string key =
        std::regex_replace(lowercased(FilePath(std::string(node.name())).lastComponent()),
                           std::regex("^[.]"), "", std::regex_constants::format_first_only);
    const bool isProject = projects.count(key) == 1;
    if (!isProject && development.count(key) == 1) {
        return FileTypeCategory::dev;
    }
    const std::string path = lowercased(node.path().bytes());
    const std::string tail = "/documents";
    const bool endsSo = path.size() >= tail.size() &&
                        path.compare(path.size() - tail.size(), tail.size(), tail) == 0;
    if (isProject || endsSo || path.find("/documents/") != std::string::npos) {
        return FileTypeCategory::project;
    }
    if (systems.count(key) == 1) {
        return FileTypeCategory::system;
    }
    std::map<FileTypeCategory, std::int64_t> table;
    int budget = 512;
    const std::function<void(const FileNode&, int)> walk = [&](const FileNode& folder, int depth) {
        if (depth > 3 || budget < 1) {
            return;
        }
        for (const FileNode& child : folder.children()) {
            if (budget < 1) {
                break;
            }
            budget -= 1;
            if (child.isDirectory()) {
                walk(child, depth + 1);
            } else {
                table[fileTypeCategoryForName(child.name())] += weightOf(child, disk);
            }
        }
    };
    walk(node, 0);
    const FileTypeCategory found = largest(table);
    const bool isSource = found == FileTypeCategory::code || found == FileTypeCategory::dev;
    return isSource ? FileTypeCategory::project : found;
}

} // namespace quorvane::test::reference

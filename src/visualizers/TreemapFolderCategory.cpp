// SPDX-License-Identifier: MIT
#include "TreemapFolderCategory.h"

#include "CheckedMath.h"
#include "FileNode.h"
#include "Text.h"
#include "TreemapLayout.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace quorvane {
namespace {

constexpr int folderWalkDepth = 3;

// The entries with a dot stand for what people look for; a key has lost its leading dot, so that
// the entries without one are found.
constexpr std::array<std::string_view, 13> projectNames{
    "documents", "projects", "project",   "quorvane", "marrowkit", "default project",
    "veltrane",  "frontend", "portfolio", "work",     "apps",      "repos",
    "code"};
constexpr std::array<std::string_view, 22> developmentNames{
    "node_modules",     "npm",    ".npm",     ".m2",    "m2",       "vendor", "pods", "deriveddata",
    ".gradle",          "gradle", ".swiftpm", "src",    "build",    "dist",   "node", "packages",
    "bower_components", "venv",   "bin",      "target", "carthage", "support"};
constexpr std::array<std::string_view, 17> systemNames{
    "system",       "library",    "caches",     "cache",    "applicationsupport",
    "containers",   "groups",     "usr",        "contents", "sbin",
    "etc",          "var",        "frameworks", "kernel",   "applications",
    "coreservices", "preferences"};

template<std::size_t count>
bool holds(const std::array<std::string_view, count>& names, std::string_view key)
{
    return std::find(names.begin(), names.end(), key) != names.end();
}

std::string_view lastComponent(std::string_view name)
{
    const std::size_t last = name.find_last_not_of('/');
    if (last == std::string_view::npos) {
        return name;
    }
    name = name.substr(0, last + 1);
    return name.substr(name.rfind('/') + 1);
}

std::optional<FileTypeCategory> categoryOfKey(std::string_view key)
{
    if (holds(projectNames, key)) {
        return FileTypeCategory::project;
    }
    if (holds(developmentNames, key)) {
        return FileTypeCategory::dev;
    }
    if (holds(systemNames, key)) {
        return FileTypeCategory::system;
    }
    return std::nullopt;
}

/// Sums bytes by category over a depth-first walk with a budget.
class CategoryWalk
{
public:
    CategoryWalk(bool disk, int maxWalkDepth, int nodeBudget)
        : m_disk(disk)
        , m_maxWalkDepth(maxWalkDepth)
        , m_budget(nodeBudget)
    {}

    void enter(const FileNode& folder, int depth)
    {
        if (depth > m_maxWalkDepth) {
            return;
        }
        const std::span<const FileNode> children = folder.children();
        const std::size_t reach = std::min(children.size(), namesAhead);
        for (const FileNode& child : children.first(reach)) {
            fetchName(child);
        }
        for (std::size_t i = 0; i < children.size(); ++i) {
            if (m_budget < 1) {
                return;
            }
            --m_budget;
            if (i + reach < children.size()) {
                fetchName(children[i + reach]);
            }
            if (children[i].isDirectory()) {
                enter(children[i], depth + 1);
            } else {
                add(children[i]);
            }
        }
    }

    FileTypeCategory largest() const
    {
        const auto most = std::max_element(m_bytes.begin(), m_bytes.end());
        return *most > 0 ? allFileTypeCategories[static_cast<std::size_t>(most - m_bytes.begin())]
                         : FileTypeCategory::other;
    }

private:
    static constexpr std::size_t namesAhead = 8;

    /// Names lie apart from the nodes; waiting for them would be most of the walk's time.
    static void fetchName(const FileNode& node) { __builtin_prefetch(node.name().data()); }

    void add(const FileNode& file)
    {
        auto& bytes = m_bytes[static_cast<std::size_t>(fileTypeCategoryForName(file.name()))];
        bytes = checkedAdd(bytes, TreemapLayout::byteWeight(file, m_disk),
                           "TreemapLayout::dominantCategory");
    }

    bool m_disk;
    int m_maxWalkDepth;
    int m_budget;
    std::array<std::int64_t, allFileTypeCategories.size()> m_bytes{};
};

} // namespace

bool treemapIsDocumentsName(std::string_view name)
{
    constexpr std::string_view documents = "documents";
    return name.size() == documents.size() &&
           std::equal(name.begin(), name.end(), documents.begin(), [](char c, char lower) {
               return c == lower || (c >= 'A' && c <= 'Z' && c - 'A' + 'a' == lower);
           });
}

bool treemapIsInDocuments(const FileNode& node)
{
    const FileNode* top = &node;
    for (; top->parent() != nullptr; top = top->parent()) {
        if (treemapIsDocumentsName(top->name())) {
            return true;
        }
    }
    // Above the root stands a path, not a node.
    const std::string path = lowercased(top->path().bytes());
    return path.find("/documents/") != std::string::npos || path.ends_with("/documents");
}

FileTypeCategory treemapFolderCategory(const FileNode& node, bool disk, bool isInDocuments)
{
    const std::string lowered = lowercased(lastComponent(node.name()));
    std::string_view key = lowered;
    if (key.starts_with('.')) {
        key.remove_prefix(1);
    }
    const std::optional<FileTypeCategory> named = categoryOfKey(key);
    if (named == FileTypeCategory::dev) {
        return FileTypeCategory::dev;
    }
    if (isInDocuments) {
        return FileTypeCategory::project;
    }
    if (named) {
        return *named;
    }
    const FileTypeCategory held = TreemapLayout::dominantCategory(node, disk, folderWalkDepth);
    const bool isSource = held == FileTypeCategory::code || held == FileTypeCategory::dev;
    return isSource ? FileTypeCategory::project : held;
}

FileTypeCategory TreemapLayout::dominantCategory(const FileNode& node, bool disk, int maxWalkDepth,
                                                 int nodeBudget)
{
    CategoryWalk walk(disk, maxWalkDepth, nodeBudget);
    walk.enter(node, 0);
    return walk.largest();
}

FileTypeCategory TreemapLayout::folderCategory(const FileNode& node, bool disk)
{
    return treemapFolderCategory(node, disk, treemapIsInDocuments(node));
}

} // namespace quorvane

// SPDX-License-Identifier: MIT
#include "IndexSupport.h"

#include "IndexBuilder.h"
#include "IndexSearch.h"
#include "NameFolding.h"
#include "SpotlightSearcher.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <iterator>

namespace quorvane::test {
namespace {

NodeValues folderNamed(std::string_view name, std::int64_t id)
{
    NodeValues values;
    values.id = id;
    values.name = name;
    values.metadata.isDirectory = true;
    values.metadata.dateModified = 0;
    return values;
}

std::string oddName(std::mt19937& random)
{
    static const char* const pieces[] = {"a",         "B",    "report", "X",        "\xC3\x89",
                                         "e\xCC\x81", "\xFF", "\n",     " ",        "-",
                                         ".",         "1",    "ss",     "\xC3\x9F", "\xE6\x96\x87"};
    static const char* const endings[] = {".PDF", ".jpg", ".mp4", "", ".app", ".tar.gz", ".py"};
    if (random() % 20 == 0) {
        return "node_modules";
    }
    std::string name;
    for (std::size_t i = 1 + random() % 6; i > 0; --i) {
        name += pieces[random() % std::size(pieces)];
    }
    return name + endings[random() % std::size(endings)];
}

bool matches(const FileNode& node, const FilePath& path, const SearchRequest& request)
{
    const FilePath parent = path.parent();
    std::string folded;
    appendFoldedName(folded, node.name());
    const QStringList wanted = request.query.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const bool hasWords = std::all_of(wanted.begin(), wanted.end(), [&](const QString& word) {
        std::string foldedWord;
        appendFoldedName(foldedWord, word.toStdString());
        return folded.find(foldedWord) != std::string::npos;
    });
    return request.scope.holds(parent) && hasWords &&
           (!request.kind || FileKindClassifier::classify(node.name(), node.isDirectory()) ==
                                 resultKind(*request.kind)) &&
           request.filters.pass(node.logicalSize(),
                                static_cast<double>(node.dateModified().value_or(0)) * 1000.0);
}

} // namespace

IndexInMemory::IndexInMemory(FileNode& root, std::vector<RemoteMount> leftOut)
{
    const LockedFlag stop;
    IndexBuilder builder(madeMs, std::move(leftOut));
    EXPECT_TRUE(builder.add(root, stop));
    m_bytes = builder.bytes();
    read();
}

IndexInMemory::IndexInMemory(const IndexBuilder& builder)
    : IndexInMemory(builder.bytes())
{}

IndexInMemory::IndexInMemory(std::string bytes)
    : m_bytes(std::move(bytes))
{
    read();
}

void IndexInMemory::read()
{
    m_aligned.resize((m_bytes.size() + 7) / 8);
    std::copy(m_bytes.begin(), m_bytes.end(), reinterpret_cast<char*>(m_aligned.data()));
    m_table = IndexTable::fromBytes(std::as_bytes(std::span(m_aligned)).first(m_bytes.size()));
}

void repairChecksum(std::string& bytes)
{
    IndexChecksum checksum;
    checksum.add(std::as_bytes(std::span(bytes)).subspan(offsetof(IndexHeader, version)));
    const std::uint64_t value = checksum.value();
    std::memcpy(bytes.data() + offsetof(IndexHeader, checksum), &value, sizeof value);
}

void readEverything(const IndexTable& table)
{
    const LockedFlag stop;
    std::size_t bytes = 0;
    for (IndexTable::Row row = 0; row < table.size(); ++row) {
        bytes += table.path(row).bytes().size() + table.name(row).size() +
                 table.foldedName(row).size() + rawValue(table.kind(row)).size() +
                 static_cast<std::size_t>(table.bytesOf(row) ^ table.modifiedSeconds(row));
    }
    SearchRequest request;
    request.query = QString::number(bytes % 10);
    searchIndex(table, request, 10, stop);
    request.query = QStringLiteral("a");
    searchIndex(table, request, 10, stop);
    request.scope = table.path(table.size() - 1);
    searchIndex(table, request, 10, stop);
    request.query.clear();
    request.filters.minBytes = 0;
    request.scope = FilePath("/");
    searchIndex(table, request, 10, stop);
}

std::shared_ptr<FileTree> oddTree(unsigned seed, std::size_t entries)
{
    std::mt19937 random(seed);
    auto tree = FileTree::create(FilePath("/odd"), folderNamed("odd", 0));
    std::deque<FileNode*> folders{&tree->root()};
    std::size_t made = 0;
    while (made < entries && !folders.empty()) {
        FileNode* const folder = folders.front();
        folders.pop_front();
        const std::size_t count = std::min<std::size_t>(entries - made, 2 + random() % 60);
        std::vector<std::string> names(count);
        std::vector<NodeValues> values(count);
        for (std::size_t i = 0; i < count; ++i) {
            // A number of its own keeps the names of a folder apart, but for its packages.
            names[i] = oddName(random);
            names[i] += names[i] == "node_modules" && i == 0 ? "" : std::to_string(i);
            values[i] = folderNamed(names[i], static_cast<std::int64_t>(++made));
            values[i].metadata.isDirectory = i == 0 || random() % 10 == 0;
            values[i].metadata.isRegularFile = !values[i].metadata.isDirectory;
            values[i].metadata.logicalSize = static_cast<std::int64_t>(random() % 1000);
            values[i].metadata.dateModified = static_cast<std::int64_t>(random() % 1000);
        }
        for (FileNode& child : tree->addChildren(*folder, values)) {
            if (child.isDirectory()) {
                folders.push_back(&child);
            }
        }
    }
    tree->root().finalizeTree();
    return tree;
}

std::shared_ptr<FileTree> chainTree(int depth)
{
    auto tree = FileTree::create(FilePath("/chain"), folderNamed("chain", 0));
    FileNode* folder = &tree->root();
    for (int i = 1; i <= depth; ++i) {
        const NodeValues values = folderNamed("d", i);
        folder = &tree->addChildren(*folder, std::span(&values, 1)).front();
    }
    NodeValues end = folderNamed("end", depth + 1);
    end.metadata.isDirectory = false;
    end.metadata.isRegularFile = true;
    tree->addChildren(*folder, std::span(&end, 1));
    tree->root().finalizeTree();
    return tree;
}

SearchRequest randomRequest(std::mt19937& random, FileNode& root)
{
    static const char* const queries[] = {"", "a", "report", "E", "x 1", "\xC3\xA9 b", "ss", "zzz"};
    SearchRequest request;
    request.query = QString::fromUtf8(queries[random() % std::size(queries)]);
    if (random() % 3 == 0) {
        request.kind = allSearchFilterKinds[random() % allSearchFilterKinds.size()];
    }
    if (random() % 3 == 0) {
        request.filters.minBytes = static_cast<std::int64_t>(random() % 1000);
    }
    if (random() % 4 == 0) {
        request.filters.maxBytes = static_cast<std::int64_t>(random() % 1000);
    }
    if (random() % 4 == 0) {
        request.filters.fromMs = static_cast<double>(random() % 1000) * 1000.0;
    }
    FileNode* scope = &root;
    while (random() % 2 == 0 && !scope->children().empty()) {
        scope = &scope->children()[random() % scope->children().size()];
    }
    request.scope = scope->path();
    return request;
}

std::vector<std::string> plainSearch(FileNode& root, const SearchRequest& request,
                                     std::size_t limit)
{
    struct Found
    {
        FilePath path;
        std::int64_t size;
    };
    std::vector<Found> found;
    // Level by level, as the rows stand.
    std::deque<FileNode*> folders{&root};
    for (; !folders.empty(); folders.pop_front()) {
        for (FileNode& child : folders.front()->children()) {
            const FilePath path = child.path();
            if (matches(child, path, request)) {
                found.push_back({path, child.logicalSize()});
            }
            folders.push_back(&child);
        }
    }
    const bool bySize = request.filters.minBytes || request.filters.maxBytes;
    std::stable_sort(found.begin(), found.end(), [&](const Found& a, const Found& b) {
        return bySize ? a.size > b.size : searchRank(a.path) < searchRank(b.path);
    });
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < std::min(limit, found.size()); ++i) {
        paths.push_back(found[i].path.bytes());
    }
    return paths;
}

} // namespace quorvane::test

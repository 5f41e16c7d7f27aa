// SPDX-License-Identifier: MIT
#include "IndexBuilder.h"

#include "FileTree.h"
#include "NameFolding.h"
#include "StoredFiles.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <utility>

namespace quorvane {
namespace {

constexpr std::string_view packagesFolder = "node_modules";
constexpr std::size_t columnAlignment = 8;
/// How many folders are added between two looks at the stop flag.
constexpr std::size_t stopInterval = 1024;

bool isNumber(std::string_view text)
{
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

} // namespace

bool isTrashFolder(const FilePath& folder)
{
    constexpr std::string_view numbered = ".Trash-";
    const std::string_view name = folder.lastComponent();
    return name == ".Trash" || name == ".trash" ||
           (name.starts_with(numbered) && isNumber(name.substr(numbered.size()))) ||
           folder.bytes().ends_with("/.local/share/Trash");
}

IndexBuilder::IndexBuilder(std::int64_t madeMs, std::vector<RemoteMount> leftOut)
    : m_madeMs(madeMs)
    , m_leftOut(std::move(leftOut))
{}

bool IndexBuilder::add(FileNode& root, const LockedFlag& stop)
{
    findUnlisted(root);
    return addAll(root.path(), {&root, 0}, stop);
}

bool IndexBuilder::add(const IndexTable& older, FileNode& root, const LockedFlag& stop)
{
    findUnlisted(root);
    m_older = &older;
    m_madeMs = std::min(m_madeMs, older.madeMs());
    if (const std::optional<Row> row = older.rowAt(root.path())) {
        m_graft = &root;
        m_graftedRow = *row;
    }
    const bool isWhole = m_graft != nullptr && m_graftedRow == 0;
    return addAll(older.rootPath(), {isWhole ? &root : nullptr, 0}, stop);
}

void IndexBuilder::findUnlisted(FileNode& root)
{
    for (const RemoteMount& mount : m_leftOut) {
        const FileNode* const node = findNode(root, mount.mountPoint);
        if (node != nullptr && node != &root) {
            m_unlisted.push_back(node);
        }
    }
}

/// The rows themselves are the queue of folders whose entries are still to come.
bool IndexBuilder::addAll(const FilePath& root, Source source, const LockedFlag& stop)
{
    m_root = root.bytes();
    const bool isInPackages = (m_root + '/').find("/node_modules/") != std::string::npos;
    addRow(0, source, isInPackages ? belowPackages : std::uint8_t{0});
    for (std::size_t row = 0; row < m_sources.size(); ++row) {
        addEntriesOf(static_cast<Row>(row));
        constexpr std::size_t limit = std::numeric_limits<Row>::max();
        const bool isFull =
            m_sources.size() >= limit || m_names.size() >= limit || m_spelling.size() >= limit;
        if (isFull || (row % stopInterval == 0 && stop.get())) {
            return false;
        }
    }
    m_sources = {};
    return true;
}

void IndexBuilder::addEntriesOf(Row folder)
{
    const Source source = m_sources[folder];
    const std::uint8_t inherited = holdsPackages(folder) ? belowPackages : std::uint8_t{0};
    if (source.node == nullptr) {
        const IndexTable::Rows children = m_older->childrenOf({source.older, source.older + 1});
        for (Row child = children.first; child != children.end; ++child) {
            const bool isGrafted = m_graft != nullptr && child == m_graftedRow;
            addRow(folder, isGrafted ? Source{m_graft, child} : Source{nullptr, child}, inherited);
        }
        return;
    }
    if (!m_unlisted.empty() &&
        std::find(m_unlisted.begin(), m_unlisted.end(), source.node) != m_unlisted.end()) {
        return;
    }
    for (FileNode& child : source.node->children()) {
        const bool mayBeTrash =
            child.isDirectory() && (child.name().starts_with(".") || child.name() == "Trash");
        if (!mayBeTrash || !isTrashFolder(child.path())) {
            addRow(folder, {&child, 0}, inherited);
        }
    }
}

void IndexBuilder::addRow(Row parent, Source source, std::uint8_t inherited)
{
    const FileNode* const node = source.node;
    const std::string_view name = m_sources.empty() ? std::string_view() : nameOf(source);
    const ResultKind kind = node == nullptr
                                ? m_older->kind(source.older)
                                : FileKindClassifier::classify(name, node->isDirectory());
    m_sources.push_back(source);
    m_parents.push_back(parent);
    m_sizes.push_back(node == nullptr ? m_older->bytesOf(source.older) : node->logicalSize());
    m_dates.push_back(node == nullptr ? m_older->modifiedSeconds(source.older)
                                      : node->dateModified().value_or(0));
    m_marks.push_back(static_cast<std::uint8_t>(kind) | inherited);
    addName(name);
}

void IndexBuilder::addName(std::string_view name)
{
    const std::size_t start = m_names.size();
    appendFoldedName(m_names, name);
    if (std::string_view(m_names).substr(start) != name) {
        m_spelledRows.push_back(static_cast<Row>(m_marks.size() - 1));
        m_spelling.append(name);
        m_spelledStarts.push_back(static_cast<std::uint32_t>(m_spelling.size()));
    }
    m_names.push_back('\0');
    m_nameStarts.push_back(static_cast<std::uint32_t>(m_names.size()));
}

std::string_view IndexBuilder::nameOf(Source source) const
{
    return source.node == nullptr ? m_older->name(source.older) : source.node->name();
}

bool IndexBuilder::holdsPackages(Row folder) const
{
    return (m_marks[folder] & belowPackages) != 0 ||
           (folder != 0 && nameOf(m_sources[folder]) == packagesFolder);
}

std::string IndexBuilder::bytes() const
{
    IndexHeader header;
    header.madeMs = m_madeMs;
    header.entries = m_sizes.size();
    header.spelled = m_spelledRows.size();
    header.nameBytes = m_names.size();
    header.spellingBytes = m_spelling.size();
    header.rootBytes = m_root.size();
    const std::array columns{
        std::as_bytes(std::span(m_sizes)),       std::as_bytes(std::span(m_dates)),
        std::as_bytes(std::span(m_parents)),     std::as_bytes(std::span(m_nameStarts)),
        std::as_bytes(std::span(m_spelledRows)), std::as_bytes(std::span(m_spelledStarts)),
        std::as_bytes(std::span(m_marks)),       std::as_bytes(std::span(m_names)),
        std::as_bytes(std::span(m_spelling)),    std::as_bytes(std::span(m_root))};
    std::size_t length = sizeof header;
    for (const std::span<const std::byte> column : columns) {
        length += column.size() + columnAlignment;
    }
    std::string bytes(sizeof header, '\0');
    bytes.reserve(length);
    for (const std::span<const std::byte> column : columns) {
        bytes.append(reinterpret_cast<const char*>(column.data()), column.size());
        const std::size_t beyond = bytes.size() % columnAlignment;
        bytes.append(beyond == 0 ? 0 : columnAlignment - beyond, '\0');
    }
    std::memcpy(bytes.data(), &header, sizeof header);
    IndexChecksum checksum;
    checksum.add(std::as_bytes(std::span(bytes)).subspan(offsetof(IndexHeader, version)));
    header.checksum = checksum.value();
    std::memcpy(bytes.data(), &header, sizeof header);
    return bytes;
}

bool IndexBuilder::write(const FilePath& file) const
{
    StoredFiles& files = StoredFiles::system();
    const FilePath folder = file.parent();
    return files.makeFolder(folder) && files.save(folder, file.lastComponent(), bytes());
}

} // namespace quorvane

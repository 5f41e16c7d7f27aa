// SPDX-License-Identifier: MIT
#include "DumpReader.h"

#include "DumpRecord.h"
#include "FolderChain.h"

#include <istream>
#include <numeric>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

/// An entry between its line and its node. A parent always stands before its children.
struct Entry
{
    std::size_t line = 0;
    std::size_t parent = 0;
    std::size_t nameStart = 0;
    std::size_t nameLength = 0;
    std::int64_t id = 0;
    ItemMetadata metadata;
    NodeRollups rollups;
    bool hasScannedBytes = false;
    bool hasScannedBytesOnDisk = false;
    bool hasFileCount = false;
    bool hasDirectoryCount = false;
};

class Reader
{
public:
    DumpResult read(std::istream& in)
    {
        std::string line;
        while (std::getline(in, line)) {
            ++m_lineNumber;
            if (line.find_first_not_of(" \t\r") == std::string::npos) {
                continue;
            }
            std::string fault = readDumpRecord(line, m_record);
            if (fault.empty()) {
                fault = m_entries.empty() ? addRoot() : addBelowRoot();
            }
            if (!fault.empty()) {
                return DumpFault{m_lineNumber, std::move(fault)};
            }
        }
        if (in.bad()) {
            return DumpFault{0, "cannot be read"};
        }
        if (m_entries.empty()) {
            return DumpFault{m_lineNumber + 1, "no line tells the root"};
        }
        if (const std::size_t line = rollUpWhatIsMissing()) {
            return DumpFault{line, "the sums below this folder do not fit into 64 bits"};
        }
        return build();
    }

private:
    std::string addRoot()
    {
        const FilePath path(m_record.path);
        const std::string_view last = path.lastComponent();
        // A name that had to be shown with replacement characters is spelt out by the raw path.
        const bool isNameExact =
            m_record.hasName &&
            (!m_record.hasRawPath || m_record.name.find("\xEF\xBF\xBD") == std::string::npos);
        if (!isNameExact) {
            m_record.name = last.empty() ? path.bytes() : std::string(last);
        }
        m_rootPath = path;
        m_folders.start(path.bytes());
        add(0);
        return {};
    }

    std::string addBelowRoot()
    {
        const std::size_t slash = m_record.path.rfind('/');
        const std::string_view path = m_record.path;
        const std::string_view last = slash == path.npos ? path : path.substr(slash + 1);
        if (last.empty()) {
            return "\"path\" names no entry below the root";
        }
        if (m_record.hasName && !m_record.hasRawPath && m_record.name != last) {
            return "\"name\" is not the last component of \"path\"";
        }
        std::string_view parentPath;
        if (slash != path.npos) {
            parentPath = path.substr(0, slash == 0 ? 1 : slash);
        }
        const std::optional<std::size_t> parent = m_folders.find(parentPath);
        if (!parent || !m_entries[*parent].metadata.isDirectory) {
            return "no earlier line is the folder of \"path\"";
        }
        m_record.name.assign(last);
        if (m_record.metadata.isDirectory) {
            m_folders.add(*parent, last, m_entries.size(), path);
        }
        add(*parent);
        return {};
    }

    void add(std::size_t parent)
    {
        Entry entry;
        entry.line = m_lineNumber;
        entry.parent = parent;
        entry.nameStart = m_names.size();
        entry.nameLength = m_record.name.size();
        m_names.append(m_record.name);
        entry.id = m_record.id;
        entry.metadata = m_record.metadata;
        entry.hasScannedBytes = m_record.scannedBytes.has_value();
        entry.hasScannedBytesOnDisk = m_record.scannedBytesOnDisk.has_value();
        entry.hasFileCount = m_record.fileCount.has_value();
        entry.hasDirectoryCount = m_record.directoryCount.has_value();
        entry.rollups = ownRollups(m_record.metadata);
        entry.rollups.scannedBytes = m_record.scannedBytes.value_or(entry.rollups.scannedBytes);
        entry.rollups.scannedBytesOnDisk =
            m_record.scannedBytesOnDisk.value_or(entry.rollups.scannedBytesOnDisk);
        entry.rollups.fileCount = m_record.fileCount.value_or(entry.rollups.fileCount);
        entry.rollups.directoryCount =
            m_record.directoryCount.value_or(entry.rollups.directoryCount);
        m_entries.push_back(entry);
    }

    /// The part of the rollups that an entry itself contributes.
    static NodeRollups ownRollups(const ItemMetadata& metadata)
    {
        NodeRollups own;
        if (metadata.isDirectory) {
            own.directoryCount = 1;
        } else {
            own.scannedBytes = metadata.logicalSize;
            own.scannedBytesOnDisk = metadata.sizeOnDisk;
            own.fileCount = metadata.isRegularFile ? 1 : 0;
        }
        return own;
    }

    /// The line of the first folder found whose sums overflow; 0 when none does.
    std::size_t rollUpWhatIsMissing()
    {
        for (std::size_t i = m_entries.size() - 1; i > 0; --i) {
            const NodeRollups& from = m_entries[i].rollups;
            Entry& folder = m_entries[m_entries[i].parent];
            NodeRollups& to = folder.rollups;
            const auto roll = [](bool isGiven, std::int64_t& sum, std::int64_t part) {
                return isGiven || !__builtin_add_overflow(sum, part, &sum);
            };
            if (!roll(folder.hasScannedBytes, to.scannedBytes, from.scannedBytes) ||
                !roll(folder.hasScannedBytesOnDisk, to.scannedBytesOnDisk,
                      from.scannedBytesOnDisk) ||
                !roll(folder.hasFileCount, to.fileCount, from.fileCount) ||
                !roll(folder.hasDirectoryCount, to.directoryCount, from.directoryCount)) {
                return folder.line;
            }
        }
        return 0;
    }

    NodeValues valuesOf(const Entry& entry) const
    {
        return {entry.id, std::string_view(m_names).substr(entry.nameStart, entry.nameLength),
                entry.metadata};
    }

    /// Entries grouped by parent, each group in the order of the lines. Group i begins at
    /// starts[i].
    std::vector<std::size_t> childrenByParent(std::vector<std::size_t>& starts) const
    {
        starts.assign(m_entries.size() + 1, 0);
        for (std::size_t i = 1; i < m_entries.size(); ++i) {
            ++starts[m_entries[i].parent + 1];
        }
        std::partial_sum(starts.begin(), starts.end(), starts.begin());
        std::vector<std::size_t> next(starts.begin(), starts.end() - 1);
        std::vector<std::size_t> children(m_entries.size() - 1);
        for (std::size_t i = 1; i < m_entries.size(); ++i) {
            children[next[m_entries[i].parent]++] = i;
        }
        return children;
    }

    std::shared_ptr<FileTree> build() const
    {
        std::vector<std::size_t> starts;
        const std::vector<std::size_t> children = childrenByParent(starts);
        auto tree = FileTree::create(m_rootPath, valuesOf(m_entries.front()));
        std::vector<FileNode*> nodes(m_entries.size(), nullptr);
        nodes.front() = &tree->root();
        std::vector<NodeValues> values;
        for (std::size_t i = 0; i < m_entries.size(); ++i) {
            values.clear();
            for (std::size_t c = starts[i]; c < starts[i + 1]; ++c) {
                values.push_back(valuesOf(m_entries[children[c]]));
            }
            if (!values.empty()) {
                const std::span<FileNode> made = tree->addChildren(*nodes[i], values);
                for (std::size_t k = 0; k < made.size(); ++k) {
                    nodes[children[starts[i] + k]] = &made[k];
                }
            }
            setRollups(*tree, *nodes[i], m_entries[i].rollups);
        }
        return tree;
    }

    static void setRollups(FileTree& tree, FileNode& node, const NodeRollups& rollups)
    {
        const bool areSet = node.scannedBytes() == rollups.scannedBytes &&
                            node.scannedBytesOnDisk() == rollups.scannedBytesOnDisk &&
                            node.fileCount() == rollups.fileCount &&
                            node.directoryCount() == rollups.directoryCount;
        if (!areSet) {
            tree.setRollups(node, rollups);
        }
    }

    DumpRecord m_record;
    std::size_t m_lineNumber = 0;
    FilePath m_rootPath;
    FolderChain m_folders;
    std::string m_names;
    std::vector<Entry> m_entries;
};

} // namespace

std::string DumpFault::text() const
{
    return line == 0 ? message : "line " + std::to_string(line) + ": " + message;
}

DumpResult readDump(std::istream& in)
{
    return Reader().read(in);
}

} // namespace quorvane

// SPDX-License-Identifier: MIT
#include "DumpWriter.h"

#include "FileNode.h"
#include "JsonText.h"

#include <ostream>
#include <string>
#include <vector>

namespace quorvane {
namespace {

constexpr std::size_t flushSize = 256 * 1024;

/// Walks with one growing path: a child's path is its folder's with a name behind it, in raw bytes
/// and once more as escaped text, so that no name is escaped more often than it is listed.
class Writer
{
public:
    explicit Writer(std::ostream& out)
        : m_out(out)
    {}

    bool write(const FileNode& root)
    {
        m_rawPath = root.path().bytes();
        m_isUtf8 = appendJsonText(m_pathText, m_rawPath);
        line(root);
        enter(root);
        while (!m_levels.empty() && m_out) {
            Level& level = m_levels.back();
            m_rawPath.resize(level.rawLength);
            m_pathText.resize(level.textLength);
            if (level.next == level.end) {
                m_levels.pop_back();
                continue;
            }
            const FileNode& node = *level.next++;
            m_rawPath.append(node.name());
            m_isUtf8 = appendJsonText(m_pathText, node.name()) && level.isUtf8;
            line(node);
            enter(node);
        }
        flush();
        return static_cast<bool>(m_out);
    }

private:
    struct Level
    {
        const FileNode* next;
        const FileNode* end;
        std::size_t rawLength; ///< of the folder's path and the slash behind it
        std::size_t textLength;
        bool isUtf8;
    };

    void enter(const FileNode& folder)
    {
        const std::span<FileNode> children = folder.children();
        if (children.empty()) {
            return;
        }
        if (!m_rawPath.empty() && !m_rawPath.ends_with('/')) {
            m_rawPath.push_back('/');
            m_pathText.push_back('/');
        }
        m_levels.push_back({children.data(), children.data() + children.size(), m_rawPath.size(),
                            m_pathText.size(), m_isUtf8});
    }

    void line(const FileNode& node)
    {
        JsonObject object(m_buffer);
        object.integer("id", node.id());
        object.escapedText("path", m_pathText);
        if (!m_isUtf8) {
            object.hexadecimal("rawPath", m_rawPath);
        }
        object.text("name", node.name());
        object.boolean("isDirectory", node.isDirectory());
        object.boolean("isSymbolicLink", node.isSymbolicLink());
        object.boolean("isRegularFile", node.isRegularFile());
        object.integer("logicalSize", node.logicalSize());
        object.integer("sizeOnDisk", node.sizeOnDisk());
        object.integer("scannedBytes", node.scannedBytes());
        object.integer("scannedBytesOnDisk", node.scannedBytesOnDisk());
        object.integer("fileCount", node.fileCount());
        object.integer("directoryCount", node.directoryCount());
        if (const std::optional<std::int64_t> date = node.dateModified()) {
            object.integer("dateModified", *date);
        } else {
            object.null("dateModified");
        }
        object.endLine();
        if (m_buffer.size() >= flushSize) {
            flush();
        }
    }

    void flush()
    {
        m_out.write(m_buffer.data(), static_cast<std::streamsize>(m_buffer.size()));
        m_buffer.clear();
    }

    std::ostream& m_out;
    std::string m_buffer;
    std::string m_rawPath;
    std::string m_pathText;
    bool m_isUtf8 = true;
    std::vector<Level> m_levels;
};

} // namespace

bool writeDump(const FileNode& root, std::ostream& out)
{
    return Writer(out).write(root);
}

} // namespace quorvane

// SPDX-License-Identifier: MIT
#include "RuleTest.h"

#include "ByteFormatter.h"
#include "Text.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace quorvane::TagEngine {
namespace {

/// The operand without the blanks and tabs at its ends.
QString trimmed(const QString& value)
{
    const auto isBlank = [](QChar c) { return c == QLatin1Char(' ') || c == QLatin1Char('\t'); };
    const auto begin = std::find_if_not(value.begin(), value.end(), isBlank);
    const auto end = std::find_if_not(value.rbegin(), std::make_reverse_iterator(begin), isBlank);
    return QString(begin, end.base() - begin);
}

/// What follows the last dot of a name, but not of one that begins with its only dot.
std::string_view pathExtension(std::string_view name)
{
    const std::size_t dot = name.rfind('.');
    return dot == name.npos || dot == 0 ? std::string_view() : name.substr(dot + 1);
}

/// Whether an ASCII text is the wanted one when it is lower-cased: comparableText() without a copy.
bool isLowered(std::string_view text, std::string_view wanted)
{
    return std::equal(text.begin(), text.end(), wanted.begin(), wanted.end(),
                      [](char c, char lower) { return asciiLower(c) == lower; });
}

bool isReadable(const FilePath& path, std::span<const MountedVolume> volumes)
{
    const MountedVolume* nearest = nullptr;
    for (const MountedVolume& volume : volumes) {
        // Of two at one place the later one hides the earlier one.
        if (volume.mountPoint.holds(path) &&
            (nearest == nullptr ||
             volume.mountPoint.bytes().size() >= nearest->mountPoint.bytes().size())) {
            nearest = &volume;
        }
    }
    return nearest == nullptr || nearest->kind == MountKind::local;
}

/// The folder of the tree at a path below its root; null when there is none.
const FileNode* folderAt(const FileNode& root, const FilePath& rootPath, const FilePath& path)
{
    std::string_view rest = path.bytes();
    rest.remove_prefix(rootPath.bytes().size());
    const FileNode* node = &root;
    while (node != nullptr && !rest.empty()) {
        rest.remove_prefix(rest.front() == '/' ? 1 : 0);
        const std::string_view name = rest.substr(0, rest.find('/'));
        rest.remove_prefix(name.size());
        const std::span<FileNode> children = node->children();
        const auto child =
            std::find_if(children.begin(), children.end(), [&](const FileNode& each) {
                return each.isDirectory() && each.name() == name;
            });
        node = child == children.end() ? nullptr : &*child;
    }
    return node;
}

} // namespace

RuleTest::RuleTest(const TagRule& rule)
    : m_matchAny(rule.matchAny)
{
    for (const TagCondition& condition : rule.conditions) {
        Condition ready{condition.type, {}, {}, 0, {}};
        if (takesSize(condition.type)) {
            ready.bytes = ByteSize::read(condition.value.toStdString()).bytes;
        } else {
            const QString value = trimmed(condition.value);
            ready.value = comparableText(value.toStdString());
            if (condition.type == TagConditionType::folderContains) {
                ready.folder = m_folderNeedles.size();
                m_folderNeedles.push_back(ready.value);
            } else {
                ready.needle = TextNeedle(value.toLower());
            }
        }
        m_readsContents |= condition.type == TagConditionType::contentContains;
        m_conditions.push_back(std::move(ready));
    }
}

bool RuleTest::nameHolds(const Condition& condition, std::string_view name)
{
    const std::string_view wanted = condition.value;
    switch (condition.type) {
    case TagConditionType::filenameStartsWith:
        return isAscii(name) ? isLowered(name.substr(0, wanted.size()), wanted)
                             : comparableText(name).starts_with(wanted);
    case TagConditionType::filenameEndsWith:
        return isAscii(name)
                   ? isLowered(name.substr(name.size() - std::min(wanted.size(), name.size())),
                               wanted)
                   : comparableText(name).ends_with(wanted);
    default: {
        const std::string_view extension = pathExtension(name);
        return !wanted.empty() && (isAscii(extension) ? isLowered(extension, wanted)
                                                      : comparableText(extension) == wanted);
    }
    }
}

bool RuleTest::holdsFor(const FileNode& node, const FolderRow& folder, ContentReader* reader,
                        const std::function<bool()>& isCancelled) const
{
    const auto holds = [&](const Condition& condition) {
        switch (condition.type) {
        case TagConditionType::filenameContains:
            return condition.needle.isInName(node.name());
        case TagConditionType::folderContains:
            return folder.containsNeedle[condition.folder] != 0;
        case TagConditionType::sizeGT:
            return condition.bytes && node.scannedBytes() > *condition.bytes;
        case TagConditionType::sizeLT:
            return condition.bytes && node.scannedBytes() < *condition.bytes;
        case TagConditionType::contentContains: {
            if (condition.needle.isEmpty() || reader == nullptr || !folder.isReadable ||
                isCancelled()) {
                return false;
            }
            const std::optional<std::string_view> contents = reader->beginningOf(node);
            return contents && condition.needle.isInContents(*contents);
        }
        default:
            return nameHolds(condition, node.name());
        }
    };
    if (m_conditions.empty()) {
        return true;
    }
    return m_matchAny ? std::any_of(m_conditions.begin(), m_conditions.end(), holds)
                      : std::all_of(m_conditions.begin(), m_conditions.end(), holds);
}

FolderFacts::FolderFacts(const RuleTest& test, const ScanFiles& files,
                         std::span<const MountedVolume> volumes)
    : m_needles(test.folderNeedles().size())
    , m_containsNeedle(files.folders().size() * m_needles)
{
    for (std::size_t needle = 0; needle < m_needles; ++needle) {
        findNeedle(needle, test.folderNeedles()[needle], files);
    }
    if (test.readsContents()) {
        findVolumes(files, volumes);
    }
}

void FolderFacts::findNeedle(std::size_t needle, const std::string& text, const ScanFiles& files)
{
    if (text.empty()) {
        return;
    }
    // A folder's path begins with its parent's, so the answer passes down, and only the end of each
    // path has to be kept: what could be the start of the needle.
    const std::vector<ScanFiles::Folder>& folders = files.folders();
    std::vector<std::string> ends(folders.size());
    for (std::size_t i = 0; i < folders.size(); ++i) {
        char& answer = m_containsNeedle[i * m_needles + needle];
        std::string path;
        if (i < 2) {
            const FilePath rootPath = files.root().path();
            path = comparableText((i == 0 ? rootPath.parent() : rootPath).bytes());
        } else {
            answer = m_containsNeedle[folders[i].parent * m_needles + needle];
            path = ends[folders[i].parent];
            path += path.ends_with('/') && folders[i].parent == 1 ? "" : "/";
            path += comparableText(folders[i].node->name());
        }
        answer = answer != 0 || path.find(text) != path.npos ? 1 : 0;
        ends[i] = path.substr(path.size() - std::min(path.size(), text.size()));
    }
}

void FolderFacts::findVolumes(const ScanFiles& files, std::span<const MountedVolume> volumes)
{
    const FilePath rootPath = files.root().path();
    std::unordered_map<const FileNode*, bool> mountedOn;
    bool areAllReadable = isReadable(rootPath, volumes);
    for (const MountedVolume& volume : volumes) {
        if (volume.mountPoint != rootPath && rootPath.holds(volume.mountPoint)) {
            if (const FileNode* const folder =
                    folderAt(files.root(), rootPath, volume.mountPoint)) {
                const bool isLocal = volume.kind == MountKind::local;
                mountedOn[folder] = isLocal;
                areAllReadable = areAllReadable && isLocal;
            }
        }
    }
    if (areAllReadable) {
        return;
    }
    const std::vector<ScanFiles::Folder>& folders = files.folders();
    m_isReadable.resize(folders.size());
    m_isReadable.front() = isReadable(rootPath.parent(), volumes) ? 1 : 0;
    for (std::size_t i = 1; i < folders.size(); ++i) {
        const auto mounted = mountedOn.find(folders[i].node);
        if (i == 1) {
            m_isReadable[i] = isReadable(rootPath, volumes) ? 1 : 0;
        } else if (mounted != mountedOn.end()) {
            m_isReadable[i] = mounted->second ? 1 : 0;
        } else {
            m_isReadable[i] = m_isReadable[folders[i].parent];
        }
    }
}

FolderRow FolderFacts::rowOf(std::uint32_t folder) const
{
    return {m_isReadable.empty() || m_isReadable[folder] != 0,
            std::span(m_containsNeedle).subspan(folder * m_needles, m_needles)};
}

FolderRow folderRowOf(const FilePath& folder, const RuleTest& test,
                      std::span<const MountedVolume> volumes, std::vector<char>& buffer)
{
    const std::string path = comparableText(folder.bytes());
    buffer.clear();
    for (const std::string& needle : test.folderNeedles()) {
        buffer.push_back(!needle.empty() && path.find(needle) != path.npos ? 1 : 0);
    }
    return {isReadable(folder, volumes), buffer};
}

} // namespace quorvane::TagEngine

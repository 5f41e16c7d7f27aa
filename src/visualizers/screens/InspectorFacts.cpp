// SPDX-License-Identifier: MIT
#include "InspectorFacts.h"

#include "ByteFormatter.h"
#include "FileTypeCategory.h"
#include "RelativeDate.h"

#include <QCoreApplication>

namespace quorvane {

QString kindOf(const FileNode& node)
{
    if (node.isDirectory()) {
        return QCoreApplication::translate("InspectorView", "Folder");
    }
    return node.isSymbolicLink() ? QCoreApplication::translate("InspectorView", "Symbolic Link")
                                 : QCoreApplication::translate("InspectorView", "File");
}

QString symbolOf(const FileNode& node)
{
    if (node.isDirectory()) {
        return QStringLiteral("folder.fill");
    }
    if (node.isSymbolicLink()) {
        return QStringLiteral("link");
    }
    switch (fileTypeCategoryForName(node.name())) {
    case FileTypeCategory::video:
        return QStringLiteral("film");
    case FileTypeCategory::image:
        return QStringLiteral("photo");
    case FileTypeCategory::audio:
        return QStringLiteral("music.note");
    case FileTypeCategory::archive:
        return QStringLiteral("doc.zipper");
    case FileTypeCategory::doc:
        return QStringLiteral("doc.text");
    case FileTypeCategory::code:
        return QStringLiteral("chevron.left.forwardslash.chevron.right");
    default:
        return QStringLiteral("doc.fill");
    }
}

bool tellsCreation(const FileNode& node)
{
    return !node.isDirectory() || node.largestChild() == nullptr;
}

std::vector<InspectorFact> inspectorFacts(const FileNode& node, std::optional<std::int64_t> created,
                                          std::int64_t now)
{
    std::vector<InspectorFact> facts{
        {QCoreApplication::translate("InspectorView", "Size"), node.formattedBytes()},
        {QCoreApplication::translate("InspectorView", "Size on disk"),
         node.formattedBytesOnDisk()}};
    const std::int64_t saved = node.scannedBytes() - node.scannedBytesOnDisk();
    if (saved >= 1) {
        facts.push_back({QCoreApplication::translate("InspectorView", "Saved by FS"),
                         ByteFormatter::string(saved)});
    }
    if (node.isDirectory()) {
        facts.push_back({QCoreApplication::translate("InspectorView", "Folders"),
                         QString::number(node.directoryCount())});
        facts.push_back({QCoreApplication::translate("InspectorView", "Files"),
                         QString::number(node.fileCount())});
    }
    const FileNode* const parent = node.parent();
    if (parent != nullptr && parent->scannedBytes() >= 1) {
        const double share = static_cast<double>(node.scannedBytes()) /
                             static_cast<double>(parent->scannedBytes()) * 100;
        facts.push_back({QCoreApplication::translate("InspectorView", "Share of parent"),
                         QString::asprintf("%.1f%%", share)});
    }
    if (const std::optional<std::int64_t> modified = node.dateModified()) {
        facts.push_back({QCoreApplication::translate("InspectorView", "Modified"),
                         relativeDate(*modified, now)});
    }
    if (created && tellsCreation(node)) {
        facts.push_back(
            {QCoreApplication::translate("InspectorView", "Created"), relativeDate(*created, now)});
    }
    return facts;
}

} // namespace quorvane

// SPDX-License-Identifier: MIT
#pragma once

#include "FileTypeCategory.h"

#include <string_view>

namespace quorvane {

class FileNode;

/// Whether the node's full path goes through or ends in a folder named "documents" in any case.
/// Walks up to the root.
bool treemapIsInDocuments(const FileNode& node);
/// The same for one path component, so that a descent needs not to join paths.
bool treemapIsDocumentsName(std::string_view name);
/// TreemapLayout::folderCategory() with the answer about the path known.
FileTypeCategory treemapFolderCategory(const FileNode& node, bool disk, bool isInDocuments);

} // namespace quorvane

// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>

namespace quorvane {

class FileNode;

/// Writes a finished tree as one JSON object a line, depth first: a folder before its children, the
/// children in their order. Holds a path at a time, never the whole text. Returns false when the
/// stream failed. Any thread.
bool writeDump(const FileNode& root, std::ostream& out);

} // namespace quorvane

// SPDX-License-Identifier: MIT
#pragma once

#include "FileTree.h"

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>
#include <variant>

namespace quorvane {

/// Why a text gave no tree.
struct DumpFault
{
    std::size_t line = 0; ///< counted from 1; 0 when the stream itself failed
    std::string message;

    /// "line {line}: {message}", or the message alone.
    std::string text() const;
};

using DumpResult = std::variant<std::shared_ptr<FileTree>, DumpFault>;

/// Makes a tree of lines in the form of writeDump(): ids, order and rollups as they are given, and
/// a rollup that is not given as a scan would have it. The first line is the root; the parent of
/// any other is the folder of an earlier line whose path is its own without the last component.
/// Unknown members are passed over. Any thread.
DumpResult readDump(std::istream& in);

} // namespace quorvane

// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"

#include <QColor>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace quorvane {

/// One line of the details panel.
struct InspectorFact
{
    QString label;
    QString value;
    QColor dot = {}; ///< valid: before the label, which is then a name

    friend bool operator==(const InspectorFact&, const InspectorFact&) = default;
};

/// "Folder", "Symbolic Link" or "File"
QString kindOf(const FileNode& node);
/// The symbol that stands for the node, a name of the symbol table.
QString symbolOf(const FileNode& node);

/// Whether the panel tells when the node was created: for a file, and for a folder with nothing
/// that could be its largest child.
bool tellsCreation(const FileNode& node);

/// What the panel tells of a node, in its order. The share of the parent is one of logical bytes
/// whatever the size mode. Dates in whole seconds since 1970; created is absent where the file
/// system does not know it.
std::vector<InspectorFact> inspectorFacts(const FileNode& node, std::optional<std::int64_t> created,
                                          std::int64_t now);

} // namespace quorvane

// SPDX-License-Identifier: MIT
#include "Command.h"
#include "DumpWriter.h"
#include "TreeSource.h"

#include <iostream>

namespace quorvane {
namespace {

constexpr OptionRule options[] = {{"dump", true}};

int runDump(const Arguments& arguments)
{
    const auto loaded = loadTree(arguments);
    if (const SourceFault* fault = std::get_if<SourceFault>(&loaded)) {
        return complain(fault->message, fault->code);
    }
    FileTree& tree = *std::get<std::shared_ptr<FileTree>>(loaded);
    return writeDump(tree.root(), std::cout)
               ? exitSuccess
               : complain("standard output cannot be written", exitFailure);
}

} // namespace

const Command dumpCommand{"dump", "DIR | --dump FILE",
                          "Print the finished tree, one JSON object a line, depth first.", options,
                          runDump};

} // namespace quorvane

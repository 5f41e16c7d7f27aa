// SPDX-License-Identifier: MIT
#include "FuzzTarget.h"

#include "DumpReader.h"
#include "DumpWriter.h"

#include <sstream>
#include <string>
#include <variant>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quorvane;
    std::istringstream in(std::string(data, data + size));
    const DumpResult first = readDump(in);
    if (const DumpFault* fault = std::get_if<DumpFault>(&first)) {
        require(fault->line > 0 && !fault->message.empty(), "a fault names its line");
        return 0;
    }
    std::stringstream written;
    require(writeDump(std::get<std::shared_ptr<FileTree>>(first)->root(), written),
            "a tree can be written");
    const DumpResult second = readDump(written);
    require(std::holds_alternative<std::shared_ptr<FileTree>>(second), "a dump can be read");
    std::ostringstream again;
    writeDump(std::get<std::shared_ptr<FileTree>>(second)->root(), again);
    require(again.str() == written.str(), "a dump survives its reading");
    return 0;
}

// SPDX-License-Identifier: MIT
#include "FuzzTarget.h"

#include "MachineFiguresLinux.h"
#include "SystemMonitor.h"

#include <cmath>
#include <string_view>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quorvane;
    const std::string input(data, data + size);

    parseProcessorTicks(input);
    const MemoryFigures memory = parseMemory(input);
    require(memory.used <= memory.total, "no more is used than there is");
    require(parseProcessors(input).name.size() <= input.size(), "a name comes from the text");
    if (const std::optional<ProcessStat> stat = parseProcessStat(input)) {
        require(input.find(stat->name) != std::string::npos,
                "a process's name comes from the text");
    }
    const std::vector<ProcessSample> processes = SystemMonitor::parseProcesses(input, 5);
    require(processes.size() <= 5, "the list is cut");
    for (std::size_t i = 0; i < processes.size(); ++i) {
        require(std::isfinite(processes[i].cpuPercent), "a share is a number");
        require(i == 0 || processes[i - 1].cpuPercent >= processes[i].cpuPercent,
                "the list is sorted");
    }
    return 0;
}

// SPDX-License-Identifier: MIT
#include "FuzzTarget.h"

#include "DiskTree.h"
#include "MachineFiguresLinux.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <string>
#include <string_view>

// Lines "SUPPLY ATTRIBUTE VALUE", a digit, a letter and the rest, become a folder like
// /sys/class/power_supply.

namespace {

constexpr std::array<const char*, 18> attributes{"type",
                                                 "scope",
                                                 "present",
                                                 "online",
                                                 "status",
                                                 "capacity",
                                                 "cycle_count",
                                                 "energy_now",
                                                 "energy_full",
                                                 "energy_full_design",
                                                 "power_now",
                                                 "charge_now",
                                                 "charge_full",
                                                 "charge_full_design",
                                                 "current_now",
                                                 "voltage_now",
                                                 "voltage_min_design",
                                                 "model_name"};
constexpr unsigned supplyCount = 3;
constexpr std::size_t maxLines = 40;

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quorvane;
    static DiskTree disk(DiskTree::Place::memory);
    const std::string base = "class/power_supply/";
    disk.remove("class");
    disk.folder("class/power_supply");

    const std::string input(data, data + size);
    std::string_view rest = input;
    std::set<std::string> written;
    for (std::size_t i = 0; i < maxLines && rest.size() >= 2; ++i) {
        const std::size_t end = std::min(rest.find('\n', 2), rest.size());
        const auto supply = static_cast<unsigned char>(rest[0]) % supplyCount;
        const auto attribute = static_cast<unsigned char>(rest[1] - 'a') % attributes.size();
        const std::string file =
            base + "BAT" + std::to_string(supply) + '/' + attributes[attribute];
        if (written.insert(file).second) {
            disk.fileWithContents(file, rest.substr(2, end - 2));
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }

    LinuxMachineFigures machine(disk.path("proc").bytes(), disk.root().bytes());
    const PowerFigures power = machine.power();
    require(power.percent >= 0 && power.percent <= 100, "a charge is a share");
    require(std::isfinite(power.healthPercent) && power.healthPercent >= 0, "health is a number");
    require(power.timeToEmptyMinutes >= -1 && power.timeToFullChargeMinutes >= -1,
            "a time is unknown or not negative");
    require(power.cycleCount >= 0, "cycles are counted");
    require(power.isPresent || power.percent == 0, "no battery has no charge");
    require(!written.empty() || power == PowerFigures{}, "nothing reads as a machine on the mains");
    return 0;
}

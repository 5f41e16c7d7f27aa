// SPDX-License-Identifier: MIT
#include "Command.h"
#include "TreeGenerator.h"
#include "TreeSource.h"

#include <limits>

namespace quorvane {
namespace {

constexpr std::int64_t mostEntries = 100'000'000;
constexpr OptionRule options[] = {{"entries", true}, {"seed", true}};

int runTree(const Arguments& arguments)
{
    if (arguments.operands().size() != 1) {
        return complain("tree needs one DEST; try --help", exitUsage);
    }
    const std::optional<std::int64_t> entries =
        integerFromText(arguments.value("entries").value_or(""));
    const std::optional<std::int64_t> seed = integerFromText(arguments.value("seed").value_or(""));
    if (!entries || *entries < 0 || *entries > mostEntries) {
        return complain("--entries needs a whole number from 0 to 100000000", exitUsage);
    }
    if (!seed) {
        return complain("--seed needs a whole number of 64 bits", exitUsage);
    }
    const std::optional<std::string> fault =
        generateTree(folderFromArgument(arguments.operands().front()),
                     TreeShape{*entries, static_cast<std::uint64_t>(*seed)});
    return fault ? complain(*fault, exitFailure) : exitSuccess;
}

} // namespace

const Command treeCommand{"tree", "DEST --entries N --seed S",
                          "Make the same tree of N entries for the same seed in an empty or new "
                          "folder.",
                          options, runTree};

} // namespace quorvane

// SPDX-License-Identifier: MIT
#include "Command.h"
#include "CorpusGenerator.h"
#include "TreeSource.h"

namespace quorvane {
namespace {

constexpr std::int64_t mostFiles = 10'000'000;
constexpr std::int64_t mostBytes = std::int64_t{1} << 42;
constexpr OptionRule options[] = {{"files", true}, {"bytes", true}, {"seed", true}};

int runCorpus(const Arguments& arguments)
{
    if (arguments.operands().size() != 1) {
        return complain("duplicate-corpus needs one DEST; try --help", exitUsage);
    }
    const auto number = [&](std::string_view name) {
        return integerFromText(arguments.value(name).value_or(""));
    };
    const std::optional<std::int64_t> files = number("files");
    const std::optional<std::int64_t> bytes = number("bytes");
    const std::optional<std::int64_t> seed = number("seed");
    if (!files || *files < 1 || *files > mostFiles) {
        return complain("--files needs a whole number from 1 to 10000000", exitUsage);
    }
    if (!bytes || *bytes < leastCorpusBytes(*files) || *bytes > mostBytes) {
        return complain("--bytes needs a whole number from " +
                            std::to_string(leastCorpusBytes(*files)) + " to " +
                            std::to_string(mostBytes) + " for so many files",
                        exitUsage);
    }
    if (!seed) {
        return complain("--seed needs a whole number of 64 bits", exitUsage);
    }
    const std::optional<std::string> fault =
        generateCorpus(folderFromArgument(arguments.operands().front()),
                       CorpusShape{*files, *bytes, static_cast<std::uint64_t>(*seed)});
    return fault ? complain(*fault, exitFailure) : exitSuccess;
}

} // namespace

const Command corpusCommand{"duplicate-corpus", "DEST --files N --bytes B --seed S",
                            "Make the same files with the same duplicates for the same seed in an "
                            "empty or new folder.",
                            options, runCorpus};

} // namespace quorvane

// SPDX-License-Identifier: MIT
#include "Command.h"
#include "CorpusGenerator.h"
#include "TreeSource.h"

namespace quorvane {
namespace {

constexpr std::int64_t maxFiles = 10'000'000;
constexpr std::int64_t maxBytes = std::int64_t{1} << 42;
constexpr OptionRule options[] = {{"files", true}, {"bytes", true}, {"seed", true}, {"kind", true}};

int runCorpus(const Arguments& arguments)
{
    if (arguments.operands().size() != 1) {
        return complain("duplicate-corpus needs one DEST; try --help", exitUsage);
    }
    const auto number = [&](std::string_view name) {
        return integerFromText(arguments.value(name).value_or(""));
    };
    const std::string_view kindName = arguments.value("kind").value_or("mixed");
    if (kindName != "mixed" && kindName != "small") {
        return complain("--kind needs mixed or small", exitUsage);
    }
    const CorpusKind kind = kindName == "mixed" ? CorpusKind::mixed : CorpusKind::small;
    const std::optional<std::int64_t> files = number("files");
    const std::optional<std::int64_t> bytes = number("bytes");
    const std::optional<std::int64_t> seed = number("seed");
    if (!files || *files < 1 || *files > maxFiles) {
        return complain("--files needs a whole number from 1 to 10000000", exitUsage);
    }
    if (!bytes || *bytes < minCorpusBytes(*files, kind) || *bytes > maxBytes) {
        return complain("--bytes needs a whole number from " +
                            std::to_string(minCorpusBytes(*files, kind)) + " to " +
                            std::to_string(maxBytes) + " for so many files",
                        exitUsage);
    }
    if (!seed) {
        return complain("--seed needs a whole number of 64 bits", exitUsage);
    }
    const std::optional<std::string> fault =
        generateCorpus(folderFromArgument(arguments.operands().front()),
                       CorpusShape{*files, *bytes, static_cast<std::uint64_t>(*seed), kind});
    return fault ? complain(*fault, exitFailure) : exitSuccess;
}

} // namespace

const Command corpusCommand{"duplicate-corpus",
                            "DEST --files N --bytes B --seed S [--kind mixed|small]",
                            "Make the same files with the same duplicates for the same seed in an "
                            "empty or new folder.",
                            options, runCorpus};

} // namespace quorvane

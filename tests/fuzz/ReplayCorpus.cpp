// SPDX-License-Identifier: MIT
#include "FuzzTarget.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

std::vector<std::filesystem::path> filesOf(const char* folder)
{
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// Feeds the file and every shorter beginning of it, so that each place to be cut off is met.
void replay(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(stream), {});
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        const std::vector<std::uint8_t> data(bytes.begin(),
                                             bytes.begin() + static_cast<std::ptrdiff_t>(length));
        LLVMFuzzerTestOneInput(data.data(), data.size());
    }
}

} // namespace

/// Replays the corpus folders that it is given; fails where one holds nothing.
int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        const std::vector<std::filesystem::path> files = filesOf(argv[i]);
        if (files.empty()) {
            std::fprintf(stderr, "%s: no corpus\n", argv[i]);
            return 1;
        }
        for (const std::filesystem::path& file : files) {
            std::printf("%s\n", file.c_str());
            std::fflush(stdout);
            replay(file);
        }
    }
    return argc > 1 ? 0 : 1;
}

// SPDX-License-Identifier: MIT
// Moves each path of the command line to the Trash as the program does it.
#include "Trash.h"

#include <cstdio>

int main(int count, char** arguments)
{
    int failures = 0;
    for (int i = 1; i < count; ++i) {
        const quorvane::FilePath path{std::string(arguments[i])};
        if (quorvane::Trash::system().moveToTrash(path) != quorvane::Trash::Outcome::moved) {
            std::fprintf(stderr, "not moved: %s\n", arguments[i]);
            ++failures;
        }
    }
    return failures == 0 ? 0 : 1;
}

// SPDX-License-Identifier: MIT
#pragma once

#include "FileSystemCalls.h"

#include <sys/stat.h>

namespace quorvane {

/// The calls that every POSIX system has in one form.
class PosixFileSystemCalls : public FileSystemCalls
{
public:
    int openDirectory(int parent, const char* name) override;
    void close(int directory) override;
    bool readLink(int directory, const char* name, std::string& target) override;
    int descriptorLimit() override;

    static EntryStatus statusFrom(const struct stat& entry);
};

} // namespace quorvane

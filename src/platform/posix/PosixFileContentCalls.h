// SPDX-License-Identifier: MIT
#pragma once

#include "FileContentCalls.h"

namespace quorvane {

/// The calls on file contents that every POSIX system has in one form.
class PosixFileContentCalls : public FileContentCalls
{
public:
    int open(int parent, const char* name) override;
    bool status(int file, OpenFileStatus& status) override;
    std::int64_t read(int file, std::span<std::byte> room) override;
    bool seek(int file, std::int64_t position) override;
    void close(int file) override;
    DataRange dataFrom(int file, std::int64_t position) override;

protected:
    static int openWith(int parent, const char* name, int moreFlags);
};

} // namespace quorvane

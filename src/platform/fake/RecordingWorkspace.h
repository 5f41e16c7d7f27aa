// SPDX-License-Identifier: MIT
#pragma once

#include "Workspace.h"

#include <vector>

namespace quorvane {

/// Shows nothing and keeps what it was asked for. Main thread.
class RecordingWorkspace final : public Workspace
{
public:
    void reveal(const FilePath& path) override { revealed.push_back(path); }
    void open(const FilePath& path) override { opened.push_back(path); }

    std::vector<FilePath> revealed;
    std::vector<FilePath> opened;
};

} // namespace quorvane

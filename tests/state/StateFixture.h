// SPDX-License-Identifier: MIT
#pragma once

#include "AppState.h"
#include "DiskTree.h"
#include "FakePlatform.h"
#include "FaultyFileSystemCalls.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <memory>

namespace quorvane {

/// One model on a platform without a desktop, with the disk's calls open to faults.
class StateFixture : public testing::Test
{
protected:
    AppState& start()
    {
        m_state = std::make_unique<AppState>(platform.platform());
        return *m_state;
    }

    AppState& state() { return m_state ? *m_state : start(); }
    void end() { m_state.reset(); }

    void awaitScan()
    {
        ASSERT_TRUE(waitFor([this] { return !state().isScanning.value(); }));
    }

    void scan(const FilePath& folder)
    {
        state().startScan(folder);
        awaitScan();
    }

    DiskTree disk;
    FaultyFileSystemCalls calls;
    FakePlatform platform{disk.root(), calls};

private:
    std::unique_ptr<AppState> m_state;
};

} // namespace quorvane

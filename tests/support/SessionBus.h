// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QtGlobal>

namespace quorvane {

/// Whether the services that a test plays stand on a session bus. A machine may have no bus to
/// give, and the test is then skipped; in a run that was started on a bus (on-a-bus) it fails.
inline bool standsOnABus(bool isServed)
{
    EXPECT_TRUE(isServed || !qEnvironmentVariableIsSet("QUORVANE_TEST_BUS"))
        << "the services of the test do not stand on the bus of this run";
    return isServed;
}

} // namespace quorvane

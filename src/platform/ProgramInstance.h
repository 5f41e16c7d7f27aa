// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <functional>
#include <optional>
#include <string>

namespace quorvane {

/// What a start of the program asks of the one that runs already. All empty: to come to the front.
struct InstanceRequest
{
    std::optional<FilePath> folder; ///< to be scanned
    bool opensSearch = false;
    std::string activationToken; ///< see WindowSystem

    friend bool operator==(const InstanceRequest&, const InstanceRequest&) = default;
};

/// The one process of the program in a session. Main thread.
class ProgramInstance
{
public:
    virtual ~ProgramInstance() = default;

    /// Becomes the process of the session. False when there is one already, and where there is no
    /// session to ask. The handler is called from the event loop for each start from then on.
    virtual bool claim(std::function<void(const InstanceRequest&)> handler) = 0;
    /// Hands a request to the process that runs already. False when nobody has taken it. Blocks for
    /// a few seconds at most.
    virtual bool handOver(const InstanceRequest& request) = 0;
};

} // namespace quorvane

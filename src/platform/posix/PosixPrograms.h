// SPDX-License-Identifier: MIT
#pragma once

#include "Programs.h"

namespace quorvane {

/// Starting a program, which POSIX systems do alike.
class PosixPrograms : public Programs
{
public:
    std::optional<Output> run(std::span<const std::string> arguments,
                              std::chrono::milliseconds timeout,
                              const std::function<bool()>& isCancelled) override;
};

} // namespace quorvane

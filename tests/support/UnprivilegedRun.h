// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace quorvane {

/// Runs the body as a user without privileges. For root: in a child process that has become nobody,
/// whose failures are told as failures of the running test; what the body changes in memory is
/// lost. For anyone else: in place.
void asUnprivilegedUser(const std::function<void()>& body);

/// Runs the body in a child process of the same user and waits for it, with the same rules.
/// Returns the child's status as waitpid(2) gives it, so that a body may end by a signal.
int inChildProcess(const std::function<void()>& body);

} // namespace quorvane

// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace quorvane {

/// Runs the body as a user without privileges. For root: in a child process that has become nobody,
/// whose failures are told as failures of the running test; what the body changes in memory is
/// lost. For anyone else: in place.
void asUnprivilegedUser(const std::function<void()>& body);

/// Runs the body in a child process of the same user, with the same rules. The running test fails
/// when the child does not come to the end of the body: a signal that ends it is a failure, too.
void inChildProcess(const std::function<void()>& body);

/// The same for a body that ends its process itself, by a signal or by _exit(2): returns the
/// status as waitpid(2) gives it, and judges nothing but the failures that were told.
int endOfChildProcess(const std::function<void()>& body);

/// Runs the body in a child process with mounts of its own: what it mounts is gone with it and
/// nobody else sees it. False when that is not permitted here; the body has not run then.
bool withPrivateMounts(const std::function<void()>& body);

} // namespace quorvane

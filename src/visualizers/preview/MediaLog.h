// SPDX-License-Identifier: MIT
#pragma once

namespace quorvane {

/// Keeps what decoders tell of their search for codecs and graphics cards off the terminal. Where
/// the user has rules of logging of their own (QT_LOGGING_RULES and the like), those hold. To be
/// called once, on the main thread, before the first sound or film is opened.
void quietMediaLog();

} // namespace quorvane

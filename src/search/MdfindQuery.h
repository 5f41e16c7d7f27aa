// SPDX-License-Identifier: MIT
#pragma once

#include "SearchResult.h"

#include <string>
#include <vector>

namespace quorvane {

/// The arguments of mdfind(1) for a request: a search by name alone, or with a kind or filters one
/// query expression. nowMs: milliseconds since 1970. Any thread.
std::vector<std::string> mdfindArgs(const SearchRequest& request, double nowMs);

} // namespace quorvane

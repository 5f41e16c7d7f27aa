// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <optional>
#include <string_view>

namespace quorvane {

/// Opens a folder for relative calls alone, following links. -1 and errno on failure.
int openFolder(const char* path);
/// Opens the folder that lies at a relative path, which may be longer than PATH_MAX, has no empty
/// component and none that is "." or "..", or is empty for the folder itself. Follows no link: one
/// on the way fails with ELOOP.
int openFolderBelow(int folder, std::string_view relative);
/// The same, one component after the other, for systems without a call that does it.
int openFolderStepByStep(int folder, std::string_view relative);
/// Opens an entry as itself, whatever it is, without reading it and without triggering a mount.
int openEntry(int folder, const char* name);
/// Renames an entry within its folder. False, with EEXIST where the other name is taken, whatever
/// has it.
bool renameWithoutReplacing(int folder, const char* name, const char* other);
/// The same where the system cannot do both at once: a look at the other name comes right before.
bool renameAfterALook(int folder, const char* name, const char* other);
/// The path of what a descriptor stands for, by now; absent where the system does not tell.
std::optional<FilePath> pathOf(int descriptor);

} // namespace quorvane

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

/// Appends the form in which names are compared: without case and without diacritics. Decomposed
/// canonically (Unicode Standard Annex 15), non-spacing marks dropped, case folded; in UTF-8. Bytes
/// that are not UTF-8 are folded as they are shown, with U+FFFD. Folding a folded name changes
/// nothing. Any thread.
void appendFoldedName(std::string& out, std::string_view name);

/// The words of a query, parted by blanks, as they are looked for in folded names. A word of marks
/// alone is left out: every name holds it.
std::vector<std::string> foldedWords(const QString& query);

} // namespace quorvane

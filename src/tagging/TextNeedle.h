// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringMatcher>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace quorvane {

/// A name or an operand as conditions compare it: lower-cased with Unicode's full rules and
/// composed (NFC), so that "é" is the same however a file system spells it. Where the bytes are not
/// UTF-8, A to Z alone are lowered.
std::string comparableText(std::string_view bytes);

/// A text that is looked for in others without regard to case: as QStringMatcher compares, that is
/// by Unicode's simple case folding, in every locale alike. QCollator, which does know the locale,
/// compares whole texts only. Where the needle is not ASCII, both sides are composed (NFC) first.
/// Const calls may come from any thread.
class TextNeedle
{
public:
    TextNeedle() = default;
    explicit TextNeedle(const QString& text);

    /// An empty needle is found nowhere.
    bool isEmpty() const { return m_text.isEmpty(); }
    bool isInName(std::string_view name) const;
    /// Contents are read as UTF-8, and as ISO Latin 1 when they are not UTF-8 throughout.
    bool isInContents(std::string_view contents) const;

private:
    enum class Fallback { replacement, latin1 };

    bool isIn(std::string_view bytes, Fallback fallback) const;
    bool isInBytes(std::string_view bytes) const;
    bool isInDecoded(std::string_view bytes, Fallback fallback) const;

    QString m_text;
    QStringMatcher m_matcher;
    bool m_isAscii = false;
    /// Has a letter that a character beyond ASCII folds to.
    bool m_hasForeignForms = false;
    std::string m_lower;                      ///< of a needle in ASCII
    std::array<std::uint32_t, 256> m_skips{}; ///< Horspool's table (1980) for either case
};

} // namespace quorvane

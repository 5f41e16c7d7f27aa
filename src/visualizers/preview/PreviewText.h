// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quorvane {

/// Most lines of a text that are shown, and most characters of one: what goes on behind them stands
/// in lines of its own. Laying out more would hold the window up.
constexpr int maxTextLines = 5000;
constexpr int maxTextLineLength = 500;

/// The beginning of a file as text: in the encoding that its byte order mark names, else in UTF-8,
/// else in Latin-1 when hardly anything in it is a control character. A character that the end
/// cuts in two is left out. Absent when it is no text, or empty. Any thread.
std::optional<QString> decodedText(const QByteArray& bytes);

struct BrokenText
{
    QString text;
    bool isCut = false; ///< after so many lines
};

/// The text in lines that can be laid out at once. Any thread.
BrokenText brokenIntoLines(const QString& text);

} // namespace quorvane

// SPDX-License-Identifier: MIT
#pragma once

#include "DocumentPages.h"
#include "FilePath.h"
#include "LockedFlag.h"
#include "PictureReader.h"

#include <QSize>
#include <QString>

#include <memory>

namespace quorvane {

/// What a preview shows of a file. A plain value.
struct PreviewContent
{
    enum class Kind {
        summary, ///< name, kind and size are all that can be told
        picture,
        text,
        document, ///< pages
        media     ///< sound or film; whether it can be played only its player knows
    };

    Kind kind = Kind::summary;
    Picture picture;
    QString text;
    /// The text is only the beginning of what the file holds, by its bytes or by its lines.
    bool isCut = false;
    bool isCutByLines = false;
    std::shared_ptr<DocumentPages> document;

    /// Most bytes of a text that are read.
    static constexpr qint64 textLimit = 256 * 1024;
    /// Most lines of a text that are shown, and most characters of one: what goes on behind them
    /// stands in lines of its own. Laying out more would hold the window up.
    static constexpr int mostLines = 5000;
    static constexpr int longestLine = 500;

    /// Reads what can be shown: a picture no larger than the room (device pixels), the beginning of
    /// a text in UTF-8, the pages of a PDF file; a summary for everything else, for what cannot be
    /// read and for what is broken. Opens regular files alone. Ends early, with whatever, once stop
    /// is set. Any thread but the main one: it waits for the disk.
    static PreviewContent read(const FilePath& path, const QSize& room, const LockedFlag& stop);
};

} // namespace quorvane

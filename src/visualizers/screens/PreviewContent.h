// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <QImage>
#include <QSize>
#include <QString>

namespace quorvane {

/// What a preview shows of a file. A plain value.
struct PreviewContent
{
    enum class Kind {
        summary, ///< name, kind and size are all that can be told
        picture,
        text
    };

    Kind kind = Kind::summary;
    QImage picture;
    QString text;
    /// The text is only the beginning of what the file holds.
    bool isCut = false;

    /// Most bytes of a text that are read.
    static constexpr qint64 textLimit = 256 * 1024;

    /// Reads what can be shown: a picture, turned as its metadata says and no larger than atMost
    /// (device pixels), or the beginning of a text in UTF-8; a summary for everything else, for
    /// what cannot be read and for what is broken. Opens regular files alone. Any thread but the
    /// main one: it waits for the disk.
    static PreviewContent read(const FilePath& path, const QSize& atMost);
};

} // namespace quorvane

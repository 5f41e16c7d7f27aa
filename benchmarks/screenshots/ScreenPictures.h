// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <QSize>
#include <QString>

#include <vector>

namespace quorvane {

/// One made screenshot: what it shows and how it is stored.
struct ScreenPicture
{
    QString fileName;
    QString title; ///< the one line that says what is on the screen
    QSize size;    ///< pixels
    bool isDark = false;
    bool isGerman = false;
};

/// The forty pictures that text recognition is measured by: large, middle and small ones, light and
/// dark, in English and in German, as PNG, JPEG, TIFF, GIF and HEIC. The same each time.
std::vector<ScreenPicture> screenPictures();

/// Draws the picture, with menus, a title and text, and writes it into the folder. Needs a
/// QGuiApplication; false when it cannot be encoded or written.
bool writeScreenPicture(const ScreenPicture& picture, const FilePath& folder);

} // namespace quorvane

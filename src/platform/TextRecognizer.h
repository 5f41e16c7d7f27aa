// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "LockedFlag.h"

#include <QString>

#include <memory>
#include <string>
#include <vector>

namespace quorvane {

/// Reads the text on pictures. Any thread; one picture is read at a time, and a call takes a second
/// or more.
class TextRecognizer
{
public:
    virtual ~TextRecognizer() = default;

    /// The system package without which nothing can be read; empty when all is there. Makes the
    /// engine ready, unless it is: what is installed meanwhile is found.
    virtual std::string missingPackage() = 0;
    /// The system package that would let it read the desktop's own language beside English; empty
    /// when it does, and where there is none. Makes the engine ready as missingPackage() does.
    virtual std::string furtherPackage() = 0;
    /// Lines of text in reading order, as recognised. Empty for a file that is no picture, for a
    /// picture without text, and when stopped. Only the first picture of a file is read.
    virtual std::vector<QString> lines(const FilePath& picture, const LockedFlag& stop) = 0;
};

/// The system's own engine, for the desktop's languages beside English. language: of the desktop,
/// two letters of ISO 639-1 such as "de", or empty.
std::unique_ptr<TextRecognizer> makeTextRecognizer(std::string_view language);

} // namespace quorvane

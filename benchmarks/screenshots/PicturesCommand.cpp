// SPDX-License-Identifier: MIT
#include "PicturesCommand.h"

#include "BenchApplication.h"
#include "JsonText.h"
#include "ScreenPictures.h"

#include <filesystem>
#include <iostream>
#include <string>

namespace quorvane {
namespace {

int runPictures(const Arguments& arguments)
{
    if (arguments.operands().size() != 1) {
        return complain("screen-pictures takes one folder; try --help", exitUsage);
    }
    const FilePath folder(std::filesystem::absolute(arguments.operands().front()).string());
    const BenchApplication application(BenchApplication::Display::offscreen);
    for (const ScreenPicture& picture : screenPictures()) {
        if (!writeScreenPicture(picture, folder)) {
            return complain("cannot write " + picture.fileName.toStdString(), exitFailure);
        }
        std::string line;
        JsonObject object(line);
        object.text("name", picture.fileName.toStdString());
        object.text("title", picture.title.toStdString());
        object.integer("width", picture.size.width());
        object.integer("height", picture.size.height());
        object.boolean("isDark", picture.isDark);
        object.boolean("isGerman", picture.isGerman);
        object.endLine();
        std::cout << line;
    }
    return exitSuccess;
}

} // namespace

const Command picturesCommand{
    "screen-pictures",
    "DIR",
    "Draw the forty screenshots that text recognition is measured by into a folder and print what "
    "is on them.",
    {},
    runPictures};

} // namespace quorvane

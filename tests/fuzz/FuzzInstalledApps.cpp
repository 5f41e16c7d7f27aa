// SPDX-License-Identifier: MIT
#include "FuzzTarget.h"

#include "DesktopEntry.h"
#include "DiskReader.h"
#include "FileContentCalls.h"
#include "InstalledApps.h"
#include "Leftovers.h"

#include <string>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quorvane;
    // One input is read as everything that other programs hand over as text.
    const std::string text(data, data + size);
    const DesktopEntry entry = parseDesktopEntry(text, "de_DE@euro");
    require(entry.programName().find('/') == std::string_view::npos, "a program's name is a name");
    const std::string product = InstalledApps::productName(text);
    require(text.starts_with(product), "a product's name begins its file's");
    require(InstalledApps::bytesFromText(text) >= 0, "no size is negative");
    const HomeFolders folders = HomeFolders::below(FilePath("/nonexistent/home"));
    const DiskReader reader(FileSystemCalls::system(), FileContentCalls::system());
    for (const FoundApp& found : InstalledApps::flatpaks(text, folders, {&entry, 1})) {
        require(Leftovers::isPlainName(found.app.systemName), "an id is one component");
        require(!found.app.systemName.starts_with('-'), "an id is no option");
    }
    for (const FoundApp& found :
         InstalledApps::snaps(text, FilePath("/nonexistent"), {&entry, 1}, reader)) {
        require(Leftovers::isPlainName(found.app.systemName), "a snap's name is one component");
        require(!found.app.systemName.starts_with('-'), "a snap's name is no option");
    }
    return 0;
}

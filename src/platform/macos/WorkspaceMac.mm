// SPDX-License-Identifier: MIT
#include "DesktopWorkspace.h"

#import <AppKit/AppKit.h>

namespace quorvane {
namespace {

/// From the bytes of the path, which need not be text. Nil for an empty path.
NSURL* urlOf(const FilePath& path)
{
    if (path.isEmpty()) {
        return nil;
    }
    return [NSURL fileURLWithFileSystemRepresentation:path.bytes().c_str()
                                          isDirectory:NO
                                        relativeToURL:nil];
}

class MacWorkspace final : public Workspace
{
public:
    void reveal(const FilePath& path) override
    {
        @autoreleasepool {
            if (NSURL* const url = urlOf(path)) {
                [[NSWorkspace sharedWorkspace] activateFileViewerSelectingURLs:@[ url ]];
            }
        }
    }

    void open(const FilePath& path) override
    {
        @autoreleasepool {
            if (NSURL* const url = urlOf(path)) {
                [[NSWorkspace sharedWorkspace] openURL:url];
            }
        }
    }
};

} // namespace

std::unique_ptr<Workspace> makeDesktopWorkspace()
{
    return std::make_unique<MacWorkspace>();
}

} // namespace quorvane

// SPDX-License-Identifier: MIT
#include "Trash.h"

#import <Foundation/Foundation.h>

namespace quorvane {
namespace {

Trash::Outcome outcomeOf(NSError* error)
{
    if (![error.domain isEqualToString:NSCocoaErrorDomain]) {
        return Trash::Outcome::failed;
    }
    switch (error.code) {
    case NSFileNoSuchFileError:
    case NSFileReadNoSuchFileError:
        return Trash::Outcome::missing;
    case NSFileReadNoPermissionError:
    case NSFileWriteNoPermissionError:
        return Trash::Outcome::notPermitted;
    case NSFileWriteVolumeReadOnlyError:
        return Trash::Outcome::readOnly;
    case NSFeatureUnsupportedError:
        return Trash::Outcome::notOfferedHere;
    default:
        return Trash::Outcome::failed;
    }
}

class FileManagerTrash final : public Trash
{
public:
    Outcome moveToTrash(const FilePath& path) override
    {
        if (path.isEmpty()) {
            return Outcome::missing;
        }
        @autoreleasepool {
            NSURL* const url = [NSURL fileURLWithFileSystemRepresentation:path.bytes().c_str()
                                                              isDirectory:NO
                                                            relativeToURL:nil];
            NSError* error = nil;
            const BOOL isMoved = [NSFileManager.defaultManager trashItemAtURL:url
                                                             resultingItemURL:nil
                                                                        error:&error];
            return isMoved ? Outcome::moved : outcomeOf(error);
        }
    }
};

} // namespace

Trash& Trash::system()
{
    static FileManagerTrash trash;
    return trash;
}

} // namespace quorvane

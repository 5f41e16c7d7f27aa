// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "LockedFlag.h"

#include <QFile>

namespace quorvane {

/// A regular file that is read for its preview, opened by the bytes of its path. Every reading
/// fails once the flag is set, so that a decoder that knows no cancelling ends by itself. Waits for
/// the disk: any thread but the main one.
class PreviewFile : public QFile
{
public:
    /// Without a flag the reading goes on to the end. The flag outlives the file, or is let go of.
    explicit PreviewFile(const LockedFlag* stop = nullptr)
        : m_stop(stop)
    {}

    /// False for anything but a regular file; never waits for the other end of a pipe.
    bool openRegular(const FilePath& path);
    /// What reads from here on needs no flag any more.
    void forgetStop() { m_stop = nullptr; }

protected:
    qint64 readData(char* data, qint64 most) override;

private:
    const LockedFlag* m_stop;
};

} // namespace quorvane

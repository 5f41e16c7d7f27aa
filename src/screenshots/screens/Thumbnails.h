// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "JobRunner.h"

#include <QIcon>
#include <QObject>
#include <QSize>

#include <map>
#include <memory>
#include <vector>

namespace quorvane {

/// Small pictures of files, read one after the other in the background when they are first asked
/// for. Main thread.
class Thumbnails : public QObject
{
    Q_OBJECT

public:
    /// size: in points. The runner outlives it.
    Thumbnails(JobRunner& jobs, const QSize& size, QObject* parent);
    ~Thumbnails() override;

    /// The file's picture, covering the size; an empty one until it is read, and for a file that
    /// holds none. scale: device pixels for each point.
    QIcon of(const FilePath& file, qreal scale);
    /// Forgets what was read and what is still to be.
    void clear();

Q_SIGNALS:
    /// One more picture is there.
    void arrived();

private:
    struct Request
    {
        FilePath file;
        qreal scale = 1;
    };

    void readNext();

    JobRunner& m_jobs;
    QSize m_size;
    std::map<FilePath, QIcon> m_icons;
    std::vector<Request> m_waiting; ///< the latest at the end, which is read first: it is on show
    JobHandle m_reading;
};

} // namespace quorvane

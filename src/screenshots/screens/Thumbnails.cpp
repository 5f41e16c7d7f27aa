// SPDX-License-Identifier: MIT
#include "Thumbnails.h"

#include "LockedFlag.h"
#include "PreviewContent.h"

#include <QImage>
#include <QPixmap>

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

/// How much larger than the thumbnail a picture is read, for those that are high or wide.
constexpr int roomFactor = 6;

/// The top middle of the picture: a screen's title stands there.
QImage covering(const QImage& picture, const QSize& pixels)
{
    if (picture.isNull()) {
        return {};
    }
    const QImage scaled =
        picture.scaled(pixels, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    return scaled.copy((scaled.width() - pixels.width()) / 2, 0, pixels.width(), pixels.height());
}

QIcon iconOf(const QImage& image, const QSize& pixels, qreal scale)
{
    QPixmap pixmap(pixels);
    pixmap.fill(Qt::transparent);
    if (!image.isNull()) {
        pixmap = QPixmap::fromImage(image);
    }
    pixmap.setDevicePixelRatio(scale);
    return QIcon(pixmap);
}

} // namespace

Thumbnails::Thumbnails(JobRunner& jobs, const QSize& size, QObject* parent)
    : QObject(parent)
    , m_jobs(jobs)
    , m_size(size)
{}

Thumbnails::~Thumbnails()
{
    clear();
}

void Thumbnails::clear()
{
    m_waiting.clear();
    m_icons.clear();
    if (const JobHandle reading = std::exchange(m_reading, nullptr)) {
        reading->cancel();
    }
}

QIcon Thumbnails::of(const FilePath& file, qreal scale)
{
    const auto [place, isNew] = m_icons.try_emplace(file);
    if (isNew) {
        place->second = iconOf({}, (QSizeF(m_size) * scale).toSize(), scale);
        m_waiting.push_back({file, scale});
        readNext();
    }
    return place->second;
}

void Thumbnails::readNext()
{
    if (m_reading != nullptr || m_waiting.empty()) {
        return;
    }
    const Request request = std::move(m_waiting.back());
    m_waiting.pop_back();
    const QSize pixels = (QSizeF(m_size) * request.scale).toSize();
    m_reading = m_jobs.start(
        JobPriority::userInitiated,
        [file = request.file, pixels](const Job& job) {
            return covering(
                PreviewContent::read(file, pixels * roomFactor, job.cancelFlag()).picture.image,
                pixels);
        },
        [this, request, pixels](const QImage& image) {
            m_reading = nullptr;
            m_icons[request.file] = iconOf(image, pixels, request.scale);
            Q_EMIT arrived();
            readNext();
        },
        [this] {
            m_reading = nullptr;
            readNext();
        });
}

} // namespace quorvane

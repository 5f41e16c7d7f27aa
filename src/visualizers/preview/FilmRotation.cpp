// SPDX-License-Identifier: MIT
#include "FilmRotation.h"

#include <QByteArray>
#include <QIODevice>
#include <QtEndian>

#include <cmath>
#include <optional>

namespace quorvane {
namespace {

/// A box is its size, its name, and what it holds; boxes hold boxes.
constexpr qint64 shortHead = 8;
constexpr qint64 longHead = 16;
/// More boxes than any camera writes side by side.
constexpr int maxBoxes = 4096;
/// Places inside a track header, by its version: of the first row of the matrix.
constexpr qint64 matrixPlace = 40;
constexpr qint64 longMatrixPlace = 52;
/// Place inside a handler of what it handles.
constexpr qint64 handlerPlace = 8;

struct Box
{
    QByteArray name;
    qint64 begin = 0; ///< of what it holds
    qint64 end = 0;
};

std::optional<quint32> numberAt(QIODevice& device, qint64 place)
{
    const QByteArray bytes = device.seek(place) ? device.read(4) : QByteArray();
    return bytes.size() == 4 ? std::optional(qFromBigEndian<quint32>(bytes.constData()))
                             : std::nullopt;
}

/// The box that begins there; none when it does not end before the limit.
std::optional<Box> boxAt(QIODevice& device, qint64 place, qint64 limit)
{
    const std::optional<quint32> size = numberAt(device, place);
    const QByteArray name = size ? device.read(4) : QByteArray();
    if (name.size() != 4) {
        return std::nullopt;
    }
    Box box{name, place + shortHead, place + *size};
    if (*size == 0) {
        box.end = limit;
    } else if (*size == 1) {
        const QByteArray bytes = device.read(8);
        const quint64 whole = bytes.size() == 8 ? qFromBigEndian<quint64>(bytes.constData()) : 0;
        if (whole > static_cast<quint64>(limit - place)) {
            return std::nullopt;
        }
        box.begin = place + longHead;
        box.end = place + static_cast<qint64>(whole);
    }
    return box.begin <= box.end && box.end <= limit ? std::optional(box) : std::nullopt;
}

/// The first box of that name, found among those from a place on.
std::optional<Box> find(QIODevice& device, const char* name, qint64 place, qint64 limit)
{
    for (int i = 0; i < maxBoxes && place < limit; ++i) {
        std::optional<Box> box = boxAt(device, place, limit);
        if (!box || box->name == name) {
            return box;
        }
        place = box->end;
    }
    return std::nullopt;
}

bool isFilm(QIODevice& device, const Box& track)
{
    const std::optional<Box> media = find(device, "mdia", track.begin, track.end);
    const std::optional<Box> handler =
        media ? find(device, "hdlr", media->begin, media->end) : std::nullopt;
    return handler && device.seek(handler->begin + handlerPlace) && device.read(4) == "vide";
}

/// By the first two numbers of its matrix, whose unit does not matter.
int rotationOf(QIODevice& device, const Box& track)
{
    const std::optional<Box> header = find(device, "tkhd", track.begin, track.end);
    if (!header || !device.seek(header->begin)) {
        return 0;
    }
    const QByteArray version = device.read(1);
    const qint64 place =
        header->begin + (version == QByteArray(1, '\1') ? longMatrixPlace : matrixPlace);
    const std::optional<quint32> a = numberAt(device, place);
    const std::optional<quint32> b = numberAt(device, place + 4);
    if (!a || !b || place + 8 > header->end) {
        return 0;
    }
    constexpr double halfTurn = 3.141592653589793;
    const double quarters =
        std::atan2(static_cast<qint32>(*b), static_cast<qint32>(*a)) / halfTurn * 2;
    return (static_cast<int>(std::lround(quarters)) + 4) % 4 * 90;
}

} // namespace

int filmRotation(QIODevice& device)
{
    const std::optional<Box> movie = find(device, "moov", 0, device.size());
    if (!movie) {
        return 0;
    }
    qint64 place = movie->begin;
    for (int i = 0; i < maxBoxes; ++i) {
        const std::optional<Box> track = find(device, "trak", place, movie->end);
        if (!track) {
            return 0;
        }
        if (isFilm(device, *track)) {
            return rotationOf(device, *track);
        }
        place = track->end;
    }
    return 0;
}

} // namespace quorvane

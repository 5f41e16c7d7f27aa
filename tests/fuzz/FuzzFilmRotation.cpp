// SPDX-License-Identifier: MIT
#include "FuzzTarget.h"

#include "FilmRotation.h"

#include <QBuffer>
#include <QByteArray>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quorvane;
    QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    const int rotation = filmRotation(device);
    require(rotation >= 0 && rotation < 360 && rotation % 90 == 0, "a film has four sides");
    return 0;
}

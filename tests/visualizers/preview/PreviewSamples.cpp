// SPDX-License-Identifier: MIT
#include "PreviewSamples.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <cmath>
#include <cstddef>
#include <fstream>
#include <sstream>

namespace quorvane::test {
namespace {

constexpr int pageWidth = 300;
constexpr int pageHeight = 400;

/// Little-endian, as RIFF wants it.
std::string bytesOf(std::uint32_t number, int count)
{
    std::string bytes;
    for (int i = 0; i < count; ++i) {
        bytes += static_cast<char>(number >> (8 * i) & 0xff);
    }
    return bytes;
}

} // namespace

std::string contentsOf(const char* name)
{
    std::ifstream file(std::string(QUORVANE_TEST_DATA "/") + name, std::ios::binary);
    EXPECT_TRUE(file.good()) << name;
    std::ostringstream contents;
    contents << file.rdbuf();
    return contents.str();
}

std::string turnedFilm(std::uint32_t a, std::uint32_t b)
{
    std::string film = contentsOf("film.mp4");
    // The first track is the film's; its header is of version 0, with the matrix 40 bytes behind
    // the name.
    const std::size_t header = film.find("tkhd");
    const std::size_t matrix = header + 4 + 40;
    EXPECT_LT(matrix + 8, film.size());
    EXPECT_EQ(film[header + 4], 0);
    for (std::size_t i = 0; i < 4; ++i) {
        film[matrix + i] = static_cast<char>(a >> (24 - 8 * i) & 0xff);
        film[matrix + 4 + i] = static_cast<char>(b >> (24 - 8 * i) & 0xff);
    }
    return film;
}

std::string waveSound(int milliseconds)
{
    constexpr int rate = 8000;
    constexpr double pitch = 440;
    constexpr double loudness = 8000;
    constexpr double turn = 6.283185307179586;
    std::string samples;
    for (int i = 0; i < rate * milliseconds / 1000; ++i) {
        const auto value = static_cast<int>(loudness * std::sin(turn * pitch * i / rate));
        samples += bytesOf(static_cast<std::uint32_t>(value), 2);
    }
    const auto size = static_cast<std::uint32_t>(samples.size());
    return "RIFF" + bytesOf(36 + size, 4) + "WAVEfmt " + bytesOf(16, 4) + bytesOf(1, 2) +
           bytesOf(1, 2) + bytesOf(rate, 4) + bytesOf(2 * rate, 4) + bytesOf(2, 2) +
           bytesOf(16, 2) + "data" + bytesOf(size, 4) + samples;
}

QByteArray documentOfPages(int count)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setPageLayout(QPageLayout(QPageSize(QSizeF(pageWidth, pageHeight), QPageSize::Point),
                                         QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
        QPainter painter(&writer);
        for (int page = 0; page < count; ++page) {
            if (page > 0) {
                writer.newPage();
            }
            painter.fillRect(0, 0, writer.width() / 2, writer.height(), Qt::red);
        }
    }
    return buffer.data();
}

std::string lockedDocument()
{
    const std::string key(64, '7');
    return "%PDF-1.4\n"
           "1 0 obj\n<< /Type /Catalog /Pages 2 0 R >>\nendobj\n"
           "2 0 obj\n<< /Type /Pages /Kids [3 0 R] /Count 1 >>\nendobj\n"
           "3 0 obj\n<< /Type /Page /Parent 2 0 R /MediaBox [0 0 300 400] >>\nendobj\n"
           "4 0 obj\n<< /Filter /Standard /V 1 /R 2 /P -4 /O <" +
           key + "> /U <" + key +
           "> >>\nendobj\n"
           "trailer\n<< /Root 1 0 R /Size 5 /Encrypt 4 0 R /ID [<00> <00>] >>\n%%EOF\n";
}

} // namespace quorvane::test

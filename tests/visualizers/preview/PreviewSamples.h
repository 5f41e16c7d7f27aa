// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <cstdint>
#include <string>

namespace quorvane::test {

/// Contents of a file of tests/data; fails the test when there is none. "film.mp4" is two seconds
/// of 64 x 36 pixels, a red one and a blue one, with a sound.
std::string contentsOf(const char* name);

/// The film with the first row of its matrix set to these two numbers, sixteen bits of each behind
/// the point: (0, 1) turns it a quarter clockwise.
std::string turnedFilm(std::uint32_t a, std::uint32_t b);

/// A sound of so many milliseconds: 8000 samples a second, 16 bits, one channel.
std::string waveSound(int milliseconds);

/// A PDF file of upright pages, 300 x 400 points: the left half red, the right one white.
QByteArray documentOfPages(int count);

/// A PDF file that opens only with a password.
std::string lockedDocument();

} // namespace quorvane::test

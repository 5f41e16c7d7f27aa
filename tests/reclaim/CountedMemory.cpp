// SPDX-License-Identifier: MIT
#include "CountedMemory.h"

#include <malloc.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define QUORVANE_OTHER_MALLOC
#endif
#endif
#if !defined(__GLIBC__) || defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define QUORVANE_OTHER_MALLOC
#endif

namespace quorvane::test {
namespace {

std::atomic<std::int64_t> held{0};
std::atomic<std::int64_t> mostHeld{0};

} // namespace

std::int64_t CountedMemory::now()
{
    return held;
}

std::int64_t CountedMemory::most()
{
    return mostHeld;
}

void CountedMemory::forgetMost()
{
    mostHeld = held.load();
}

#ifdef QUORVANE_OTHER_MALLOC

bool CountedMemory::isCounted()
{
    return false;
}

#else

bool CountedMemory::isCounted()
{
    return true;
}

namespace {

void* counted(void* place)
{
    if (place == nullptr) {
        return place;
    }
    const std::int64_t now = held += static_cast<std::int64_t>(malloc_usable_size(place));
    std::int64_t most = mostHeld;
    while (most < now && !mostHeld.compare_exchange_weak(most, now)) {
    }
    return place;
}

void discount(void* place)
{
    if (place != nullptr) {
        held -= static_cast<std::int64_t>(malloc_usable_size(place));
    }
}

} // namespace
#endif

} // namespace quorvane::test

#ifndef QUORVANE_OTHER_MALLOC

// The C library's own, which a program may put its functions in front of (glibc manual, "Replacing
// malloc").
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
void* __libc_malloc(std::size_t bytes);
void* __libc_calloc(std::size_t count, std::size_t bytes);
void* __libc_realloc(void* place, std::size_t bytes);
void* __libc_memalign(std::size_t alignment, std::size_t bytes);
void __libc_free(void* place);

void* malloc(std::size_t bytes) noexcept
{
    return quorvane::test::counted(__libc_malloc(bytes));
}

void* calloc(std::size_t count, std::size_t bytes) noexcept
{
    return quorvane::test::counted(__libc_calloc(count, bytes));
}

void* realloc(void* place, std::size_t bytes) noexcept
{
    // Counted as if both were there at once, which they are when the room cannot grow in place.
    const std::size_t before = place != nullptr ? malloc_usable_size(place) : 0;
    void* const grown = quorvane::test::counted(__libc_realloc(place, bytes));
    if (grown != nullptr || bytes == 0) {
        quorvane::test::held -= static_cast<std::int64_t>(before);
    }
    return grown;
}

void* memalign(std::size_t alignment, std::size_t bytes) noexcept
{
    return quorvane::test::counted(__libc_memalign(alignment, bytes));
}

void* aligned_alloc(std::size_t alignment, std::size_t bytes) noexcept
{
    return quorvane::test::counted(__libc_memalign(alignment, bytes));
}

int posix_memalign(void** place, std::size_t alignment, std::size_t bytes) noexcept
{
    void* const found = quorvane::test::counted(__libc_memalign(alignment, bytes));
    if (found == nullptr) {
        return ENOMEM;
    }
    *place = found;
    return 0;
}

void free(void* place) noexcept
{
    quorvane::test::discount(place);
    __libc_free(place);
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
}

#endif

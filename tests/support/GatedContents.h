// SPDX-License-Identifier: MIT
#pragma once

#include "FileContentCalls.h"
#include "Gate.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace quorvane {

/// The bytes of the system's files, each behind a gate that is passed when it is opened. Any
/// thread.
class GatedContents final : public FileContentCalls
{
public:
    /// Runs on each thread that opens a file, before the gate. Set while no file is read.
    std::function<void()> beforeOpen;

    explicit GatedContents(Gate& gate)
        : m_gate(gate)
    {}

    int open(int parent, const char* name) override
    {
        if (beforeOpen) {
            beforeOpen();
        }
        int most = m_mostInside;
        const int inside = ++m_inside;
        while (inside > most && !m_mostInside.compare_exchange_weak(most, inside)) {
        }
        m_gate.pass();
        ++m_opened;
        const int file = m_system.open(parent, name);
        --m_inside;
        return file;
    }
    bool status(int file, OpenFileStatus& status) override { return m_system.status(file, status); }
    std::int64_t read(int file, std::span<std::byte> room) override
    {
        return m_system.read(file, room);
    }
    bool seek(int file, std::int64_t position) override { return m_system.seek(file, position); }
    void close(int file) override { m_system.close(file); }
    void willRead(int file, std::int64_t position, std::int64_t bytes) override
    {
        m_system.willRead(file, position, bytes);
    }
    void willReadOnce(int file) override { m_system.willReadOnce(file); }
    void willReadParts(int file) override { m_system.willReadParts(file); }
    std::uint64_t cachedPieces(int file, std::int64_t position, std::int64_t bytes,
                               std::int64_t pieceBytes) override
    {
        return m_system.cachedPieces(file, position, bytes, pieceBytes);
    }
    void isDoneWith(int file, std::int64_t position, std::int64_t bytes) override
    {
        m_system.isDoneWith(file, position, bytes);
    }

    int opened() const { return m_opened; }
    /// The greatest number of threads that were opening a file at once.
    int mostInside() const { return m_mostInside; }

private:
    Gate& m_gate;
    FileContentCalls& m_system = FileContentCalls::system();
    std::atomic<int> m_opened = 0;
    std::atomic<int> m_inside = 0;
    std::atomic<int> m_mostInside = 0;
};

} // namespace quorvane

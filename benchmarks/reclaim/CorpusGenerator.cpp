// SPDX-License-Identifier: MIT
#include "CorpusGenerator.h"

#include "EntryNames.h"
#include "GeneratorRun.h"
#include "SeededRandom.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <vector>

namespace quorvane {
namespace {

constexpr std::int64_t oldestDate = 1'300'000'000; // March 2011
constexpr std::uint64_t dateSpan = 400'000'000;    // up to November 2023
constexpr std::uint64_t streamOfNames = 6'000'000'011;
constexpr std::uint64_t streamOfDates = 7'000'000'001;
constexpr std::int64_t pieceBytes = 262144;

using Entry = CorpusPlan::Entry;
using Kind = CorpusPlan::Kind;

class Generator
{
public:
    Generator(const CorpusShape& shape, int top)
        : m_plan(shape)
        , m_top(top)
    {
        for (std::size_t i = 0; i < m_plan.entries().size(); ++i) {
            SeededRandom random(shape.seed + streamOfNames, i);
            const std::string& folder = m_plan.folders()[m_plan.entries()[i].folder];
            m_paths.push_back((folder.empty() ? folder : folder + '/') +
                              generatedFileName(random, i));
        }
    }

    std::optional<std::string> run()
    {
        for (const std::string& folder : m_plan.folders()) {
            if (!folder.empty() && mkdirat(m_top, folder.c_str(), 0755) != 0) {
                m_fault.note(folder);
            }
        }
        runOnSomeThreads([&](std::atomic<std::size_t>& next) {
            std::vector<std::uint64_t> piece(pieceBytes / sizeof(std::uint64_t));
            for (std::size_t i = next++; i < m_paths.size() && !m_fault.isNoted(); i = next++) {
                if (m_plan.entries()[i].kind == Kind::file && !makeFile(i, piece)) {
                    m_fault.note(m_paths[i]);
                }
            }
        });
        for (std::size_t i = 0; i < m_paths.size() && !m_fault.isNoted(); ++i) {
            if (m_plan.entries()[i].kind != Kind::file && !makeLink(i)) {
                m_fault.note(m_paths[i]);
            }
        }
        return m_fault.message();
    }

private:
    bool makeFile(std::size_t i, std::vector<std::uint64_t>& piece) const
    {
        const Entry& entry = m_plan.entries()[i];
        const int file = openat(m_top, m_paths[i].c_str(),
                                O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644);
        if (file < 0) {
            return false;
        }
        SeededRandom random(m_plan.shape().seed, entry.content);
        bool isDone = ftruncate(file, entry.bytes) == 0;
        for (std::int64_t at = 0; at < entry.bytes && isDone; at += pieceBytes) {
            if (entry.isSparse && at % CorpusPlan::sparseStep >= CorpusPlan::dataBytes) {
                continue;
            }
            std::generate(piece.begin(), piece.end(), [&] { return random.next(); });
            const std::int64_t size = std::min(entry.bytes - at, pieceBytes);
            if (entry.changedByte >= at && entry.changedByte < at + size) {
                auto* const bytes = reinterpret_cast<unsigned char*>(piece.data());
                bytes[entry.changedByte - at] ^= 0xFFU;
            }
            isDone = pwrite(file, piece.data(), static_cast<std::size_t>(size), at) == size;
        }
        // By the file's own number, so that copies differ in their dates.
        SeededRandom dates(m_plan.shape().seed + streamOfDates, i);
        timespec time = {};
        time.tv_sec = oldestDate + static_cast<std::int64_t>(dates.below(dateSpan));
        const std::array<timespec, 2> times{time, time};
        isDone = isDone && futimens(file, times.data()) == 0;
        return close(file) == 0 && isDone;
    }

    bool makeLink(std::size_t i) const
    {
        const Entry& entry = m_plan.entries()[i];
        const std::string& target = m_paths[entry.target];
        if (entry.kind == Kind::hardLink) {
            return linkat(m_top, target.c_str(), m_top, m_paths[i].c_str(), 0) == 0;
        }
        const std::string& path = m_paths[i];
        std::string climb;
        for (std::size_t at = path.find('/'); at != path.npos; at = path.find('/', at + 1)) {
            climb += "../";
        }
        return symlinkat((climb + target).c_str(), m_top, path.c_str()) == 0;
    }

    const CorpusPlan m_plan;
    const int m_top;
    std::vector<std::string> m_paths;
    FirstFault m_fault;
};

} // namespace

std::optional<std::string> generateCorpus(const FilePath& destination, const CorpusShape& shape)
{
    return fillEmptyFolder(destination,
                           [&](int descriptor) { return Generator(shape, descriptor).run(); });
}

} // namespace quorvane

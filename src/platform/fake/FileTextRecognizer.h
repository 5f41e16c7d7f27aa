// SPDX-License-Identifier: MIT
#pragma once

#include "TextRecognizer.h"

#include <fstream>
#include <functional>
#include <iterator>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace quorvane {

/// Takes a file's bytes for the lines of text that are on a picture, and remembers what it read.
/// Any thread.
class FileTextRecognizer final : public TextRecognizer
{
public:
    std::string missingPackage() override
    {
        const std::lock_guard guard(m_lock);
        return m_missing;
    }
    std::string furtherPackage() override
    {
        const std::lock_guard guard(m_lock);
        return m_further;
    }
    std::vector<QString> lines(const FilePath& picture, const LockedFlag&) override
    {
        if (beforeReading) {
            beforeReading(picture);
        }
        const std::lock_guard guard(m_lock);
        m_read.push_back(std::string(picture.lastComponent()));
        std::ifstream file(picture.bytes());
        std::vector<QString> lines;
        for (std::string line; std::getline(file, line);) {
            lines.push_back(QString::fromStdString(line));
        }
        return lines;
    }

    /// Names of what was read, in order.
    std::vector<std::string> read() const
    {
        const std::lock_guard guard(m_lock);
        return m_read;
    }
    void setMissing(std::string package)
    {
        const std::lock_guard guard(m_lock);
        m_missing = std::move(package);
    }
    void setFurther(std::string package)
    {
        const std::lock_guard guard(m_lock);
        m_further = std::move(package);
    }

    /// Called on the thread that reads. Set it before the first reading.
    std::function<void(const FilePath&)> beforeReading;

private:
    mutable std::mutex m_lock;
    std::vector<std::string> m_read;
    std::string m_missing;
    std::string m_further;
};

} // namespace quorvane

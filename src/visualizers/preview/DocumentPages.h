// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QSize>
#include <QSizeF>

#include <memory>
#include <mutex>
#include <vector>

class QIODevice;
class QPdfDocument;

namespace quorvane {

class PreviewFile;

/// The pages of an open PDF file. Any thread but the main one, but for the counts and sizes, which
/// are known from the beginning.
class DocumentPages
{
public:
    /// Most pages that are shown of one document.
    static constexpr int maxPages = 2000;

    /// Whether the device begins like a PDF file. Moves the device.
    static bool isDocument(QIODevice& device);
    /// Null for what is broken, without pages, or encrypted with a password.
    static std::shared_ptr<DocumentPages> open(std::unique_ptr<PreviewFile> file);

    DocumentPages(const DocumentPages&) = delete;
    DocumentPages& operator=(const DocumentPages&) = delete;
    ~DocumentPages();

    /// Of the whole document.
    int pageCount() const { return m_pageCount; }
    /// Sizes of the first pages, at most maxPages, in points; none is empty.
    const std::vector<QSizeF>& pageSizes() const { return m_pageSizes; }
    /// The page on white paper, in device pixels. One call at a time; others wait.
    QImage render(int page, const QSize& pixels);

private:
    DocumentPages();

    std::unique_ptr<PreviewFile> m_file;
    std::unique_ptr<QPdfDocument> m_document;
    int m_pageCount = 0;
    std::vector<QSizeF> m_pageSizes;
    std::mutex m_lock;
};

} // namespace quorvane

// SPDX-License-Identifier: MIT
#include "DocumentPages.h"

#include "PreviewFile.h"

#include <QPainter>
#include <QPdfDocument>

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

/// Readers accept the mark anywhere in the first kilobyte.
constexpr qint64 headBytes = 1024;
/// For a page that tells no size: A4.
constexpr QSizeF usualPage{595, 842};

} // namespace

DocumentPages::DocumentPages()
    : m_document(std::make_unique<QPdfDocument>())
{}

DocumentPages::~DocumentPages() = default;

bool DocumentPages::isDocument(QIODevice& device)
{
    return device.seek(0) && device.read(headBytes).contains("%PDF-");
}

std::shared_ptr<DocumentPages> DocumentPages::open(std::unique_ptr<PreviewFile> file)
{
    std::shared_ptr<DocumentPages> pages(new DocumentPages);
    pages->m_file = std::move(file);
    if (!pages->m_file->seek(0)) {
        return nullptr;
    }
    QPdfDocument& document = *pages->m_document;
    document.load(pages->m_file.get());
    if (document.status() != QPdfDocument::Status::Ready || document.pageCount() < 1) {
        return nullptr;
    }
    pages->m_pageCount = document.pageCount();
    const int shown = std::min(pages->m_pageCount, maxPages);
    for (int page = 0; page < shown; ++page) {
        const QSizeF size = document.pagePointSize(page);
        pages->m_pageSizes.push_back(size.width() >= 1 && size.height() >= 1 ? size : usualPage);
    }
    pages->m_file->forgetStop();
    return pages;
}

QImage DocumentPages::render(int page, const QSize& pixels)
{
    const std::lock_guard guard(m_lock);
    const QImage drawn = m_document->render(page, pixels);
    QImage paper(pixels, QImage::Format_RGB32);
    paper.fill(Qt::white);
    if (!drawn.isNull()) {
        QPainter(&paper).drawImage(0, 0, drawn);
    }
    return paper;
}

} // namespace quorvane

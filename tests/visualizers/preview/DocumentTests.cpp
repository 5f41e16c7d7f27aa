// SPDX-License-Identifier: MIT
#include "DocumentPages.h"
#include "DocumentView.h"
#include "PageCache.h"

#include "DiskTree.h"
#include "PreviewFile.h"
#include "PreviewSamples.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <QScrollBar>

#include <memory>
#include <string>

namespace quorvane {
namespace {

class DocumentTests : public testing::Test
{
protected:
    std::shared_ptr<DocumentPages> open(const std::string& contents)
    {
        m_disk.fileWithContents("paper", contents);
        auto file = std::make_unique<PreviewFile>();
        EXPECT_TRUE(file->openRegular(m_disk.path("paper")));
        return DocumentPages::open(std::move(file));
    }

    DiskTree m_disk;
    JobRunner m_jobs{{}};
};

TEST_F(DocumentTests, TellsItsPages)
{
    const auto pages = open(test::documentOfPages(3).toStdString());
    ASSERT_NE(pages, nullptr);
    EXPECT_EQ(pages->pageCount(), 3);
    ASSERT_EQ(pages->pageSizes().size(), 3U);
    EXPECT_EQ(pages->pageSizes()[2], QSizeF(300, 400));
}

TEST_F(DocumentTests, DrawsAPageOnWhitePaper)
{
    const auto pages = open(test::documentOfPages(1).toStdString());
    ASSERT_NE(pages, nullptr);
    const QImage drawn = pages->render(0, QSize(60, 80));
    ASSERT_EQ(drawn.size(), QSize(60, 80));
    EXPECT_EQ(drawn.pixelColor(10, 40), QColor(Qt::red));
    EXPECT_EQ(drawn.pixelColor(50, 40), QColor(Qt::white));
}

TEST_F(DocumentTests, IsNoneWhenBrokenOrLocked)
{
    const std::string whole = test::documentOfPages(2).toStdString();
    EXPECT_EQ(open(test::lockedDocument()), nullptr);
    EXPECT_EQ(open("%PDF-1.7\n%%EOF\n"), nullptr);
    EXPECT_EQ(open(whole.substr(0, 40)), nullptr);
    EXPECT_EQ(open(std::string()), nullptr);
}

TEST_F(DocumentTests, ManyPagesAreCounted)
{
    const int count = DocumentPages::maxPages + 1;
    const auto pages = open(test::documentOfPages(count).toStdString());
    ASSERT_NE(pages, nullptr);
    EXPECT_EQ(pages->pageCount(), count);
    EXPECT_EQ(pages->pageSizes().size(), static_cast<std::size_t>(DocumentPages::maxPages));
}

TEST_F(DocumentTests, TheViewDrawsWhatIsOnShow)
{
    DocumentView view(m_jobs);
    view.resize(332, 300);
    view.setDocument(open(test::documentOfPages(3).toStdString()));
    view.show();
    ASSERT_TRUE(waitFor([&view] { return view.isDrawn(); }));
    EXPECT_EQ(view.currentPage(), 0);
    EXPECT_EQ(view.pageCount(), 3);
    const QImage shown = view.viewport()->grab().toImage();
    EXPECT_EQ(shown.pixelColor(shown.width() / 4, shown.height() / 2), QColor(Qt::red));
    EXPECT_EQ(shown.pixelColor(shown.width() * 3 / 4, shown.height() / 2), QColor(Qt::white));

    view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
    EXPECT_EQ(view.currentPage(), 2);
    ASSERT_TRUE(waitFor([&view] { return view.isDrawn(); }));
    view.setDocument(nullptr);
    EXPECT_EQ(view.pageCount(), 0);
    EXPECT_EQ(view.verticalScrollBar()->maximum(), 0);
}

TEST_F(DocumentTests, ANewDocumentTakesThePlaceOfOneThatIsBeingDrawn)
{
    DocumentView view(m_jobs);
    view.resize(332, 300);
    view.show();
    view.setDocument(open(test::documentOfPages(50).toStdString()));
    view.setDocument(open(test::documentOfPages(1).toStdString()));
    EXPECT_EQ(view.pageCount(), 1);
    EXPECT_TRUE(waitFor([&view] { return view.isDrawn(); }));
}

TEST(PageCacheTests, DropsThePagesFarthestFromThoseOnShow)
{
    const QImage page(10, 10, QImage::Format_RGB32);
    ASSERT_EQ(page.sizeInBytes(), 400);
    PageCache cache(1200);
    for (int number = 0; number < 3; ++number) {
        cache.keep(number, page, number, number);
    }
    EXPECT_EQ(cache.bytes(), 1200);
    cache.keep(3, page, 2, 3);
    EXPECT_EQ(cache.find(0), nullptr);
    EXPECT_NE(cache.find(1), nullptr);
    cache.keep(0, page, 0, 0);
    EXPECT_EQ(cache.find(3), nullptr);
    EXPECT_NE(cache.find(0), nullptr);
    EXPECT_EQ(cache.bytes(), 1200);
    cache.keep(0, page, 0, 0);
    EXPECT_EQ(cache.bytes(), 1200) << "drawn again, it counts once";
    cache.clear();
    EXPECT_EQ(cache.bytes(), 0);
}

TEST(PageCacheTests, KeepsWhatIsOnShowBeyondTheBound)
{
    const QImage page(10, 10, QImage::Format_RGB32);
    PageCache cache(1000);
    for (int number = 4; number < 8; ++number) {
        cache.keep(number, page, 4, 7);
    }
    for (int number = 4; number < 8; ++number) {
        EXPECT_NE(cache.find(number), nullptr) << number;
    }
}

} // namespace
} // namespace quorvane

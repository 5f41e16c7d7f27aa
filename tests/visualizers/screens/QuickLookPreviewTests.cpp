// SPDX-License-Identifier: MIT
#include "QuickLookPreview.h"

#include "CanvasFixture.h"
#include "PreviewPanel.h"
#include "WindowPreview.h"

namespace quorvane {
namespace {

class CountingPanel : public QuickLookPanel
{
public:
    CountingPanel() { QuickLookPreview::shared().setPanel(*this); }
    ~CountingPanel() override { QuickLookPreview::shared().forgetPanel(*this); }

    void bringToFront() override
    {
        ++m_shown;
        m_isOnShow = true;
    }
    void closePanel() override { m_isOnShow = false; }
    bool isOnShow() const override { return m_isOnShow; }
    int shown() const { return m_shown; }

private:
    int m_shown = 0;
    bool m_isOnShow = false;
};

class QuickLookPreviewTests : public CanvasFixture
{
protected:
    void SetUp() override { showTree("one 20\ntwo 10\n"); }

    QuickLookPreview& preview() { return QuickLookPreview::shared(); }
};

TEST_F(QuickLookPreviewTests, WithoutAPanelItStoresThePathAndDoesNothingElse)
{
    preview().show(FilePath("/scan/three"));
    EXPECT_EQ(preview().url(), FilePath("/scan/three"));
    EXPECT_EQ(preview().numberOfPreviewItems(), 1);
    EXPECT_EQ(preview().previewItemAt(0), FilePath("/scan/three"));
    preview().toggle(*node("one"));
    preview().toggle(*node("one"));
    EXPECT_EQ(preview().url(), node("one")->path());
}

TEST_F(QuickLookPreviewTests, TogglesOnlyWhatShowsAlready)
{
    CountingPanel panel;
    preview().toggle(*node("one"));
    EXPECT_TRUE(panel.isOnShow());
    preview().toggle(*node("two"));
    EXPECT_TRUE(panel.isOnShow()) << "another file takes its place";
    EXPECT_EQ(preview().url(), node("two")->path());
    preview().toggle(*node("two"));
    EXPECT_FALSE(panel.isOnShow());
    preview().toggle(*node("two"));
    EXPECT_TRUE(panel.isOnShow());
}

TEST_F(QuickLookPreviewTests, APanelTakesOnlyItselfAway)
{
    auto first = std::make_unique<CountingPanel>();
    auto second = std::make_unique<CountingPanel>();
    first.reset();
    preview().show(*node("one"));
    EXPECT_EQ(second->shown(), 1) << "the end of the first has not taken the second away";
    second.reset();
    preview().show(*node("two"));
    EXPECT_EQ(preview().url(), node("two")->path());
}

TEST_F(QuickLookPreviewTests, AWindowShowsAnyPathWithNoOtherScreenOpen)
{
    QWidget window;
    window.resize(900, 700);
    window.show();
    const WindowPreview inWindow(m_state, &window);
    EXPECT_EQ(window.findChild<PreviewPanel*>(), nullptr) << "made when it is needed";
    preview().show(FilePath("/scan/three"));
    auto* const panel = window.findChild<PreviewPanel*>();
    ASSERT_NE(panel, nullptr);
    EXPECT_TRUE(panel->isVisible());
    EXPECT_TRUE(inWindow.isOnShow());
    EXPECT_TRUE(waitFor([panel] { return !panel->isReading(); }));
}

} // namespace
} // namespace quorvane

// SPDX-License-Identifier: MIT
#include "Label.h"
#include "ProgramFixture.h"
#include "SegmentedPicker.h"

#include <QAction>

namespace quorvane {
namespace {

class Texts : public ProgramFixture
{
protected:
    QStringList headings()
    {
        QStringList texts;
        for (const SectionHeading* const heading : window().findChildren<SectionHeading*>()) {
            if (heading->isVisible()) {
                texts.push_back(heading->text());
            }
        }
        return texts;
    }
};

TEST_F(Texts, ToolBarExplainsItsButtons)
{
    start();
    scanHome();
    ASSERT_TRUE(waitUntilShown("rescanButton"));
    EXPECT_EQ(find("rescanButton")->toolTip(), QStringLiteral("Rescan the current folder"));
    EXPECT_EQ(find<QAbstractButton>("rescanButton")->accessibleName(), QStringLiteral("Rescan"));
    EXPECT_EQ(find("zoomOutButton")->toolTip(), QStringLiteral("Zoom out one level (Esc)"));
    EXPECT_EQ(find<QAbstractButton>("zoomOutButton")->accessibleName(), QStringLiteral("Zoom Out"));
}

TEST_F(Texts, SidebarNamesItsParts)
{
    start();
    EXPECT_TRUE(headings().contains(QStringLiteral("Disk storage")));
    EXPECT_TRUE(headings().contains(QStringLiteral("File types")));
}

TEST_F(Texts, StagingAndDetailsAreCalledByTheirNames)
{
    start();
    scanHome();
    EXPECT_EQ(find("detailsButton")->toolTip(), QStringLiteral("Toggle the details panel"));
    EXPECT_EQ(find<QAction>("stageSelectionAction")->text(), QStringLiteral("Stage Selection"));
    EXPECT_EQ(find<QAction>("showStagedItemsAction")->text(), QStringLiteral("Show Staged Items"));
    EXPECT_EQ(find<QAction>("settingsAction")->text(), QStringLiteral("Settings…"));
    state().toggleStaged(state().share(state().rootNode.value()->largestChild()));
    ASSERT_TRUE(waitUntilShown("stagedRow"));
    EXPECT_EQ(find<QAbstractButton>("stagedRow")->text(), QStringLiteral("Staged for trash"));
}

TEST_F(Texts, FooterNamesItsPicker)
{
    start();
    scanHome();
    EXPECT_EQ(find<SegmentedPicker>("sizeBasisPicker")->accessibleName(),
              QStringLiteral("Size basis"));
}

TEST_F(Texts, FailedScanOffersAnotherTry)
{
    start();
    state().startScan(m_disk.path("missing"));
    ASSERT_TRUE(waitUntilShown("scanErrorView"));
    EXPECT_EQ(state().errorMessage.value(),
              QStringLiteral("Cannot access ") + m_disk.path("missing").displayText());
    EXPECT_EQ(find<QAbstractButton>("tryAgainButton")->text(), QStringLiteral("Try Again"));
}

} // namespace
} // namespace quorvane

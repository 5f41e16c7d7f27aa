// SPDX-License-Identifier: MIT
#include "NodeContextMenuModifier.h"

#include "CanvasFixture.h"
#include "Menu.h"
#include "Symbols.h"

#include <QAction>
#include <QPointer>

#include <memory>

namespace quorvane {
namespace {

class NodeContextMenuModifierTests : public CanvasFixture
{
protected:
    NodeContextMenuModifierTests() { showTree("folder/\n  file 100\n"); }

    ~NodeContextMenuModifierTests() override
    {
        if (m_menu) {
            m_menu->close();
        }
    }

    void popUp(const NodePointer& node)
    {
        NodeContextMenuModifier{m_state, node}.popUp(m_owner, QPoint(10, 10));
        m_menu = m_owner.findChild<Menu*>(QStringLiteral("nodeContextMenu"));
    }

    QAction& entry(const char* name) { return *m_menu->findChild<QAction*>(QLatin1String(name)); }

    void triggerAll()
    {
        for (const char* const name : {"stageAction", "revealAction", "openAction"}) {
            entry(name).trigger();
        }
    }

    void expectNothingDone()
    {
        EXPECT_TRUE(m_state.stagedNodes.value().empty());
        EXPECT_TRUE(m_platform.workspace.revealed.empty());
        EXPECT_TRUE(m_platform.workspace.opened.empty());
    }

    QWidget m_owner;
    QPointer<Menu> m_menu;
};

TEST_F(NodeContextMenuModifierTests, HasThreeEntriesInOrder)
{
    popUp(node("folder/file"));
    ASSERT_NE(m_menu, nullptr);
    QStringList texts;
    for (const QAction* const action : m_menu->actions()) {
        texts.append(action->text());
    }
    EXPECT_EQ(texts, (QStringList{QStringLiteral("Stage for Cleanup"),
                                  QStringLiteral("Reveal in Finder"), QStringLiteral("Open")}));
}

TEST_F(NodeContextMenuModifierTests, ActsOnItsNode)
{
    popUp(node("folder/file"));
    triggerAll();
    EXPECT_EQ(m_state.stagedNodes.value(), std::vector{node("folder/file")});
    EXPECT_EQ(m_platform.workspace.revealed, std::vector{FilePath("/scan/folder/file")});
    EXPECT_EQ(m_platform.workspace.opened, std::vector{FilePath("/scan/folder/file")});
}

TEST_F(NodeContextMenuModifierTests, OffersToUnstageWhatIsStaged)
{
    m_state.toggleStaged(node("folder/file"));
    popUp(node("folder/file"));
    EXPECT_EQ(entry("stageAction").text(), QStringLiteral("Unstage from Cleanup"));
    entry("stageAction").trigger();
    EXPECT_TRUE(m_state.stagedNodes.value().empty());
}

TEST_F(NodeContextMenuModifierTests, EntriesHaveTheirSymbols)
{
    const auto shows = [this](const char* name, const char* symbol) {
        return entry(name).icon().pixmap(16).toImage() ==
               symbolIcon(QLatin1String(symbol)).pixmap(16).toImage();
    };
    popUp(node("folder/file"));
    EXPECT_TRUE(shows("stageAction", "trash"));
    EXPECT_TRUE(shows("revealAction", "folder"));
    EXPECT_TRUE(shows("openAction", "arrowshape.turn.up.right"));
    m_menu->close();
    QCoreApplication::sendPostedEvents(m_menu, QEvent::DeferredDelete);
    ASSERT_FALSE(m_menu);
    m_state.toggleStaged(node("folder/file"));
    popUp(node("folder/file"));
    EXPECT_TRUE(shows("stageAction", "arrow.uturn.backward"));
}

TEST_F(NodeContextMenuModifierTests, TheScanRootCannotBeStaged)
{
    popUp(m_tree->rootPointer());
    EXPECT_FALSE(entry("stageAction").isEnabled());
    EXPECT_TRUE(entry("revealAction").isEnabled());
    EXPECT_TRUE(entry("openAction").isEnabled());
}

TEST_F(NodeContextMenuModifierTests, WithoutANodeThereIsNoMenu)
{
    popUp(nullptr);
    EXPECT_EQ(m_menu, nullptr);
}

TEST_F(NodeContextMenuModifierTests, LeftOpenAcrossAScanItTouchesNeitherTree)
{
    popUp(node("folder/file"));
    const std::shared_ptr<FileTree> kept = m_tree;
    showTree("folder/\n  file 100\n");
    triggerAll();
    expectNothingDone();
    EXPECT_FALSE(node("folder/file")->isStagedForTrash());
    EXPECT_FALSE(test::nodeAt(kept->root(), "folder/file").isStagedForTrash());
}

TEST_F(NodeContextMenuModifierTests, LeftOpenWhileAScanRunsItDoesNothing)
{
    popUp(node("folder/file"));
    m_state.rootNode = nullptr;
    triggerAll();
    expectNothingDone();
}

TEST_F(NodeContextMenuModifierTests, KeepsNoOldTreeAlive)
{
    popUp(node("folder/file"));
    const std::weak_ptr<FileTree> old = m_tree;
    showTree("other 1\n");
    EXPECT_TRUE(old.expired());
    triggerAll();
    expectNothingDone();
}

} // namespace
} // namespace quorvane

// SPDX-License-Identifier: MIT
#include "BreadcrumbBar.h"

#include "CanvasFixture.h"

namespace quorvane {
namespace {

class BreadcrumbBarTests : public CanvasFixture
{
protected:
    QStringList shownNames() const
    {
        QStringList names;
        for (const CrumbButton* const crumb : m_bar.findChildren<CrumbButton*>()) {
            if (crumb->isVisible()) {
                names << crumb->text();
            }
        }
        return names;
    }

    BreadcrumbBar m_bar{m_state};
};

TEST_F(BreadcrumbBarTests, ShowsNothingAtTheRoot)
{
    showTree("a/\n  b.txt 1\n");
    m_bar.show();
    EXPECT_TRUE(shownNames().isEmpty());
    EXPECT_TRUE(BreadcrumbBar::chain(&m_tree->root()).empty());
    EXPECT_TRUE(BreadcrumbBar::chain(nullptr).empty());
}

TEST_F(BreadcrumbBarTests, ShowsTheWayDownToTheFocus)
{
    showTree("a/\n  b/\n    c.txt 1\n");
    m_bar.resize(800, 36);
    m_bar.show();
    m_state.focus(node("a/b"));
    EXPECT_EQ(shownNames(),
              (QStringList{QStringLiteral("scan"), QStringLiteral("a"), QStringLiteral("b")}));
}

TEST_F(BreadcrumbBarTests, PressingACrumbFocusesIt)
{
    showTree("a/\n  b/\n    c.txt 1\n");
    m_bar.resize(800, 36);
    m_bar.show();
    m_state.focus(node("a/b"));
    m_bar.findChildren<CrumbButton*>().at(1)->click();
    EXPECT_EQ(m_state.focusNode.value(), node("a"));
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(shownNames(), (QStringList{QStringLiteral("scan"), QStringLiteral("a")}));
}

TEST_F(BreadcrumbBarTests, TellsWhatTheFocusHolds)
{
    showTree("a/\n  b.txt 1500\n  c.txt 36\n");
    EXPECT_EQ(BreadcrumbBar::summary(*node("a")), QStringLiteral("1.5 KB · 2 files"));
}

TEST_F(BreadcrumbBarTests, KeepsTheLastFoldersWhereAllDoNotFit)
{
    std::string text;
    std::string path;
    std::string indent;
    for (int i = 0; i < 200; ++i) {
        const std::string name = "folder" + std::to_string(i);
        text += indent + name + "/\n";
        path += (path.empty() ? "" : "/") + name;
        indent += "  ";
    }
    showTree(text);
    m_bar.resize(400, 36);
    m_bar.show();
    m_state.focus(node(path));
    const QStringList names = shownNames();
    ASSERT_FALSE(names.isEmpty());
    EXPECT_LT(names.size(), 10);
    EXPECT_EQ(names.last(), QStringLiteral("folder199"));
    EXPECT_GT(names.size(), 1);
    for (const CrumbButton* const crumb : m_bar.findChildren<CrumbButton*>()) {
        if (crumb->isVisible()) {
            EXPECT_LE(crumb->geometry().right(), m_bar.width());
        }
    }
}

TEST_F(BreadcrumbBarTests, AmpersandInANameIsNoShortcut)
{
    showTree("R&D/\n  b.txt 1\n");
    m_bar.resize(800, 36);
    m_bar.show();
    m_state.focus(node("R&D"));
    EXPECT_EQ(shownNames(), (QStringList{QStringLiteral("scan"), QStringLiteral("R&D")}));
    const QList<CrumbButton*> crumbs = m_bar.findChildren<CrumbButton*>();
    ASSERT_EQ(crumbs.size(), 2);
    for (const CrumbButton* const crumb : crumbs) {
        EXPECT_TRUE(crumb->shortcut().isEmpty());
    }
}

} // namespace
} // namespace quorvane

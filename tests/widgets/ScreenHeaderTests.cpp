// SPDX-License-Identifier: MIT
#include "ScreenHeader.h"

#include "WidgetsFixture.h"

#include <QLabel>
#include <QPushButton>

namespace quorvane {
namespace {

class ScreenHeaderTests : public WidgetsTest
{
protected:
    void showHeader()
    {
        m_header.resize(700, m_header.height());
        m_header.show();
    }

    const QWidget& title() { return *m_header.findChild<QLabel*>(QStringLiteral("screenTitle")); }

    ScreenHeader m_header{QStringLiteral("trash"), QStringLiteral("Staged cleanup")};
};

TEST_F(ScreenHeaderTests, WithoutActionsAllBehindTheTitleIsClear)
{
    showHeader();
    EXPECT_EQ(m_header.height(), 64);
    EXPECT_EQ(title().x(), 24 + 20 + 10);
    EXPECT_EQ(m_header.clearArea(),
              QRect(QPoint(title().geometry().right() + 1, 0), QPoint(699, 63)));
}

TEST_F(ScreenHeaderTests, TheClearAreaEndsAtTheFirstActionOnShow)
{
    auto* const first = new QPushButton(QStringLiteral("Stop"));
    auto* const second = new QPushButton(QStringLiteral("Find"));
    m_header.addAction(first);
    m_header.addAction(second);
    showHeader();
    EXPECT_EQ(m_header.clearArea().right() + 1, first->x());
    EXPECT_EQ(second->geometry().right() + 1, 700 - 24);
    first->hide();
    EXPECT_EQ(m_header.clearArea().right() + 1, second->x());
}

} // namespace
} // namespace quorvane

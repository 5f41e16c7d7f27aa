// SPDX-License-Identifier: MIT
#include "FooterView.h"

#include "CanvasFixture.h"
#include "Label.h"
#include "Painting.h"
#include "SegmentedPicker.h"

#include <QPainter>
#include <QPixmap>

#include <algorithm>

namespace quorvane {
namespace {

const QString wholeHint =
    QStringLiteral("Hover to inspect · Click a folder to zoom · Right-click for actions · Esc "
                   "zooms out");
/// The margins, the picker and the gap behind it.
constexpr int besideHint = 12 + 240 + 16 + 16;

class FooterViewTests : public CanvasFixture
{
protected:
    void showAt(int width)
    {
        m_footer.resize(width, m_footer.height());
        m_footer.show();
    }

    Label& hint() { return *m_footer.findChild<Label*>(QStringLiteral("footerHint")); }
    QWidget& picker() { return *m_footer.findChild<SegmentedPicker*>(); }

    static int widthOf(const QString& line) { return textWidth(TextStyle::caption, line); }
    static int widthOfHalves()
    {
        return std::max(widthOf(QStringLiteral("Hover to inspect · Click a folder to zoom")),
                        widthOf(QStringLiteral("Right-click for actions · Esc zooms out")));
    }

    void expectWholeHintInside(int lines)
    {
        EXPECT_EQ(hint().text(), wholeHint);
        EXPECT_GE(hint().width(), lines == 1 ? widthOf(wholeHint) : widthOfHalves());
        EXPECT_GE(hint().height(), 16 * lines);
        EXPECT_TRUE(m_footer.rect().contains(hint().geometry()));
        EXPECT_FALSE(hint().geometry().intersects(picker().geometry()));
        EXPECT_EQ(picker().geometry(), QRect(12, 7, 240, 30));
    }

    FooterView m_footer{m_state};
};

TEST_F(FooterViewTests, IsOneLineOf44WhereThereIsRoom)
{
    showAt(besideHint + widthOf(wholeHint));
    EXPECT_EQ(m_footer.height(), 44);
    expectWholeHintInside(1);
    EXPECT_EQ(hint().geometry().right() + 1, m_footer.width() - 16);
}

TEST_F(FooterViewTests, BreaksTheHintInTwoBeforeItLacksRoom)
{
    showAt(besideHint + widthOf(wholeHint) - 1);
    EXPECT_EQ(m_footer.height(), 44);
    expectWholeHintInside(2);
    showAt(besideHint + widthOfHalves());
    EXPECT_EQ(m_footer.height(), 44);
    expectWholeHintInside(2);
}

TEST_F(FooterViewTests, PutsTheHintBelowThePickerInTheNarrowestWindow)
{
    showAt(besideHint + widthOfHalves() - 1);
    EXPECT_GT(m_footer.height(), 44);
    expectWholeHintInside(2);
    EXPECT_GT(hint().y(), picker().geometry().bottom());
    EXPECT_EQ(hint().x(), 12);
    showAt(900);
    EXPECT_EQ(m_footer.height(), 44) << "and takes it up again";
}

TEST_F(FooterViewTests, TheLinesOfABrokenHintAreItsPhrases)
{
    showAt(besideHint + widthOfHalves());
    // The same phrases painted one below the other by hand.
    QPixmap expected(hint().size());
    QPixmap shown(hint().size());
    for (QPixmap* const picture : {&expected, &shown}) {
        picture->fill(Qt::black);
    }
    {
        QPainter painter(&expected);
        const int top = (hint().height() - 32) / 2;
        const QRect first(0, top, hint().width(), 16);
        const int alignment = Qt::AlignRight | Qt::AlignVCenter;
        const QColor color = themeColor(ThemeColor::text3);
        paintText(painter, first, alignment, TextStyle::caption, color,
                  QStringLiteral("Hover to inspect · Click a folder to zoom"));
        paintText(painter, first.translated(0, 16), alignment, TextStyle::caption, color,
                  QStringLiteral("Right-click for actions · Esc zooms out"));
    }
    hint().render(&shown, QPoint(), QRegion(), QWidget::RenderFlags());
    EXPECT_EQ(shown.toImage(), expected.toImage());
}

} // namespace
} // namespace quorvane

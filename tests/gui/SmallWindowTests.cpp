// SPDX-License-Identifier: MIT
#include "Button.h"
#include "Label.h"
#include "ProgramFixture.h"
#include "SegmentedPicker.h"
#include "Tile.h"
#include "TreeText.h"

#include <QScrollArea>

#include <string>

namespace quorvane {
namespace {

class SmallestWindow : public ProgramFixture
{
protected:
    void shrink()
    {
        window().resize(window().minimumSize());
        ASSERT_TRUE(waitFor([this] { return window().size() == QSize(1000, 620); }));
        settle();
    }

    static bool isScrolled(const QWidget& widget)
    {
        for (const QWidget* parent = widget.parentWidget(); parent != nullptr;
             parent = parent->parentWidget()) {
            if (qobject_cast<const QAbstractScrollArea*>(parent) != nullptr) {
                return true;
            }
        }
        return false;
    }

    static std::string described(const QWidget& widget)
    {
        const auto* const label = qobject_cast<const QLabel*>(&widget);
        const QString text = label != nullptr ? label->text() : QString();
        const QString name = QLatin1String(widget.metaObject()->className()) + QLatin1Char(' ') +
                             widget.objectName() + QLatin1Char(' ') + text;
        return name.toStdString();
    }

    /// Nothing reaches beyond the window, and no text that cannot shorten itself lacks room.
    void expectNothingCut(const std::string& where)
    {
        const QWidget& detail = *find("detailArea");
        int inDetail = 0;
        for (const QWidget* const widget : window().findChildren<QWidget*>()) {
            if (!widget->isVisible() || widget->isWindow() || isScrolled(*widget)) {
                continue;
            }
            const QRect place(widget->mapTo(&window(), QPoint()), widget->size());
            if (qobject_cast<const QAbstractButton*>(widget) != nullptr ||
                qobject_cast<const QLabel*>(widget) != nullptr) {
                inDetail += detail.isAncestorOf(widget) ? 1 : 0;
                EXPECT_TRUE(window().rect().contains(place)) << where << ": " << described(*widget);
                EXPECT_GE(widget->width(), widget->minimumSizeHint().width())
                    << where << ": " << described(*widget);
                EXPECT_GE(widget->height(), widget->minimumSizeHint().height())
                    << where << ": " << described(*widget);
            }
        }
        EXPECT_GT(inDetail, 0) << where;
    }

    void expectNothingCutInSections(const std::string& when)
    {
        for (const AppSection section : sectionKeys()) {
            ASSERT_TRUE(showSection(section)) << rawValue(section);
            expectNothingCut(std::string(rawValue(section)) + when);
        }
    }
};

TEST_F(SmallestWindow, CutsNothingOff)
{
    startWithSections();
    shrink();
    expectNothingCut("welcome");
    state().section = AppSection::duplicates;
    ASSERT_TRUE(waitUntilShown("noScanPrompt"));
    expectNothingCut("prompt");
    m_gate.close();
    state().scanHome();
    ASSERT_TRUE(waitUntilShown("scanProgressView"));
    expectNothingCut("progress");
    m_gate.open();
    ASSERT_TRUE(waitUntilShown("visualizerHost"));
    settle();
    expectNothingCut("result");
    expectNothingCutInSections("");
    state().toggleStaged(state().share(&test::nodeAt(*state().rootNode.value(), "Movies")));
    expectNothingCutInSections(" with a queue");
    state().section = AppSection::analysis;
    m_program->openFolder(m_disk.path("missing"));
    ASSERT_TRUE(waitUntilShown("scanErrorView"));
    expectNothingCut("error");
}

TEST_F(SmallestWindow, TheSidebarScrollsDownToItsEnd)
{
    AppScreens screens = AppScreens::standard();
    for (const ToolSection& tool : ToolSection::items) {
        screens.sections.add(tool.section,
                             [](AppState&, QWidget* parent) { return new QWidget(parent); });
    }
    start(std::move(screens));
    shrink();
    auto* const scroll = find<QScrollArea>("sidebarScroll");
    QWidget* const legend = find("fileTypeLegend");
    EXPECT_GT(scroll->widget()->height(), scroll->viewport()->height());
    EXPECT_LE(scroll->widget()->width(), scroll->viewport()->width());
    scroll->ensureWidgetVisible(legend);
    const QRect place(legend->mapTo(scroll->viewport(), QPoint()), legend->size());
    EXPECT_TRUE(scroll->viewport()->rect().contains(place));
}

TEST_F(SmallestWindow, ThePickerGivesUpItsWordsBelow1440)
{
    AppScreens screens = AppScreens::standard();
    for (const VisualizerType type : allVisualizerTypes) {
        if (!screens.visualizers.contains(type)) {
            screens.visualizers.add(type,
                                    [](AppState&, QWidget* parent) { return new QWidget(parent); });
        }
    }
    screens.sections.add(AppSection::settings,
                         [](AppState&, QWidget* parent) { return new QWidget(parent); });
    start(std::move(screens));
    scanHome();
    ASSERT_TRUE(waitUntilShown("visualizerPicker"));
    auto* const picker = find<SegmentedPicker>("visualizerPicker");
    auto* const settings = find<ToolButton>("settingsButton");
    const auto resizeTo = [this](int width) {
        window().resize(width, 700);
        settle();
    };
    resizeTo(1440);
    EXPECT_FALSE(picker->isCollapsed());
    EXPECT_TRUE(settings->areWordsVisible());
    resizeTo(1439);
    EXPECT_TRUE(picker->isCollapsed());
    EXPECT_EQ(picker->segment(0)->toolTip(), QStringLiteral("Folders"));
    EXPECT_TRUE(settings->areWordsVisible());
    resizeTo(1199);
    EXPECT_FALSE(settings->areWordsVisible());
    resizeTo(1000);
    expectNothingCut("tool bar");
}

} // namespace
} // namespace quorvane

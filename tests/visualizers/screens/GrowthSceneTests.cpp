// SPDX-License-Identifier: MIT
#include "GrowthColors.h"

#include "CanvasFixture.h"
#include "FlameScene.h"
#include "FooterView.h"
#include "GrowthLegend.h"
#include "InspectorRows.h"
#include "InspectorView.h"
#include "NodeColors.h"
#include "OutlineScreen.h"
#include "RowView.h"
#include "SceneFixture.h"
#include "ShapePainting.h"
#include "SunburstScene.h"
#include "Switch.h"
#include "TagDots.h"
#include "TreemapScene.h"

#include <QLocale>

#include <cmath>

namespace quorvane {
namespace {

constexpr std::int64_t before = 1'000'000;

/// A file for each step, all of them near one size, so that every tile has room.
constexpr const char* grownTree = "a/\n"
                                  "  half less 500000\n"
                                  "  tenth less 900000\n"
                                  "  hundredth less 990000\n"
                                  "  same 1000000\n"
                                  "  hundredth more 1010000\n"
                                  "  tenth more 1100000\n"
                                  "  half more 1500000\n";

constexpr std::array names{"half less",      "tenth less", "hundredth less", "same",
                           "hundredth more", "tenth more", "half more"};

std::shared_ptr<const SnapshotGrowth> growthSince(const NodePointer& root)
{
    std::vector<ScanSnapshot::Entry> items;
    for (const char* const name : names) {
        items.push_back({std::string("/a/") + name, before});
    }
    SnapshotHeading heading;
    heading.id = QUuid::createUuid();
    heading.date = 775'000'000; // in July 2025
    return std::make_shared<const SnapshotGrowth>(heading, std::move(items), root);
}

template<class Scene>
class GrowthScenes : public SceneFixture<Scene>
{
protected:
    std::shared_ptr<const Scene> grown(bool isColored = true)
    {
        test::TreeTextOptions options;
        options.rootPath = FilePath("/r");
        this->m_tree = test::treeFromText(grownTree, options);
        SceneRequest request;
        request.target = this->m_tree->rootPointer();
        request.isScanRoot = true;
        request.size = {900, 700};
        request.growth = isColored ? growthSince(request.target) : nullptr;
        const LockedFlag stop;
        return std::static_pointer_cast<const Scene>(Scene::make(request, stop));
    }

    /// Whether so many pixels of the item have exactly the colour.
    static bool isFilled(const QImage& picture, const CanvasScene& scene, std::size_t item,
                         const QColor& color)
    {
        const QRect bounds = scene.boundsOf(item).toAlignedRect() & picture.rect();
        int filled = 0;
        for (int y = bounds.top(); y <= bounds.bottom(); ++y) {
            for (int x = bounds.left(); x <= bounds.right(); ++x) {
                filled += scene.itemAt(QPointF(x + 0.5, y + 0.5)) == item &&
                                  picture.pixelColor(x, y) == color
                              ? 1
                              : 0;
            }
        }
        return filled > 200;
    }
};

using Colored = ::testing::Types<TreemapScene, SunburstScene, FlameScene>;
TYPED_TEST_SUITE(GrowthScenes, Colored);

TYPED_TEST(GrowthScenes, EachItemHasTheColourOfItsStep)
{
    const auto scene = this->grown();
    const QImage picture = this->render(scene).bright;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::size_t item = this->itemNamed(*scene, std::string("a/") + names[i]);
        EXPECT_TRUE(this->isFilled(picture, *scene, item, toQColor(growthScale[i]).toRgb()))
            << names[i];
    }
}

TYPED_TEST(GrowthScenes, WithoutAComparisonTheColoursAreThoseOfTheNodes)
{
    const auto scene = this->grown(false);
    const QImage picture = this->render(scene).bright;
    const std::size_t item = this->itemNamed(*scene, "a/half more");
    EXPECT_FALSE(this->isFilled(picture, *scene, item, toQColor(growthScale[6])));
    EXPECT_TRUE(scene->tooltipOf(item).note.isEmpty());
    EXPECT_FALSE(this->render(scene).dimmed.isNull());
}

TYPED_TEST(GrowthScenes, TheTooltipTellsTheChangeAndAHoverDimsNothing)
{
    const auto scene = this->grown();
    const std::size_t item = this->itemNamed(*scene, "a/half less");
    const TooltipText text = scene->tooltipOf(item);
    EXPECT_EQ(text.note, QStringLiteral("since %1: −488.3 KB")
                             .arg(scene->request().growth->base().formattedDay(QLocale())));
    EXPECT_EQ(text.mark, toQColor(growthScale[0]));
    EXPECT_TRUE(scene->labelOf(item).endsWith(text.note));
    EXPECT_TRUE(this->render(scene).dimmed.isNull());
}

double luminance(const Color& color)
{
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.r) + 0.7152 * linear(color.g) + 0.0722 * linear(color.b);
}

/// As a person without the cones for red or green sees it: Viénot, Brettel and Mollon
/// (1999), in linear light.
std::array<double, 3> seenWithout(const Color& color)
{
    const auto linear = [](double channel) { return std::pow(channel, 2.2); };
    const double r = linear(color.r);
    const double g = linear(color.g);
    const double b = linear(color.b);
    return {0.29275 * r + 0.70725 * g, 0.29275 * r + 0.70725 * g, -0.02234 * r + 0.02234 * g + b};
}

TEST(GrowthColors, BothArmsGetBrighterOutwards)
{
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_GT(luminance(growthScale[i]), luminance(growthScale[i + 1])) << i;
        EXPECT_LT(luminance(growthScale[i + 3]), luminance(growthScale[i + 4])) << i;
    }
}

TEST(GrowthColors, LessAndMoreStayApartWithoutRedAndGreen)
{
    for (std::size_t i = 0; i < 3; ++i) {
        const auto less = seenWithout(growthScale[i]);
        const auto more = seenWithout(growthScale[growthSteps - 1 - i]);
        // Bluer than it is yellow, and the other way round.
        EXPECT_GT(less[2], less[0]) << i;
        EXPECT_LT(more[2], more[0]) << i;
    }
}

class GrowthOnShow : public CanvasFixture
{
protected:
    void compare()
    {
        test::TreeTextOptions options;
        options.rootPath = FilePath("/r");
        m_tree = test::treeFromText(grownTree, options);
        m_state.rootNode = m_tree->rootPointer();
        m_state.selectedNode = node("a/half more");
        m_state.focusNode = m_tree->rootPointer();
        m_state.growth = growthSince(m_tree->rootPointer());
        QCoreApplication::processEvents();
    }
};

TEST_F(GrowthOnShow, TheFooterHasASwitchWhileThereIsAComparison)
{
    FooterView footer(m_state);
    footer.resize(1300, footer.height());
    footer.show();
    auto& legend = *footer.findChild<GrowthLegend*>();
    EXPECT_FALSE(legend.isVisible());
    compare();
    EXPECT_TRUE(legend.isVisible());
    auto& toggle = *footer.findChild<Switch*>(QStringLiteral("changesSwitch"));
    EXPECT_FALSE(toggle.isChecked());
    const int off = legend.wholeWidth();
    toggle.click();
    QCoreApplication::processEvents();
    EXPECT_TRUE(m_state.showsChanges);
    EXPECT_GT(legend.wholeWidth(), off + 7 * 24);
    EXPECT_EQ(legend.width(), legend.wholeWidth());
    m_state.visualizer = VisualizerType::list;
    QCoreApplication::processEvents();
    EXPECT_FALSE(legend.isVisible());
    m_state.visualizer = VisualizerType::flame;
    QCoreApplication::processEvents();
    EXPECT_TRUE(legend.isVisible());
    m_state.growth = nullptr;
    QCoreApplication::processEvents();
    EXPECT_FALSE(legend.isVisible());
}

TEST_F(GrowthOnShow, InANarrowFooterTheLegendHasARowOfItsOwn)
{
    FooterView footer(m_state);
    footer.resize(460, footer.height());
    footer.show();
    compare();
    m_state.showsChanges = true;
    QCoreApplication::processEvents();
    const auto& legend = *footer.findChild<GrowthLegend*>();
    const auto* const picker = footer.findChild<QWidget*>(QStringLiteral("sizeBasisPicker"));
    const auto* const hint = footer.findChild<QWidget*>(QStringLiteral("footerHint"));
    EXPECT_GT(legend.y(), picker->geometry().bottom());
    EXPECT_GT(hint->y(), legend.geometry().bottom());
    EXPECT_GE(legend.width(), legend.shortWidth());
    EXPECT_TRUE(footer.rect().contains(hint->geometry()));
}

TEST_F(GrowthOnShow, TheDetailsTellTheChangeAndTheTags)
{
    InspectorView details(m_state);
    m_state.setInspectorVisible(true);
    details.show();
    compare();
    TagRule rule;
    rule.tagName = QStringLiteral("Keep");
    rule.tagColor = TagColor::purple;
    m_state.tagResults = std::make_shared<const TagMatches>(
        m_tree->rootPointer(), std::vector{rule},
        std::vector<TagMatches::Match>{{node("a/half more").get(), 0}});
    QCoreApplication::processEvents();
    QStringList facts;
    for (const auto* const fact : details.findChildren<FactRow*>()) {
        if (fact->isVisibleTo(&details)) {
            facts.append(fact->label() + QStringLiteral("=") + fact->value());
        }
    }
    const QString day = m_state.growth.value()->base().formattedDay(QLocale());
    EXPECT_TRUE(facts.contains(QStringLiteral("since %1=+488.3 KB").arg(day)))
        << facts.join(u'\n').toStdString();
    EXPECT_TRUE(facts.contains(QStringLiteral("Keep=Tag")));
}

TEST_F(GrowthOnShow, AMatchedFileHasItsTagsInTheLists)
{
    ListView list(m_state);
    list.resize(900, 500);
    list.show();
    compare();
    m_state.focusNode = node("a");
    QCoreApplication::processEvents();
    TagRule keep;
    keep.tagName = QStringLiteral("Keep");
    keep.tagColor = TagColor::purple;
    TagRule again = keep;
    m_state.tagResults = std::make_shared<const TagMatches>(
        m_tree->rootPointer(), std::vector{keep, again},
        std::vector<TagMatches::Match>{{node("a/half more").get(), 0},
                                       {node("a/half more").get(), 1}});
    auto& table = *list.findChild<RowView*>(QStringLiteral("listTable"));
    ASSERT_TRUE(waitFor([&] { return table.model()->rowCount() == 7; }));
    const Row first = table.rowOf(table.model()->index(0, 0));
    EXPECT_EQ(first.title, QStringLiteral("half more"));
    ASSERT_EQ(first.titleCells.size(), 1U);
    EXPECT_EQ(first.titleCells[0].text, QStringLiteral("Keep"));
    EXPECT_EQ(first.titleCells[0].dot, tagColor("purple"));
    EXPECT_TRUE(first.accessibleText.contains(QStringLiteral("tag Keep")));
    EXPECT_TRUE(table.rowOf(table.model()->index(1, 0)).titleCells.empty());
}

} // namespace
} // namespace quorvane

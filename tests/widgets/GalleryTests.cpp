// SPDX-License-Identifier: MIT
#include "GalleryWindow.h"

#include "EmptyState.h"
#include "RowView.h"
#include "ToolGallery.h"
#include "WidgetsFixture.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QImage>
#include <QLineEdit>
#include <QProgressBar>

#include <algorithm>
#include <map>
#include <set>

namespace quorvane {
namespace {

class Gallery : public WidgetsTest
{};

bool isControl(const QWidget& widget)
{
    return qobject_cast<const QAbstractButton*>(&widget) ||
           qobject_cast<const QLineEdit*>(&widget) || qobject_cast<const QComboBox*>(&widget) ||
           qobject_cast<const QProgressBar*>(&widget) ||
           (qobject_cast<const QAbstractItemView*>(&widget) && !widget.inherits("QHeaderView") &&
            widget.isVisible());
}

TEST_F(Gallery, EveryControlHasAnAccessibleName)
{
    gallery::GalleryWindow window;
    window.show();
    int controls = 0;
    const QList<QWidget*> all = window.findChildren<QWidget*>();
    for (QWidget* widget : all) {
        if (!isControl(*widget)) {
            continue;
        }
        ++controls;
        QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(widget);
        ASSERT_NE(interface, nullptr);
        EXPECT_FALSE(interface->text(QAccessible::Name).isEmpty())
            << widget->metaObject()->className() << " " << widget->objectName().toStdString();
    }
    EXPECT_GT(controls, 60);
}

TEST_F(Gallery, PaintsInBothSchemesAndAllAccents)
{
    gallery::GalleryWindow window;
    window.show();
    for (const AppTheme scheme : {AppTheme::dark, AppTheme::light}) {
        for (const AccentChoice accent : allAccentChoices) {
            setTheme(scheme, accent);
            const QImage image = window.grab().toImage();
            ASSERT_EQ(image.size(), QSize(1560, 1320));
            // In the margin of the first card, clear of its texts.
            EXPECT_EQ(image.pixelColor(700, 34), themeColor(ThemeColor::card));
            // In the middle of the first prominent button's left padding.
            const QColor fill = image.pixelColor(130, 97);
            EXPECT_GT(contrastRatio(fill, themeColor(ThemeColor::accentLabel)), 4.5);
        }
    }
}

/// Contrast of what can be read without effort (WCAG 2.1, level AA), and of what cannot be used.
constexpr double readable = 4.5;
constexpr double dimmed = 2;

QRect placeOf(const QWidget& window, const QWidget& part)
{
    return {part.mapTo(&window, QPoint()), part.size()};
}

/// The greatest contrast of anything in the place with what lies in its upper left corner.
double contrastWithin(const QImage& image, const QRect& place)
{
    const QColor ground = image.pixelColor(place.topLeft());
    std::set<QRgb> colors;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            colors.insert(image.pixel(x, y));
        }
    }
    double greatest = 1;
    for (const QRgb color : colors) {
        greatest = std::max(greatest, contrastRatio(QColor(color), ground));
    }
    return greatest;
}

QColor mostFrequent(const QImage& image, const QRect& place)
{
    std::map<QRgb, int> counts;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            ++counts[image.pixel(x, y)];
        }
    }
    const auto fewer = [](const auto& a, const auto& b) { return a.second < b.second; };
    return QColor(std::max_element(counts.begin(), counts.end(), fewer)->first);
}

/// Every row on show has words on the card that it lies on.
void expectRows(const QWidget& window, const RowView& view, const QImage& image)
{
    const QRect visible = placeOf(window, *view.viewport());
    int shown = 0;
    for (int row = 0; row < view.model()->rowCount(); ++row) {
        QRect place = view.visualRect(view.model()->index(row, 0));
        place.translate(visible.topLeft());
        if (!visible.contains(place)) {
            continue;
        }
        ++shown;
        const Row shape = view.rowOf(view.model()->index(row, 0));
        EXPECT_GT(contrastWithin(image, place.adjusted(12, 4, -12, -4)),
                  shape.isDimmed || !shape.isEnabled ? dimmed : readable)
            << row;
    }
    EXPECT_GT(shown, 5);
    EXPECT_EQ(mostFrequent(image, visible), themeColor(ThemeColor::card));
}

TEST_F(Gallery, PaintsToolScreensInBothSchemes)
{
    for (const QString& page :
         {QStringLiteral("rows"), QStringLiteral("sections"), QStringLiteral("empty")}) {
        gallery::ToolGallery window(page);
        window.show();
        for (const AppTheme scheme : {AppTheme::dark, AppTheme::light}) {
            setTheme(scheme, AccentChoice::blue);
            const QImage image = window.grab().toImage();
            ASSERT_EQ(image.size(), QSize(1320, 900));
            if (const auto* const rows = window.findChild<RowView*>()) {
                expectRows(window, *rows, image);
            } else {
                const auto* const empty = window.findChild<EmptyState*>();
                ASSERT_NE(empty, nullptr);
                EXPECT_GT(contrastWithin(image, placeOf(window, *empty)), readable);
            }
        }
    }
}

} // namespace
} // namespace quorvane

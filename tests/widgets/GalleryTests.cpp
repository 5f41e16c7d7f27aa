// SPDX-License-Identifier: MIT
#include "GalleryWindow.h"

#include "ToolGallery.h"
#include "WidgetsFixture.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QImage>
#include <QLineEdit>
#include <QProgressBar>

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

TEST_F(Gallery, PaintsToolScreensInBothSchemes)
{
    for (const QString& page :
         {QStringLiteral("rows"), QStringLiteral("sections"), QStringLiteral("empty")}) {
        gallery::ToolGallery window(page);
        window.show();
        for (const AppTheme scheme : {AppTheme::dark, AppTheme::light}) {
            setTheme(scheme, AccentChoice::blue);
            EXPECT_EQ(window.grab().toImage().size(), QSize(1320, 900));
        }
    }
}

} // namespace
} // namespace quorvane

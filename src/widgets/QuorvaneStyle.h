// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

class QApplication;
class QStyleOptionComboBox;
class QStyleOptionHeader;
class QStyleOptionMenuItem;
class QStyleOptionSlider;
class QStyleOptionToolButton;
class QStyleOptionViewItem;

namespace quorvane {

/// Draws Qt's own controls with the colours and measures of the theme, on top of Fusion.
class QuorvaneStyle : public QProxyStyle
{
    Q_OBJECT

public:
    /// Property of a combo box that holds its ControlSize as a number.
    static constexpr const char* controlSizeProperty = "quorvaneControlSize";

    QuorvaneStyle();

    /// Gives the program this style, its fonts, the current theme and the focus ring.
    static void install(QApplication& application);

    void polish(QWidget* widget) override;
    void unpolish(QWidget* widget) override;
    using QProxyStyle::polish;
    using QProxyStyle::unpolish;

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget = nullptr) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget = nullptr) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option,
                         const QWidget* widget = nullptr) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                         SubControl subControl, const QWidget* widget = nullptr) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option = nullptr,
                    const QWidget* widget = nullptr) const override;
    int styleHint(StyleHint hint, const QStyleOption* option = nullptr,
                  const QWidget* widget = nullptr,
                  QStyleHintReturn* returnData = nullptr) const override;
    QPixmap generatedIconPixmap(QIcon::Mode mode, const QPixmap& pixmap,
                                const QStyleOption* option) const override;
    QIcon standardIcon(StandardPixmap pixmap, const QStyleOption* option = nullptr,
                       const QWidget* widget = nullptr) const override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void drawPushButton(const QStyleOption* option, QPainter& painter, const QWidget* widget) const;
    void drawToolButton(const QStyleOptionToolButton& option, QPainter& painter) const;
    void drawComboBox(const QStyleOptionComboBox& option, QPainter& painter,
                      const QWidget* widget) const;
    void drawScrollBar(const QStyleOptionSlider& option, QPainter& painter) const;
    void drawMenuItem(const QStyleOptionMenuItem& option, QPainter& painter) const;
    void drawMenuBarItem(const QStyleOptionMenuItem& option, QPainter& painter) const;
    /// Returns whether the element is one of a header's.
    bool drawHeader(ControlElement element, const QStyleOptionHeader& option, QPainter& painter,
                    const QWidget* widget) const;
    void drawHeaderSection(const QStyleOptionHeader& option, QPainter& painter,
                           const QWidget* widget) const;
    void drawHeaderLabel(const QStyleOptionHeader& option, QPainter& painter) const;
    void drawItem(const QStyleOptionViewItem& option, QPainter& painter,
                  const QWidget* widget) const;
    void drawCheckIndicator(const QStyleOption& option, QPainter& painter, bool round) const;
    QRect scrollBarPart(const QStyleOptionSlider& bar, SubControl part) const;
    QSize menuBarItemSize(const QStyleOption* option, const QSize& size) const;
    QSize menuItemSize(const QStyleOptionMenuItem& option, const QSize& size) const;
};

} // namespace quorvane

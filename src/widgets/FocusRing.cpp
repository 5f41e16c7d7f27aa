// SPDX-License-Identifier: MIT
#include "FocusRing.h"

#include "Painting.h"
#include "Tokens.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOptionButton>
#include <QToolButton>

#include <memory>

namespace quorvane {
namespace {

constexpr const char* radiusProperty = "quorvaneFocusRadius";
constexpr const char* proxyProperty = "quorvaneFocusProxy";

/// Part of the widget that the ring goes around.
QRectF ringedRect(const QWidget& widget)
{
    const bool isCheckBox = widget.inherits("QCheckBox") || widget.inherits("QRadioButton");
    if (!isCheckBox || widget.property(radiusProperty).isValid()) {
        return widget.rect();
    }
    QStyleOptionButton option;
    option.initFrom(&widget);
    const auto part = widget.inherits("QCheckBox") ? QStyle::SE_CheckBoxIndicator
                                                   : QStyle::SE_RadioButtonIndicator;
    return widget.style()->subElementRect(part, &option, &widget);
}

qreal ringRadius(const QWidget& widget)
{
    const QVariant own = widget.property(radiusProperty);
    if (own.isValid()) {
        return own.toInt();
    }
    if (widget.inherits("QRadioButton")) {
        return measure::checkBox / 2.0;
    }
    return widget.inherits("QCheckBox") ? radius::small : radius::control;
}

bool isRinged(const QWidget& widget)
{
    const QVariant own = widget.property(radiusProperty);
    if (own.isValid()) {
        return own.toInt() >= 0;
    }
    return qobject_cast<const QAbstractButton*>(&widget) ||
           qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QLineEdit*>(&widget) ||
           qobject_cast<const QAbstractSpinBox*>(&widget);
}

} // namespace

void setFocusRadius(QWidget& widget, int radius)
{
    widget.setProperty(radiusProperty, radius);
}

void setFocusRingOwner(QWidget& widget, QWidget& owner)
{
    widget.setProperty(proxyProperty, QVariant::fromValue(&owner));
}

FocusRing::FocusRing(QWidget* parent)
    : QFocusFrame(parent)
{
    setObjectName(QStringLiteral("focusRing"));
}

QWidget* FocusRing::target(QWidget* focused)
{
    if (!focused) {
        return nullptr;
    }
    if (auto* owner = focused->property(proxyProperty).value<QWidget*>()) {
        return owner;
    }
    if (auto* spin = qobject_cast<QAbstractSpinBox*>(focused->parentWidget())) {
        return spin;
    }
    return isRinged(*focused) ? focused : nullptr;
}

void FocusRing::follow(QApplication& application)
{
    auto* anchor = new QObject(&application);
    auto ring = std::make_shared<QPointer<FocusRing>>();
    QObject::connect(&application, &QApplication::focusChanged, anchor,
                     [ring](QWidget*, QWidget* focused) {
                         QWidget* control = target(focused);
                         if (!*ring && control) {
                             *ring = new FocusRing(control->window());
                         }
                         if (*ring) {
                             (*ring)->setWidget(control);
                         }
                     });
}

void FocusRing::paintEvent(QPaintEvent*)
{
    const QWidget* control = widget();
    if (!control) {
        return;
    }
    QPainter painter(this);
    const QPointF offset(measure::focusRing, measure::focusRing);
    paintFocusRing(painter, ringedRect(*control).translated(offset), ringRadius(*control));
}

} // namespace quorvane

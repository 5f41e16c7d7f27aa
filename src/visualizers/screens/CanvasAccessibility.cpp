// SPDX-License-Identifier: MIT
#include "CanvasAccessibility.h"

#include "VisualizerCanvas.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleWidget>
#include <QPointer>

#include <cstddef>
#include <unordered_map>

namespace quorvane {
namespace {

/// One item of a canvas.
class CanvasItemAccessible final : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    CanvasItemAccessible(VisualizerCanvas& canvas, std::size_t item)
        : m_canvas(&canvas)
        , m_scene(canvas.scene())
        , m_item(item)
    {}

    bool isValid() const override { return m_canvas && m_scene && m_canvas->scene() == m_scene; }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface(m_canvas);
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }

    QString text(QAccessible::Text kind) const override
    {
        return isValid() && kind == QAccessible::Name ? m_scene->labelOf(m_item) : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override
    {
        if (!isValid()) {
            return {};
        }
        const QRect bounds = m_scene->boundsOf(m_item).toAlignedRect();
        return {m_canvas->mapToGlobal(bounds.topLeft()), bounds.size()};
    }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.focusable = true;
        state.invalid = !isValid();
        state.focused = isValid() && m_canvas->hoveredItem() == m_item;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override
    {
        if (isValid() && name == pressAction()) {
            m_canvas->activate(m_item);
        }
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    QPointer<VisualizerCanvas> m_canvas;
    ScenePointer m_scene;
    std::size_t m_item;
};

class CanvasAccessible final : public QAccessibleWidget
{
public:
    explicit CanvasAccessible(VisualizerCanvas& canvas)
        : QAccessibleWidget(&canvas, QAccessible::List)
        , m_canvas(canvas)
    {}
    ~CanvasAccessible() override { forgetItems(); }

    QString text(QAccessible::Text kind) const override
    {
        switch (kind) {
        case QAccessible::Name:
            return m_canvas.accessibleLabel();
        case QAccessible::Value:
        case QAccessible::Description:
            return m_canvas.accessibleValue();
        default:
            return QAccessibleWidget::text(kind);
        }
    }

    int childCount() const override
    {
        return m_canvas.scene() ? static_cast<int>(m_canvas.scene()->itemCount()) : 0;
    }
    QAccessibleInterface* child(int index) const override
    {
        if (index < 0 || index >= childCount()) {
            return nullptr;
        }
        if (m_scene != m_canvas.scene()) {
            forgetItems();
            m_scene = m_canvas.scene();
        }
        const auto known = m_items.find(index);
        if (known != m_items.end()) {
            return QAccessible::accessibleInterface(known->second);
        }
        auto* const item = new CanvasItemAccessible(m_canvas, static_cast<std::size_t>(index));
        m_items.emplace(index, QAccessible::registerAccessibleInterface(item));
        return item;
    }
    QAccessibleInterface* childAt(int x, int y) const override
    {
        const ScenePointer scene = m_canvas.scene();
        const QPoint point = m_canvas.mapFromGlobal(QPoint(x, y));
        const std::optional<std::size_t> item =
            scene ? scene->itemAt(QPointF(point)) : std::nullopt;
        return item ? child(static_cast<int>(*item)) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* wanted) const override
    {
        for (const auto& [index, id] : m_items) {
            if (QAccessible::accessibleInterface(id) == wanted) {
                return index;
            }
        }
        return -1;
    }
    QAccessibleInterface* focusChild() const override
    {
        const std::optional<std::size_t> hovered = m_canvas.hoveredItem();
        return m_canvas.hasFocus() && hovered ? child(static_cast<int>(*hovered)) : nullptr;
    }

private:
    void forgetItems() const
    {
        for (const auto& entry : m_items) {
            QAccessible::deleteAccessibleInterface(entry.second);
        }
        m_items.clear();
    }

    VisualizerCanvas& m_canvas;
    mutable ScenePointer m_scene;
    mutable std::unordered_map<int, QAccessible::Id> m_items;
};

QAccessibleInterface* makeCanvasAccessible(const QString&, QObject* object)
{
    auto* const canvas = qobject_cast<VisualizerCanvas*>(object);
    return canvas == nullptr ? nullptr : new CanvasAccessible(*canvas);
}

} // namespace

void installCanvasAccessibility()
{
    static const bool installed = [] {
        QAccessible::installFactory(makeCanvasAccessible);
        return true;
    }();
    static_cast<void>(installed);
}

void announceCanvasContent(VisualizerCanvas& canvas)
{
    if (!QAccessible::isActive()) {
        return;
    }
    QAccessibleEvent reordered(&canvas, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&reordered);
    QAccessibleValueChangeEvent value(&canvas, canvas.accessibleValue());
    QAccessible::updateAccessibility(&value);
}

} // namespace quorvane

// SPDX-License-Identifier: MIT
#include "RowAccessibility.h"

#include "RowView.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleWidget>
#include <QPointer>

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

class ViewAccessible;

/// A row, or a control on one.
class PlaceAccessible final : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    /// part counts from 1 in partsOf(); 0 is the row.
    PlaceAccessible(RowView& view, const QModelIndex& index, int part)
        : m_view(&view)
        , m_index(index)
        , m_part(part)
        , m_revision(view.revision())
        , m_toldName(name())
    {}

    const QModelIndex& index() const { return m_index; }
    int part() const { return m_part; }

    /// Whether the name is another than at the last call, or than at the start.
    bool takeNewName()
    {
        const QString now = isValid() ? name() : m_toldName;
        return std::exchange(m_toldName, now) != now;
    }

    bool isValid() const override { return m_view && m_view->revision() == m_revision; }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int index) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    int childCount() const override
    {
        if (!isValid() || m_part > 0) {
            return 0;
        }
        return controlCount() +
               (m_view->isExpanded(m_index) ? m_view->model()->rowCount(m_index) : 0);
    }
    int indexOfChild(const QAccessibleInterface* wanted) const override;

    QString text(QAccessible::Text kind) const override
    {
        if (!isValid()) {
            return {};
        }
        return kind == QAccessible::Name          ? name()
               : kind == QAccessible::Description ? description()
                                                  : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override
    {
        if (!isValid()) {
            return {};
        }
        const QRect place = m_view->partRect(m_index, control());
        return {m_view->viewport()->mapToGlobal(place.topLeft()), place.size()};
    }
    QAccessible::Role role() const override;
    QAccessible::State state() const override;

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override
    {
        if (!isValid() || row().kind == RowKind::section) {
            return {};
        }
        return isDisabled() ? QStringList{setFocusAction()}
                            : QStringList{pressAction(), setFocusAction()};
    }
    void doAction(const QString& name) override
    {
        if (!isValid()) {
            return;
        }
        if (name == pressAction()) {
            m_view->press(m_index, control());
        } else if (name == setFocusAction()) {
            m_view->setFocus(Qt::TabFocusReason);
            m_view->setCurrent(m_index, control());
        }
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    Row row() const { return m_view->rowOf(m_index); }
    int controlCount() const { return static_cast<int>(partsOf(row()).size()); }
    std::optional<RowPart> control() const
    {
        const std::vector<RowPart> parts = partsOf(row());
        const auto place = static_cast<std::size_t>(m_part);
        return m_part > 0 && place <= parts.size() ? std::optional(parts[place - 1]) : std::nullopt;
    }
    QString name() const
    {
        const Row shown = row();
        const std::optional<RowPart> part = control();
        if (!part) {
            return shown.kind == RowKind::more ? shown.actions[0].accessibleName()
                                               : shown.describe();
        }
        if (part->id == RowAction::toggled) {
            return shown.controlName.isEmpty() ? shown.title : shown.controlName;
        }
        return part->id == RowAction::copied
                   ? copyText()
                   : shown.actions[static_cast<std::size_t>(part->place)].accessibleName();
    }
    QString description() const
    {
        const Row shown = row();
        const std::optional<RowPart> part = control();
        if (part) {
            return part->id < 0 ? QString()
                                : shown.actions[static_cast<std::size_t>(part->place)].toolTip;
        }
        QStringList parts{shown.accessibleDescription};
        for (const RowBadge& badge : shown.badges) {
            parts.push_back(badge.toolTip);
        }
        parts.removeAll(QString());
        return parts.join(QLatin1Char(' '));
    }
    bool isDisabled() const
    {
        const Row shown = row();
        const std::optional<RowPart> part = control();
        return !shown.isEnabled ||
               (part && part->id >= 0 &&
                !shown.actions[static_cast<std::size_t>(part->place)].isEnabled);
    }
    ViewAccessible* view() const;

    QPointer<RowView> m_view;
    QModelIndex m_index; ///< good as long as the revision is the same
    int m_part;
    int m_revision;
    QString m_toldName;
};

class ViewAccessible final : public QAccessibleWidget
{
public:
    explicit ViewAccessible(RowView& view)
        : QAccessibleWidget(&view, view.metrics().hasLevels ? QAccessible::Tree : QAccessible::List)
        , m_view(view)
    {}
    ~ViewAccessible() override { forgetPlaces(); }

    int childCount() const override { return m_view.model()->rowCount(); }
    QAccessibleInterface* child(int index) const override
    {
        return place(m_view.model()->index(index, 0), 0);
    }
    QAccessibleInterface* childAt(int x, int y) const override
    {
        QModelIndex index = m_view.indexAt(m_view.viewport()->mapFromGlobal(QPoint(x, y)));
        while (index.parent().isValid()) {
            index = index.parent();
        }
        return place(index, 0);
    }
    int indexOfChild(const QAccessibleInterface* wanted) const override
    {
        const auto* const known = dynamic_cast<const PlaceAccessible*>(wanted);
        return known != nullptr && known->part() == 0 ? known->index().row() : -1;
    }
    QAccessibleInterface* focusChild() const override
    {
        if (!m_view.hasFocus() || !m_view.currentIndex().isValid()) {
            return nullptr;
        }
        const std::vector<RowPart> parts = partsOf(m_view.rowOf(m_view.currentIndex()));
        const auto found =
            m_view.currentPart()
                ? std::find(parts.begin(), parts.end(), *m_view.currentPart()) - parts.begin() + 1
                : 0;
        return place(m_view.currentIndex(), static_cast<int>(found));
    }

    QAccessibleInterface* place(const QModelIndex& index, int part) const
    {
        if (m_revision != m_view.revision()) {
            forgetPlaces();
            m_revision = m_view.revision();
        }
        if (!index.isValid()) {
            return nullptr;
        }
        const std::pair key(index, part);
        const auto known = m_places.find(key);
        if (known != m_places.end()) {
            return QAccessible::accessibleInterface(known->second);
        }
        auto* const made = new PlaceAccessible(m_view, index, part);
        m_places.emplace(key, QAccessible::registerAccessibleInterface(made));
        return made;
    }

    int announceNames() const
    {
        int renamed = 0;
        std::vector<QAccessible::Id> known;
        for (const auto& entry : m_places) {
            known.push_back(entry.second);
        }
        for (const QAccessible::Id id : known) {
            // Who is told may ask on, and thereby end places.
            auto* const told = static_cast<PlaceAccessible*>(QAccessible::accessibleInterface(id));
            if (told != nullptr && told->takeNewName()) {
                QAccessibleEvent event(told, QAccessible::NameChanged);
                QAccessible::updateAccessibility(&event);
                ++renamed;
            }
        }
        return renamed;
    }

private:
    void forgetPlaces() const
    {
        for (const auto& entry : m_places) {
            QAccessible::deleteAccessibleInterface(entry.second);
        }
        m_places.clear();
    }

    RowView& m_view;
    mutable std::map<std::pair<QModelIndex, int>, QAccessible::Id> m_places;
    mutable int m_revision = -1;
};

ViewAccessible* PlaceAccessible::view() const
{
    return static_cast<ViewAccessible*>(QAccessible::queryAccessibleInterface(m_view));
}

QAccessibleInterface* PlaceAccessible::parent() const
{
    if (!isValid()) {
        return m_view ? view() : nullptr;
    }
    if (m_part > 0) {
        return view()->place(m_index, 0);
    }
    const QModelIndex above = m_index.parent();
    return above.isValid() ? view()->place(above, 0) : view();
}

QAccessibleInterface* PlaceAccessible::child(int index) const
{
    if (index < 0 || index >= childCount()) {
        return nullptr;
    }
    const int controls = controlCount();
    return index < controls
               ? view()->place(m_index, index + 1)
               : view()->place(m_view->model()->index(index - controls, 0, m_index), 0);
}

int PlaceAccessible::indexOfChild(const QAccessibleInterface* wanted) const
{
    const auto* const known = dynamic_cast<const PlaceAccessible*>(wanted);
    if (known == nullptr || !isValid()) {
        return -1;
    }
    if (known->part() > 0) {
        return known->index() == m_index ? known->part() - 1 : -1;
    }
    return known->index().parent() == m_index ? controlCount() + known->index().row() : -1;
}

QAccessibleInterface* PlaceAccessible::childAt(int x, int y) const
{
    for (int i = 0; i < (isValid() ? controlCount() : 0); ++i) {
        QAccessibleInterface* const control = child(i);
        if (control->rect().contains(x, y)) {
            return control;
        }
    }
    return nullptr;
}

QAccessible::Role PlaceAccessible::role() const
{
    if (!isValid()) {
        return QAccessible::NoRole;
    }
    const std::optional<RowPart> part = control();
    if (part) {
        return part->id == RowAction::toggled ? QAccessible::CheckBox : QAccessible::Button;
    }
    switch (row().kind) {
    case RowKind::section:
        return QAccessible::Heading;
    case RowKind::more:
        return QAccessible::Button;
    case RowKind::item:
        break;
    }
    return m_view->metrics().hasLevels ? QAccessible::TreeItem : QAccessible::ListItem;
}

QAccessible::State PlaceAccessible::state() const
{
    QAccessible::State state;
    state.invalid = !isValid();
    if (state.invalid) {
        return state;
    }
    const Row shown = row();
    const std::optional<RowPart> part = control();
    state.focusable = shown.kind != RowKind::section;
    state.disabled = isDisabled();
    state.focused =
        m_view->hasFocus() && m_view->currentIndex() == m_index && m_view->currentPart() == part;
    state.offscreen = !m_view->viewport()->rect().intersects(m_view->partRect(m_index, part));
    if (part && part->id == RowAction::toggled) {
        state.checkable = true;
        state.checked = shown.isChecked.value_or(false) || shown.isOn.value_or(false);
    }
    if (m_part == 0) {
        state.selectable = m_view->selectionMode() != QAbstractItemView::NoSelection;
        state.selected = m_view->selectionModel()->isSelected(m_index);
        if (m_view->model()->hasChildren(m_index)) {
            state.expandable = true;
            state.expanded = m_view->isExpanded(m_index);
            state.collapsed = !state.expanded;
        }
    }
    return state;
}

QAccessibleInterface* makeRowAccessible(const QString&, QObject* object)
{
    auto* const view = qobject_cast<RowView*>(object);
    return view == nullptr ? nullptr : new ViewAccessible(*view);
}

} // namespace

void installRowAccessibility()
{
    static const bool installed = [] {
        QAccessible::installFactory(makeRowAccessible);
        return true;
    }();
    static_cast<void>(installed);
}

void announceRows(RowView& view)
{
    if (QAccessible::isActive()) {
        QAccessibleEvent reordered(&view, QAccessible::ObjectReorder);
        QAccessible::updateAccessibility(&reordered);
    }
}

int announceRowNames(RowView& view)
{
    auto* const face = static_cast<ViewAccessible*>(QAccessible::queryAccessibleInterface(&view));
    return face == nullptr ? 0 : face->announceNames();
}

void announceRowFocus(RowView& view)
{
    if (!QAccessible::isActive()) {
        return;
    }
    auto* const face = static_cast<ViewAccessible*>(QAccessible::queryAccessibleInterface(&view));
    if (face != nullptr && face->focusChild() != nullptr) {
        QAccessibleEvent focused(face->focusChild(), QAccessible::Focus);
        QAccessible::updateAccessibility(&focused);
    }
}

} // namespace quorvane

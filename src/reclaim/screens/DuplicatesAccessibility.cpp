// SPDX-License-Identifier: MIT
#include "DuplicatesAccessibility.h"

#include "DuplicatesList.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleWidget>
#include <QPointer>

#include <map>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

using Kind = DuplicateRow::Kind;

class ListAccessible;

/// A row, or a button on one: one part of the list.
class PlaceAccessible final : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    PlaceAccessible(DuplicatesList& list, const DuplicatePlace& place)
        : m_list(&list)
        , m_place(place)
        , m_revision(list.revision())
        , m_toldName(list.accessibleNameOf(place))
    {}

    /// Whether the name is another than at the last call, or than at the start.
    bool takeNewName()
    {
        const QString name = isValid() ? m_list->accessibleNameOf(m_place) : m_toldName;
        return std::exchange(m_toldName, name) != name;
    }

    bool isValid() const override { return m_list && m_list->revision() == m_revision; }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int index) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    int childCount() const override
    {
        return m_place.part == 0 ? partCount(m_place.row.kind) - 1 : 0;
    }
    int indexOfChild(const QAccessibleInterface* wanted) const override
    {
        for (int i = 0; i < childCount(); ++i) {
            if (child(i) == wanted) {
                return i;
            }
        }
        return -1;
    }

    QString text(QAccessible::Text kind) const override
    {
        if (!isValid()) {
            return {};
        }
        if (kind == QAccessible::Name) {
            return m_list->accessibleNameOf(m_place);
        }
        return kind == QAccessible::Description ? m_list->accessibleDescriptionOf(m_place)
                                                : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override
    {
        if (!isValid()) {
            return {};
        }
        const QRect place = m_list->placeRect(m_place);
        return {m_list->viewport()->mapToGlobal(place.topLeft()), place.size()};
    }
    QAccessible::Role role() const override
    {
        return isButton() ? QAccessible::Button : QAccessible::ListItem;
    }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.invalid = !isValid();
        if (state.invalid) {
            return state;
        }
        state.focusable = true;
        state.disabled = isDisabled();
        state.focused = m_list->hasFocus() && m_list->current() == m_place;
        state.offscreen = !m_list->viewport()->rect().intersects(m_list->placeRect(m_place));
        if (!isButton() && m_place.row.kind == Kind::group) {
            state.expandable = true;
            state.expanded = m_list->rows().isExpanded(m_place.row.group);
            state.collapsed = !state.expanded;
        }
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override
    {
        const bool acts = isButton() ? !isDisabled() : m_place.row.kind == Kind::group;
        return acts ? QStringList{pressAction(), setFocusAction()} : QStringList{setFocusAction()};
    }
    void doAction(const QString& name) override
    {
        if (!isValid()) {
            return;
        }
        if (name == pressAction()) {
            m_list->activate(m_place);
        } else if (name == setFocusAction()) {
            m_list->setFocus(Qt::TabFocusReason);
            m_list->setCurrent(m_place);
        }
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    bool isButton() const { return m_place.part > 0 || partCount(m_place.row.kind) == 1; }
    bool isDisabled() const
    {
        if (!isValid() || m_place.part == 0) {
            return false;
        }
        const std::optional<DuplicateButton> button = m_list->button(m_place);
        return button && !button->isEnabled();
    }
    ListAccessible* list() const;

    QPointer<DuplicatesList> m_list;
    DuplicatePlace m_place;
    int m_revision;
    QString m_toldName;
};

class ListAccessible final : public QAccessibleWidget
{
public:
    explicit ListAccessible(DuplicatesList& list)
        : QAccessibleWidget(&list, QAccessible::List)
        , m_list(list)
    {}
    ~ListAccessible() override { forgetPlaces(); }

    int childCount() const override { return m_list.rows().count(); }
    QAccessibleInterface* child(int index) const override
    {
        const std::optional<DuplicateRow> row = index < 0 ? std::nullopt : m_list.rows().at(index);
        return row ? place({*row, 0}) : nullptr;
    }
    QAccessibleInterface* childAt(int x, int y) const override
    {
        const auto found = m_list.placeAt(m_list.viewport()->mapFromGlobal(QPoint(x, y)));
        return found ? place({found->row, 0}) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* wanted) const override
    {
        for (const auto& [key, id] : m_places) {
            if (key.second == 0 && QAccessible::accessibleInterface(id) == wanted) {
                return key.first;
            }
        }
        return -1;
    }
    QAccessibleInterface* focusChild() const override
    {
        return m_list.hasFocus() && m_list.current() ? place(*m_list.current()) : nullptr;
    }

    QAccessibleInterface* place(const DuplicatePlace& wanted) const
    {
        if (m_revision != m_list.revision()) {
            forgetPlaces();
            m_revision = m_list.revision();
        }
        const std::pair key(m_list.rows().indexOf(wanted.row), wanted.part);
        const auto known = m_places.find(key);
        if (known != m_places.end()) {
            return QAccessible::accessibleInterface(known->second);
        }
        auto* const made = new PlaceAccessible(m_list, wanted);
        m_places.emplace(key, QAccessible::registerAccessibleInterface(made));
        return made;
    }

    /// Only what was asked for before can have changed for anybody.
    int announceNames() const
    {
        int renamedCount = 0;
        std::vector<QAccessible::Id> known;
        for (const auto& entry : m_places) {
            known.push_back(entry.second);
        }
        for (const QAccessible::Id id : known) {
            // Who is told may ask on, and thereby end places.
            auto* const told = static_cast<PlaceAccessible*>(QAccessible::accessibleInterface(id));
            if (told != nullptr && told->takeNewName()) {
                QAccessibleEvent renamed(told, QAccessible::NameChanged);
                QAccessible::updateAccessibility(&renamed);
                ++renamedCount;
            }
        }
        return renamedCount;
    }

private:
    void forgetPlaces() const
    {
        for (const auto& entry : m_places) {
            QAccessible::deleteAccessibleInterface(entry.second);
        }
        m_places.clear();
    }

    DuplicatesList& m_list;
    mutable std::map<std::pair<int, int>, QAccessible::Id> m_places; ///< by row and part
    mutable int m_revision = -1;
};

ListAccessible* PlaceAccessible::list() const
{
    return static_cast<ListAccessible*>(QAccessible::queryAccessibleInterface(m_list));
}

QAccessibleInterface* PlaceAccessible::parent() const
{
    if (!isValid() || m_place.part == 0) {
        return m_list ? list() : nullptr;
    }
    return list()->place({m_place.row, 0});
}

QAccessibleInterface* PlaceAccessible::child(int index) const
{
    return isValid() && index >= 0 && index < childCount() ? list()->place({m_place.row, index + 1})
                                                           : nullptr;
}

QAccessibleInterface* PlaceAccessible::childAt(int x, int y) const
{
    if (!isValid()) {
        return nullptr;
    }
    const auto found = m_list->placeAt(m_list->viewport()->mapFromGlobal(QPoint(x, y)));
    return found && found->row == m_place.row && found->part > 0 ? list()->place(*found) : nullptr;
}

QAccessibleInterface* makeDuplicatesAccessible(const QString&, QObject* object)
{
    auto* const list = qobject_cast<DuplicatesList*>(object);
    return list == nullptr ? nullptr : new ListAccessible(*list);
}

} // namespace

void installDuplicatesAccessibility()
{
    static const bool installed = [] {
        QAccessible::installFactory(makeDuplicatesAccessible);
        return true;
    }();
    static_cast<void>(installed);
}

void announceDuplicateRows(DuplicatesList& list)
{
    if (QAccessible::isActive()) {
        QAccessibleEvent reordered(&list, QAccessible::ObjectReorder);
        QAccessible::updateAccessibility(&reordered);
    }
}

int announceDuplicateButtons(DuplicatesList& list)
{
    auto* const face = static_cast<ListAccessible*>(QAccessible::queryAccessibleInterface(&list));
    return face == nullptr ? 0 : face->announceNames();
}

void announceDuplicateFocus(DuplicatesList& list)
{
    if (!QAccessible::isActive()) {
        return;
    }
    auto* const face = static_cast<ListAccessible*>(QAccessible::queryAccessibleInterface(&list));
    if (face != nullptr && face->focusChild() != nullptr) {
        QAccessibleEvent focused(face->focusChild(), QAccessible::Focus);
        QAccessible::updateAccessibility(&focused);
    }
}

} // namespace quorvane

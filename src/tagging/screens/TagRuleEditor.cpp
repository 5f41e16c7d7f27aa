// SPDX-License-Identifier: MIT
#include "TagRuleEditor.h"

#include "ByteFormatter.h"
#include "Label.h"
#include "Painting.h"
#include "TagDots.h"
#include "TextField.h"
#include "Tokens.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QStringList>
#include <QVBoxLayout>

#include <algorithm>
#include <cstddef>

namespace quorvane {
namespace {

constexpr int sheetWidth = 600;
constexpr int columnWidth = 268;
constexpr int typeWidth = 196;
constexpr int faultGap = 5;
/// Of the conditions: more of them scroll, so that the sheet fits the smallest window.
constexpr int maxListHeight = 228;
constexpr int dotSide = 26;
constexpr qreal dotRadius = 8;

QString trimmed(const QString& text)
{
    const auto isBlank = [](QChar c) { return c == QLatin1Char(' ') || c == QLatin1Char('\t'); };
    const auto begin = std::find_if_not(text.begin(), text.end(), isBlank);
    const auto end = std::find_if_not(text.rbegin(), std::make_reverse_iterator(begin), isBlank);
    return QString(begin, end.base() - begin);
}

QWidget* captioned(const QString& caption, QWidget* field)
{
    auto* const box = new QWidget;
    auto* const column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    column->addWidget(new Label(caption, TextStyle::caption, ThemeColor::text2));
    column->addWidget(field);
    return box;
}

/// One of the seven colours to choose from.
class ColorDot final : public QAbstractButton
{
public:
    explicit ColorDot(TagColor color)
        : m_color(color)
    {
        setCheckable(true);
        setFixedSize(dotSide, dotSide);
        setFocusPolicy(Qt::StrongFocus);
        setAccessibleName(tagColorName(color));
        setToolTip(tagColorName(color));
        const std::string_view raw = rawValue(color);
        setObjectName(QStringLiteral("tagColor.") +
                      QLatin1String(raw.data(), static_cast<qsizetype>(raw.size())));
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QPointF center = QRectF(rect()).center();
        painter.setPen(Qt::NoPen);
        painter.setBrush(tagColor(rawValue(m_color)));
        painter.drawEllipse(center, dotRadius, dotRadius);
        if (isChecked() || hasFocus()) {
            painter.setBrush(Qt::NoBrush);
            painter.setPen(
                QPen(themeColor(isChecked() ? ThemeColor::accent : ThemeColor::focusRing),
                     hasFocus() ? 3 : 2));
            painter.drawEllipse(center, dotRadius + 3, dotRadius + 3);
        }
    }

private:
    TagColor m_color;
};

/// The ground of the preview line.
class Well final : public QWidget
{
protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(themeColor(ThemeColor::raised));
        painter.drawRoundedRect(rect(), radius::control, radius::control);
    }
};

/// What is wrong with the text of a size; empty when nothing is.
QString sizeFault(const QString& text)
{
    const ByteSize::Reading size = ByteSize::read(text.toStdString());
    if (size.isTooLarge) {
        return TagRuleEditor::tr("Beyond any size, so nothing matches. Write it like 100 MB.");
    }
    return size.bytes ? QString()
                      : TagRuleEditor::tr("Not a size, so nothing matches. Write it like 100 MB.");
}

} // namespace

TagRuleEditor::TagRuleEditor(const TagRule& rule, OnSave onSave, QWidget* window)
    : Dialog(window)
    , m_original(rule)
    , m_onSave(std::move(onSave))
{
    setObjectName(QStringLiteral("tagRuleEditor"));
    setTitle(tr("Edit Tag Rule"));
    setCardWidth(sheetWidth);
    bodyLayout()->setSpacing(spacing::l);
    bodyLayout()->addSpacing(spacing::m);
    bodyLayout()->addWidget(makeNames(rule));
    bodyLayout()->addWidget(makeColorAndMatching(rule));
    bodyLayout()->addWidget(makeConditions(rule));
    bodyLayout()->addWidget(makePreview());
    addButton(tr("Cancel"), ButtonRole::bordered, false)
        ->setObjectName(QStringLiteral("cancelRuleButton"));
    m_save = addButton(tr("Save"), ButtonRole::prominent, true);
    m_save->setObjectName(QStringLiteral("saveRuleButton"));
    setInitialFocus(m_name);
    connect(this, &Dialog::accepted, this, [this] { m_onSave(this->rule()); });
    connect(this, &Dialog::rejected, this, [this] { m_onSave(std::nullopt); });
    for (const TagCondition& condition : rule.conditions) {
        addCondition(condition);
    }
    refresh();
}

QWidget* TagRuleEditor::makeNames(const TagRule& rule)
{
    auto* const box = new QWidget;
    auto* const line = new QHBoxLayout(box);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(spacing::l);
    m_name = new TextField(tr("Invoices"));
    m_name->setAccessibleName(tr("Rule name"));
    m_name->setObjectName(QStringLiteral("ruleNameField"));
    m_name->setText(rule.name);
    m_tagName = new TextField(tr("Important"));
    m_tagName->setAccessibleName(tr("Tag name"));
    m_tagName->setObjectName(QStringLiteral("tagNameField"));
    m_tagName->setText(rule.tagName);
    for (TextField* const field : {m_name, m_tagName}) {
        field->setFixedWidth(columnWidth);
        connect(field, &QLineEdit::textChanged, this, [this] { refresh(); });
    }
    line->addWidget(captioned(tr("Rule name"), m_name));
    line->addWidget(captioned(tr("Tag name"), m_tagName));
    line->addStretch();
    return box;
}

QWidget* TagRuleEditor::makeColorAndMatching(const TagRule& rule)
{
    auto* const dots = new QWidget;
    dots->setFixedSize(columnWidth, measure::field);
    auto* const dotLine = new QHBoxLayout(dots);
    dotLine->setContentsMargins(0, 0, 0, 0);
    dotLine->setSpacing(0);
    m_colors = new QButtonGroup(this);
    for (const TagColor color : allTagColors) {
        auto* const dot = new ColorDot(color);
        dot->setChecked(color == rule.tagColor);
        m_colors->addButton(dot, static_cast<int>(color));
        dotLine->addWidget(dot);
        dotLine->addSpacing(spacing::xs);
    }
    m_colorName = new Label({}, TextStyle::caption, ThemeColor::text2);
    dotLine->addSpacing(spacing::xs);
    dotLine->addWidget(m_colorName);
    dotLine->addStretch();
    connect(m_colors, &QButtonGroup::idToggled, this, [this] { refresh(); });

    m_matching = new QComboBox;
    m_matching->setObjectName(QStringLiteral("matchingPicker"));
    m_matching->setAccessibleName(tr("Matching"));
    m_matching->addItems({tr("Match all conditions (AND)"), tr("Match any condition (OR)")});
    m_matching->setCurrentIndex(rule.matchAny ? 1 : 0);
    m_matching->setFixedSize(columnWidth, measure::field);
    connect(m_matching, &QComboBox::currentIndexChanged, this, [this] { refresh(); });

    auto* const box = new QWidget;
    auto* const line = new QHBoxLayout(box);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(spacing::l);
    line->addWidget(captioned(tr("Tag color"), dots));
    line->addWidget(captioned(tr("Matching"), m_matching));
    line->addStretch();
    return box;
}

QWidget* TagRuleEditor::makeConditions(const TagRule&)
{
    auto* const box = new QWidget;
    auto* const column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing::s);
    column->addWidget(new Label(tr("Conditions"), TextStyle::caption, ThemeColor::text2));
    m_noConditions = new Label(tr("No conditions — this rule matches every file."), TextStyle::body,
                               ThemeColor::text3);
    m_noConditions->setObjectName(QStringLiteral("noConditions"));
    column->addWidget(m_noConditions);
    m_list = new QWidget;
    m_rows = new QVBoxLayout(m_list);
    m_rows->setContentsMargins(0, 0, 0, 0);
    m_rows->setSpacing(spacing::s);
    auto* const scroll = new QScrollArea;
    scroll->setObjectName(QStringLiteral("conditionScroll"));
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->viewport()->setAutoFillBackground(false);
    scroll->setWidget(m_list);
    // The scroll area has just switched it on.
    m_list->setAutoFillBackground(false);
    column->addWidget(scroll);
    auto* const add = new Button(QStringLiteral("plus"), tr("Add condition"), ButtonRole::plain);
    add->setObjectName(QStringLiteral("addConditionButton"));
    connect(add, &QAbstractButton::clicked, this, [this] {
        addCondition(TagCondition::make(TagConditionType::filenameContains));
        m_conditions.back().value->setFocus(Qt::OtherFocusReason);
        refresh();
    });
    column->addWidget(add, 0, Qt::AlignLeft);
    return box;
}

QWidget* TagRuleEditor::makePreview()
{
    auto* const well = new Well;
    auto* const inside = new QVBoxLayout(well);
    inside->setContentsMargins(spacing::m, spacing::s, spacing::m, spacing::s);
    m_preview = new Label({}, TextStyle::caption, ThemeColor::text1);
    m_preview->setObjectName(QStringLiteral("sampleRow"));
    m_preview->setWordWrap(true);
    inside->addWidget(m_preview);
    return well;
}

void TagRuleEditor::addCondition(const TagCondition& condition)
{
    auto* const row = new QWidget;
    auto* const grid = new QGridLayout(row);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(spacing::s);
    grid->setVerticalSpacing(faultGap);
    auto* const type = new QComboBox;
    type->setObjectName(QStringLiteral("conditionType"));
    type->setAccessibleName(tr("What is tested"));
    for (const TagConditionType each : allTagConditionTypes) {
        type->addItem(title(each));
    }
    type->setCurrentIndex(static_cast<int>(condition.type));
    type->setFixedSize(typeWidth, measure::field);
    auto* const value = new TextField(tr("value"));
    value->setObjectName(QStringLiteral("conditionValue"));
    value->setText(condition.value);
    auto* const remove =
        new ToolButton(QStringLiteral("minus.circle"), tr("Remove this condition"));
    remove->setObjectName(QStringLiteral("removeConditionButton"));
    auto* const fault = new Label({}, TextStyle::caption, ThemeColor::orangeText);
    fault->setObjectName(QStringLiteral("conditionFault"));
    grid->addWidget(type, 0, 0);
    grid->addWidget(value, 0, 1);
    grid->addWidget(remove, 0, 2);
    grid->addWidget(fault, 1, 1, 1, 2);
    grid->setColumnStretch(1, 1);
    m_rows->addWidget(row);
    m_conditions.push_back({condition.id, row, type, value, fault});
    connect(type, &QComboBox::currentIndexChanged, this, [this] { refresh(); });
    connect(value, &QLineEdit::textChanged, this, [this] { refresh(); });
    connect(remove, &QAbstractButton::clicked, this,
            [this, id = condition.id] { removeCondition(id); });
}

void TagRuleEditor::removeCondition(const QUuid& id)
{
    const auto gone = std::find_if(m_conditions.begin(), m_conditions.end(),
                                   [&](const ConditionRow& row) { return row.id == id; });
    if (gone == m_conditions.end()) {
        return;
    }
    m_name->setFocus(Qt::OtherFocusReason);
    gone->row->hide();
    m_rows->removeWidget(gone->row);
    gone->row->deleteLater();
    m_conditions.erase(gone);
    refresh();
}

TagCondition TagRuleEditor::conditionOf(const ConditionRow& row) const
{
    return {row.id, allTagConditionTypes[static_cast<std::size_t>(row.type->currentIndex())],
            row.value->text()};
}

TagRule TagRuleEditor::rule() const
{
    TagRule rule = m_original;
    rule.name = trimmed(m_name->text());
    rule.tagName = trimmed(m_tagName->text());
    rule.tagColor = allTagColors[static_cast<std::size_t>(m_colors->checkedId())];
    rule.matchAny = m_matching->currentIndex() == 1;
    rule.conditions.clear();
    for (const ConditionRow& row : m_conditions) {
        rule.conditions.push_back(conditionOf(row));
    }
    return rule;
}

void TagRuleEditor::refresh()
{
    if (m_save == nullptr) {
        return;
    }
    const TagRule now = rule();
    m_colorName->setText(tagColorName(now.tagColor));
    m_save->setEnabled(!now.name.isEmpty() && !now.tagName.isEmpty());
    QStringList summaries;
    for (const ConditionRow& row : m_conditions) {
        const TagCondition condition = conditionOf(row);
        summaries.append(condition.summary());
        const QString fault = takesSize(condition.type) ? sizeFault(condition.value) : QString();
        row.value->setCaution(!fault.isEmpty());
        row.value->setAccessibleDescription(fault);
        row.fault->setText(fault);
        row.fault->setVisible(!fault.isEmpty());
    }
    m_noConditions->setVisible(m_conditions.empty());
    auto* const scroll = m_list->parentWidget()->parentWidget();
    scroll->setVisible(!m_conditions.empty());
    m_rows->activate();
    scroll->setFixedHeight(std::min(m_list->sizeHint().height(), maxListHeight));
    m_preview->setText(tr("Sample row: ") +
                       summaries.join(now.matchAny ? tr(" OR ") : tr(" AND ")));
}

} // namespace quorvane

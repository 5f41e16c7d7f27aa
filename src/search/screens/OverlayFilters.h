// SPDX-License-Identifier: MIT
#pragma once

#include "SearchQueryParser.h"

#include <QWidget>

#include <map>
#include <optional>

class QBoxLayout;

namespace quorvane {

class Button;
class Chip;
class Label;
enum class Tint;

/// The chips that the text of the field stands for, how many results there are, and the way into
/// the main window. Main thread.
class FilterBar : public QWidget
{
    Q_OBJECT

public:
    explicit FilterBar(QWidget* parent = nullptr);

    /// scopeLabel stands on a fixed chip while the query names no location.
    void setContent(const ParsedSearch& query, const QString& scopeLabel, const QString& status,
                    bool canOpenInApp);

Q_SIGNALS:
    void removed(SearchTokenType category);
    void openInAppRequested();

private:
    void addChip(const QString& text, Tint tint, std::optional<SearchTokenType> category);

    QBoxLayout* m_chips;
    Label* m_status;
    Button* m_open;
};

/// The filters that can be tapped instead of typed: four cards of chips, and three examples. Main
/// thread.
class FilterHelp : public QWidget
{
    Q_OBJECT

public:
    explicit FilterHelp(QWidget* parent = nullptr);

    /// Marks the chips that the query holds already.
    void setQuery(const ParsedSearch& query);

Q_SIGNALS:
    void wordTapped(const QString& word, bool isActive);
    void exampleTapped(const QString& example);

private:
    QWidget* makeCard(const QString& title, const QString& symbol, const QString& words);
    QWidget* makeExamples();

    std::map<QString, Chip*> m_chips;
};

/// Whether the query holds what a chip of that word would add.
bool holdsFilter(const ParsedSearch& query, const QString& word);

} // namespace quorvane

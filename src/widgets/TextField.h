// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>
#include <QTimer>

namespace quorvane {

class ToolButton;

/// A text field, 30 high, with an optional symbol before and a clear button after the text. Its
/// caret has the accent colour.
class TextField : public QLineEdit
{
    Q_OBJECT

public:
    explicit TextField(const QString& placeholder = {}, QWidget* parent = nullptr);

    /// Empty for none; 12 points wide unless told.
    void setSymbol(const QString& symbol, int side = 12);
    QString symbol() const { return m_symbol; }
    /// Shows a button that empties the field, while there is text. `tooltip` names it.
    void setClearable(bool clearable, const QString& tooltip);
    /// Shows by an orange edge and a symbol at the end that the text is of no use as it stands.
    void setCaution(bool caution);
    bool hasCaution() const { return m_hasCaution; }
    /// 30 at first.
    void setFieldHeight(int height);

    QSize sizeHint() const override;

Q_SIGNALS:
    /// The clear button was pressed; the field is already empty.
    void cleared();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void layOut();
    void restartCaret();

    QString m_symbol;
    int m_symbolSide = 12;
    int m_height;
    ToolButton* m_clear = nullptr;
    QTimer m_blink;
    bool m_caretLit = true;
    bool m_hasCaution = false;
};

} // namespace quorvane

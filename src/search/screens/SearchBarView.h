// SPDX-License-Identifier: MIT
#pragma once

#include "TextField.h"

namespace quorvane {

/// The tool bar's small field: a doorway to the search overlay, which takes over at once when it is
/// clicked or typed into. Main thread.
class SearchBarView : public TextField
{
    Q_OBJECT

public:
    explicit SearchBarView(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void focusInEvent(QFocusEvent* event) override;

private:
    void handoffToOverlay();
};

} // namespace quorvane

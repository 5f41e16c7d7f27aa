// SPDX-License-Identifier: MIT
#include "AppScreens.h"

#include "AnalysisView.h"
#include "FooterView.h"

#include <QVBoxLayout>

namespace quorvane {
namespace {

QWidget* makeResult(AppState& state, QWidget* parent)
{
    auto* const host = new QWidget(parent);
    auto* const column = new QVBoxLayout(host);
    column->setContentsMargins(0, 0, 0, 0);
    column->addStretch(1);
    column->addWidget(new FooterView(state));
    return host;
}

} // namespace

AppScreens AppScreens::standard()
{
    AppScreens screens;
    screens.sections.add(AppSection::analysis, [](AppState& state, QWidget* parent) -> QWidget* {
        return new AnalysisView(state, makeResult, parent);
    });
    return screens;
}

} // namespace quorvane

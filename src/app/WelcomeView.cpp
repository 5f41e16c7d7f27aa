// SPDX-License-Identifier: MIT
#include "WelcomeView.h"

#include "BrandMark.h"
#include "Button.h"
#include "Label.h"
#include "ScanState.h"
#include "Tokens.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace quorvane {
namespace {

constexpr int markSide = 84;

QLayout* makeButtons(ScanState& scan)
{
    auto* const scanHome = new Button(QStringLiteral("house"), WelcomeView::tr("Scan Home Folder"),
                                      ButtonRole::prominent, ControlSize::large);
    scanHome->setObjectName(QStringLiteral("welcomeScanHomeButton"));
    QObject::connect(scanHome, &QAbstractButton::clicked, scanHome, [&scan] { scan.scanHome(); });
    auto* const choose = new Button(QStringLiteral("folder"), WelcomeView::tr("Choose Folder…"),
                                    ButtonRole::bordered, ControlSize::large);
    choose->setObjectName(QStringLiteral("welcomeChooseFolderButton"));
    QObject::connect(choose, &QAbstractButton::clicked, choose, [&scan] { scan.pickFolder(); });

    auto* const row = new QHBoxLayout;
    row->setSpacing(spacing::m);
    row->addStretch();
    row->addWidget(scanHome);
    row->addWidget(choose);
    row->addStretch();
    return row;
}

} // namespace

WelcomeView::WelcomeView(AppState& state, QWidget* parent)
    : GlowView({QSizeF(420, 320), 0.42, 0.07}, parent)
{
    setObjectName(QStringLiteral("welcomeView"));
    auto* const text = new Label(tr("See what is taking up space on your Mac.\n"
                                    "Privacy-first: everything stays on this machine."),
                                 TextStyle::lead, ThemeColor::text2);
    text->setObjectName(QStringLiteral("welcomeText"));
    text->setAlignment(Qt::AlignHCenter);
    text->setWordWrap(true);

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(spacing::xl, 0, spacing::xl, 0);
    column->setSpacing(0);
    column->addStretch(2);
    column->addWidget(new BrandMark(markSide), 0, Qt::AlignHCenter);
    column->addSpacing(spacing::xl);
    column->addWidget(new Wordmark, 0, Qt::AlignHCenter);
    column->addSpacing(10);
    column->addWidget(text);
    column->addSpacing(32);
    column->addLayout(makeButtons(ScanState::of(state)));
    column->addStretch(3);
}

} // namespace quorvane

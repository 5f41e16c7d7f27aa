// SPDX-License-Identifier: MIT
#include "NoScanPromptView.h"

#include "EmptyState.h"
#include "ScanState.h"

#include <QVBoxLayout>

namespace quorvane {

NoScanPromptView::NoScanPromptView(AppState& state, AppSection section, QWidget* parent)
    : QWidget(parent)
    , m_prompt(new EmptyState({}, {}, {}, this))
{
    setObjectName(QStringLiteral("noScanPrompt"));
    Button* const scanHome = m_prompt->addButton(QStringLiteral("house"), tr("Scan Home Folder"),
                                                 ButtonRole::prominent, ControlSize::large);
    scanHome->setObjectName(QStringLiteral("promptScanHomeButton"));
    connect(scanHome, &QAbstractButton::clicked, this,
            [&scan = ScanState::of(state)] { scan.scanHome(); });
    Button* const choose = m_prompt->addButton(QStringLiteral("folder"), tr("Choose Folder…"),
                                               ButtonRole::bordered, ControlSize::large);
    choose->setObjectName(QStringLiteral("promptChooseFolderButton"));
    connect(choose, &QAbstractButton::clicked, this,
            [&scan = ScanState::of(state)] { scan.pickFolder(); });

    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(m_prompt);
    setSection(section);
}

void NoScanPromptView::setSection(AppSection section)
{
    m_section = section;
    const QString name = title(section);
    m_prompt->setSymbol(systemImage(section));
    m_prompt->setHeading(tr("Scan a folder to get %1 data").arg(name));
    m_prompt->setText(tr("%1 looks at the files on your disk. Run a scan first and your results "
                         "will show up here automatically.")
                          .arg(name));
}

} // namespace quorvane

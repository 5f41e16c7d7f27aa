// SPDX-License-Identifier: MIT
#include "ScreenshotRenameView.h"

#include "ByteFormatter.h"
#include "Card.h"
#include "EmptyState.h"
#include "FacetHost.h"
#include "Label.h"
#include "Menu.h"
#include "Progress.h"
#include "QuickLookPreview.h"
#include "Refresher.h"
#include "RowModel.h"
#include "RowView.h"
#include "Symbols.h"
#include "Text.h"
#include "Thumbnails.h"
#include "Tokens.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QPainter>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

constexpr int pickerWidth = 140;
constexpr int rowHeight = 56;
constexpr int sizeCell = 90;
constexpr int lineHeight = 26;
constexpr int emptyWidth = 460;
constexpr QSize thumbnailSize(64, 40);

const QString reading = QStringLiteral("screenshotsReading");
const QString none = QStringLiteral("screenshotsNone");
const QString noEngine = QStringLiteral("screenshotsNoEngine");

/// The mark before what is done.
class DoneMark : public QWidget
{
public:
    DoneMark() { setFixedSize(measure::iconButtonLarge, measure::iconButtonLarge); }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        paintSymbol(painter, QStringLiteral("checkmark.circle"), rect(), width(),
                    themeColor(ThemeColor::greenText));
    }
};

RowMetrics listMetrics()
{
    RowMetrics metrics;
    metrics.height = rowHeight;
    metrics.paddingRight = 20;
    metrics.gap = 14;
    return metrics;
}

} // namespace

ScreenshotRenameView::ScreenshotRenameView(AppState& state, QWidget* parent)
    : ToolFrame(QStringLiteral("viewfinder"), tr("Screenshot Rename"), parent)
    , m_screenshots(ScreenshotsState::of(state))
    , m_refresher(new Refresher(this, [this] { refresh(); }))
    , m_thumbnails(new Thumbnails(FacetHost::of(state).jobs(), thumbnailSize, this))
{
    setObjectName(QStringLiteral("screenshotRenameView"));
    makeHeader();
    makeStrip();
    makeEmpties();
    makeList();
    connect(m_thumbnails, &Thumbnails::arrived, this, [this] { m_rows->refreshRows(); });
    m_refresher->watch(m_screenshots.screenshotCandidates, m_screenshots.isScreenshotScanning,
                       m_screenshots.screenshotStatus, m_screenshots.isRenamingScreenshots,
                       m_screenshots.screenshotRenameProgress, m_screenshots.screenshotScanProgress,
                       m_screenshots.textRecognition, m_screenshots.renamedScreenshots,
                       m_screenshots.desktopScreenshotFolder);
    refresh();
}

void ScreenshotRenameView::makeHeader()
{
    auto* const label = new Label(tr("Folder"), TextStyle::caption, ThemeColor::text2);
    addHeaderWidget(label);
    m_folder = new QComboBox(this);
    m_folder->setObjectName(QStringLiteral("screenshotFolderPicker"));
    m_folder->setAccessibleName(tr("Folder"));
    m_folder->setFixedWidth(pickerWidth);
    quorvane::setControlSize(*m_folder, ControlSize::regular);
    label->setBuddy(m_folder);
    addHeaderWidget(m_folder);
    fillPicker();
    connect(m_folder, &QComboBox::activated, this, &ScreenshotRenameView::choose);
    auto* const otherChosen = new Refresher(this, [this] {
        m_folderChoice = FolderChoice::other;
        m_list->clearSelection();
        fillPicker();
    });
    otherChosen->watch(m_screenshots.otherScreenshotFolder);

    m_scan = addAction(QStringLiteral("camera.viewfinder"), tr("Scan Folder"));
    m_scan->setObjectName(QStringLiteral("scanScreenshotsButton"));
    m_scan->setFixedWidth(m_scan->sizeHint().width());
    connect(m_scan, &QAbstractButton::clicked, this, &ScreenshotRenameView::scan);
    auto* const inside = new QHBoxLayout(m_scan);
    inside->setContentsMargins(0, 0, 0, 0);
    m_scanSpinner = new Spinner(tr("Running OCR…"));
    m_scanSpinner->setWordsVisible(false);
    m_scanSpinner->setAttribute(Qt::WA_TransparentForMouseEvents);
    inside->addWidget(m_scanSpinner, 0, Qt::AlignCenter);

    m_rename = addAction(QStringLiteral("checkmark"), tr("Rename Selected"), ButtonRole::prominent);
    m_rename->setObjectName(QStringLiteral("renameScreenshotsButton"));
    connect(m_rename, &QAbstractButton::clicked, this, &ScreenshotRenameView::renameSelected);
}

void ScreenshotRenameView::makeStrip()
{
    auto* const strip = new QWidget;
    auto* const column = new QVBoxLayout(strip);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    m_line = new QWidget;
    m_line->setFixedHeight(lineHeight + spacing::m + 2);
    auto* const line = new QHBoxLayout(m_line);
    line->setContentsMargins(0, 0, 0, spacing::m + 2);
    m_renamed = new QWidget;
    auto* const renamed = new QHBoxLayout(m_renamed);
    renamed->setContentsMargins(0, 0, 0, 0);
    renamed->setSpacing(spacing::s);
    renamed->addWidget(new DoneMark);
    m_renamedText = new Label;
    m_renamedText->setObjectName(QStringLiteral("renamedText"));
    renamed->addWidget(m_renamedText);
    renamed->addSpacing(spacing::xs);
    auto* const undo = new Button(QStringLiteral("arrow.uturn.backward"), tr("Undo"),
                                  ButtonRole::bordered, ControlSize::small);
    undo->setObjectName(QStringLiteral("undoRenamesButton"));
    connect(undo, &QAbstractButton::clicked, this,
            [this] { m_screenshots.undoScreenshotRenames(folderURL()); });
    renamed->addWidget(undo);
    line->addWidget(m_renamed);
    line->addStretch();
    m_status = new Label({}, TextStyle::body, ThemeColor::text2);
    m_status->setObjectName(QStringLiteral("screenshotStatus"));
    line->addWidget(m_status);
    column->addWidget(m_line);

    m_progress = new Card;
    auto* const card = new QVBoxLayout(m_progress);
    card->setContentsMargins(spacing::l, spacing::m + 2, spacing::l, spacing::l);
    card->setSpacing(spacing::s + 2);
    auto* const words = new QHBoxLayout;
    words->setSpacing(spacing::s);
    m_progressSpinner = new Spinner({});
    m_progressSpinner->setWordsVisible(false);
    m_progressStatus = new Label;
    m_progressStatus->setObjectName(QStringLiteral("screenshotProgressStatus"));
    m_progressCount = new Label({}, TextStyle::body, ThemeColor::text2);
    m_progressCount->setObjectName(QStringLiteral("screenshotProgressCount"));
    words->addWidget(m_progressSpinner);
    words->addWidget(m_progressStatus);
    words->addStretch();
    words->addWidget(m_progressCount);
    card->addLayout(words);
    m_bar = new ProgressBar(tr("Progress of the screenshots"));
    m_bar->setObjectName(QStringLiteral("screenshotProgressBar"));
    card->addWidget(m_bar);
    column->addWidget(m_progress);
    addStrip(strip);
}

void ScreenshotRenameView::makeEmpties()
{
    const QString symbol = QStringLiteral("photo.badge.magnifyingglass");
    m_reading = addEmpty(reading, symbol, tr("Reading screenshots…"), {}, emptyWidth);
    m_reading->setObjectName(reading);
    m_none = addEmpty(none, symbol, tr("No screenshots found"), {}, emptyWidth);
    m_none->setObjectName(none);
    m_noEngine = addEmpty(noEngine, symbol, tr("Text recognition is missing"), {}, emptyWidth);
    m_noEngine->setObjectName(noEngine);
}

void ScreenshotRenameView::makeList()
{
    m_rows = new RowModel(this);
    m_list = new RowView(*m_rows, listMetrics());
    m_list->setObjectName(QStringLiteral("screenshotList"));
    m_list->setAccessibleName(tr("Screenshots"));
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setActivatesOnDoubleClick(true);
    Row titles;
    titles.icon = QIcon(QPixmap(1, 1));
    titles.iconSize = thumbnailSize;
    titles.title = tr("Current name");
    titles.cells = {RowCell{.text = tr("Proposed name"), .stretch = 1, .alignment = Qt::AlignLeft},
                    RowCell::number(tr("Size"), sizeCell)};
    m_list->setTitles(titles);
    connect(m_list, &RowView::rowActivated, this, &ScreenshotRenameView::preview);
    connect(m_list, &RowView::contextMenuRequested, this,
            [this](const QModelIndex& index, const QPoint& position) {
                showMenu(index.row(), position);
            });
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ScreenshotRenameView::refreshButtons);
    connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& index) {
                if (index.isValid()) {
                    QuickLookPreview::shared().follow(
                        m_candidates[static_cast<std::size_t>(index.row())].url);
                }
            });
    addList(*m_list);
}

/// "Screenshots" where the desktop has a folder for them; the folder that the user chose by name.
void ScreenshotRenameView::fillPicker()
{
    const QSignalBlocker quiet(m_folder);
    m_folder->clear();
    m_choices.clear();
    const auto add = [this](FolderChoice choice, const QString& label) {
        m_choices.push_back(choice);
        m_folder->addItem(label);
        if (choice == m_folderChoice) {
            m_folder->setCurrentIndex(m_folder->count() - 1);
        }
    };
    add(FolderChoice::downloads, tr("Downloads"));
    add(FolderChoice::desktop, tr("Desktop"));
    add(FolderChoice::documents, tr("Documents"));
    add(FolderChoice::home, tr("Home"));
    if (m_screenshots.desktopScreenshotFolder.value()) {
        add(FolderChoice::screenshots, tr("Screenshots"));
    }
    if (const auto& other = m_screenshots.otherScreenshotFolder.value()) {
        const std::string_view name = other->lastComponent();
        add(FolderChoice::other, displayText(name.empty() ? other->bytes() : std::string(name)));
    }
    m_folder->addItem(tr("Other folder…"));
}

void ScreenshotRenameView::choose(int index)
{
    m_list->clearSelection();
    if (index < static_cast<int>(m_choices.size())) {
        m_folderChoice = m_choices[static_cast<std::size_t>(index)];
        return;
    }
    // The choice stays what it was until the chooser is answered.
    fillPicker();
    m_screenshots.pickScreenshotFolder();
}

FilePath ScreenshotRenameView::folderURL() const
{
    switch (m_folderChoice) {
    case FolderChoice::downloads:
        return m_screenshots.screenshotFolder(UserFolder::downloads);
    case FolderChoice::desktop:
        return m_screenshots.screenshotFolder(UserFolder::desktop);
    case FolderChoice::documents:
        return m_screenshots.screenshotFolder(UserFolder::documents);
    case FolderChoice::screenshots:
        return m_screenshots.desktopScreenshotFolder.value().value_or(
            m_screenshots.screenshotHome());
    case FolderChoice::other:
        return m_screenshots.otherScreenshotFolder.value().value_or(m_screenshots.screenshotHome());
    case FolderChoice::home:
        break;
    }
    return m_screenshots.screenshotHome();
}

void ScreenshotRenameView::scan()
{
    m_list->clearSelection();
    m_screenshots.scanScreenshots(folderURL());
}

void ScreenshotRenameView::renameSelected()
{
    std::vector<ScreenshotCandidate> chosen;
    const QItemSelectionModel& selection = *m_list->selectionModel();
    for (std::size_t i = 0; i < m_candidates.size(); ++i) {
        if (selection.isSelected(m_rows->index(static_cast<int>(i)))) {
            chosen.push_back(m_candidates[i]);
        }
    }
    m_list->clearSelection();
    m_screenshots.renameScreenshots(std::move(chosen), folderURL());
}

void ScreenshotRenameView::preview(const QModelIndex& index)
{
    if (index.isValid()) {
        QuickLookPreview::shared().toggle(m_candidates[static_cast<std::size_t>(index.row())].url);
    }
}

void ScreenshotRenameView::showMenu(int row, const QPoint& position)
{
    const FilePath file = m_candidates[static_cast<std::size_t>(row)].url;
    auto* const menu = new Menu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setObjectName(QStringLiteral("screenshotMenu"));
    connect(menu->addItem(QStringLiteral("eye"), tr("Quick Look")), &QAction::triggered, this,
            [file] { QuickLookPreview::shared().show(file); });
    connect(menu->addItem(QStringLiteral("magnifyingglass"), tr("Reveal in Finder")),
            &QAction::triggered, this, [this, file] { m_screenshots.revealScreenshot(file); });
    menu->popup(position);
}

Row ScreenshotRenameView::rowOf(int index)
{
    const ScreenshotCandidate& candidate = m_candidates[static_cast<std::size_t>(index)];
    Row row;
    row.icon = m_thumbnails->of(candidate.url, devicePixelRatioF());
    row.iconSize = thumbnailSize;
    row.title = displayText(candidate.url.lastComponent());
    row.titleStyle = TextStyle::body;
    row.titleColor = ThemeColor::text2;
    row.cells = {
        RowCell{.text = displayText(candidate.proposedName),
                .stretch = 1,
                .style = TextStyle::row,
                .color = candidate.hasProposal() ? ThemeColor::accentText : ThemeColor::text2,
                .alignment = Qt::AlignLeft},
        RowCell::number(ByteFormatter::string(candidate.sizeBytes), sizeCell)};
    return row;
}

void ScreenshotRenameView::refresh()
{
    const bool offersScreenshots =
        std::find(m_choices.begin(), m_choices.end(), FolderChoice::screenshots) != m_choices.end();
    if (offersScreenshots != m_screenshots.desktopScreenshotFolder.value().has_value()) {
        fillPicker();
    }
    refreshList();
    refreshButtons();
    refreshStrip();
    refreshEmpty();
}

void ScreenshotRenameView::refreshButtons()
{
    const bool isScanning = m_screenshots.isScreenshotScanning.value();
    const QString words = m_candidates.empty() ? tr("Scan Folder") : tr("Rescan");
    m_scan->setAccessibleName(words);
    m_scan->setText(isScanning ? QString() : words);
    m_scan->setSymbol(isScanning ? QString() : QStringLiteral("camera.viewfinder"));
    m_scanSpinner->setVisible(isScanning);
    m_rename->setEnabled(m_list->selectionModel()->hasSelection() && !isScanning &&
                         !m_screenshots.isRenamingScreenshots.value());
}

void ScreenshotRenameView::refreshStrip()
{
    const bool isScanning = m_screenshots.isScreenshotScanning.value();
    const bool isRenaming = m_screenshots.isRenamingScreenshots.value();
    const QString status = m_screenshots.screenshotStatus.value().value_or(QString());
    const std::size_t renamed = m_screenshots.renamedScreenshots.value().size();
    m_renamedText->setText(renamed == 1 ? tr("Renamed 1 file.")
                                        : tr("Renamed %1 files.").arg(renamed));
    setShown(*m_renamed, renamed > 0);
    m_status->setText(status);
    m_status->setVisible(!isScanning && !isRenaming);
    m_line->setVisible(renamed > 0 || (!status.isEmpty() && !isScanning && !isRenaming));

    m_progress->setVisible(isScanning || isRenaming);
    m_progressSpinner->setText(status);
    m_progressSpinner->setVisible(isScanning);
    m_progressStatus->setText(status);
    const ScreenshotScanProgress scanned = m_screenshots.screenshotScanProgress.value();
    const bool isCounted = !isRenaming && scanned.total > 0;
    m_progressCount->setText(isCounted ? tr("%1 of %2").arg(scanned.done).arg(scanned.total)
                                       : QString());
    m_bar->setFraction(isRenaming ? m_screenshots.screenshotRenameProgress.value()
                       : isCounted
                           ? static_cast<double>(scanned.done) / static_cast<double>(scanned.total)
                           : 0);
}

void ScreenshotRenameView::refreshList()
{
    const std::vector<ScreenshotCandidate>& candidates = m_screenshots.screenshotCandidates.value();
    const auto isSame = [](const ScreenshotCandidate& left, const ScreenshotCandidate& right) {
        return left.url == right.url && left.proposedName == right.proposedName &&
               left.sizeBytes == right.sizeBytes;
    };
    if (std::equal(candidates.begin(), candidates.end(), m_candidates.begin(), m_candidates.end(),
                   isSame)) {
        return;
    }
    m_candidates = candidates;
    m_thumbnails->clear();
    m_rows->setRows(static_cast<int>(m_candidates.size()), [this](int row) { return rowOf(row); });
}

void ScreenshotRenameView::refreshEmpty()
{
    if (!m_candidates.empty()) {
        showBody();
        return;
    }
    const QString purpose = tr("Scans the folder root for images named like screenshots\n"
                               "(Screen Shot, Screenshot, Bildschirmfoto…) and uses on-device OCR\n"
                               "to rename them after what's on screen.");
    const TextRecognition recognition = m_screenshots.textRecognition.value();
    if (m_screenshots.isScreenshotScanning.value() || m_screenshots.isRenamingScreenshots.value()) {
        m_reading->setHeading(m_screenshots.isRenamingScreenshots.value()
                                  ? tr("Renaming screenshots…")
                                  : tr("Reading screenshots…"));
        m_reading->setText(purpose);
        showEmpty(reading);
    } else if (!recognition.isThere) {
        m_noEngine->setText(tr("This system gives the program no way to read pictures."));
        showEmpty(noEngine);
    } else if (!recognition.missingPackage.isEmpty()) {
        m_noEngine->setText(
            tr("Install the package %1, then scan again.").arg(recognition.missingPackage));
        showEmpty(noEngine);
    } else {
        m_none->setText(recognition.furtherPackage.isEmpty()
                            ? purpose
                            : QString(purpose % QStringLiteral("\n\n") %
                                      tr("Only English is read. For the desktop's language as "
                                         "well, install the package %1 and start again.")
                                          .arg(recognition.furtherPackage)));
        showEmpty(none);
    }
}

void ScreenshotRenameView::showEvent(QShowEvent* event)
{
    ToolFrame::showEvent(event);
    if (event->spontaneous()) {
        return;
    }
    m_screenshots.findDesktopScreenshotFolder();
    if (m_screenshots.screenshotCandidates.value().empty() &&
        !m_screenshots.isScreenshotScanning.value()) {
        m_screenshots.scanScreenshots(folderURL());
    }
}

void ScreenshotRenameView::keyPressEvent(QKeyEvent* event)
{
    const bool isInList = m_list->hasFocus() && m_list->currentIndex().isValid();
    if (isInList && event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier) {
        preview(m_list->currentIndex());
    } else if (isInList && event->key() == Qt::Key_Space &&
               event->modifiers() == Qt::ControlModifier) {
        m_list->selectionModel()->select(m_list->currentIndex(), QItemSelectionModel::Toggle);
    } else if (m_list->hasFocus() && event->matches(QKeySequence::SelectAll)) {
        m_list->selectAll();
    } else {
        ToolFrame::keyPressEvent(event);
    }
}

} // namespace quorvane

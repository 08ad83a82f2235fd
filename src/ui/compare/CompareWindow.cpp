#include "CompareWindow.h"

#include "core/compare/DiffCarry.h"
#include "core/compare/UnifiedDiff.h"
#include "ui/compare/DiffOverview.h"
#include "ui/dialogs/Questions.h"
#include "ui/editor/EditorColors.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QAction>
#include <QApplication>
#include <QBoxLayout>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QSaveFile>
#include <QTimer>
#include <QToolBar>
#include <Qsci/qsciscintillabase.h>
#include <QtConcurrent>

namespace mirtex {

using Sci = QsciScintillaBase;

namespace {

constexpr int kRecompareDelayMs = 300;

int indexOf(CompareSideIndex side)
{
    return side == CompareSideIndex::left ? 0 : 1;
}

QAction *toolbarAction(QToolBar *bar,
                       const char *name,
                       const QString &label,
                       const QKeySequence &key = {},
                       bool checkable = false)
{
    QAction *action = bar->addAction(label);
    action->setObjectName(QLatin1String(name));
    action->setCheckable(checkable);
    if (!key.isEmpty()) {
        action->setShortcut(key);
        action->setToolTip(label + QStringLiteral(" (") + key.toString(QKeySequence::NativeText)
                           + u')');
    }
    return action;
}

} // namespace

CompareWindow::CompareWindow(Preferences &prefs,
                             Questions &questions,
                             CompareSide left,
                             CompareSide right,
                             const EditorColors &colors,
                             QWidget *parent)
    : QWidget(parent, Qt::Window)
    , m_prefs(prefs)
    , m_questions(questions)
    , m_left(std::move(left))
    , m_right(std::move(right))
    , m_debounce(new QTimer(this))
    , m_dark(colors.isDark)
{
    setWindowTitle(tr("Confronto: %1 ↔ %2").arg(m_left.title, m_right.title));
    auto *bar = new QToolBar(this);
    bar->setObjectName(QStringLiteral("mirtex.compare.toolbar"));
    connect(toolbarAction(bar,
                          "mirtex.compare.previous",
                          tr("Differenza precedente"),
                          QKeySequence(Qt::SHIFT | Qt::Key_F7)),
            &QAction::triggered,
            this,
            &CompareWindow::goToPrevious);
    connect(toolbarAction(
                bar, "mirtex.compare.next", tr("Differenza successiva"), QKeySequence(Qt::Key_F7)),
            &QAction::triggered,
            this,
            &CompareWindow::goToNext);
    bar->addSeparator();
    m_carryRight = toolbarAction(bar,
                                 "mirtex.compare.copyToRight",
                                 tr("Copia a destra"),
                                 QKeySequence(Qt::ALT | Qt::Key_Right));
    connect(m_carryRight, &QAction::triggered, this, [this]() {
        if (!carryToRight())
            QApplication::beep();
    });
    m_carryLeft = toolbarAction(bar,
                                "mirtex.compare.copyToLeft",
                                tr("Copia a sinistra"),
                                QKeySequence(Qt::ALT | Qt::Key_Left));
    connect(m_carryLeft, &QAction::triggered, this, [this]() {
        if (!carryToLeft())
            QApplication::beep();
    });
    bar->addSeparator();
    QAction *spaces
        = toolbarAction(bar, "mirtex.compare.ignoreWhitespace", tr("Ignora gli spazi"), {}, true);
    QAction *caseAction = toolbarAction(
        bar, "mirtex.compare.ignoreCase", tr("Ignora maiuscole e minuscole"), {}, true);
    auto optionsChanged = [this, spaces, caseAction]() {
        setOptions({spaces->isChecked(), caseAction->isChecked()});
    };
    connect(spaces, &QAction::toggled, this, optionsChanged);
    connect(caseAction, &QAction::toggled, this, optionsChanged);
    bar->addSeparator();
    connect(toolbarAction(bar, "mirtex.compare.savePatch", tr("Salva come patch…")),
            &QAction::triggered,
            this,
            &CompareWindow::savePatch);

    auto *panes = new QHBoxLayout;
    panes->setSpacing(2);
    panes->addWidget(sideWidget(CompareSideIndex::left), 1);
    panes->addWidget(sideWidget(CompareSideIndex::right), 1);
    m_overview = new DiffOverview(this);
    panes->addWidget(m_overview);
    for (EditorView *pane : m_panes)
        pane->applyColors(colors);
    const DiffPaneColors paneColors = DiffPaneColors::forTheme(m_dark);
    for (auto &marks : m_marks)
        marks->setColors(paneColors);

    m_totals = new QLabel(this);
    m_totals->setObjectName(QStringLiteral("mirtex.compare.totals"));
    m_position = new QLabel(this);
    m_position->setObjectName(QStringLiteral("mirtex.compare.position"));
    auto *status = new QHBoxLayout;
    status->setContentsMargins(6, 2, 6, 4);
    status->addWidget(m_totals);
    status->addStretch(1);
    status->addWidget(m_position);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(bar);
    layout->addLayout(panes, 1);
    layout->addLayout(status);

    m_debounce->setSingleShot(true);
    m_debounce->setInterval(kRecompareDelayMs);
    connect(m_debounce, &QTimer::timeout, this, &CompareWindow::requestComparison);
    for (CompareSide *s : {&m_left, &m_right}) {
        if (s->editor)
            connect(
                s->editor.data(), &EditorView::textEdited, m_debounce, qOverload<>(&QTimer::start));
    }
    connect(m_overview, &DiffOverview::rowClicked, this, [this](qsizetype row) {
        for (EditorView *pane : m_panes)
            pane->setFirstVisibleLine(int(std::max<qsizetype>(0, row - 5)));
    });
    connect(&m_watcher, &QFutureWatcher<Result>::finished, this, [this]() {
        Result result = m_watcher.result();
        if (result.generation == m_generation)
            showResult(std::move(result));
    });
    m_shown = std::make_unique<Result>(compute(QString(), QString(), m_options, 0));
    requestComparison();
}

CompareWindow::~CompareWindow()
{
    m_watcher.waitForFinished();
}

QWidget *CompareWindow::sideWidget(CompareSideIndex index)
{
    const CompareSide &s = side(index);
    auto *box = new QWidget(this);
    auto *column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto *header = new QLabel(s.title, box);
    header->setObjectName(index == CompareSideIndex::left
                              ? QStringLiteral("mirtex.compare.leftHeader")
                              : QStringLiteral("mirtex.compare.rightHeader"));
    header->setToolTip(s.title);
    header->setContentsMargins(6, 3, 6, 3);
    header->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *pane = new EditorView(m_prefs, box);
    pane->setEditable(false);
    EditorPane *view = pane->primaryPane();
    view->SendScintilla(Sci::SCI_SETWRAPMODE, Sci::SC_WRAP_NONE);
    m_panes[indexOf(index)] = pane;
    m_marks[indexOf(index)] = std::make_unique<DiffPaneMarks>(*view, index);
    // Scintilla reports every scroll, also those its scroll bars do not see (a scroll asked for
    // before the pane was laid out).
    connect(view, &QsciScintillaBase::SCN_UPDATEUI, this, [this, index](int updated) {
        if (updated & (Sci::SC_UPDATE_V_SCROLL | Sci::SC_UPDATE_H_SCROLL))
            syncScroll(index);
    });
    view->viewport()->installEventFilter(this);
    column->addWidget(header);
    column->addWidget(pane, 1);
    return box;
}

CompareWindow::Result
CompareWindow::compute(QString left, QString right, DiffOptions options, quint64 generation)
{
    auto diff = std::make_shared<const TextDiff>(std::move(left), std::move(right), options);
    DiffAlignment alignment = DiffAlignment::of(*diff);
    return {std::move(diff), std::move(alignment), generation};
}

void CompareWindow::requestComparison()
{
    const quint64 generation = ++m_generation;
    QString left = m_left.currentText();
    QString right = m_right.currentText();
    if (left.size() + right.size() > kBackgroundAboveUnits) {
        // The newest request wins: an older one still running is dropped when it ends.
        m_watcher.setFuture(QtConcurrent::run(
            &CompareWindow::compute, std::move(left), std::move(right), m_options, generation));
        return;
    }
    showResult(compute(std::move(left), std::move(right), m_options, generation));
}

void CompareWindow::compareNow()
{
    m_debounce->stop();
    const quint64 generation = ++m_generation;
    showResult(compute(m_left.currentText(), m_right.currentText(), m_options, generation));
}

void CompareWindow::showResult(Result result)
{
    const int firstRow = m_panes[0]->firstVisibleLine();
    m_shown = std::make_unique<Result>(std::move(result));
    const TextDiff &d = *m_shown->diff;
    for (CompareSideIndex index : {CompareSideIndex::left, CompareSideIndex::right}) {
        const bool isLeft = index == CompareSideIndex::left;
        EditorView *pane = m_panes[indexOf(index)];
        const AlignedSide &rows = isLeft ? m_shown->alignment.left : m_shown->alignment.right;
        // A read-only Scintilla document refuses even a load.
        pane->setEditable(true);
        pane->loadText(alignedText(isLeft ? d.left : d.right, rows).toUtf8());
        pane->setEditable(false);
        // Colours follow the new text (a load alone leaves it plain).
        pane->setLanguage(side(index).language ? side(index).language : Language::text());
        m_marks[indexOf(index)]->show(&d, &m_shown->alignment);
    }
    m_syncing = true;
    for (EditorView *pane : m_panes)
        pane->setFirstVisibleLine(firstRow);
    m_syncing = false;
    m_overview->setAlignment(&m_shown->alignment,
                             {DiffPaneColors::forTheme(m_dark).changedWords,
                              QColor(0x3c, 0xa0, 0x50),
                              QColor(0xd0, 0x50, 0x50),
                              palette().color(QPalette::WindowText)});
    const qsizetype count = qsizetype(d.hunks.size());
    if (m_current >= count)
        m_current = count - 1;
    m_carryRight->setEnabled(!m_right.editor.isNull());
    m_carryLeft->setEnabled(!m_left.editor.isNull());
    updateLabels();
    refreshVisibleRows();
    Q_EMIT shown();
}

void CompareWindow::syncScroll(CompareSideIndex from)
{
    if (!m_syncing) {
        m_syncing = true;
        EditorPane *source = m_panes[indexOf(from)]->primaryPane();
        EditorPane *other = m_panes[1 - indexOf(from)]->primaryPane();
        const long first = long(source->SendScintilla(Sci::SCI_GETFIRSTVISIBLELINE));
        if (long(other->SendScintilla(Sci::SCI_GETFIRSTVISIBLELINE)) != first)
            other->SendScintilla(Sci::SCI_SETFIRSTVISIBLELINE, first);
        const long x = long(source->SendScintilla(Sci::SCI_GETXOFFSET));
        if (long(other->SendScintilla(Sci::SCI_GETXOFFSET)) != x)
            other->SendScintilla(Sci::SCI_SETXOFFSET, x);
        m_syncing = false;
    }
    refreshVisibleRows();
}

bool CompareWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize && m_panes[0] && m_marks[0] && m_marks[1])
        QTimer::singleShot(0, this, [this]() { refreshVisibleRows(); });
    return QWidget::eventFilter(watched, event);
}

void CompareWindow::refreshVisibleRows()
{
    EditorPane *view = m_panes[0]->primaryPane();
    const qsizetype first = qsizetype(view->SendScintilla(Sci::SCI_GETFIRSTVISIBLELINE));
    const qsizetype count = qsizetype(view->SendScintilla(Sci::SCI_LINESONSCREEN)) + 2;
    for (auto &marks : m_marks)
        marks->paintRows(first, count);
    m_overview->setVisibleRows(first, count);
}

void CompareWindow::goToHunk(qsizetype hunk)
{
    if (hunk < 0 || hunk >= qsizetype(diff().hunks.size()))
        return;
    m_current = hunk;
    const qsizetype row = alignment().hunkRows[size_t(hunk)].start;
    const qsizetype onScreen
        = qsizetype(m_panes[0]->primaryPane()->SendScintilla(Sci::SCI_LINESONSCREEN));
    for (EditorView *pane : m_panes)
        pane->setFirstVisibleLine(int(std::max<qsizetype>(0, row - onScreen / 3)));
    refreshVisibleRows();
    updateLabels();
}

void CompareWindow::goToNext()
{
    qsizetype next = m_current + 1;
    if (m_current < 0)
        next = alignment().hunkAtRow(m_panes[0]->firstVisibleLine(), true);
    if (next < 0 || next >= qsizetype(diff().hunks.size())) {
        QApplication::beep();
        return;
    }
    goToHunk(next);
}

void CompareWindow::goToPrevious()
{
    if (m_current <= 0) {
        QApplication::beep();
        return;
    }
    goToHunk(m_current - 1);
}

bool CompareWindow::carryToRight()
{
    return carry(CompareSideIndex::right);
}

bool CompareWindow::carryToLeft()
{
    return carry(CompareSideIndex::left);
}

bool CompareWindow::carry(CompareSideIndex target)
{
    CompareSide &to = side(target);
    if (!to.editor)
        return false;
    // An edit not yet compared would make the hunk's lines stale.
    if (m_debounce->isActive() || m_watcher.isRunning())
        compareNow();
    if (m_current < 0 || m_current >= qsizetype(diff().hunks.size()))
        return false;
    const TextDiff &d = diff();
    const DiffHunk &h = d.hunks[size_t(m_current)];
    const bool toRight = target == CompareSideIndex::right;
    const TextReplacement replacement = toRight ? carriedLines(d.left, h.left, d.right, h.right)
                                                : carriedLines(d.right, h.right, d.left, h.left);
    EditBatch batch{{replacement},
                    Selections(Selection::caretAt(replacement.range.location)),
                    tr("Copia la differenza")};
    if (!to.editor->applyBatch(batch))
        return false;
    compareNow();
    return true;
}

void CompareWindow::setOptions(DiffOptions options)
{
    if (options == m_options)
        return;
    m_options = options;
    requestComparison();
}

QString CompareWindow::totalsText() const
{
    return QStringLiteral("+%1 −%2").arg(diff().addedLineCount()).arg(diff().removedLineCount());
}

QString CompareWindow::positionText() const
{
    const qsizetype count = qsizetype(diff().hunks.size());
    if (count == 0)
        return tr("nessuna differenza");
    if (m_current < 0)
        return count == 1 ? tr("1 differenza") : tr("%1 differenze").arg(count);
    return tr("differenza %1 di %2").arg(m_current + 1).arg(count);
}

void CompareWindow::updateLabels()
{
    m_totals->setText(totalsText());
    m_position->setText(positionText());
}

EditorView &CompareWindow::pane(CompareSideIndex side) const
{
    return *m_panes[indexOf(side)];
}

bool CompareWindow::writePatch(const QString &path) const
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(unifiedDiff(diff(), m_left.patchName, m_right.patchName).toUtf8());
    return file.commit();
}

void CompareWindow::savePatch()
{
    const QString path
        = QFileDialog::getSaveFileName(this,
                                       tr("Salva come patch…"),
                                       QDir::home().filePath(QStringLiteral("confronto.patch")),
                                       tr("Patch (*.patch *.diff)"));
    if (path.isEmpty())
        return;
    if (!writePatch(path))
        m_questions.inform(
            this, tr("Impossibile salvare la patch."), QDir::toNativeSeparators(path));
}

} // namespace mirtex

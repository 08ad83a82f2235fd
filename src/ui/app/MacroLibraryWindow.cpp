#include "ui/app/MacroLibraryWindow.h"

#include "ui/app/MacroCommands.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace mirtex {

MacroLibraryWindow *MacroLibraryWindow::showFor(MacroCommands &macros, QWidget *parent)
{
    auto *window = parent->findChild<MacroLibraryWindow *>(QString(), Qt::FindDirectChildrenOnly);
    if (!window)
        window = new MacroLibraryWindow(macros, parent);
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}

MacroLibraryWindow::MacroLibraryWindow(MacroCommands &macros, QWidget *parent)
    : QDialog(parent)
    , m_macros(macros)
    , m_list(new QListWidget(this))
    , m_shortcut(new QKeySequenceEdit(this))
{
    setObjectName(QStringLiteral("mirtex.macroLibrary"));
    setWindowTitle(tr("Macro salvate"));
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_list);

    auto *keys = new QHBoxLayout;
    keys->addWidget(new QLabel(tr("Scorciatoia:")));
    keys->addWidget(m_shortcut);
    auto *assign = new QPushButton(tr("Assegna"));
    auto *clear = new QPushButton(tr("Togli"));
    keys->addWidget(assign);
    keys->addWidget(clear);
    layout->addLayout(keys);

    auto *buttons = new QHBoxLayout;
    auto *play = new QPushButton(tr("Esegui"));
    auto *rename = new QPushButton(tr("Rinomina…"));
    auto *remove = new QPushButton(tr("Elimina"));
    buttons->addWidget(play);
    buttons->addWidget(rename);
    buttons->addWidget(remove);
    buttons->addStretch();
    auto *close = new QPushButton(tr("Chiudi"));
    buttons->addWidget(close);
    layout->addLayout(buttons);
    m_needSelection = {assign, clear, play, rename, remove};

    connect(close, &QPushButton::clicked, this, &QDialog::close);
    connect(play, &QPushButton::clicked, this, [this]() { m_macros.playSaved(selectedName()); });
    connect(
        rename, &QPushButton::clicked, this, [this]() { m_macros.renameSaved(selectedName()); });
    connect(
        remove, &QPushButton::clicked, this, [this]() { m_macros.removeSaved(selectedName()); });
    connect(assign, &QPushButton::clicked, this, [this]() {
        m_macros.setSavedShortcut(selectedName(), m_shortcut->keySequence());
    });
    connect(clear, &QPushButton::clicked, this, [this]() {
        m_macros.setSavedShortcut(selectedName(), {});
    });
    connect(m_list, &QListWidget::currentRowChanged, this, &MacroLibraryWindow::selectionChanged);
    connect(&m_macros, &MacroCommands::libraryChanged, this, &MacroLibraryWindow::fill);
    fill();
    resize(420, 320);
}

void MacroLibraryWindow::fill()
{
    const QString selected = selectedName();
    m_list->clear();
    for (const SavedMacro &macro : m_macros.library().macros()) {
        auto *item = new QListWidgetItem(m_list);
        const QString keys = QKeySequence(macro.shortcut, QKeySequence::PortableText)
                                 .toString(QKeySequence::NativeText);
        item->setText(keys.isEmpty() ? macro.name : macro.name + QStringLiteral("    ") + keys);
        item->setData(Qt::UserRole, macro.name);
        if (macro.name == selected)
            m_list->setCurrentItem(item);
    }
    if (!m_list->currentItem() && m_list->count() > 0)
        m_list->setCurrentRow(0);
    selectionChanged();
}

QString MacroLibraryWindow::selectedName() const
{
    const QListWidgetItem *item = m_list->currentItem();
    return item ? item->data(Qt::UserRole).toString() : QString();
}

void MacroLibraryWindow::selectionChanged()
{
    const QString name = selectedName();
    for (QPushButton *button : std::as_const(m_needSelection))
        button->setEnabled(!name.isEmpty());
    const SavedMacro *macro = m_macros.library().find(name);
    m_shortcut->setKeySequence(macro ? QKeySequence(macro->shortcut, QKeySequence::PortableText)
                                     : QKeySequence());
}

} // namespace mirtex

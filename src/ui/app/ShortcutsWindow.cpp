#include "ui/app/ShortcutsWindow.h"

#include "ui/commands/CommandRegistry.h"
#include "ui/editor/EditorKeys.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace mirtex {

ShortcutsWindow::ShortcutsWindow(CommandRegistry &registry, QMenuBar *menuBar, QWidget *parent)
    : QDialog(parent)
    , m_registry(registry)
    , m_menuBar(menuBar)
    , m_list(new QTreeWidget)
{
    setObjectName(QStringLiteral("mirtex.shortcuts"));
    setWindowTitle(QCoreApplication::translate("ShortcutsWindow", "Scorciatoie da tastiera"));
    setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    setSizeGripEnabled(true);
    resize(520, 600);
    auto *layout = new QVBoxLayout(this);
    m_list->setColumnCount(2);
    m_list->setHeaderLabels({QCoreApplication::translate("ShortcutsWindow", "Comando"),
                             QCoreApplication::translate("ShortcutsWindow", "Tasti")});
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_list->setRootIsDecorated(false);
    layout->addWidget(m_list);
}

void ShortcutsWindow::showEvent(QShowEvent *event)
{
    rebuild();
    QDialog::showEvent(event);
}

void ShortcutsWindow::rebuild()
{
    m_list->clear();
    auto add = [this](const QString &where, const QList<QKeySequence> &shortcuts) {
        QStringList keys;
        for (const QKeySequence &key : shortcuts)
            keys.append(key.toString(QKeySequence::NativeText));
        auto *item = new QTreeWidgetItem(m_list);
        item->setText(0, where);
        item->setText(1, keys.join(QStringLiteral(" / ")));
    };
    // The menus give the order and the place; the registry the commands and their keys.
    QSet<QString> listed;
    std::function<void(QMenu *, const QString &)> walk = [&](QMenu *menu, const QString &path) {
        for (QAction *action : menu->actions()) {
            if (action->menu()) {
                walk(action->menu(), path + QStringLiteral(" › ") + action->text().remove(u'&'));
                continue;
            }
            const Command *command = m_registry.find(action->objectName());
            // An entry of a family (one command, the entry's argument) with a key of its own.
            if (!command && !action->shortcuts().isEmpty()
                && !listed.contains(action->objectName())) {
                listed.insert(action->objectName());
                add(path + QStringLiteral(" › ") + action->text().remove(u'&'),
                    action->shortcuts());
                continue;
            }
            if (!command || command->shortcuts.isEmpty() || listed.contains(command->name))
                continue;
            listed.insert(command->name);
            add(path + QStringLiteral(" › ") + action->text().remove(u'&'), command->shortcuts);
        }
    };
    for (QAction *top : m_menuBar->actions()) {
        if (top->menu())
            walk(top->menu(), top->text().remove(u'&'));
    }
    for (const Command *command : m_registry.commands()) {
        if (!command->shortcuts.isEmpty() && !listed.contains(command->name))
            add(QString(command->label).remove(u'&'), command->shortcuts);
    }
    // The keys the editor handles itself: moving, selecting, new lines, tabs and deleting.
    const QString editor = QCoreApplication::translate("ShortcutsWindow", "Editor");
    for (const EditorKeys::Binding &binding : EditorKeys::bindings())
        add(editor + QStringLiteral(" › ") + binding.label, binding.keys);
}

} // namespace mirtex

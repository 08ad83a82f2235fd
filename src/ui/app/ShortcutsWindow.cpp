#include "ui/app/ShortcutsWindow.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace mirtex {

ShortcutsWindow::ShortcutsWindow(QMenuBar *menuBar, QWidget *parent)
    : QDialog(parent)
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
    std::function<void(QMenu *, const QString &)> walk = [&](QMenu *menu, const QString &path) {
        for (QAction *action : menu->actions()) {
            if (action->menu()) {
                walk(action->menu(), path + QStringLiteral(" › ") + action->text().remove(u'&'));
                continue;
            }
            if (action->shortcuts().isEmpty())
                continue;
            QStringList keys;
            for (const QKeySequence &key : action->shortcuts())
                keys.append(key.toString(QKeySequence::NativeText));
            auto *item = new QTreeWidgetItem(m_list);
            item->setText(0, path + QStringLiteral(" › ") + action->text().remove(u'&'));
            item->setText(1, keys.join(QStringLiteral(" / ")));
        }
    };
    for (QAction *top : m_menuBar->actions()) {
        if (top->menu())
            walk(top->menu(), top->text().remove(u'&'));
    }
}

} // namespace mirtex

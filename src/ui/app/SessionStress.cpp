#include "ui/app/SessionStress.h"

#include "ui/app/AppDelegate.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QTimer>

namespace mirtex::SessionStress {

namespace {

void appendLine(DocumentTab *tab)
{
    EditorPane *pane = tab->editor()->primaryPane();
    const long lines = pane->SendScintilla(QsciScintillaBase::SCI_GETLINECOUNT);
    const QByteArray line = QByteArray("riga ")
                            + QByteArray::number(qlonglong(lines)).rightJustified(6, '0') + ' '
                            + QByteArray(2000, 'x') + '\n';
    pane->SendScintilla(QsciScintillaBase::SCI_APPENDTEXT, line.size(), line.constData());
}

} // namespace

QString fileFromEnvironment()
{
    return qEnvironmentVariable("MIRTEX_SESSION_STRESS");
}

void start(AppDelegate &delegate, DocumentFlows &flows, const QString &file)
{
    MainWindow &window = flows.window();
    DocumentTab *fileTab = flows.openPath(file);
    DocumentTab *untitled = nullptr;
    for (DocumentTab *tab : window.documents()) {
        if (!tab->document().path() && tab != fileTab)
            untitled = tab;
    }
    if (!untitled)
        untitled = window.newDocument();
    if (!fileTab)
        return;
    auto *timer = new QTimer(&window);
    timer->setInterval(2);
    QObject::connect(timer, &QTimer::timeout, &window, [&delegate, &flows, fileTab, untitled]() {
        static int step = 0;
        ++step;
        appendLine(untitled);
        appendLine(fileTab);
        if (step % 7 == 0)
            flows.save(fileTab);
        if (step % 3 == 0)
            delegate.tickSession();
    });
    timer->start();
}

} // namespace mirtex::SessionStress

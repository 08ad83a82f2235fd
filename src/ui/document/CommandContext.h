// What commands act on: the current tab, its editor and active pane, the window and the document
// flows. It tells when what the commands' enabled states depend on may have changed: another
// tab, a tab opened or closed, the current tab's state (read-only, language, encoding, line ending)
// or its selection becoming empty or not.
#pragma once

#include <QMetaObject>
#include <QObject>
#include <QPoint>
#include <QString>

namespace mirtex {

class DocumentFlows;
class DocumentTab;
class EditorPane;
class EditorView;
class MainWindow;
class Preferences;

class CommandContext : public QObject
{
    Q_OBJECT

public:
    CommandContext(MainWindow &window, DocumentFlows &flows);

    MainWindow &window() const { return m_window; }

    DocumentFlows &flows() const { return m_flows; }

    Preferences &preferences() const;

    // Null when no document is open.
    DocumentTab *currentTab() const;
    EditorView *currentEditor() const;
    EditorPane *activePane() const;

    bool hasDocument() const { return currentTab() != nullptr; }

    // A document is open and not read-only.
    bool isEditable() const;
    bool hasSelection() const;

Q_SIGNALS:
    void changed();
    // The user asked for the context menu of the current tab's editor.
    void editorContextMenuRequested(mirtex::EditorPane *pane, QPoint globalPos);

private:
    void follow(DocumentTab *tab);
    void onStateChanged();
    void onCaretMoved();

    MainWindow &m_window;
    DocumentFlows &m_flows;
    QMetaObject::Connection m_stateConnection;
    QMetaObject::Connection m_caretConnection;
    QMetaObject::Connection m_menuConnection;
    // What commands depend on, as last told; every edit changes the tab's state, but rarely this.
    bool m_hadSelection = false;
    bool m_wasReadOnly = false;
    QString m_languageId;
    QString m_format; // encoding and line ending
};

} // namespace mirtex

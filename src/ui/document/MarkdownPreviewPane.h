// The preview beside (or instead of) a tab's editor: a bar with "ANTEPRIMA", the mode button,
// "Esporta in PDF…" and "Chiudi l'anteprima" above the web view, and the controller that keeps
// the page in step with the text, its scrolling and the zoom. Lives in the page's preview slot;
// removing it shows the editor again.
#pragma once

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

class QToolButton;

namespace mirtex {

class DocumentTab;
class EditorView;
class MarkdownPreviewController;
class Preferences;
class PreviewEngine;
class PreviewWebView;

class MarkdownPreviewPane : public QWidget
{
    Q_OBJECT

public:
    enum class Mode {
        split, // beside the editor
        only   // instead of it
    };

    MarkdownPreviewPane(DocumentTab &tab,
                        PreviewEngine &engine,
                        Preferences &prefs,
                        QWidget *parent = nullptr);
    ~MarkdownPreviewPane() override;

    Mode mode() const { return m_mode; }

    void setMode(Mode mode);

    MarkdownPreviewController &controller() const { return *m_controller; }

    PreviewWebView &view() const { return *m_view; }

    // The bar's buttons.
    std::function<void()> onExportPdf;
    std::function<void()> onClose;

private:
    void followEditor();
    void followPreview();

    QPointer<DocumentTab> m_tab;
    QPointer<EditorView> m_editor;
    std::unique_ptr<PreviewWebView> m_view;
    MarkdownPreviewController *m_controller;
    QToolButton *m_modeButton;
    Mode m_mode = Mode::split;
    QTimer m_followTimer;
    // Scrolling that one side caused in the other is not sent back.
    qint64 m_editorScrolledByPreviewUntil = 0;
    qint64 m_previewScrolledByEditorUntil = 0;
};

} // namespace mirtex

// Open documents are searched and changed in tab order; tabs not loaded yet are loaded first
// (they are open documents to the user), and the tab that was current stays current.
#include "ui/search/SearchResultCommands.h"

#include "core/search/FindAll.h"
#include "core/search/FindModel.h"
#include "ui/commands/Beep.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/document/CommandContext.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorView.h"
#include "ui/search/SearchHitOpener.h"
#include "ui/search/SearchResultsPanel.h"

#include <QCoreApplication>
#include <QMenu>

namespace mirtex {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("SearchResultCommands", text);
}

// The open documents with their texts; the texts are kept here for the views to point into.
struct OpenDocuments
{
    QList<DocumentTab *> tabs;
    std::vector<QString> texts;
    std::vector<SearchedDocument> searched;
};

SearchedDocument searchedDocument(DocumentTab &tab, const QString &text)
{
    const Document &document = tab.document();
    return {document.displayName(),
            document.path(),
            document.id(),
            text,
            tab.editor()->selection(),
            document.isReadOnly()};
}

OpenDocuments openDocuments(MainWindow &window)
{
    OpenDocuments open;
    DocumentTab *current = window.currentDocument();
    for (QWidget *page : window.pagesInOrder())
        if (DocumentTab *tab = window.loadedTabForPage(page))
            open.tabs.append(tab);
    if (current && window.currentDocument() != current)
        window.selectDocument(current);
    open.texts.reserve(std::size_t(open.tabs.size()));
    for (DocumentTab *tab : open.tabs)
        open.texts.push_back(tab->editor()->text());
    for (qsizetype i = 0; i < open.tabs.size(); ++i)
        open.searched.push_back(searchedDocument(*open.tabs[i], open.texts[std::size_t(i)]));
    return open;
}

void show(FindModel &model, SearchResultsPanel &panel, FindAllResult result)
{
    model.setStatus(result.status);
    if (result.beep) {
        beep();
        return;
    }
    panel.addSet(std::move(result.set));
}

} // namespace

void SearchResultCommands::registerIn(CommandRegistry &registry,
                                      CommandContext &context,
                                      FindModel &model,
                                      SearchResultsPanel &panel)
{
    CommandContext *c = &context;
    FindModel *m = &model;
    SearchResultsPanel *p = &panel;
    const auto hasDocument = [c](const QVariant &) { return c->hasDocument(); };

    panel.onOpenHit = [c](const SearchFileResult &file, const SearchHit &hit) {
        if (!openSearchHit(c->flows(), file, hit))
            beep();
    };

    registry.add({QStringLiteral("findAllInDocument:"),
                  tr("Trova tutti nel documento"),
                  {},
                  [c, m, p](const QVariant &) {
                      DocumentTab *tab = c->currentTab();
                      if (!tab)
                          return;
                      const QString text = tab->editor()->text();
                      show(*m,
                           *p,
                           findAllInDocument(searchedDocument(*tab, text),
                                             m->fields().inSelection,
                                             m->options()));
                  },
                  hasDocument});
    registry.add({QStringLiteral("findAllInOpenDocuments:"),
                  tr("Trova tutti nei documenti aperti"),
                  {},
                  [c, m, p](const QVariant &) {
                      if (!c->hasDocument())
                          return;
                      const OpenDocuments open = openDocuments(c->window());
                      show(*m, *p, findAllInDocuments(open.searched, m->options()));
                  },
                  hasDocument});
    registry.add({QStringLiteral("replaceInOpenDocuments:"),
                  tr("Sostituisci in tutti i documenti aperti"),
                  {},
                  [c, m](const QVariant &) {
                      if (!c->hasDocument())
                          return;
                      const OpenDocuments open = openDocuments(c->window());
                      const DocumentsReplaceResult result
                          = replaceInDocuments(open.searched, m->options());
                      for (qsizetype i = 0; i < open.tabs.size(); ++i) {
                          const EditBatch &batch = result.batches[std::size_t(i)];
                          if (!batch.isEmpty())
                              open.tabs[i]->editor()->applyBatch(batch);
                      }
                      m->setStatus(result.status);
                      if (result.beep)
                          beep();
                  },
                  hasDocument});
    const auto step = [p](bool backward) {
        return [p, backward](const QVariant &) {
            if (!p->openAdjacentHit(backward))
                beep();
        };
    };
    registry.add({QStringLiteral("nextSearchResult:"),
                  tr("Risultato successivo"),
                  {QKeySequence(Qt::Key_F4)},
                  step(false)});
    registry.add({QStringLiteral("previousSearchResult:"),
                  tr("Risultato precedente"),
                  {QKeySequence(Qt::SHIFT | Qt::Key_F4)},
                  step(true)});
    registry.add({QStringLiteral("showSearchResults:"),
                  tr("Risultati della ricerca"),
                  {},
                  [p](const QVariant &) {
                      if (p->isPanelShown())
                          p->closePanel();
                      else
                          p->showPanel();
                  },
                  {},
                  [p](const QVariant &) { return p->isPanelShown(); }});
}

void SearchResultCommands::layOut(CommandRegistry &registry, QMenu *menu)
{
    menu->addSeparator();
    for (const char *name : {"findAllInDocument:",
                             "findAllInOpenDocuments:",
                             "replaceInOpenDocuments:",
                             "",
                             "nextSearchResult:",
                             "previousSearchResult:",
                             "showSearchResults:"}) {
        if (*name)
            menu->addAction(registry.action(QString::fromLatin1(name)));
        else
            menu->addSeparator();
    }
}

} // namespace mirtex

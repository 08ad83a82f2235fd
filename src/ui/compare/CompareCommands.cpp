#include "CompareCommands.h"

#include "core/app/DisplayPath.h"
#include "core/app/Preferences.h"
#include "core/document/Document.h"
#include "core/document/TextCodec.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/compare/CompareWindow.h"
#include "ui/dialogs/Questions.h"
#include "ui/document/CommandContext.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorView.h"

#include <QApplication>
#include <QClipboard>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QMenu>
#include <QMimeData>

namespace mirtex {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("CompareCommands", text);
}

// The left tab of a command: the one its menu was opened on (by its position among all tabs),
// or the current one; nullptr for a tab not loaded yet.
DocumentTab *tabAt(const CommandContext &context, const QVariant &argument)
{
    const QList<QWidget *> pages = context.window().pagesInOrder();
    const int index = argument.isValid() ? argument.toInt() : -1;
    if (index >= 0)
        return index < pages.size() ? context.window().tabForPage(pages[index]) : nullptr;
    return context.currentTab();
}

// A text from outside the editor, with its line breaks as the editor holds them.
QString withLineFeeds(QString text)
{
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(u'\r', u'\n');
    return text;
}

bool looksBinary(const QByteArray &bytes)
{
    // UTF-16 and UTF-32 texts carry a byte-order mark or are detected before this is asked.
    const QByteArrayView head
        = QByteArrayView(bytes).first(std::min<qsizetype>(bytes.size(), 8000));
    return head.contains('\0');
}

} // namespace

CompareSide CompareCommands::sideOf(DocumentTab &tab)
{
    const Document &document = tab.document();
    CompareSide side;
    side.title
        = document.path() ? DisplayPath::forDisplay(*document.path()) : document.displayName();
    side.patchName = document.displayName();
    side.editor = tab.editor();
    side.language = Language::byId(document.languageId());
    return side;
}

std::expected<CompareSide, QString> CompareCommands::sideOfFile(const QString &path)
{
    const QString name = QFileInfo(path).fileName();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::unexpected(
            tr("Impossibile leggere il file “%1”: %2").arg(name, file.errorString()));
    const QByteArray bytes = file.readAll();
    const bool hasByteOrderMark = bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF");
    if (!hasByteOrderMark && looksBinary(bytes))
        return std::unexpected(
            tr("Il file “%1” non è un testo: non si può confrontare.").arg(name));
    const auto decoded = TextCodec::decode(bytes, std::nullopt, LineEnding::lf);
    if (!decoded)
        return std::unexpected(tr("Il file “%1” non è un testo leggibile.").arg(name));
    CompareSide side;
    side.title = DisplayPath::forDisplay(path);
    side.patchName = name;
    side.text = decoded->text;
    side.language
        = Language::detect(path, QStringView(decoded->text).left(decoded->text.indexOf(u'\n')));
    return side;
}

CompareWindow *CompareCommands::open(CommandContext &context, CompareSide left, CompareSide right)
{
    const EditorColors colors
        = context.currentEditor() ? context.currentEditor()->colors() : EditorColors{};
    auto *window = new CompareWindow(context.preferences(),
                                     context.flows().questions(),
                                     std::move(left),
                                     std::move(right),
                                     colors,
                                     &context.window());
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->resize(context.window().size() * 0.9);
    window->show();
    return window;
}

void CompareCommands::registerIn(CommandRegistry &registry, CommandContext &context)
{
    CommandContext *c = &context;
    auto hasTab = [c](const QVariant &argument) {
        return tabAt(*c, argument.toList().value(0, argument)) != nullptr;
    };

    // Argument: the other tab's index, or [left tab index, right tab index].
    registry.add({QStringLiteral("compareWithTab:"),
                  tr("Confronta con la scheda"),
                  {},
                  [c](const QVariant &argument) {
                      const QVariantList pair = argument.toList();
                      DocumentTab *left = pair.size() == 2 ? tabAt(*c, pair[0]) : c->currentTab();
                      // The other tab may not be loaded yet: it loads to be compared.
                      const QList<QWidget *> pages = c->window().pagesInOrder();
                      const int other = pair.size() == 2 ? pair[1].toInt() : argument.toInt();
                      if (!left || other < 0 || other >= pages.size()
                          || pages[other] == left->page())
                          return QApplication::beep();
                      DocumentTab *right = c->window().loadedTabForPage(pages[other]);
                      if (!right)
                          return QApplication::beep();
                      open(*c, sideOf(*left), sideOf(*right));
                  },
                  [c](const QVariant &) { return c->window().pagesInOrder().size() > 1; }});

    registry.add({QStringLiteral("compareWithSavedFile:"),
                  tr("Confronta con il file salvato"),
                  {},
                  [c](const QVariant &argument) {
                      DocumentTab *tab = tabAt(*c, argument);
                      if (!tab || !tab->document().path())
                          return QApplication::beep();
                      const QString path = *tab->document().path();
                      auto saved = sideOfFile(path);
                      if (!saved) {
                          c->flows().questions().inform(
                              &c->window(),
                              tr("Non si può confrontare con il file salvato."),
                              saved.error());
                          return;
                      }
                      saved->title = tr("%1 (salvato)").arg(saved->title);
                      saved->language = Language::byId(tab->document().languageId());
                      open(*c, std::move(*saved), sideOf(*tab));
                  },
                  [c](const QVariant &argument) {
                      const DocumentTab *tab = tabAt(*c, argument);
                      return tab && tab->document().path();
                  }});

    registry.add({QStringLiteral("compareWithClipboard:"),
                  tr("Confronta con gli appunti"),
                  {},
                  [c](const QVariant &argument) {
                      DocumentTab *tab = tabAt(*c, argument);
                      if (!tab)
                          return QApplication::beep();
                      const QMimeData *data = QApplication::clipboard()->mimeData();
                      Questions &questions = c->flows().questions();
                      const QString text = data && data->hasText() ? data->text() : QString();
                      if (text.isEmpty()) {
                          const bool image = data && data->hasImage();
                          questions.inform(&c->window(),
                                           image ? tr("Gli appunti contengono un'immagine.")
                                                 : tr("Gli appunti sono vuoti."),
                                           tr("Per confrontare, copia negli appunti un testo."));
                          return;
                      }
                      CompareSide clipboard;
                      clipboard.title = tr("Appunti");
                      clipboard.patchName = tr("appunti");
                      clipboard.text = withLineFeeds(text);
                      clipboard.language = Language::byId(tab->document().languageId());
                      open(*c, sideOf(*tab), std::move(clipboard));
                  },
                  hasTab});

    registry.add(
        {QStringLiteral("compareFiles:"), tr("Confronta due file…"), {}, [c](const QVariant &) {
             Questions &questions = c->flows().questions();
             QStringList paths = questions.chooseFilesToOpen(&c->window(), QString());
             if (paths.size() == 1)
                 paths += questions.chooseFilesToOpen(&c->window(), QFileInfo(paths[0]).path());
             if (paths.size() < 2)
                 return;
             auto left = sideOfFile(paths[0]);
             auto right = sideOfFile(paths[1]);
             if (!left || !right) {
                 questions.inform(&c->window(),
                                  tr("Non si possono confrontare i file."),
                                  left ? right.error() : left.error());
                 return;
             }
             open(*c, std::move(*left), std::move(*right));
         }});
}

QMenu *CompareCommands::addCompareMenu(CommandRegistry &registry,
                                       CommandContext &context,
                                       QMenu *menu,
                                       int tabIndex)
{
    QMenu *compare = menu->addMenu(tr("Confronta"));
    compare->setObjectName(QStringLiteral("mirtex.menu.compare"));
    CommandContext *c = &context;
    CommandRegistry *r = &registry;
    // Rebuilt each time it opens: the list of the other tabs changes.
    QObject::connect(compare, &QMenu::aboutToShow, compare, [c, r, compare, tabIndex]() {
        // The submenu of the last opening is a child widget that clear() leaves behind.
        qDeleteAll(compare->findChildren<QMenu *>(QString(), Qt::FindDirectChildrenOnly));
        compare->clear();
        // Every tab, loaded or not, by its position.
        const QList<QWidget *> pages = c->window().pagesInOrder();
        const int left = tabIndex >= 0 ? tabIndex : c->window().currentIndex();
        QMenu *withTab = compare->addMenu(tr("Confronta con la scheda"));
        withTab->setObjectName(QStringLiteral("mirtex.menu.compareWithTab"));
        for (int i = 0; i < pages.size(); ++i) {
            if (i == left)
                continue;
            const QVariant argument(QVariantList{left, i});
            if (QAction *action = r->makeAction(QStringLiteral("compareWithTab:"),
                                                argument,
                                                c->window().pageName(pages[i]),
                                                withTab))
                withTab->addAction(action);
        }
        withTab->setEnabled(!withTab->isEmpty());
        const QVariant argument = tabIndex >= 0 ? QVariant(tabIndex) : QVariant();
        for (const char *name :
             {"compareWithSavedFile:", "compareWithClipboard:", "compareFiles:"}) {
            if (QAction *action = r->makeAction(QLatin1String(name), argument, QString(), compare))
                compare->addAction(action);
        }
    });
    // Some desktops draw an empty submenu as disabled; give it its entries at once too.
    Q_EMIT compare->aboutToShow();
    return compare;
}

} // namespace mirtex

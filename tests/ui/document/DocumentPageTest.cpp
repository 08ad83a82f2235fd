// The tab page: the editor in a column with its places for the bars and the preview.
#include "ui/document/DocumentPage.h"

#include "core/app/Preferences.h"
#include "ui/editor/EditorView.h"

#include <QCoreApplication>
#include <QLabel>
#include <QPointer>
#include <QSplitter>
#include <QTemporaryDir>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace mirtex;

TEST(DocumentPageTest, HostsTheEditorWithBarsAroundAndThePreviewBeside)
{
    QTemporaryDir dir;
    Preferences prefs(dir.filePath(QStringLiteral("settings.conf")));
    auto *editor = new EditorView(prefs);
    DocumentPage page(editor);
    page.resize(600, 400);
    page.show();
    EXPECT_EQ(page.editor(), editor);
    EXPECT_TRUE(page.isAncestorOf(editor));
    EXPECT_EQ(page.focusProxy(), editor);

    auto *info = new QLabel(QStringLiteral("info"));
    auto *find = new QLabel(QStringLiteral("trova"));
    page.setFindBar(find, DocumentPage::FindBarPlace::above);
    page.setInfoBar(info);
    auto *preview = new QLabel(QStringLiteral("anteprima"));
    page.setPreview(preview);
    QCoreApplication::processEvents(); // widgets added to a shown parent show themselves then
    page.layout()->activate();
    // Top to bottom: info bar, find bar, editor; the preview right of the editor.
    EXPECT_LT(info->geometry().bottom(), find->geometry().top());
    EXPECT_LT(find->mapTo(&page, QPoint(0, find->height())).y(),
              editor->mapTo(&page, QPoint(0, 1)).y());
    EXPECT_GT(preview->mapTo(&page, QPoint()).x(), editor->mapTo(&page, QPoint()).x());

    QPointer<QLabel> oldFind = find;
    auto *below = new QLabel(QStringLiteral("sotto"));
    page.setFindBar(below, DocumentPage::FindBarPlace::below);
    EXPECT_TRUE(oldFind.isNull()) << "the page owns what it shows";
    QCoreApplication::processEvents();
    page.layout()->activate();
    EXPECT_GT(below->mapTo(&page, QPoint()).y(), editor->mapTo(&page, QPoint(0, 1)).y());
    page.setInfoBar(nullptr);
    EXPECT_EQ(page.infoBar(), nullptr);
    EXPECT_EQ(page.findBar(), below);
}

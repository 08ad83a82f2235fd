// A long session comes back with only the selected tab loaded; the others load when first shown
// and, until then, are written back exactly as they were read.
#include "core/app/Preferences.h"
#include "ui/app/WindowSession.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/document/PendingTab.h"
#include "ui/editor/EditorView.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace mirtex;

namespace {

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

// Ids are UUIDs: a tab keeps its entry's id only then.
QString idOf(int i)
{
    return QStringLiteral("00000000-0000-4000-8000-%1").arg(i, 12, 10, QChar(u'0'));
}

} // namespace

TEST(PendingTabs, UnshownTabsAreCarriedOverAndLoadWhenShown)
{
    QTemporaryDir dir;
    const QString state = dir.filePath(QStringLiteral("state"));
    ASSERT_TRUE(QDir().mkpath(state + QStringLiteral("/backup")));
    constexpr int kTabs = int(WindowSession::kLoadedAtOnce) + 5;
    QJsonArray entries;
    for (int i = 0; i < kTabs; ++i) {
        const QString path = dir.filePath(QStringLiteral("f%1.txt").arg(i));
        writeFile(path, "file " + QByteArray::number(i) + "\n");
        const QString id = idOf(i);
        const bool dirty = i % 10 == 0;
        if (dirty)
            writeFile(state + QStringLiteral("/backup/") + id + QStringLiteral(".txt"),
                      "modificato " + QByteArray::number(i));
        entries.append(QJsonObject{{"id", id}, {"path", path}, {"hasBackup", dirty}});
    }
    const QJsonObject saved{{"entries", entries}, {"selected", 3}};
    writeFile(state + QStringLiteral("/session.json"), QJsonDocument(saved).toJson());

    Preferences prefs(dir.filePath(QStringLiteral("prefs.conf")));
    ScriptedQuestions questions;
    MainWindow window(prefs);
    DocumentFlows flows(window, questions);
    WindowSession session(prefs, state);
    ASSERT_TRUE(session.restore(flows));
    QCoreApplication::processEvents();
    ASSERT_EQ(window.pagesInOrder().size(), kTabs);
    ASSERT_EQ(window.documents().size(), 1) << "only the selected tab is loaded";
    EXPECT_EQ(window.currentIndex(), 3);
    EXPECT_EQ(window.currentDocument()->editor()->utf8Text(), "file 3\n");

    // Written back in order, every backup kept although no loaded tab names it.
    ASSERT_FALSE(session.write(window));
    const auto written = QJsonDocument::fromJson(contents(state + QStringLiteral("/session.json")));
    const QJsonArray back = written[QStringLiteral("entries")].toArray();
    ASSERT_EQ(back.size(), kTabs);
    for (int i = 0; i < kTabs; ++i)
        EXPECT_EQ(back[i][QStringLiteral("id")].toString(), idOf(i));
    EXPECT_EQ(contents(state + QStringLiteral("/backup/") + idOf(20) + QStringLiteral(".txt")),
              "modificato 20");

    // Shown, a tab loads in its place with its unsaved text; opening its file again finds it.
    window.selectIndex(20);
    QCoreApplication::processEvents();
    ASSERT_EQ(window.documents().size(), 2);
    DocumentTab *shown = window.currentDocument();
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(window.currentIndex(), 20);
    EXPECT_EQ(shown->editor()->utf8Text(), "modificato 20");
    EXPECT_TRUE(shown->document().isDirty());
    DocumentTab *reopened = flows.openPath(dir.filePath(QStringLiteral("f7.txt")));
    ASSERT_NE(reopened, nullptr);
    EXPECT_EQ(window.pagesInOrder().size(), kTabs) << "no second tab for a pending tab's file";
    EXPECT_EQ(window.pagesInOrder().indexOf(reopened->page()), 7);
}

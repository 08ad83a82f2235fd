// Session writing and loading with 50 tabs: the periodic tick when nothing changed, the tick
// after edits in 10 large documents, and reading the session back with its backups.
#include "core/document/SessionStore.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace mirtex;

namespace {

constexpr int kTabs = 50;
constexpr int kDirtyTabs = 10;
constexpr qsizetype kDirtyTextSize = 1 << 20; // UTF-16 units, about 1 MB each

// A temporary state folder for the whole benchmark, named by XDG_STATE_HOME as at run time.
struct StateFolder
{
    StateFolder()
    {
        previous = qgetenv("XDG_STATE_HOME");
        qputenv("XDG_STATE_HOME", home.path().toUtf8());
    }

    ~StateFolder() { qputenv("XDG_STATE_HOME", previous); }

    QTemporaryDir home;
    QByteArray previous;
};

QString sourceLikeText(qsizetype size, int seed)
{
    QString line
        = QStringLiteral("    let value%1 = compute(alpha, beta, \"città\"); // note\n").arg(seed);
    QString text;
    text.reserve(size + line.size());
    while (text.size() < size)
        text += line;
    text.truncate(size);
    return text;
}

// What the window hands the store each tick: entries of every tab, the dirty ones with text.
struct Tabs
{
    Tabs()
    {
        for (int i = 0; i < kTabs; ++i) {
            SessionDocument document;
            document.entry.id
                = QStringLiteral("6F1C2A4E-0000-4000-8000-%1").arg(i, 12, 10, QChar(u'0'));
            document.entry.path
                = QStringLiteral("/home/anna/progetti/mirtex/src/file%1.cpp").arg(i);
            document.entry.language = QStringLiteral("cpp");
            document.entry.selection = {i * 10, 3};
            document.entry.scroll = i;
            document.entry.bookmarks = {1, 5, 20};
            if (i < kDirtyTabs) {
                texts.append(sourceLikeText(kDirtyTextSize, i).toUtf8());
                document.needsBackup = true;
                document.changeCount = 1;
                document.utf8Text = [this, i] { return texts[i]; };
            }
            documents.append(document);
        }
    }

    void applyWritten(const SessionWriteResult &result)
    {
        for (SessionDocument &document : documents) {
            if (const auto it = result.backedUpChangeCounts.find(document.entry.id);
                it != result.backedUpChangeCounts.end())
                document.backedUpChangeCount = *it;
        }
    }

    void edit()
    {
        for (int i = 0; i < kDirtyTabs; ++i)
            ++documents[i].changeCount;
    }

    QList<QByteArray> texts; // as the editor holds them
    QList<SessionDocument> documents;
};

void BM_SessionTickIdle(benchmark::State &state)
{
    StateFolder folder;
    SessionStore store;
    Tabs tabs;
    tabs.applyWritten(store.write(tabs.documents, 3, {QStringLiteral("/home/anna")}, true));
    for (auto _ : state) {
        const QList<SessionDocument> documents = tabs.documents; // as rebuilt each tick
        benchmark::DoNotOptimize(store.write(documents, 3, {QStringLiteral("/home/anna")}, true));
    }
}

BENCHMARK(BM_SessionTickIdle)->Unit(benchmark::kMillisecond);

void BM_SessionTickTenDirty(benchmark::State &state)
{
    StateFolder folder;
    SessionStore store;
    Tabs tabs;
    for (auto _ : state) {
        tabs.edit();
        tabs.applyWritten(store.write(tabs.documents, 3, {QStringLiteral("/home/anna")}, true));
    }
}

BENCHMARK(BM_SessionTickTenDirty)->Unit(benchmark::kMillisecond);

void BM_SessionLoad(benchmark::State &state)
{
    StateFolder folder;
    {
        SessionStore store;
        Tabs tabs;
        store.write(tabs.documents, 3, {QStringLiteral("/home/anna")}, true);
    }
    for (auto _ : state) {
        SessionStore store;
        const auto session = store.load();
        qsizetype characters = 0;
        for (const SessionState::Entry &entry : session->entries) {
            if (entry.hasBackup)
                characters += store.readBackup(entry.id)->size();
        }
        benchmark::DoNotOptimize(characters);
    }
}

BENCHMARK(BM_SessionLoad)->Unit(benchmark::kMillisecond);

} // namespace

// The session tick with one large dirty document (a 100 MB text just typed into): what the tick
// costs the thread that calls the store, backup of the whole text included.
#include "core/document/SessionStore.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace mirtex;

namespace {

constexpr qsizetype kLargeTextBytes = 100'000'000;

// A temporary state folder, named by XDG_STATE_HOME as at run time.
struct LargeStateFolder
{
    LargeStateFolder()
    {
        previous = qgetenv("XDG_STATE_HOME");
        qputenv("XDG_STATE_HOME", home.path().toUtf8());
    }

    ~LargeStateFolder() { qputenv("XDG_STATE_HOME", previous); }

    QTemporaryDir home;
    QByteArray previous;
};

void BM_SessionTickOneLargeDirty(benchmark::State &state)
{
    LargeStateFolder folder;
    const QByteArray line = "2026-11-22 14:03:07.512 [INFO] worker-3: richiesta completata, "
                            "città=Bologna durata=37ms id=8812\n";
    QByteArray text;
    text.reserve(kLargeTextBytes + line.size());
    while (text.size() < kLargeTextBytes)
        text += line;

    SessionDocument document;
    document.entry.id = QStringLiteral("6F1C2A4E-0000-4000-8000-000000000001");
    document.entry.path = QStringLiteral("/var/log/servizio/grande.log");
    document.needsBackup = true;
    document.utf8Text = [&text] { return text; };

    SessionStore store;
    for (auto _ : state) {
        ++document.changeCount; // a keystroke since the last tick
        const SessionWriteResult result
            = store.write({document}, 0, {QStringLiteral("/home/anna")}, true);
        if (!result.succeeded) {
            state.SkipWithError("the session was not written");
            break;
        }
        if (const auto it = result.backedUpChangeCounts.find(document.entry.id);
            it != result.backedUpChangeCounts.end())
            document.backedUpChangeCount = *it;
    }
    state.SetBytesProcessed(state.iterations() * text.size());
}

BENCHMARK(BM_SessionTickOneLargeDirty)->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace

// Whether the editor's text is back to the saved text, decided from the edited middle only,
// agrees with a full comparison on random edits, in small texts and in large ones (whose edits
// are seen before they happen).
#include "core/app/Preferences.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <Qsci/qsciscintillabase.h>

#include <gtest/gtest.h>

namespace mirtex {
namespace {

using Sci = QsciScintillaBase;

void runRandomEdits(qsizetype size, int seed)
{
    QTemporaryDir dir;
    Preferences prefs(dir.path() + QStringLiteral("/p.conf"));
    EditorView editor(prefs);
    const QByteArray saved = QByteArray("riga di testo àè\n").repeated(size / 18 + 1);
    editor.loadText(saved);
    QByteArray reference = saved;
    QRandomGenerator random(seed);
    int equalSeen = 0;
    for (int step = 0; step < 300; ++step) {
        auto *sci = editor.primaryPane();
        const long length = sci->SendScintilla(Sci::SCI_GETLENGTH);
        // Edits near a few hot spots, so that the text often comes back to the saved one.
        const long spot = std::min<long>(
            length, std::array{0L, length / 2, length}[random.bounded(3)] + random.bounded(8));
        const int action = random.bounded(5);
        if (action == 0 && step % 7 == 0) {
            reference = editor.savedUtf8Text(); // a save
        } else if (action < 3) {
            const char *piece = std::array{"a", "riga", "\n", "è"}[random.bounded(4)];
            sci->SendScintilla(Sci::SCI_INSERTTEXT, static_cast<unsigned long>(spot), piece);
        } else if (spot < length) {
            sci->SendScintilla(Sci::SCI_DELETERANGE, static_cast<unsigned long>(spot), 1L);
            // A lone continuation byte left behind makes no difference to the comparison.
        } else {
            sci->SendScintilla(Sci::SCI_UNDO);
        }
        editor.flushPendingEdit();
        const bool full = editor.utf8Text() == reference;
        ASSERT_EQ(editor.utf8Equals(reference), full) << "step " << step;
        equalSeen += full;
    }
    EXPECT_GT(equalSeen, 0);
}

TEST(SavedTextComparison, AgreesWithAFullComparisonInSmallTexts)
{
    runRandomEdits(2'000, 1);
}

TEST(SavedTextComparison, AgreesWithAFullComparisonInLargeTexts)
{
    runRandomEdits(3'000'000, 2);
}

} // namespace
} // namespace mirtex

// A text that starts with U+FEFF (a file with two marks, or one pasted) keeps that character in
// every UTF-16 view of the editor, so offsets stay aligned with Scintilla's bytes.
#include "core/app/Preferences.h"
#include "ui/editor/EditorView.h"
#include "ui/editor/TextPositions.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace mirtex {
namespace {

TEST(LeadingMark, StaysInTheTextAndItsParts)
{
    QTemporaryDir dir;
    Preferences prefs(dir.path() + QStringLiteral("/p.conf"));
    EditorView editor(prefs);
    editor.loadText(QByteArray("\xEF\xBB\xBF"
                               "ab\ncd"));
    EXPECT_EQ(editor.text(), QStringLiteral("\uFEFFab\ncd"));
    EXPECT_EQ(editor.textLength(), 6);
    EXPECT_EQ(editor.positions().text(TextRange{0, 3}), QStringLiteral("\uFEFFab"));
}

} // namespace
} // namespace mirtex

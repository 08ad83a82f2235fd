// Any query and replacement: the escape readers only ever shorten what they read and leave text
// without a backslash alone, a typed query always finds itself as a literal, and replace all over
// a text made of both either fails whole or yields one edit that undoes exactly.
#include "FuzzMain.h"
#include "core/search/SearchEngine.h"
#include "core/search/SearchEscapes.h"

#include <cstdlib>
#include <cstring>

using namespace mirtex;

namespace {

// Raw UTF-16 units, so lone surrogates and NUL reach the readers too.
QString unitsOf(const uint8_t *data, size_t size)
{
    QString text(qsizetype(size / 2), Qt::Uninitialized);
    std::memcpy(text.data(), data, size / 2 * 2);
    return text;
}

void checkReader(const QString &typed, const QString &read)
{
    if (read.size() > typed.size())
        std::abort();
    if (!typed.contains(u'\\') && read != typed)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    ensureApplication();
    if (size < 1)
        return 0;
    const uint8_t flags = data[0];
    const QString input = unitsOf(data + 1, size - 1);
    const qsizetype split = input.indexOf(QChar(u'\u00A7')); // "§" parts query and replacement
    const QString query = split < 0 ? input : input.first(split);
    const QString replacement = split < 0 ? QString() : input.sliced(split + 1);

    checkReader(query, unescapeExtended(query));
    checkReader(replacement, unescapeExtended(replacement));
    checkReader(replacement, regexTemplate(replacement));

    constexpr int kSteps = 20; // keeps catastrophic patterns cheap
    if (!query.isEmpty()) {
        SearchOptions literal;
        literal.query = query;
        literal.matchCase = true;
        const CountResult found = countMatches(query, {}, false, literal, kSteps);
        if (found.count < 1 && !found.beep)
            std::abort();
    }

    SearchOptions options;
    options.query = query;
    options.replacement = replacement;
    options.mode = kSearchModes[flags % 3];
    options.matchCase = flags & 4;
    options.wholeWord = flags & 8;
    options.dotMatchesNewline = flags & 16;
    const QString text = query + u'\n' + replacement + u'\n' + query;
    const ReplaceAllResult replaced = replaceAll(text, {}, false, false, options, kSteps);
    if (replaced.batch.isEmpty())
        return 0;
    if (!isWellFormed(replaced.batch, text.size()) || replaced.batch.replacements.size() != 1)
        std::abort();
    const QString after = applyEditBatch(text, replaced.batch);
    const TextReplacement &done = replaced.batch.replacements.front();
    EditBatch undo;
    undo.replacements.push_back({{done.range.location, done.text.size()},
                                 text.sliced(done.range.location, done.range.length)});
    if (applyEditBatch(after, undo) != text)
        std::abort();
    return 0;
}

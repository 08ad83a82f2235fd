// Any text in any language: the tokens are valid, and agree with the joined expression they are
// a faster way of running.
#include "FuzzMain.h"
#include "core/languages/Language.h"
#include "core/languages/Tokenizer.h"

#include <cstdlib>

using namespace mirtex;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    ensureApplication();
    if (size == 0)
        return 0;
    const QList<LanguagePtr> &languages = Language::all();
    const Language &language = *languages[data[0] % languages.size()];
    const QString text
        = QString::fromUtf8(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));
    const QList<Token> tokens = tokenize(language, text);
    if (!tokensAreValid(tokens, text.size()))
        std::abort();
    if (tokens != tokenizeWithJoinedExpression(language, text))
        std::abort();
    return 0;
}

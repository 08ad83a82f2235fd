// A language of the built-in table: detection data, comment tokens and the joined highlighting
// expression. Records are immutable and shared; the table is built once and lives for the process.
#pragma once

#include "core/languages/LanguageRule.h"
#include "core/languages/WordListScanner.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <unicode/uversion.h>

#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

U_NAMESPACE_BEGIN
class RegexPattern;
U_NAMESPACE_END

namespace mirtex {

class Language;
using LanguagePtr = std::shared_ptr<const Language>;

// Everything that defines a language; the table is written as a list of these.
struct LanguageDefinition
{
    QString id = {};
    const char *name = "";       // source text, translated in context "Language" when shown
    QStringList extensions = {}; // lowercase, without the dot
    QStringList fileNames = {};  // compared lowercased
    std::optional<QString> lineComment = {};
    std::optional<std::pair<QString, QString>> blockComment = {};
    QList<LanguageRule> rules = {}; // priority order
};

class Language
{
public:
    explicit Language(LanguageDefinition definition);
    ~Language();
    Language(const Language &) = delete;
    Language &operator=(const Language &) = delete;

    const QString &id() const { return m_def.id; }

    // Display name in the current interface language.
    QString name() const;

    const QSet<QString> &extensions() const { return m_extensions; }

    const QSet<QString> &fileNames() const { return m_fileNames; }

    const std::optional<QString> &lineComment() const { return m_def.lineComment; }

    const std::optional<std::pair<QString, QString>> &blockComment() const
    {
        return m_def.blockComment;
    }

    const QList<LanguageRule> &rules() const { return m_def.rules; }

    // Kind of capture group i + 1 of the joined expression at index i.
    QList<TokenKind> ruleKinds() const;

    // Words of at least three letters, digits or "_", from every word rule, unique and sorted.
    const QStringList &completionWords() const { return m_completionWords; }

    // All rules joined into one expression, compiled on first use (thread-safe) and kept.
    // nullptr when the language has no rules or the joined expression does not compile (the
    // failure is logged once). The pattern is shareable across threads; matchers are not.
    const icu::RegexPattern *regex() const;

    bool hasRegex() const { return regex() != nullptr; }

    // How the tokenizer finds each rule's matches, exactly those of its alternative in regex():
    // its own compiled pattern, or a word-run lookup for a plain word list. Empty when regex() is
    // null. Scanning rule by rule keeps ICU's first-character filter, which one large alternation
    // loses.
    struct RuleScanner
    {
        std::unique_ptr<icu::RegexPattern> pattern;
        std::unique_ptr<WordListScanner> words; // set instead of pattern for plain word lists
    };

    const std::vector<RuleScanner> &ruleScanners() const;

    // The table, in menu order; built on first access, thread-safe.
    static const QList<LanguagePtr> &all();
    // The plain-text language: first of `all`, and the result of every failed lookup.
    static LanguagePtr text();
    static LanguagePtr byId(QStringView id);
    // The language of a file: by file name, extension, dot-file name, then first line.
    // pathOrUrl is a local path or a URL; only its last path component is used.
    static LanguagePtr detect(const std::optional<QString> &pathOrUrl, QStringView firstLine);

private:
    LanguageDefinition m_def;
    QSet<QString> m_extensions;
    QSet<QString> m_fileNames;
    QStringList m_completionWords;
    mutable std::once_flag m_regexOnce;
    mutable std::unique_ptr<icu::RegexPattern> m_regex;
    mutable std::vector<RuleScanner> m_ruleScanners;
};

} // namespace mirtex

// The language records, their lazily compiled expressions, lookup and detection of a file's
// language.
#include "core/languages/Language.h"

#include "core/languages/LanguageTable.h"

#include <QCoreApplication>
#include <QHash>
#include <QUrl>
#include <QtDebug>

#include <unicode/regex.h>

#include <algorithm>
#include <array>

namespace mirtex {

namespace {

QString escapedForRegex(QStringView word)
{
    QString escaped;
    escaped.reserve(word.size() * 2);
    for (const QChar ch : word) {
        if (!(ch.isLetterOrNumber() || ch == u'_'))
            escaped += u'\\';
        escaped += ch;
    }
    return escaped;
}

bool isCompletionWord(const QString &word)
{
    return word.size() >= 3 && std::all_of(word.cbegin(), word.cend(), [](QChar ch) {
               return ch.isLetterOrNumber() || ch == u'_';
           });
}

QSet<QString> lowercasedSet(const QStringList &list)
{
    QSet<QString> set;
    for (const QString &item : list)
        set.insert(item.toLower());
    return set;
}

QStringView trimmedBlanksAndTabs(QStringView line)
{
    const auto isBlank = [](QChar ch) { return ch == u' ' || ch == u'\t'; };
    while (!line.isEmpty() && isBlank(line.front()))
        line = line.sliced(1);
    while (!line.isEmpty() && isBlank(line.back()))
        line.chop(1);
    return line;
}

struct Interpreter
{
    const char16_t *name;
    const char16_t *languageId;
};

constexpr std::array<Interpreter, 13> kInterpreters{{
    {u"python", u"python"},
    {u"node", u"javascript"},
    {u"ruby", u"ruby"},
    {u"perl", u"perl"},
    {u"php", u"php"},
    {u"pwsh", u"powershell"},
    {u"bash", u"shell"},
    {u"zsh", u"shell"},
    {u"/sh", u"shell"},
    {u"ksh", u"shell"},
    {u"fish", u"shell"},
    {u"lua", u"lua"},
    {u"swift", u"swift"},
}};

constexpr std::array<Interpreter, 6> kFirstLinePrefixes{{
    {u"<?xml", u"xml"},
    {u"<!doctype html", u"html"},
    {u"<html", u"html"},
    {u"<?php", u"php"},
    {u"diff --git", u"diff"},
    {u"--- ", u"diff"},
}};

std::unique_ptr<icu::RegexPattern> compiled(const QString &source, UErrorCode &status, int &offset)
{
    UParseError parseError{};
    std::unique_ptr<icu::RegexPattern> pattern(icu::RegexPattern::compile(
        icu::UnicodeString(reinterpret_cast<const UChar *>(source.utf16()),
                           static_cast<int32_t>(source.size())),
        UREGEX_MULTILINE,
        parseError,
        status));
    offset = parseError.offset;
    return U_SUCCESS(status) ? std::move(pattern) : nullptr;
}

LanguagePtr sniffFirstLine(QStringView firstLine)
{
    const QStringView line = trimmedBlanksAndTabs(firstLine);
    if (line.startsWith(u"#!")) {
        for (const Interpreter &entry : kInterpreters) {
            if (line.contains(QStringView(entry.name)))
                return Language::byId(QStringView(entry.languageId));
        }
        return Language::byId(u"shell");
    }
    const QString lowered = line.toString().toLower();
    for (const Interpreter &entry : kFirstLinePrefixes) {
        if (lowered.startsWith(QStringView(entry.name)))
            return Language::byId(QStringView(entry.languageId));
    }
    return Language::text();
}

QString lastPathComponent(const QString &pathOrUrl)
{
    QString path = pathOrUrl;
    if (pathOrUrl.contains(u"://") || pathOrUrl.startsWith(u"file:"))
        path = QUrl(pathOrUrl).path();
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return path.mid(path.lastIndexOf(u'/') + 1);
}

LanguagePtr firstWith(const QString &key, const QSet<QString> &(Language::*field)() const)
{
    for (const LanguagePtr &language : Language::all()) {
        if (((*language).*field)().contains(key))
            return language;
    }
    return nullptr;
}

} // namespace

LanguageRule LanguageRule::fromWords(TokenKind kind, QStringView words, bool caseInsensitive)
{
    LanguageRule rule{kind, {}, {}};
    QStringList escaped;
    for (const QStringView word : words.split(u' ', Qt::SkipEmptyParts)) {
        rule.words.append(word.toString());
        escaped.append(escapedForRegex(word));
    }
    rule.pattern = u"(?<![\\w$])(?:" + escaped.join(u'|') + u")(?![\\w$])";
    if (caseInsensitive)
        rule.pattern = u"(?i:" + rule.pattern + u')';
    return rule;
}

Language::Language(LanguageDefinition definition)
    : m_def(std::move(definition))
    , m_extensions(lowercasedSet(m_def.extensions))
    , m_fileNames(lowercasedSet(m_def.fileNames))
{
    for (const LanguageRule &rule : m_def.rules) {
        for (const QString &word : rule.words) {
            if (isCompletionWord(word))
                m_completionWords.append(word);
        }
    }
    m_completionWords.sort();
    m_completionWords.removeDuplicates();
}

Language::~Language() = default;

QString Language::name() const
{
    return QCoreApplication::translate("Language", m_def.name);
}

QList<TokenKind> Language::ruleKinds() const
{
    QList<TokenKind> kinds;
    kinds.reserve(m_def.rules.size());
    for (const LanguageRule &rule : m_def.rules)
        kinds.append(rule.kind);
    return kinds;
}

const icu::RegexPattern *Language::regex() const
{
    std::call_once(m_regexOnce, [this] {
        if (m_def.rules.isEmpty())
            return;
        QStringList groups;
        for (const LanguageRule &rule : m_def.rules)
            groups.append(u'(' + rule.pattern + u')');
        UErrorCode status = U_ZERO_ERROR;
        int offset = 0;
        std::unique_ptr<icu::RegexPattern> joined = compiled(groups.join(u'|'), status, offset);
        std::vector<RuleScanner> scanners;
        for (qsizetype i = 0; joined && i < m_def.rules.size(); ++i) {
            const LanguageRule &rule = m_def.rules[i];
            RuleScanner scanner;
            if (WordListScanner::canScan(rule.words)) {
                scanner.words = std::make_unique<WordListScanner>(rule.words,
                                                                  rule.pattern.startsWith(u"(?i:"));
            } else if (!(scanner.pattern = compiled(rule.pattern, status, offset))) {
                joined.reset();
            }
            scanners.push_back(std::move(scanner));
        }
        if (!joined) {
            qWarning().noquote() << QStringLiteral("Mirtex: bad pattern for %1: %2 (offset %3)")
                                        .arg(m_def.id, QString::fromLatin1(u_errorName(status)))
                                        .arg(offset);
            return;
        }
        m_regex = std::move(joined);
        m_ruleScanners = std::move(scanners);
    });
    return m_regex.get();
}

const std::vector<Language::RuleScanner> &Language::ruleScanners() const
{
    regex();
    return m_ruleScanners;
}

const QList<LanguagePtr> &Language::all()
{
    static const QList<LanguagePtr> table = [] {
        QList<LanguagePtr> languages{text()};
        const QList<LanguageDefinition> definitions = languagetable::firstLanguages()
                                                      + languagetable::middleLanguages()
                                                      + languagetable::lastLanguages();
        for (qsizetype i = 1; i < definitions.size(); ++i) // entry 0 is the plain text
            languages.append(std::make_shared<const Language>(definitions[i]));
        return languages;
    }();
    return table;
}

LanguagePtr Language::text()
{
    static const LanguagePtr plain
        = std::make_shared<const Language>(languagetable::firstLanguages().constFirst());
    return plain;
}

LanguagePtr Language::byId(QStringView id)
{
    for (const LanguagePtr &language : all()) {
        if (language->id() == id)
            return language;
    }
    return text();
}

LanguagePtr Language::detect(const std::optional<QString> &pathOrUrl, QStringView firstLine)
{
    if (pathOrUrl && !pathOrUrl->isEmpty()) {
        const QString name = lastPathComponent(*pathOrUrl).toLower();
        if (LanguagePtr byName = firstWith(name, &Language::fileNames))
            return byName;
        const qsizetype dot = name.lastIndexOf(u'.');
        if (dot > 0 && dot + 1 < name.size()) {
            if (LanguagePtr byExtension = firstWith(name.mid(dot + 1), &Language::extensions))
                return byExtension;
        }
        if (name.startsWith(u'.') && name.size() > 1) {
            if (LanguagePtr byDotName = firstWith(name.mid(1), &Language::extensions))
                return byDotName;
        }
    }
    return sniffFirstLine(firstLine);
}

} // namespace mirtex

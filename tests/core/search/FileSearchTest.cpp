// Find in files over real temporary trees: which files are looked at, what is found in which
// encoding, open documents searched as they stand, and replacements written back byte for byte.
#include "core/search/FileSearch.h"

#include "core/document/TextCodec.h"
#include "core/search/FileRewrite.h"
#include "core/search/GitignoreRules.h"
#include "support/QStringPrinter.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

QByteArray utf16le(const QString &text, bool bom = true)
{
    QByteArray bytes = bom ? QByteArray("\xFF\xFE", 2) : QByteArray();
    for (const QChar c : text) {
        bytes.append(char(c.unicode() & 0xFF));
        bytes.append(char(c.unicode() >> 8));
    }
    return bytes;
}

class Tree
{
public:
    Tree() { EXPECT_TRUE(m_dir.isValid()); }

    QString path(const QString &relative = {}) const
    {
        return relative.isEmpty() ? m_dir.path() : m_dir.filePath(relative);
    }

    void add(const QString &relative, const QByteArray &bytes) const
    {
        QDir().mkpath(QFileInfo(path(relative)).absolutePath());
        writeFile(path(relative), bytes);
    }

private:
    QTemporaryDir m_dir;
};

struct SearchRun
{
    FileSearchOutcome outcome;
    std::vector<SearchFileResult> files;

    // "relative/path:hits" for every file with hits, in walk order.
    QStringList found(const QString &root) const
    {
        QStringList lines;
        for (const SearchFileResult &file : files)
            lines << QDir(root).relativeFilePath(*file.path) + u':'
                         + QString::number(file.hits.size());
        return lines;
    }
};

SearchOptions literal(const QString &query, const QString &replacement = {})
{
    SearchOptions options;
    options.query = query;
    options.replacement = replacement;
    return options;
}

SearchRun
search(const QString &folder, const SearchOptions &options, FileSearchRequest request = {})
{
    request.folder = folder;
    request.regex = *makeRegex(options);
    std::atomic_bool stop{false};
    SearchRun run;
    run.outcome = runFileSearch(request, stop, [&run](FileSearchBatch batch) {
        for (SearchFileResult &file : batch.files)
            run.files.push_back(std::move(file));
    });
    return run;
}

} // namespace

TEST(FileFiltersTest, NamesAcceptedByTheFilterText)
{
    const struct
    {
        QString filters;
        const char *name;
        bool accepted;
    } cases[] = {
        {u"*.txt *.md !*.min.js"_s, "a.txt", true},
        {u"*.txt *.md !*.min.js"_s, "b.md", true},
        {u"*.txt *.md !*.min.js"_s, "c.min.js", false},
        {u"*.txt *.md !*.min.js"_s, "d.js", false},
        {u"*.TXT"_s, "a.txt", true},
        {u""_s, "anything.bin", true},
        {u"*.*"_s, "Makefile", true},
        {u"*"_s, "Makefile", true},
        {u"!*.min.js"_s, "c.min.js", false},
        {u"!*.min.js"_s, "c.js", true},
        {u"*.c,*.h;*.py"_s, "x.h", true},
        {u"*.c,*.h;*.py"_s, "x.py", true},
        {u"*.c,*.h;*.py"_s, "x.cpp", false},
        {u"a?.[ch]"_s, "ab.c", true},
        {u"a?.[ch]"_s, "abc.c", false},
        {u"src*"_s, "main.c", false}, // the name only, never the folder
    };

    for (const auto &c : cases) {
        EXPECT_EQ(parseFileFilters(c.filters).accepts(c.name), c.accepted)
            << c.filters.toStdString() << " / " << c.name;
    }
}

TEST(GitignoreRulesTest, TheLastMatchingRuleDecides)
{
    const QByteArray rules = "# comment\n"
                             "build/\n"
                             "*.log\n"
                             "!keep.log\n"
                             "/root.txt\n"
                             "docs/**/draft.md\n"
                             "cache/**\n"
                             "\\#hash\n";

    const struct
    {
        const char *path;
        bool folder;
        std::optional<bool> ignored;
    } cases[] = {
        {"build", true, true},
        {"src/build", true, true},
        {"build", false, std::nullopt}, // a file named build: "build/" is for folders
        {"a.log", false, true},
        {"deep/x/a.log", false, true},
        {"keep.log", false, false},
        {"root.txt", false, true},
        {"sub/root.txt", false, std::nullopt},
        {"docs/draft.md", false, true},
        {"docs/a/b/draft.md", false, true},
        {"cache", true, std::nullopt},
        {"cache/x", false, true},
        {"#hash", false, true},
        {"comment", false, std::nullopt},
    };

    const GitignoreRules parsed = GitignoreRules::parse(rules);
    for (const auto &c : cases)
        EXPECT_EQ(parsed.decide(c.path, c.folder), c.ignored) << c.path;

    GitignoreStack stack;
    stack.push("", GitignoreRules::parse("*.tmp\n"));
    stack.push("sub", GitignoreRules::parse("!*.tmp\nlocal.txt\n"));
    EXPECT_TRUE(stack.ignores("a.tmp", false));
    EXPECT_FALSE(stack.ignores("sub/a.tmp", false)); // the deeper file re-includes
    EXPECT_TRUE(stack.ignores("sub/local.txt", false));
    EXPECT_FALSE(stack.ignores("local.txt", false)); // only below its own folder
}

TEST(FileSearchTest, RequiredLiteralOnlyWhenCertain)
{
    const auto make = [](SearchMode mode, const QString &query, bool matchCase) {
        SearchOptions options;
        options.mode = mode;
        options.query = query;
        options.matchCase = matchCase;
        return requiredAsciiLiteral(options);
    };
    using Expected = std::optional<std::string>;
    EXPECT_EQ(make(SearchMode::normal, u"NEEDLE"_s, true), Expected("NEEDLE"));
    EXPECT_EQ(make(SearchMode::normal, u"NEEDLE"_s, false), std::nullopt); // folding: K, ſ, ß
    EXPECT_EQ(make(SearchMode::normal, u"caffè"_s, true), std::nullopt);
    EXPECT_EQ(make(SearchMode::extended, u"a\\nb"_s, true), std::nullopt); // a line break
    EXPECT_EQ(make(SearchMode::regex, u"TODO\\(\\w+\\)"_s, true), Expected("TODO("));
    EXPECT_EQ(make(SearchMode::regex, u"TODOS?x"_s, true), Expected("TODO"));
    EXPECT_EQ(make(SearchMode::regex, u"TODO|FIXME"_s, true), std::nullopt);
    EXPECT_EQ(make(SearchMode::regex, u"(?i)todo"_s, true), std::nullopt);
    EXPECT_EQ(make(SearchMode::regex, u"\\Qa.b\\E"_s, true), std::nullopt);
}

TEST(FileSearchTest, SubfoldersHiddenFoldersAndFilters)
{
    Tree tree;
    tree.add(u"a.txt"_s, "needle\n");
    tree.add(u"sub/b.txt"_s, "needle needle\n");
    tree.add(u"sub/c.min.js"_s, "needle\n");
    tree.add(u".git/config"_s, "needle\n");
    tree.add(u".env"_s, "needle\n");
    tree.add(u"sub/.hidden/d.txt"_s, "needle\n");

    const struct
    {
        bool subfolders;
        bool hidden;
        QString filters;
        QStringList found;
        qsizetype read;
    } cases[] = {
        {true, false, u"*.*"_s, {u"a.txt:1"_s, u"sub/b.txt:2"_s, u"sub/c.min.js:1"_s}, 3},
        {false, false, u"*.*"_s, {u"a.txt:1"_s}, 1},
        {true,
         true,
         u""_s,
         {u".env:1"_s,
          u".git/config:1"_s,
          u"a.txt:1"_s,
          u"sub/.hidden/d.txt:1"_s,
          u"sub/b.txt:2"_s,
          u"sub/c.min.js:1"_s},
         6},
        {true, false, u"*.txt !*.min.js"_s, {u"a.txt:1"_s, u"sub/b.txt:2"_s}, 2},
    };

    for (const auto &c : cases) {
        FileSearchRequest request;
        request.subfolders = c.subfolders;
        request.hiddenFolders = c.hidden;
        request.filters = parseFileFilters(c.filters);
        const SearchRun run = search(tree.path(), literal(u"needle"_s), request);
        EXPECT_EQ(run.found(tree.path()), c.found) << c.filters.toStdString();
        EXPECT_EQ(run.outcome.filesRead, c.read) << c.filters.toStdString();
    }
}

TEST(FileSearchTest, GitignoreFilesExcludeWhenAsked)
{
    Tree tree;
    tree.add(u".gitignore"_s, "build/\n*.log\n");
    tree.add(u"a.txt"_s, "needle\n");
    tree.add(u"app.log"_s, "needle\n");
    tree.add(u"build/out.txt"_s, "needle\n");
    tree.add(u"sub/.gitignore"_s, "!*.log\nlocal.txt\n");
    tree.add(u"sub/kept.log"_s, "needle\n");
    tree.add(u"sub/local.txt"_s, "needle\n");

    FileSearchRequest request;
    request.respectGitignore = true;
    EXPECT_EQ(search(tree.path(), literal(u"needle"_s), request).found(tree.path()),
              QStringList({u"a.txt:1"_s, u"sub/kept.log:1"_s}));
    request.respectGitignore = false;
    EXPECT_EQ(search(tree.path(), literal(u"needle"_s), request).files.size(), 5u);
}

TEST(FileSearchTest, TheSizeLimitIsFiftyMillionBytes)
{
    const struct
    {
        qint64 size;
        qsizetype read;
    } cases[] = {{kFileSearchSizeLimit - 1, 1}, {kFileSearchSizeLimit, 0}};

    for (const auto &c : cases) {
        Tree tree;
        tree.add(u"big.txt"_s, QByteArray(8000, 'a'));
        ASSERT_EQ(::truncate(QFile::encodeName(tree.path(u"big.txt"_s)).constData(), c.size), 0);
        const SearchRun run = search(tree.path(), literal(u"zzz"_s));
        EXPECT_EQ(run.outcome.filesRead, c.read) << c.size;
    }
}

TEST(FileSearchTest, EncodingsBinaryFilesAndBadEntries)
{
    Tree tree;
    tree.add(u"binary.bin"_s, QByteArray("caff\xC3\xA8\0\0\1", 9));
    tree.add(u"latin1.txt"_s, QByteArray("uno\r\ndue caff\xE8\r\n"));
    tree.add(u"utf16.txt"_s, utf16le(u"x\r\ny Caffè\r\n"_s));
    tree.add(u"utf8.txt"_s, "caffè\n");
    tree.add(u"plain.txt"_s, "nothing\n");
    // A name that is not UTF-8, a pipe and a link loop.
    const QByteArray root = QFile::encodeName(tree.path());
    const int fd = ::open(QByteArray(root + "/caf\xE9.txt").constData(), O_WRONLY | O_CREAT, 0644);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::write(fd, "caff\xC3\xA8\n", 7), 7);
    ::close(fd);
    ASSERT_EQ(::mkfifo(QByteArray(root + "/pipe.txt").constData(), 0644), 0);
    ASSERT_EQ(::symlink(root.constData(), QByteArray(root + "/loop").constData()), 0);

    const SearchRun run = search(tree.path(), literal(u"caffè"_s));
    QStringList names;
    for (const SearchFileResult &file : run.files)
        names << file.title + u':' + QString::number(file.hits.size());
    EXPECT_EQ(
        names,
        QStringList({u"caf\uFFFD.txt:1"_s, u"latin1.txt:1"_s, u"utf16.txt:1"_s, u"utf8.txt:1"_s}));
    // Every regular file is read, the binary one included; the pipe and the link are not.
    EXPECT_EQ(run.outcome.filesRead, 6);
    ASSERT_EQ(run.files.size(), 4u);
    EXPECT_EQ(run.files[1].hits, (std::vector<SearchHit>{{1, u"due caffè"_s, {4, 5}}}));
    EXPECT_EQ(run.files[2].hits, (std::vector<SearchHit>{{1, u"y Caffè"_s, {2, 5}}}));
    ::unlink(QByteArray(root + "/caf\xE9.txt").constData()); // QDir cannot name it
}

TEST(FileSearchTest, OpenDocumentsAreSearchedAsTheyStand)
{
    Tree tree;
    tree.add(u"open.txt"_s, "saved text\n");
    tree.add(u"closed.txt"_s, "needle\n");
    FileSearchRequest request;
    const QUuid id = QUuid::createUuid();
    const QString canonical = QFileInfo(tree.path(u"open.txt"_s)).canonicalFilePath();
    request.openDocuments.insert(canonical, {id, u"unsaved needle\nand needle\n"_s, false});
    const SearchRun run = search(tree.path(), literal(u"needle"_s), request);
    ASSERT_EQ(run.files.size(), 2u);
    EXPECT_EQ(run.files[0].documentID, std::nullopt);
    EXPECT_EQ(run.files[1].documentID, std::optional<QUuid>(id));
    EXPECT_EQ(
        run.files[1].hits,
        (std::vector<SearchHit>{{0, u"unsaved needle"_s, {8, 6}}, {1, u"and needle"_s, {4, 6}}}));

    request.replace = true;
    const SearchRun replaced = search(tree.path(), literal(u"needle"_s, u"pin"_s), request);
    EXPECT_EQ(replaced.outcome.count, 3);
    EXPECT_EQ(replaced.outcome.documentsToReplace, std::vector<QUuid>{id});
    EXPECT_EQ(readFile(tree.path(u"open.txt"_s)), "saved text\n"); // the editor changes it
    EXPECT_EQ(readFile(tree.path(u"closed.txt"_s)), "pin\n");
}

TEST(FileSearchTest, ReplaceKeepsEncodingLineEndingsAndMode)
{
    Tree tree;

    const struct
    {
        QString name;
        QByteArray before;
        QByteArray after;
    } files[] = {
        {u"crlf-utf16.txt"_s, utf16le(u"old\r\nè old\r\n"_s), utf16le(u"nuovo\r\nè nuovo\r\n"_s)},
        {u"latin1.txt"_s, "old caff\xE8\r\n\r\nold", "nuovo caff\xE8\r\n\r\nnuovo"},
        {u"utf8-bom.txt"_s, "\xEF\xBB\xBFold\n", "\xEF\xBB\xBFnuovo\n"},
        {u"cr.txt"_s, "a old\rb\r", "a nuovo\rb\r"},
        {u"none.txt"_s, "nothing here\r\n", "nothing here\r\n"},
        {u"mixed.txt"_s, "old\r\nx\nold\ry\r\n", "nuovo\r\nx\nnuovo\ry\r\n"},
    };

    for (const auto &f : files)
        tree.add(f.name, f.before);
    ASSERT_EQ(::chmod(QFile::encodeName(tree.path(u"latin1.txt"_s)).constData(), 0640), 0);

    FileSearchRequest request;
    request.replace = true;
    const SearchRun run = search(tree.path(), literal(u"old"_s, u"nuovo"_s), request);
    EXPECT_EQ(run.outcome.count, 8);
    EXPECT_EQ(run.outcome.filesWithMatches, 5);
    EXPECT_TRUE(run.outcome.notWritten.isEmpty())
        << run.outcome.notWritten.join(u", ").toStdString();
    for (const auto &f : files)
        EXPECT_EQ(readFile(tree.path(f.name)), f.after) << f.name.toStdString();

    struct stat info
    {};

    ASSERT_EQ(::stat(QFile::encodeName(tree.path(u"latin1.txt"_s)).constData(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640u);
}

TEST(FileSearchTest, FilesThatCannotBeWrittenAsReadAreListed)
{
    Tree tree;
    tree.add(u"mixed.txt"_s, "old\r\nold\n");    // mixed breaks, kept as they are
    tree.add(u"locked.txt"_s, "old\n");          // nobody may write it
    tree.add(u"latin1.txt"_s, "old caff\xE8\n"); // no byte for "✓" there
    ASSERT_EQ(::chmod(QFile::encodeName(tree.path(u"locked.txt"_s)).constData(), 0444), 0);
    FileSearchRequest request;
    request.replace = true;
    const SearchRun run = search(tree.path(), literal(u"old"_s, u"✓"_s), request);
    QStringList notWritten = run.outcome.notWritten;
    notWritten.sort();
    EXPECT_EQ(notWritten, QStringList({u"latin1.txt"_s, u"locked.txt"_s}));
    EXPECT_EQ(readFile(tree.path(u"mixed.txt"_s)), "✓\r\n✓\n");
    EXPECT_EQ(readFile(tree.path(u"locked.txt"_s)), "old\n");
    EXPECT_EQ(readFile(tree.path(u"latin1.txt"_s)), "old caff\xE8\n");
}

TEST(FileRewriteTest, AFileChangedSinceItWasReadIsLeftAlone)
{
    Tree tree;
    const QString path = tree.path(u"f.txt"_s);
    const std::string native = QFile::encodeName(path).toStdString();
    const auto stampOf = [&] {
        struct stat info
        {};
        EXPECT_EQ(::stat(native.c_str(), &info), 0);
        return FileStamp{info.st_size, info.st_mtim};
    };

    const struct
    {
        const char *name;
        std::function<void()> meanwhile;
        RewriteResult result;
    } cases[] = {
        {"untouched", [] {}, RewriteResult::written},
        {"grown", [&] { writeFile(path, "old text plus"); }, RewriteResult::changedOnDisk},
        {"same size and time, other bytes",
         [&] {
             struct stat info
             {};
             ::stat(native.c_str(), &info);
             writeFile(path, "OLD text");
             const timespec times[2] = {info.st_atim, info.st_mtim};
             ::utimensat(AT_FDCWD, native.c_str(), times, 0);
         },
         RewriteResult::changedOnDisk},
        {"removed", [&] { QFile::remove(path); }, RewriteResult::changedOnDisk},
    };

    for (const auto &c : cases) {
        writeFile(path, "old text");
        const FileStamp stamp = stampOf();
        c.meanwhile();
        const QByteArray before = readFile(path);
        EXPECT_EQ(rewriteIfUnchanged(native, stamp, "old text", "new text"), c.result) << c.name;
        EXPECT_EQ(readFile(path),
                  c.result == RewriteResult::written ? QByteArray("new text") : before)
            << c.name;
    }
}

TEST(FileSearchTest, AStoppedRunWritesNothingMore)
{
    Tree tree;
    tree.add(u"a.txt"_s, "old\n");
    FileSearchRequest request;
    request.folder = tree.path();
    request.regex = *makeRegex(literal(u"old"_s, u"new"_s));
    request.replace = true;
    std::atomic_bool stop{true};
    const FileSearchOutcome outcome = runFileSearch(request, stop, [](FileSearchBatch) {});
    EXPECT_TRUE(outcome.stopped);
    EXPECT_EQ(outcome.count, 0);
    EXPECT_EQ(readFile(tree.path(u"a.txt"_s)), "old\n");
}

TEST(FileSearchTest, MatchesAcrossLineBreaksReplaceTheFilesOwnBreaks)
{
    Tree tree;
    tree.add(u"crlf.txt"_s, "end\r\nstart\r\nend\nstart\r\n");
    SearchOptions options = literal(u"end\\nstart"_s, u"-\\n-"_s);
    options.mode = SearchMode::extended;
    FileSearchRequest request;
    request.replace = true;
    const SearchRun run = search(tree.path(), options, request);
    EXPECT_EQ(run.outcome.count, 2);
    // The CR LF matched goes whole; the new break is the file's first one, CR LF.
    EXPECT_EQ(readFile(tree.path(u"crlf.txt"_s)), "-\r\n-\r\n-\r\n-\r\n");
}

TEST(FileSearchTest, SkippingFilesByTheirBytesNeverChangesWhatIsFound)
{
    // Each file must give exactly the hits of the expression over its decoded text.
    const struct
    {
        QString query;
        bool matchCase;
        QByteArray bytes;
    } cases[] = {
        {u"needle"_s, false, "a NEEDLE and a nEeDlE\n"},
        {u"needle"_s, false, "nothing here\n"},
        {u"kelvin"_s,
         false,
         "5 \xE2\x84\xAA"
         "elvin\n"}, // the Kelvin sign folds to k
        {u"strasse"_s,
         false,
         "stra\xC3\x9F"
         "e\n"},
        {u"caffe"_s, false, "caff\xE8 caffe\n"}, // Latin-1
        {u"NEEDLE"_s, true, "needle NEEDLE\r\n"},
        {u"TODO("_s, true, "TODO(x) todo(y)\n"},
    };

    for (const auto &c : cases) {
        Tree tree;
        tree.add(u"f.txt"_s, c.bytes);
        SearchOptions options = literal(c.query);
        options.matchCase = c.matchCase;
        const auto decoded = TextCodec::decode(c.bytes, std::nullopt, LineEnding::lf);
        ASSERT_TRUE(decoded);
        const auto expected = searchHits(*makeRegex(options), decoded->text);
        ASSERT_TRUE(expected);
        const SearchRun run = search(tree.path(), options);
        const std::vector<SearchHit> found
            = run.files.empty() ? std::vector<SearchHit>{} : run.files.front().hits;
        EXPECT_EQ(found, *expected) << c.query.toStdString() << " in " << c.bytes.toStdString();
    }
}

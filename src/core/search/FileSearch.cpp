// The walk runs on the calling thread with raw directory reads (no stat for entries whose type
// the directory already tells) and hands files to the workers through a bounded queue; workers
// read, decode and match, and leave each file's outcome under its place in the walk, which the
// calling thread passes on in order. Symbolic links are never followed, so a link loop cannot
// trap the walk; anything but a regular file is skipped before it is opened, and files are
// opened without blocking, so a pipe put in a file's place cannot hang a worker either.
#include "core/search/FileSearch.h"

#include "core/document/TextCodec.h"
#include "core/search/FileRewrite.h"
#include "core/search/FindAll.h"
#include "core/search/GitignoreRules.h"
#include "core/search/SearchEngine.h"
#include "core/search/SearchEscapes.h"

#include <QFile>

#include <algorithm>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <dirent.h>
#include <fcntl.h>
#include <functional>
#include <map>
#include <mutex>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace mirtex {

namespace {

using Clock = std::chrono::steady_clock;

constexpr size_t kQueueLimit = 1024;

struct FileEntry
{
    size_t index = 0;
    std::string path;     // absolute, the file system's bytes
    std::string relative; // to the folder searched
};

struct FileOutcome
{
    bool read = false;
    qsizetype count = 0;
    std::optional<SearchFileResult> result; // searches with hits
    std::optional<QUuid> documentToReplace;
    std::optional<QString> notWritten;
    std::optional<SearchError> error;
};

bool isAsciiLiteral(QStringView literal)
{
    if (literal.isEmpty())
        return false;
    for (const QChar c : literal) {
        if (c.unicode() >= 0x80 || c == u'\n' || c == u'\r' || c.unicode() == 0)
            return false;
    }
    return true;
}

// The literal text a pattern starts with: plain letters, digits and escaped punctuation up to
// the first other construct; a character followed by a quantifier is not certain. Nothing when
// the pattern has an alternative anywhere.
QString leadingLiteral(QStringView pattern)
{
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == u'\\')
            ++i;
        else if (pattern[i] == u'|')
            return {};
    }
    QString literal;
    qsizetype i = 0;
    while (i < pattern.size()) {
        const QChar c = pattern[i];
        QChar taken;
        qsizetype next = i + 1;
        if (c == u'\\') {
            if (i + 1 >= pattern.size())
                break;
            const QChar escaped = pattern[i + 1];
            if (escaped.unicode() >= 0x80 || escaped.isLetterOrNumber() || escaped.isSpace())
                break;
            taken = escaped;
            next = i + 2;
        } else if (c.unicode() < 0x80
                   && (c.isLetterOrNumber() || c == u'_' || c == u'-' || c == u'=' || c == u':'
                       || c == u'<' || c == u'>' || c == u'"' || c == u'\'' || c == u','
                       || c == u'/' || c == u';' || c == u'@' || c == u'%' || c == u'&' || c == u'!'
                       || c == u'~')) {
            taken = c;
        } else {
            break;
        }
        if (next < pattern.size()) {
            const QChar after = pattern[next];
            if (after == u'?' || after == u'*' || after == u'{' || after == u'+')
                break;
        }
        literal += taken;
        i = next;
    }
    return literal;
}

// The file's bytes may be ASCII-compatible text: no mark of UTF-16 or UTF-32, no look of UTF-16.
bool asciiCompatible(QByteArrayView bytes)
{
    const auto starts = [&](std::initializer_list<unsigned char> mark) {
        if (bytes.size() < qsizetype(mark.size()))
            return false;
        return std::equal(
            mark.begin(), mark.end(), reinterpret_cast<const unsigned char *>(bytes.data()));
    };
    if (starts({0xFF, 0xFE}) || starts({0xFE, 0xFF}) || starts({0x00, 0x00, 0xFE, 0xFF}))
        return false;
    return !TextCodec::detectUTF16(bytes);
}

// A folder's .gitignore (its first megabyte), empty when there is none or it is no regular file.
QByteArray readIgnoreFile(const std::string &path)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    if (fd < 0)
        return {};
    QByteArray bytes;

    struct stat info
    {};

    if (::fstat(fd, &info) == 0 && S_ISREG(info.st_mode)) {
        bytes.resize(qsizetype(std::min<qint64>(info.st_size, 1 << 20)));
        const ssize_t got = ::read(fd, bytes.data(), size_t(bytes.size()));
        bytes.resize(got > 0 ? qsizetype(got) : 0);
    }
    ::close(fd);
    return bytes;
}

// Whether the expression matches anywhere in `text`; an error when matching fails.
std::expected<bool, SearchError> anyMatch(const SearchRegex &regex, QStringView text)
{
    SearchMatcher matcher(regex, text);
    matcher.setRange({0, text.size()}, true);
    const auto match = matcher.next();
    if (!match)
        return std::unexpected(match.error());
    return match->has_value();
}

struct Rewritten
{
    qsizetype count = 0;
    std::optional<QByteArray> bytes; // nothing: the file cannot be written keeping the rest
};

// Every match in the decoded text replaced in the file's own text, whose line breaks stay as they
// were (a file may mix them): offsets in the text with LF breaks move past the CR of every CR LF
// before them. Line breaks in a replacement become the file's first break. The bytes come only
// when the file's own text encodes back to exactly the bytes read.
std::expected<Rewritten, SearchError>
rewrittenFile(const SearchRegex &regex, QByteArrayView bytes, const TextCodec::Decoded &decoded)
{
    const auto raw = TextCodec::decodeText(bytes, decoded.encoding);
    const QStringView text = raw ? QStringView(raw->text) : QStringView();
    std::vector<qsizetype> dropped; // where a CR was dropped before the LF, in the decoded text
    for (qsizetype cr = text.indexOf(u'\r'); cr >= 0; cr = text.indexOf(u'\r', cr + 1)) {
        if (cr + 1 < text.size() && text[cr + 1] == u'\n')
            dropped.push_back(cr - qsizetype(dropped.size()));
    }
    const auto fileOffset = [&dropped](qsizetype offset) {
        return offset
               + (std::lower_bound(dropped.begin(), dropped.end(), offset) - dropped.begin());
    };
    const QString lineBreakText = lineBreak(decoded.lineEnding);

    Rewritten result;
    QString replaced;
    qsizetype copied = 0;
    SearchMatcher matcher(regex, decoded.text);
    matcher.setRange({0, decoded.text.size()}, true);
    while (true) {
        const auto match = matcher.next();
        if (!match)
            return std::unexpected(match.error());
        if (!*match)
            break;
        auto replacement = replacementFor(matcher, regex.options());
        if (!replacement)
            return std::unexpected(replacement.error());
        ++result.count;
        if (!raw)
            continue;
        const qsizetype start = fileOffset((*match)->location);
        const qsizetype end = fileOffset((*match)->end());
        replaced += text.sliced(copied, start - copied);
        if (decoded.lineEnding != LineEnding::lf)
            replacement->replace(u'\n', lineBreakText);
        replaced += *replacement;
        copied = end;
    }
    if (!raw || result.count == 0)
        return result;
    replaced += text.sliced(copied);
    const auto same = TextCodec::encode(text, decoded.encoding, LineEnding::lf);
    if (same && *same == bytes)
        result.bytes = TextCodec::encode(replaced, decoded.encoding, LineEnding::lf);
    return result;
}

// Whatever the locale says.
char asciiLower(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c + ('a' - 'A')) : c;
}

// A case-insensitive query's literal, lower-cased. Full case folding lets an ASCII letter match
// other characters ("k" the Kelvin sign, "ss" the sharp s), but never in a text of ASCII alone,
// where it is plain ASCII case folding.
std::optional<std::string> literalIgnoringCase(SearchOptions options)
{
    if (options.matchCase)
        return std::nullopt;
    options.matchCase = true;
    auto literal = requiredAsciiLiteral(options);
    if (literal) {
        for (char &c : *literal)
            c = asciiLower(c);
    }
    return literal;
}

bool isAscii(QByteArrayView bytes)
{
    const char *data = bytes.data();
    const size_t size = size_t(bytes.size());
    size_t i = 0;
    for (; i + 8 <= size; i += 8) {
        uint64_t word;
        std::memcpy(&word, data + i, 8);
        if (word & 0x8080808080808080ULL)
            return false;
    }
    for (; i < size; ++i) {
        if (static_cast<unsigned char>(data[i]) >= 0x80)
            return false;
    }
    return true;
}

bool containsIgnoringAsciiCase(QByteArrayView bytes, const std::string &lowerNeedle)
{
    const auto lower = asciiLower;
    const std::boyer_moore_horspool_searcher searcher(
        lowerNeedle.begin(),
        lowerNeedle.end(),
        [lower](char c) { return std::hash<char>()(lower(c)); },
        [lower](char a, char b) { return lower(a) == lower(b); });
    return std::search(bytes.begin(), bytes.end(), searcher) != bytes.end();
}

class Searcher
{
public:
    Searcher(const FileSearchRequest &request, const std::atomic_bool &stop)
        : m_request(request)
        , m_stop(stop)
        , m_literal(requiredAsciiLiteral(request.regex.options()))
        , m_literalIgnoringCase(literalIgnoringCase(request.regex.options()))
    {}

    FileSearchOutcome run(const std::function<void(FileSearchBatch)> &onBatch);

private:
    bool stopping() const { return m_stop.load() || m_failed.load(); }

    void walk(const std::string &folder, const std::string &relative);
    void enqueue(FileEntry entry);
    void work();
    FileOutcome process(const FileEntry &entry, QByteArray &buffer);
    void searchText(QStringView text, FileOutcome &outcome, const QString &path);
    void deliver(bool all, FileSearchOutcome &outcome);
    void flush(bool force);

    const FileSearchRequest &m_request;
    const std::atomic_bool &m_stop;
    std::atomic_bool m_failed{false};
    std::optional<std::string> m_literal;
    std::optional<std::string> m_literalIgnoringCase; // lower case
    GitignoreStack m_ignores;

    std::mutex m_mutex;
    std::condition_variable m_workReady;
    std::condition_variable m_spaceOrResult;
    std::deque<FileEntry> m_queue;
    bool m_walkDone = false;
    std::map<size_t, FileOutcome> m_done;
    size_t m_walked = 0;    // files handed to the workers
    size_t m_delivered = 0; // outcomes passed on, in order

    FileSearchOutcome *m_outcome = nullptr;
    const std::function<void(FileSearchBatch)> *m_onBatch = nullptr;
    FileSearchBatch m_batch;
    bool m_batchDirty = false;
    Clock::time_point m_lastBatch;
};

void Searcher::walk(const std::string &folder, const std::string &relative)
{
    if (stopping())
        return;
    DIR *dir = ::opendir(folder.c_str());
    if (!dir)
        return; // vanished or unreadable: the walk goes on

    struct Entry
    {
        std::string name;
        unsigned char type;
    };

    std::vector<Entry> entries;
    while (const dirent *entry = ::readdir(dir)) {
        const char *name = entry->d_name;
        if (name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0)))
            continue;
        if (name[0] == '.' && !m_request.hiddenFolders)
            continue;
        unsigned char type = entry->d_type;
        if (type == DT_UNKNOWN) {
            struct stat info
            {};

            if (::fstatat(::dirfd(dir), name, &info, AT_SYMLINK_NOFOLLOW) != 0)
                continue;
            type = S_ISDIR(info.st_mode) ? DT_DIR : S_ISREG(info.st_mode) ? DT_REG : DT_LNK;
        }
        if (type == DT_DIR || type == DT_REG)
            entries.push_back({name, type});
    }
    ::closedir(dir);
    std::sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) {
        return a.name < b.name;
    });

    bool pushed = false;
    if (m_request.respectGitignore) {
        GitignoreRules rules = GitignoreRules::parse(readIgnoreFile(folder + "/.gitignore"));
        if (!rules.isEmpty()) {
            m_ignores.push(relative, std::move(rules));
            pushed = true;
        }
    }

    for (const Entry &entry : entries) {
        if (stopping())
            break;
        const std::string path = folder + '/' + entry.name;
        const std::string child = relative.empty() ? entry.name : relative + '/' + entry.name;
        const bool isFolder = entry.type == DT_DIR;
        if (isFolder && !m_request.subfolders)
            continue;
        if (m_request.respectGitignore && !m_ignores.isEmpty()
            && m_ignores.ignores(child, isFolder))
            continue;
        if (isFolder)
            walk(path, child);
        else if (m_request.filters.accepts(entry.name.c_str()))
            enqueue({m_walked++, path, child});
    }
    if (pushed)
        m_ignores.pop();
}

void Searcher::enqueue(FileEntry entry)
{
    {
        std::unique_lock lock(m_mutex);
        while (m_queue.size() >= kQueueLimit && !stopping())
            m_spaceOrResult.wait_for(lock, std::chrono::milliseconds(20));
        m_queue.push_back(std::move(entry));
    }
    m_workReady.notify_one();
    deliver(false, *m_outcome);
}

void Searcher::work()
{
    QByteArray buffer;
    while (true) {
        FileEntry entry;
        {
            std::unique_lock lock(m_mutex);
            m_workReady.wait(lock, [&] { return !m_queue.empty() || m_walkDone; });
            if (m_queue.empty())
                return;
            entry = std::move(m_queue.front());
            m_queue.pop_front();
        }
        FileOutcome outcome;
        if (!stopping())
            outcome = process(entry, buffer);
        if (outcome.error)
            m_failed = true;
        {
            std::lock_guard lock(m_mutex);
            m_done.emplace(entry.index, std::move(outcome));
        }
        m_spaceOrResult.notify_all();
    }
}

FileOutcome Searcher::process(const FileEntry &entry, QByteArray &buffer)
{
    FileOutcome outcome;
    const int fd = ::open(entry.path.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);

    struct stat info
    {};

    if (fd >= 0 && ::fstat(fd, &info) != 0) {
        ::close(fd);
        return outcome;
    }
    if (fd >= 0 && (!S_ISREG(info.st_mode) || info.st_size >= kFileSearchSizeLimit)) {
        ::close(fd);
        return outcome; // replaced by something else, or too large: not counted
    }
    outcome.read = true;

    // Open documents are searched as they stand, not as saved.
    QString path;
    if (!m_request.openDocuments.isEmpty()) {
        path = QFile::decodeName(entry.path.c_str());
        const auto open = m_request.openDocuments.constFind(path);
        if (open != m_request.openDocuments.cend()) {
            if (fd >= 0)
                ::close(fd);
            searchText(open->text, outcome, path);
            if (outcome.count > 0) {
                if (outcome.result)
                    outcome.result->documentID = open->id;
                if (m_request.replace) {
                    if (open->readOnly)
                        outcome.notWritten
                            = QFile::decodeName(entry.relative.c_str()).section(u'/', -1);
                    else
                        outcome.documentToReplace = open->id;
                }
            }
            return outcome;
        }
    }
    if (fd < 0)
        return outcome; // unreadable: counted, skipped

    // A large file is read in two steps, so that a binary one stops after its first bytes: the
    // codec judges a file binary from its first 8000 bytes alone.
    constexpr qsizetype kSniffBytes = 8192;
    const qint64 expected = info.st_size;
    buffer.resize(qsizetype(expected) + 1);
    bool sniffed = expected <= kSniffBytes;
    qint64 size = 0;
    while (true) {
        if (size == buffer.size())
            buffer.resize(std::min<qsizetype>(buffer.size() * 2, kFileSearchSizeLimit + 1));
        qsizetype wanted = buffer.size() - size;
        if (!sniffed)
            wanted = std::min<qsizetype>(wanted, kSniffBytes - size);
        const ssize_t got = ::read(fd, buffer.data() + size, size_t(wanted));
        if (got <= 0) {
            if (got < 0)
                size = -1;
            break;
        }
        size += got;
        if (size > kFileSearchSizeLimit)
            break;
        if (!sniffed && size >= kSniffBytes) {
            sniffed = true;
            if (TextCodec::isBinary(QByteArrayView(buffer.constData(), size))) {
                ::close(fd);
                return outcome;
            }
        }
    }
    ::close(fd);
    if (size < 0 || size >= kFileSearchSizeLimit)
        return outcome;
    const QByteArrayView bytes(buffer.constData(), size);
    if (TextCodec::isBinary(bytes))
        return outcome;
    if (m_literal && asciiCompatible(bytes)
        && !::memmem(bytes.data(), size_t(size), m_literal->data(), m_literal->size()))
        return outcome;
    if (m_literalIgnoringCase && isAscii(bytes) && asciiCompatible(bytes)
        && !containsIgnoringAsciiCase(bytes, *m_literalIgnoringCase))
        return outcome;
    const auto decoded = TextCodec::decode(bytes, std::nullopt, LineEnding::lf);
    if (!decoded)
        return outcome;
    if (path.isEmpty())
        path = QFile::decodeName(entry.path.c_str());
    if (!m_request.replace) {
        searchText(decoded->text, outcome, path);
        return outcome;
    }

    const auto matches = anyMatch(m_request.regex, decoded->text);
    if (!matches) {
        outcome.error = matches.error();
        return outcome;
    }
    if (!*matches)
        return outcome;
    const auto rewritten = rewrittenFile(m_request.regex, bytes, *decoded);
    if (!rewritten) {
        outcome.error = rewritten.error();
        return outcome;
    }
    outcome.count = rewritten->count;
    if (outcome.count == 0 || stopping())
        return outcome;
    const QString name = path.section(u'/', -1);
    if (!rewritten->bytes) {
        outcome.notWritten = name;
        return outcome;
    }
    const FileStamp stamp{info.st_size, info.st_mtim};
    if (rewriteIfUnchanged(entry.path, stamp, bytes, *rewritten->bytes) != RewriteResult::written)
        outcome.notWritten = name;
    return outcome;
}

void Searcher::searchText(QStringView text, FileOutcome &outcome, const QString &path)
{
    const SearchOptions &options = m_request.regex.options();
    if (m_request.replace) {
        const auto matches = anyMatch(m_request.regex, text);
        if (!matches || !*matches) {
            if (!matches)
                outcome.error = matches.error();
            return;
        }
        const ReplaceAllResult replaced = replaceAll(text, {0, 0}, false, false, options);
        if (replaced.beep)
            outcome.error = SearchError{SearchError::Kind::tooComplex, {}, replaced.status.text};
        outcome.count = replaced.count;
        return;
    }
    auto hits = searchHits(m_request.regex, text);
    if (!hits) {
        outcome.error = hits.error();
        return;
    }
    if (hits->empty())
        return;
    outcome.count = qsizetype(hits->size());
    SearchFileResult result;
    result.title = path.section(u'/', -1);
    result.path = path;
    result.hits = std::move(*hits);
    outcome.result = std::move(result);
}

void Searcher::deliver(bool all, FileSearchOutcome &outcome)
{
    while (true) {
        std::vector<FileOutcome> ready;
        {
            std::unique_lock lock(m_mutex);
            if (all) {
                m_spaceOrResult.wait_for(lock, std::chrono::milliseconds(20), [&] {
                    return m_done.contains(m_delivered);
                });
            }
            while (true) {
                const auto next = m_done.find(m_delivered);
                if (next == m_done.end())
                    break;
                ready.push_back(std::move(next->second));
                m_done.erase(next);
                ++m_delivered;
            }
        }
        for (FileOutcome &file : ready) {
            if (file.read)
                ++outcome.filesRead;
            if (file.error && !outcome.error)
                outcome.error = file.error;
            if (file.count > 0) {
                outcome.count += file.count;
                ++outcome.filesWithMatches;
            }
            if (file.documentToReplace)
                outcome.documentsToReplace.push_back(*file.documentToReplace);
            if (file.notWritten)
                outcome.notWritten.append(*file.notWritten);
            if (file.result) {
                m_batch.files.push_back(std::move(*file.result));
            }
            m_batchDirty = m_batchDirty || file.read;
        }
        m_batch.filesRead = outcome.filesRead;
        flush(false);
        if (!all || m_delivered == m_walked)
            return;
    }
}

void Searcher::flush(bool force)
{
    const auto now = Clock::now();
    if (!force && (!m_batchDirty || now - m_lastBatch < m_request.batchInterval))
        return;
    m_lastBatch = now;
    m_batchDirty = false;
    FileSearchBatch batch = std::move(m_batch);
    m_batch = {};
    m_batch.filesRead = batch.filesRead;
    (*m_onBatch)(std::move(batch));
}

FileSearchOutcome Searcher::run(const std::function<void(FileSearchBatch)> &onBatch)
{
    FileSearchOutcome outcome;
    m_outcome = &outcome;
    m_onBatch = &onBatch;
    m_lastBatch = Clock::now();
    int threads = m_request.threads > 0 ? m_request.threads
                                        : int(std::max(1u, std::thread::hardware_concurrency()));
    std::vector<std::thread> workers;
    for (int i = 0; i < threads; ++i)
        workers.emplace_back([this] { work(); });

    char *root = ::realpath(QFile::encodeName(m_request.folder).constData(), nullptr);
    if (root) {
        std::string folder(root);
        ::free(root);
        if (folder == "/")
            folder.clear();
        walk(folder, {});
    }
    {
        std::lock_guard lock(m_mutex);
        m_walkDone = true;
    }
    m_workReady.notify_all();
    deliver(true, outcome);
    for (std::thread &worker : workers)
        worker.join();
    outcome.stopped = m_stop.load();
    flush(true);
    return outcome;
}

} // namespace

std::optional<std::string> requiredAsciiLiteral(const SearchOptions &options)
{
    if (!options.matchCase || options.query.isEmpty())
        return std::nullopt;
    QString literal;
    switch (options.mode) {
    case SearchMode::normal:
        literal = options.query;
        break;
    case SearchMode::extended:
        literal = unescapeExtended(options.query);
        break;
    case SearchMode::regex:
        literal = leadingLiteral(options.query);
        break;
    }
    if (!isAsciiLiteral(literal))
        return std::nullopt;
    return literal.toStdString();
}

FileSearchOutcome runFileSearch(const FileSearchRequest &request,
                                const std::atomic_bool &stop,
                                const std::function<void(FileSearchBatch)> &onBatch)
{
    Searcher searcher(request, stop);
    return searcher.run(onBatch);
}

std::expected<std::vector<SearchHit>, SearchError>
searchHits(const SearchRegex &regex, QStringView text, qsizetype limit)
{
    return findHits(regex, text, {0, text.size()}, limit);
}

} // namespace mirtex

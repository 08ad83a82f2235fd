#include "core/document/Document.h"

#include "core/document/FileNaming.h"
#include "support/FakeDocumentText.h"
#include "support/QStringPrinter.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>

using namespace mirtex;
using namespace Qt::StringLiterals;
using Kind = DocumentError::Kind;

namespace {

class DocumentTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(m_dir.isValid()); }

    QString path(QStringView name) const { return m_dir.filePath(name.toString()); }

    // A document opened from the file `name` holding `bytes`; its text is `m_text`.
    std::unique_ptr<Document> open(QStringView name, const QByteArray &bytes)
    {
        writeFile(path(name), bytes);
        auto loaded = Document::read(path(name), std::nullopt, LineEnding::lf);
        if (!loaded)
            return nullptr;
        m_text.setText(QString::fromUtf8(loaded->utf8));
        return std::make_unique<Document>(
            &m_text, loaded->utf8, path(name), loaded->encoding, loaded->lineEnding, QString());
    }

    QTemporaryDir m_dir;
    FakeDocumentText m_text;
};

// Writes past this many bytes fail while it lives, for every user (root included).
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_saved);
        rlimit limited = m_saved;
        limited.rlim_cur = bytes;
        m_active = setrlimit(RLIMIT_FSIZE, &limited) == 0;
    }

    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_saved);
        std::signal(SIGXFSZ, SIG_DFL);
    }

    bool isActive() const { return m_active; }

private:
    rlimit m_saved{};
    bool m_active = false;
};

} // namespace

TEST_F(DocumentTest, DirtyComparesTextsNotCounts)
{
    m_text.setText(u"abc"_s);
    Document doc(&m_text, "abc", std::nullopt, TextEncoding::utf8(), LineEnding::lf, u"nuovo 1"_s);
    int notices = 0;
    doc.onStateChange = [&notices]() { ++notices; };

    m_text.setText(u"abcx"_s);
    doc.textDidChange();
    EXPECT_TRUE(doc.isDirty());
    m_text.setText(u"abc"_s);
    doc.textDidChange();
    EXPECT_FALSE(doc.isDirty());
    EXPECT_EQ(doc.changeCount(), 2);
    EXPECT_EQ(notices, 2);

    // Handed-over text counts as a change even though it equals the saved text.
    doc.markHandedOver();
    EXPECT_TRUE(doc.isDirty());
    EXPECT_EQ(doc.changeCount(), 3);
    doc.markSaved();
    EXPECT_FALSE(doc.isDirty());
}

TEST_F(DocumentTest, FormatChangeIsAModificationUntilSaved)
{
    const QString file = path(u"a.txt");
    auto doc = open(u"a.txt", "uno\ndue\n");
    ASSERT_TRUE(doc);
    doc->setLineEnding(LineEnding::lf); // the same ending: nothing changes
    EXPECT_FALSE(doc->isDirty());
    doc->setLineEnding(LineEnding::crlf);
    EXPECT_TRUE(doc->isDirty());
    doc->textDidChange(); // an edit that leaves the text as saved does not hide the change
    EXPECT_TRUE(doc->isDirty());
    ASSERT_TRUE(doc->write(file, std::nullopt, true));
    EXPECT_FALSE(doc->isDirty());
    EXPECT_EQ(readFile(file), QByteArray("uno\r\ndue\r\n"));

    doc->setEncoding(TextEncoding::utf16LEWithBom());
    EXPECT_TRUE(doc->isDirty());
    ASSERT_TRUE(doc->write(file, std::nullopt, true));
    EXPECT_FALSE(doc->isDirty());
    EXPECT_TRUE(readFile(file).startsWith(QByteArray("\xFF\xFEu\0n\0o\0\r\0\n\0", 12)));
}

TEST_F(DocumentTest, WriteKeepsPermissions)
{
    const QString file = path(u"p.sh");
    auto doc = open(u"p.sh", "echo\n");
    ASSERT_TRUE(doc);
    for (const QFile::Permissions permissions :
         {QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup,
          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::WriteOther,
          QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther}) { // root may write 0444 too
        ASSERT_TRUE(QFile::setPermissions(file, permissions));
        const QFile::Permissions before = QFileInfo(file).permissions();
        m_text.setText(m_text.text() + u'x');
        ASSERT_TRUE(doc->write(file, std::nullopt, true));
        EXPECT_EQ(readFile(file), m_text.text().toUtf8());
        EXPECT_EQ(QFileInfo(file).permissions(), before);
    }
}

TEST_F(DocumentTest, AFailedWriteLeavesTheOldFileAndTheDocument)
{
    auto doc = open(u"old.txt", "vecchio\n");
    ASSERT_TRUE(doc);
    m_text.setText(QString(4096, u'n'));
    doc->textDidChange();
    std::optional<std::expected<void, DocumentError>> written;
    {
        FileSizeLimit limit(64);
        ASSERT_TRUE(limit.isActive());
        written = doc->write(path(u"old.txt"), std::nullopt, true);
    }
    EXPECT_EQ(readFile(path(u"old.txt")), QByteArray("vecchio\n"));
    ASSERT_FALSE(*written);
    EXPECT_EQ(written->error().kind, Kind::writeFailed);
    EXPECT_EQ(QDir(m_dir.path()).entryList(QDir::Files), QStringList{u"old.txt"_s})
        << "the temporary file stays behind";

    // A folder where the file should go cannot be replaced either.
    ASSERT_TRUE(QDir(m_dir.path()).mkdir(u"folder.txt"_s));
    const auto onFolder = doc->write(path(u"folder.txt"), std::nullopt, true);
    ASSERT_FALSE(onFolder);
    EXPECT_TRUE(onFolder.error().description().startsWith(u"Impossibile salvare “folder.txt”"));
    EXPECT_TRUE(QFileInfo(path(u"folder.txt")).isDir());
    EXPECT_EQ(doc->path(), path(u"old.txt"));
    EXPECT_TRUE(doc->isDirty());
}

TEST_F(DocumentTest, UnencodableTextWritesNothing)
{
    auto doc = open(u"w.txt", "Perch\xE9\n");
    ASSERT_TRUE(doc);
    ASSERT_EQ(doc->encoding(), TextEncoding::windows1252());
    m_text.setText(u"Perché ł\n"_s);
    doc->textDidChange();
    for (const QString &target : {path(u"w.txt"), path(u"new.txt")}) {
        const auto written = doc->write(target, std::nullopt, true);
        ASSERT_FALSE(written);
        EXPECT_EQ(written.error().kind, Kind::unencodable);
        EXPECT_EQ(written.error().encoding, TextEncoding::windows1252());
        EXPECT_EQ(written.error().description(),
                  u"Alcuni caratteri non si possono scrivere in %1."_s.arg(
                      TextEncoding::windows1252().label()));
    }
    EXPECT_EQ(readFile(path(u"w.txt")), QByteArray("Perch\xE9\n"));
    EXPECT_FALSE(QFileInfo::exists(path(u"new.txt")));
    EXPECT_TRUE(doc->isDirty());
}

TEST_F(DocumentTest, ReadFailures)
{
    writeFile(path(u"latin.txt"), "caf\xE9");
    writeFile(path(u"bom.txt"), "\xFF\xFE\x41"); // a UTF-16 mark with half a unit
    writeFile(path(u"odd.txt"), "abc");
    const TextEncoding utf16{CharacterSet::utf16LE, false};
    const QString undecodable = u"“%1” non si può leggere come %2."_s;

    const struct
    {
        QString name;
        std::optional<TextEncoding> forced;
        QString message;
    } cases[] = {
        {u"missing.txt"_s, std::nullopt, u"Impossibile leggere “missing.txt”."_s},
        {u"latin.txt"_s, TextEncoding::utf8(), undecodable.arg(u"latin.txt", u"UTF-8")},
        {u"bom.txt"_s, std::nullopt, undecodable.arg(u"bom.txt", u"UTF-8")}, // detection tried
        {u"odd.txt"_s, utf16, undecodable.arg(u"odd.txt", utf16.label())},
    };

    for (const auto &c : cases) {
        const auto read = Document::read(path(c.name), c.forced, LineEnding::lf);
        ASSERT_FALSE(read) << c.name.toStdString();
        EXPECT_EQ(read.error().kind,
                  c.name == u"missing.txt" ? Kind::unreadable : Kind::undecodable);
        EXPECT_EQ(read.error().description(), c.message);
    }
}

TEST_F(DocumentTest, ChangedOnDiskAllowsHalfASecond)
{
    const QString file = path(u"t.txt");
    const QDateTime stored
        = QDateTime::fromString(u"2024-03-01T12:00:00.250Z"_s, Qt::ISODateWithMs);
    auto setTime = [&file](const QDateTime &time) {
        QFile handle(file);
        return handle.open(QIODevice::ReadWrite)
               && handle.setFileTime(time, QFileDevice::FileModificationTime);
    };
    writeFile(file, "x");
    ASSERT_TRUE(setTime(stored));
    Document doc(&m_text, "", file, TextEncoding::utf8(), LineEnding::lf, {});
    ASSERT_EQ(doc.fileModificationDate(), stored);

    const std::pair<qint64, bool> cases[]
        = {{0, false}, {400, false}, {-400, false}, {500, false}, {600, true}, {-600, true}};
    for (const auto &[offsetMs, changed] : cases) {
        ASSERT_TRUE(setTime(stored.addMSecs(offsetMs)));
        EXPECT_EQ(doc.hasChangedOnDisk(), changed) << offsetMs << " ms";
    }
    QFile::remove(file);
    EXPECT_FALSE(doc.hasChangedOnDisk()) << "a file that is gone";
}

TEST_F(DocumentTest, SaveAsChoosesTheLanguageAgainOnlyForANewExtension)
{
    const struct
    {
        QString from; // empty: untitled
        QString to;
        bool adopt;
        bool languageAgain;
    } cases[] = {
        {u"a.txt"_s, u"b.txt"_s, true, false},
        {u"a.txt"_s, u"b.TXT"_s, true, false},
        {u"a.txt"_s, u"a.md"_s, true, true},
        {u"a.txt"_s, u"Makefile"_s, true, true},
        {QString(), u"c.py"_s, true, true},
        {u"a.txt"_s, u"copy.md"_s, false, false}, // save a copy
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.to.toStdString());
        const std::optional<QString> from
            = c.from.isEmpty() ? std::nullopt : std::optional(path(c.from));
        m_text.setText(u"testo"_s);
        Document doc(&m_text, "", from, TextEncoding::utf8(), LineEnding::lf, u"nuovo 1"_s);
        doc.textDidChange();
        QStringList calls;
        doc.onPathChange = [&calls](const QString &newPath) { calls.append(newPath); };
        ASSERT_TRUE(doc.write(path(c.to), std::nullopt, c.adopt));
        EXPECT_EQ(calls, c.languageAgain ? QStringList{path(c.to)} : QStringList());
        EXPECT_EQ(doc.path(), c.adopt ? std::optional(path(c.to)) : from);
        EXPECT_EQ(doc.isDirty(), !c.adopt) << "only a save that adopts the file makes it clean";
    }
}

TEST(FileNamingTest, UntitledNameIsTheSmallestFree)
{
    const std::pair<const char *, const char *> cases[] = {
        {"", "nuovo 1"},
        {"nuovo 1", "nuovo 2"},
        {"nuovo 2", "nuovo 1"},
        {"nuovo 1,nuovo 3", "nuovo 2"},
        {"nuovo 3,nuovo 2,nuovo 1", "nuovo 4"},
        {"nuovo 10,nuovo 1 ,nuovo1", "nuovo 1"},
    };
    for (const auto &[inUse, expected] : cases) {
        const QStringList names = QString::fromUtf8(inUse).split(u',', Qt::SkipEmptyParts);
        EXPECT_EQ(nextUntitledName(names), QString::fromUtf8(expected)) << inUse;
    }
}

TEST(FileNamingTest, FileSizesInDecimalUnits)
{
    const std::pair<qint64, const char *> cases[] = {
        {0, "0 byte"},
        {999, "999 byte"},
        {1000, "1 kB"},
        {1500, "1.5 kB"},
        {999'499, "999 kB"},
        {999'500, "1 MB"}, // rounds up into the next unit, never "1000 kB"
        {200'000'000, "200 MB"},
        {200'000'001, "200 MB"},
        {1'234'567'890, "1.2 GB"},
        {5'000'000'000'000, "5 TB"},
    };
    for (const auto &[bytes, expected] : cases) {
        const QString shown = QString::fromUtf8(expected).replace(u'.', QLocale().decimalPoint());
        EXPECT_EQ(formatFileSize(bytes), shown) << bytes;
    }
}

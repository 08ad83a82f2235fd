#include "core/document/Document.h"

#include "core/document/FileNaming.h"
#include "support/FakeDocumentText.h"
#include "support/QStringPrinter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

class DocumentTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(m_dir.isValid()); }

    QString path(const QString &name) const { return m_dir.filePath(name); }

    // A document opened from `name` holding `bytes`, its text in `m_text`.
    std::unique_ptr<Document> open(const QString &name, const QByteArray &bytes)
    {
        writeFile(path(name), bytes);
        auto loaded = Document::read(path(name), std::nullopt, LineEnding::lf);
        if (!loaded) {
            ADD_FAILURE() << "cannot read " << name.toStdString();
            return nullptr;
        }
        m_text.setText(QString::fromUtf8(loaded->utf8));
        return std::make_unique<Document>(
            &m_text, loaded->utf8, path(name), loaded->encoding, loaded->lineEnding, QString());
    }

    QTemporaryDir m_dir;
    FakeDocumentText m_text;
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
    EXPECT_EQ(doc.backedUpChangeCount(), -1);

    // Handed-over text counts as a change even though it equals the saved text.
    doc.markHandedOver();
    EXPECT_TRUE(doc.isDirty());
    EXPECT_EQ(doc.changeCount(), 3);
    doc.markSaved();
    EXPECT_FALSE(doc.isDirty());
    EXPECT_FALSE(doc.formatChanged());
}

TEST_F(DocumentTest, FormatChangeIsAModificationUntilSaved)
{
    auto doc = open(u"a.txt"_s, "uno\ndue\n");
    ASSERT_TRUE(doc);
    doc->setLineEnding(LineEnding::lf); // the same ending: nothing changes
    EXPECT_FALSE(doc->isDirty());
    doc->setLineEnding(LineEnding::crlf);
    EXPECT_TRUE(doc->isDirty());
    // Editing back to the saved text does not hide the format change.
    doc->textDidChange();
    EXPECT_TRUE(doc->isDirty());

    ASSERT_TRUE(doc->write(path(u"a.txt"_s), std::nullopt, true));
    EXPECT_FALSE(doc->isDirty());
    EXPECT_EQ(contents(path(u"a.txt"_s)), QByteArray("uno\r\ndue\r\n"));

    doc->setEncoding(TextEncoding::utf16LEWithBom());
    EXPECT_TRUE(doc->isDirty());
    ASSERT_TRUE(doc->write(path(u"a.txt"_s), std::nullopt, true));
    EXPECT_FALSE(doc->isDirty());
    EXPECT_TRUE(contents(path(u"a.txt"_s)).startsWith(QByteArray("\xFF\xFEu\0n\0o\0\r\0\n\0", 12)));
}

TEST_F(DocumentTest, WriteKeepsPermissions)
{
    const QFile::Permissions cases[] = {
        QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup,
        QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther,
        QFile::ReadOwner | QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther,
    };
    auto doc = open(u"p.sh"_s, "echo\n");
    ASSERT_TRUE(doc);
    for (const QFile::Permissions permissions : cases) {
        SCOPED_TRACE(int(permissions));
        ASSERT_TRUE(QFile::setPermissions(path(u"p.sh"_s), permissions));
        const QFile::Permissions before = QFileInfo(path(u"p.sh"_s)).permissions();
        m_text.setText(m_text.text() + u'x');
        ASSERT_TRUE(doc->write(path(u"p.sh"_s), std::nullopt, true));
        EXPECT_EQ(contents(path(u"p.sh"_s)), m_text.text().toUtf8());
        EXPECT_EQ(QFileInfo(path(u"p.sh"_s)).permissions(), before);
    }
}

TEST_F(DocumentTest, AFailedWriteLeavesTheOldFileAndTheDocument)
{
    auto doc = open(u"old.txt"_s, "vecchio\n");
    ASSERT_TRUE(doc);
    m_text.setText(QString(4096, u'n'));
    doc->textDidChange();

    // A write past the file-size limit fails for every user, root included.
    std::signal(SIGXFSZ, SIG_IGN);

    struct rlimit saved
    {};

    getrlimit(RLIMIT_FSIZE, &saved);
    struct rlimit small = saved;
    small.rlim_cur = 64;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const auto written = doc->write(path(u"old.txt"_s), std::nullopt, true);
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, SIG_DFL);

    EXPECT_EQ(contents(path(u"old.txt"_s)), QByteArray("vecchio\n"));
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().kind, DocumentError::Kind::writeFailed);
    EXPECT_EQ(QDir(m_dir.path()).entryList(QDir::Files), QStringList{u"old.txt"_s})
        << "the temporary file stays behind";
    EXPECT_TRUE(doc->isDirty());

    // A folder where the file should go cannot be replaced either.
    ASSERT_TRUE(QDir(m_dir.path()).mkdir(u"folder.txt"_s));
    const auto onFolder = doc->write(path(u"folder.txt"_s), std::nullopt, true);
    ASSERT_FALSE(onFolder);
    EXPECT_EQ(onFolder.error().kind, DocumentError::Kind::writeFailed);
    EXPECT_TRUE(onFolder.error().description().startsWith(u"Impossibile salvare “folder.txt”"_s));
    EXPECT_TRUE(QFileInfo(path(u"folder.txt"_s)).isDir());
    EXPECT_EQ(doc->path(), path(u"old.txt"_s));
    EXPECT_TRUE(doc->isDirty());
}

TEST_F(DocumentTest, UnencodableTextWritesNothing)
{
    auto doc = open(u"w.txt"_s, "Perch\xE9\n");
    ASSERT_TRUE(doc);
    ASSERT_EQ(doc->encoding(), TextEncoding::windows1252());
    m_text.setText(u"Perché ł\n"_s);
    doc->textDidChange();
    for (const QString &target : {path(u"w.txt"_s), path(u"new.txt"_s)}) {
        const auto written = doc->write(target, std::nullopt, true);
        ASSERT_FALSE(written);
        EXPECT_EQ(written.error().kind, DocumentError::Kind::unencodable);
        EXPECT_EQ(written.error().encoding, TextEncoding::windows1252());
        EXPECT_EQ(written.error().description(),
                  u"Alcuni caratteri non si possono scrivere in "_s
                      + TextEncoding::windows1252().label() + u'.');
    }
    EXPECT_EQ(contents(path(u"w.txt"_s)), QByteArray("Perch\xE9\n"));
    EXPECT_FALSE(QFileInfo::exists(path(u"new.txt"_s)));
    EXPECT_TRUE(doc->isDirty());
}

TEST_F(DocumentTest, ReadFailures)
{
    writeFile(path(u"latin.txt"_s), "caf\xE9");
    writeFile(path(u"bom.txt"_s), "\xFF\xFE\x41"); // a UTF-16 mark with half a unit
    writeFile(path(u"odd.txt"_s), "abc");
    const TextEncoding utf16{CharacterSet::utf16LE, false};

    struct Case
    {
        QString name;
        std::optional<TextEncoding> forced;
        DocumentError::Kind kind;
        QString message;
    } const cases[] = {
        {u"missing.txt"_s,
         std::nullopt,
         DocumentError::Kind::unreadable,
         u"Impossibile leggere “missing.txt”."_s},
        {u"latin.txt"_s,
         TextEncoding::utf8(),
         DocumentError::Kind::undecodable,
         u"“latin.txt” non si può leggere come "_s + TextEncoding::utf8().label() + u'.'},
        {u"bom.txt"_s,
         std::nullopt,
         DocumentError::Kind::undecodable,
         u"“bom.txt” non si può leggere come "_s + TextEncoding::utf8().label() + u'.'},
        {u"odd.txt"_s,
         utf16,
         DocumentError::Kind::undecodable,
         u"“odd.txt” non si può leggere come "_s + utf16.label() + u'.'},
    };

    for (const Case &c : cases) {
        SCOPED_TRACE(c.name.toStdString());
        const auto read = Document::read(path(c.name), c.forced, LineEnding::lf);
        ASSERT_FALSE(read);
        EXPECT_EQ(read.error().kind, c.kind);
        EXPECT_EQ(read.error().description(), c.message);
    }
}

TEST_F(DocumentTest, ChangedOnDiskAllowsHalfASecond)
{
    const QDateTime stored
        = QDateTime::fromString(u"2024-03-01T12:00:00.250Z"_s, Qt::ISODateWithMs);
    auto setTime = [this](const QDateTime &time) {
        QFile file(path(u"t.txt"_s));
        return file.open(QIODevice::ReadWrite)
               && file.setFileTime(time, QFileDevice::FileModificationTime);
    };
    writeFile(path(u"t.txt"_s), "x");
    ASSERT_TRUE(setTime(stored));
    m_text.setText(u"x"_s);
    Document doc(&m_text, "x", path(u"t.txt"_s), TextEncoding::utf8(), LineEnding::lf, {});
    ASSERT_EQ(doc.fileModificationDate(), stored);

    const struct
    {
        qint64 offsetMs;
        bool changed;
    } cases[] = {{0, false},
                 {400, false},
                 {-400, false},
                 {500, false},
                 {600, true},
                 {-600, true},
                 {3'600'000, true}};

    for (const auto &c : cases) {
        SCOPED_TRACE(c.offsetMs);
        ASSERT_TRUE(setTime(stored.addMSecs(c.offsetMs)));
        EXPECT_EQ(doc.hasChangedOnDisk(), c.changed);
    }
    QFile::remove(path(u"t.txt"_s));
    EXPECT_FALSE(doc.hasChangedOnDisk()) << "a file that is gone";
    Document untitled(
        &m_text, "x", std::nullopt, TextEncoding::utf8(), LineEnding::lf, u"nuovo 1"_s);
    EXPECT_FALSE(untitled.hasChangedOnDisk());
}

TEST_F(DocumentTest, SaveAsChoosesTheLanguageAgainOnlyForANewExtension)
{
    const struct
    {
        std::optional<QString> from;
        QString to;
        bool adopt;
        bool languageAgain;
    } cases[] = {
        {u"a.txt"_s, u"b.txt"_s, true, false},
        {u"a.txt"_s, u"b.TXT"_s, true, false},
        {u"a.txt"_s, u"a.md"_s, true, true},
        {u"a.txt"_s, u"Makefile"_s, true, true},
        {std::nullopt, u"c.py"_s, true, true},
        {u"a.txt"_s, u"copy.md"_s, false, false},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.to.toStdString());
        m_text.setText(u"testo"_s);
        Document doc(&m_text,
                     "",
                     c.from ? std::optional(path(*c.from)) : std::nullopt,
                     TextEncoding::utf8(),
                     LineEnding::lf,
                     c.from ? QString() : u"nuovo 1"_s);
        doc.textDidChange();
        QStringList calls;
        doc.onPathChange = [&calls](const QString &newPath) { calls.append(newPath); };
        ASSERT_TRUE(doc.write(path(c.to), std::nullopt, c.adopt));
        EXPECT_EQ(calls, c.languageAgain ? QStringList{path(c.to)} : QStringList());
        EXPECT_EQ(doc.path(),
                  c.adopt ? std::optional(path(c.to))
                          : (c.from ? std::optional(path(*c.from)) : std::nullopt));
        EXPECT_EQ(doc.isDirty(), !c.adopt)
            << "only a save that adopts the file makes the document clean";
        EXPECT_EQ(doc.displayName(), c.adopt ? c.to : QFileInfo(*c.from).fileName());
    }
}

TEST(FileNamingTest, UntitledNameIsTheSmallestFree)
{
    const struct
    {
        QStringList inUse;
        QString expected;
    } cases[] = {
        {{}, u"nuovo 1"_s},
        {{u"nuovo 1"_s}, u"nuovo 2"_s},
        {{u"nuovo 2"_s}, u"nuovo 1"_s},
        {{u"nuovo 1"_s, u"nuovo 3"_s}, u"nuovo 2"_s},
        {{u"nuovo 3"_s, u"nuovo 2"_s, u"nuovo 1"_s}, u"nuovo 4"_s},
        {{u"nuovo 10"_s, u"nuovo 1 "_s, u"nuovo1"_s}, u"nuovo 1"_s},
    };

    for (const auto &c : cases)
        EXPECT_EQ(nextUntitledName(c.inUse), c.expected) << c.inUse.join(u',').toStdString();
}

TEST(FileNamingTest, FileSizesInDecimalUnits)
{
    const QString point = QLocale().decimalPoint();

    const struct
    {
        qint64 bytes;
        QString expected;
    } cases[] = {
        {0, u"0 byte"_s},
        {999, u"999 byte"_s},
        {1000, u"1 kB"_s},
        {1500, u"1"_s + point + u"5 kB"_s},
        {999'499, u"999 kB"_s},
        {999'500, u"1 MB"_s}, // rounds up into the next unit, never "1000 kB"
        {250'000'000, u"250 MB"_s},
        {200'000'000, u"200 MB"_s},
        {200'000'001, u"200 MB"_s},
        {1'234'567'890, u"1"_s + point + u"2 GB"_s},
        {5'000'000'000'000, u"5 TB"_s},
    };

    for (const auto &c : cases)
        EXPECT_EQ(formatFileSize(c.bytes), c.expected) << c.bytes;
}

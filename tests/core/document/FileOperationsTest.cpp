// Creating, renaming and trashing entries never replaces or loses another one, and says why the
// system refused in the program's own words.
#include "core/document/FileOperations.h"

#include "support/QStringPrinter.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace mirtex {
namespace {

using namespace Qt::StringLiterals;

class FileOperationsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QDir().mkpath(at(u"folder/inner"_s));
        writeFile(at(u"folder/taken.txt"_s), "taken");
    }

    QString at(const QString &name) const { return dir.filePath(name); }

    QTemporaryDir dir;
};

TEST_F(FileOperationsTest, CreatingRefusesTakenAndInvalidNames)
{
    using Create = std::expected<QString, FileProblem> (*)(const QString &, const QString &);

    const struct
    {
        Create create;
        QString folder;
        QString name;
        std::optional<FileProblem> problem;
    } cases[] = {
        {&FileOperations::createFile, u"folder"_s, u"nuovo.txt"_s, std::nullopt},
        {&FileOperations::createFolder, u"folder"_s, u"nuova"_s, std::nullopt},
        {&FileOperations::createFile, u"folder"_s, u"taken.txt"_s, FileProblem::alreadyExists},
        {&FileOperations::createFile, u"folder"_s, u"inner"_s, FileProblem::alreadyExists},
        {&FileOperations::createFolder, u"folder"_s, u"taken.txt"_s, FileProblem::alreadyExists},
        {&FileOperations::createFile, u"missing"_s, u"x.txt"_s, FileProblem::notFound},
        {&FileOperations::createFile, u"folder"_s, u""_s, FileProblem::invalidName},
        {&FileOperations::createFile, u"folder"_s, u"a/b"_s, FileProblem::invalidName},
        {&FileOperations::createFolder, u"folder"_s, u".."_s, FileProblem::invalidName},
        {&FileOperations::createFile, u"folder"_s, QString(300, u'x'), FileProblem::invalidName},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.name.toStdString());
        const auto made = c.create(at(c.folder), c.name);
        ASSERT_EQ(made.has_value(), !c.problem);
        if (made)
            EXPECT_EQ(*made, at(c.folder + u'/' + c.name));
        else
            EXPECT_EQ(made.error(), *c.problem);
    }
    EXPECT_EQ(readFile(at(u"folder/taken.txt"_s)), "taken") << "never truncated";
    EXPECT_EQ(readFile(at(u"folder/nuovo.txt"_s)), "");
    EXPECT_TRUE(QFileInfo(at(u"folder/nuova"_s)).isDir());
}

TEST_F(FileOperationsTest, RenamingNeverReplacesAnotherEntry)
{
    writeFile(at(u"folder/a.txt"_s), "a");

    const struct
    {
        QString from;
        QString name;
        std::optional<FileProblem> problem;
    } cases[] = {
        {u"folder/a.txt"_s, u"taken.txt"_s, FileProblem::alreadyExists},
        {u"folder/a.txt"_s, u"inner"_s, FileProblem::alreadyExists},
        {u"folder/inner"_s, u"taken.txt"_s, FileProblem::alreadyExists},
        {u"folder/a.txt"_s, u"x/y"_s, FileProblem::invalidName},
        {u"folder/gone.txt"_s, u"b.txt"_s, FileProblem::notFound},
        {u"folder/a.txt"_s, u"a.txt"_s, std::nullopt}, // the same name: nothing to do
        {u"folder/a.txt"_s, u"b.md"_s, std::nullopt},
        {u"folder/inner"_s, u"outer"_s, std::nullopt},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(QString(c.from + u" → "_s + c.name).toStdString());
        const auto moved = FileOperations::rename(at(c.from), c.name);
        ASSERT_EQ(moved.has_value(), !c.problem);
        if (moved)
            EXPECT_EQ(*moved, QFileInfo(at(c.from)).absolutePath() + u'/' + c.name);
        else
            EXPECT_EQ(moved.error(), *c.problem);
    }
    EXPECT_EQ(readFile(at(u"folder/taken.txt"_s)), "taken");
    EXPECT_EQ(readFile(at(u"folder/b.md"_s)), "a");
    EXPECT_TRUE(QFileInfo(at(u"folder/outer"_s)).isDir());
    EXPECT_FALSE(QFileInfo::exists(at(u"folder/a.txt"_s)));
}

TEST_F(FileOperationsTest, TrashedEntriesCanBeFoundInTheTrash)
{
    // A home on the files' own disk, so that its trash is the one used.
    const QByteArray oldHome = qgetenv("HOME");
    const QByteArray oldDataHome = qgetenv("XDG_DATA_HOME");
    qputenv("HOME", dir.path().toUtf8());
    qputenv("XDG_DATA_HOME", at(u"data"_s).toUtf8());
    writeFile(at(u"folder/inner/x.txt"_s), "x");

    const auto file = FileOperations::moveToTrash(at(u"folder/taken.txt"_s));
    const auto folder = FileOperations::moveToTrash(at(u"folder/inner"_s));
    const auto missing = FileOperations::moveToTrash(at(u"folder/taken.txt"_s));
    qputenv("XDG_DATA_HOME", oldDataHome);
    qputenv("HOME", oldHome);

    ASSERT_TRUE(file.has_value());
    ASSERT_TRUE(folder.has_value());
    // In the desktop's trash, never in a folder of the working directory (the data folder did not
    // exist before).
    EXPECT_TRUE(file->startsWith(at(u"data/Trash/files/"_s))) << file->toStdString();
    EXPECT_TRUE(QFileInfo::exists(at(u"data/Trash/info/taken.txt.trashinfo"_s)));
    EXPECT_EQ(readFile(*file), "taken");
    EXPECT_EQ(readFile(*folder + u"/x.txt"_s), "x");
    EXPECT_FALSE(QFileInfo::exists(at(u"folder/taken.txt"_s)));
    EXPECT_FALSE(QFileInfo::exists(at(u"folder/inner"_s)));
    ASSERT_FALSE(missing.has_value());
    EXPECT_EQ(missing.error(), FileProblem::notFound);
}

} // namespace
} // namespace mirtex

// Saving keeps what the user did not ask to change (mode, owner, links), never leaves a mixed file,
// and works in folders the user cannot write; reading refuses what is not a regular file.
#include "core/document/FileSaver.h"

#include "core/document/Document.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace mirtex {
namespace {

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
}

mode_t modeOf(const QString &path)
{
    struct stat status
    {};

    ::stat(QFile::encodeName(path).constData(), &status);
    return status.st_mode & 07777;
}

class FileSaverTest : public ::testing::Test
{
protected:
    QString path(const char *name) const { return m_dir.path() + u'/' + QString::fromUtf8(name); }

    QStringList entries() const
    {
        return QDir(m_dir.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir m_dir;
};

TEST_F(FileSaverTest, KeepsTheExactModeOfTheOldFile)
{
    // Root may write any of these; the mode must not widen because of it.
    for (const mode_t mode : {0444, 0400, 0440, 0640, 0600, 0755, 04755, 0664}) {
        const QString file = path("m.txt");
        writeFile(file, "vecchio\n");
        ASSERT_EQ(::chmod(QFile::encodeName(file).constData(), mode), 0);
        ASSERT_TRUE(FileSaver::save(file, "nuovo\n")) << std::oct << mode;
        EXPECT_EQ(readFile(file), "nuovo\n");
        EXPECT_EQ(modeOf(file), mode) << std::oct << mode;
        ::chmod(QFile::encodeName(file).constData(), 0600);
    }
    EXPECT_EQ(entries(), QStringList{u"m.txt"_qs});
}

TEST_F(FileSaverTest, NewFilesFollowTheUmask)
{
    const mode_t old = ::umask(027);
    const auto saved = FileSaver::save(path("n.txt"), "x");
    ::umask(old);
    ASSERT_TRUE(saved);
    EXPECT_EQ(modeOf(path("n.txt")), mode_t(0640));
}

TEST_F(FileSaverTest, ALinkStaysALinkAndItsTargetChanges)
{
    writeFile(path("target.txt"), "vecchio");
    ASSERT_TRUE(QFile::link(path("target.txt"), path("link.txt")));
    ASSERT_TRUE(FileSaver::save(path("link.txt"), "nuovo"));
    EXPECT_TRUE(QFileInfo(path("link.txt")).isSymLink());
    EXPECT_EQ(readFile(path("target.txt")), "nuovo");
}

TEST_F(FileSaverTest, RefusesFoldersAndDevicesWithoutTouchingThem)
{
    ASSERT_TRUE(QDir(m_dir.path()).mkdir(u"cartella"_qs));
    EXPECT_EQ(FileSaver::save(path("cartella"), "x").error(), FileProblem::isFolder);
    EXPECT_EQ(FileSaver::save(u"/dev/null"_qs, "x").error(), FileProblem::notRegularFile);
    EXPECT_EQ(FileSaver::save(path("manca/x.txt"), "x").error(), FileProblem::notFound);
    EXPECT_EQ(entries(), QStringList{u"cartella"_qs});
}

// Runs `body` as a user who cannot write the test folder (a child process that drops root, or
// this process when it is not root) and returns its exit status.
int asUserWithoutFolderAccess(const QString &folder, const std::function<int()> &body)
{
    if (::geteuid() != 0) {
        ::chmod(QFile::encodeName(folder).constData(), 0555);
        const int result = body();
        ::chmod(QFile::encodeName(folder).constData(), 0755);
        return result;
    }
    ::chmod(QFile::encodeName(folder).constData(), 0755);
    const pid_t child = ::fork();
    if (child == 0) {
        if (::setgid(65534) != 0 || ::setuid(65534) != 0)
            ::_exit(90);
        ::_exit(body());
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 99;
}

TEST_F(FileSaverTest, AWritableFileInAReadOnlyFolderIsRewrittenInPlace)
{
    const QString file = path("in-place.txt");
    writeFile(file, "una riga vecchia e lunga\n");
    ::chown(QFile::encodeName(file).constData(), 65534, 65534);
    ::chmod(QFile::encodeName(file).constData(), 0644);
    const int result = asUserWithoutFolderAccess(m_dir.path(), [&]() {
        // Shorter, then longer: the old tail must not survive either.
        if (!FileSaver::save(file, "breve\n") || readFile(file) != "breve\n")
            return 1;
        if (!FileSaver::save(file, QByteArray(10000, 'l')) || readFile(file).size() != 10000)
            return 2;
        // A size limit stops the write before a byte changes.
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit{20000, RLIM_INFINITY};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const auto refused = FileSaver::save(file, QByteArray(30000, 'x'));
        if (refused || refused.error() != FileProblem::fileTooLarge)
            return 3;
        return readFile(file) == QByteArray(10000, 'l') ? 0 : 4;
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(entries(), QStringList{u"in-place.txt"_qs});
}

TEST_F(FileSaverTest, ReadingRefusesWhatIsNotARegularFile)
{
    const QString fifo = path("tubo");
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    ASSERT_TRUE(QDir(m_dir.path()).mkdir(u"cartella"_qs));

    const struct
    {
        QString path;
        FileProblem problem;
        QString reason;
    } cases[] = {
        {u"/dev/zero"_qs, FileProblem::notRegularFile, u"Non è un file normale."_qs},
        {fifo, FileProblem::notRegularFile, u"Non è un file normale."_qs},
        {path("cartella"), FileProblem::isFolder, u"È una cartella."_qs},
        {path("manca.txt"), FileProblem::notFound, u"Il file non esiste."_qs},
    };

    for (const auto &c : cases) {
        const auto read = Document::read(c.path, std::nullopt, LineEnding::lf);
        ASSERT_FALSE(read) << qPrintable(c.path);
        EXPECT_EQ(read.error().problem, c.problem) << qPrintable(c.path);
        EXPECT_EQ(read.error().reason(), c.reason);
    }
}

} // namespace
} // namespace mirtex

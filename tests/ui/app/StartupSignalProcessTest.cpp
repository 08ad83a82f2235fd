// The real program, stopped by SIGTERM while it asks at start-up whether to open a very large file
// or backup: the session on disk and every backup must come through as they were.
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <csignal>

namespace {

void writeFile(const QString &path, const QByteArray &bytes, qint64 size = -1)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    if (size >= 0) {
        ASSERT_TRUE(file.resize(size)); // sparse: large on paper, nothing to write
    }
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(4096) : QByteArray("<missing>");
}

QJsonObject entry(const char *id, const QString &path, bool hasBackup)
{
    QJsonObject object{{"id", id}, {"hasBackup", hasBackup}};
    if (path.isEmpty())
        object.insert(u"untitledName", QStringLiteral("nuovo %1").arg(id));
    else
        object.insert(u"path", path);
    return object;
}

} // namespace

TEST(StartupSignalProcess, TermDuringTheLargeFileQuestionKeepsTheSession)
{
    constexpr qint64 kAboveLimit = 200'000'001;
    for (const bool largeBackup : {false, true}) {
        SCOPED_TRACE(largeBackup ? "large backup" : "large file");
        QTemporaryDir home;
        const QString folder = home.path() + QStringLiteral("/state/Mirtex");
        ASSERT_TRUE(QDir().mkpath(folder + QStringLiteral("/backup")));
        const QString big = home.filePath(QStringLiteral("grande.log"));
        writeFile(big, "inizio\n", largeBackup ? 100 : kAboveLimit);
        writeFile(folder + QStringLiteral("/backup/a.txt"), "primo, mai salvato");
        writeFile(folder + QStringLiteral("/backup/b.txt"), "b\n", largeBackup ? kAboveLimit : -1);
        writeFile(folder + QStringLiteral("/backup/c.txt"), "terzo, mai salvato");
        const QJsonArray entries{
            entry("a", {}, true), entry("b", big, largeBackup), entry("c", {}, true)};
        const QByteArray session
            = QJsonDocument(QJsonObject{{"entries", entries}, {"selected", 2}}).toJson();
        writeFile(folder + QStringLiteral("/session.json"), session);

        QProcess program;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_STATE_HOME"), home.path() + QStringLiteral("/state"));
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), home.path() + QStringLiteral("/config"));
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), home.path());
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        program.setProcessEnvironment(env);
        program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        program.start(QStringLiteral(MIRTEX_BINARY), {QStringLiteral("--new-instance")});
        ASSERT_TRUE(program.waitForStarted(10000));
        QThread::msleep(4000); // the question about the second tab is open by now
        ::kill(pid_t(program.processId()), SIGTERM);
        const bool finished = program.waitForFinished(15000);
        if (!finished)
            program.kill();
        EXPECT_TRUE(finished) << "the program did not stop on SIGTERM";

        EXPECT_EQ(contents(folder + QStringLiteral("/session.json")), session.left(4096))
            << "a half-restored session was written";
        EXPECT_EQ(contents(folder + QStringLiteral("/backup/a.txt")), "primo, mai salvato");
        EXPECT_EQ(contents(folder + QStringLiteral("/backup/c.txt")), "terzo, mai salvato");
        if (largeBackup) {
            EXPECT_EQ(QFileInfo(folder + QStringLiteral("/backup/b.txt")).size(), kAboveLimit);
        }
    }
}

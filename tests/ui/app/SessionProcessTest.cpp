// The real program, killed: unsaved text handed to it survives SIGKILL (the timer wrote it) and
// SIGTERM writes the session at once.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <csignal>

namespace {

class ProgramRun
{
public:
    explicit ProgramRun(const QString &home)
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_STATE_HOME"), home + QStringLiteral("/state"));
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/config"));
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), home);
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        m_process.setProcessEnvironment(env);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    }

    ~ProgramRun()
    {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished(5000);
        }
    }

    void start(const QStringList &arguments)
    {
        m_process.start(QStringLiteral(MIRTEX_BINARY),
                        QStringList{QStringLiteral("--new-instance")} + arguments);
        ASSERT_TRUE(m_process.waitForStarted(10000));
    }

    QProcess &process() { return m_process; }

private:
    QProcess m_process;
};

bool waitFor(const std::function<bool()> &condition, int timeoutMs)
{
    for (int waited = 0; waited < timeoutMs; waited += 100) {
        if (condition())
            return true;
        QThread::msleep(100);
    }
    return condition();
}

QJsonArray sessionEntries(const QString &sessionFile)
{
    QFile file(sessionFile);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll())
        .object()
        .value(QStringLiteral("entries"))
        .toArray();
}

QString backupText(const QString &folder, const QJsonArray &entries, const QString &wanted)
{
    for (const QJsonValue &entry : entries) {
        QFile backup(folder + QStringLiteral("/backup/") + entry[QStringLiteral("id")].toString()
                     + QStringLiteral(".txt"));
        if (entry[QStringLiteral("hasBackup")].toBool() && backup.open(QIODevice::ReadOnly)) {
            const QString text = QString::fromUtf8(backup.readAll());
            if (text == wanted)
                return text;
        }
    }
    return {};
}

} // namespace

TEST(SessionProcess, UnsavedTextSurvivesKillAndTermWritesAtOnce)
{
    QTemporaryDir home;
    const QString folder = home.path() + QStringLiteral("/state/Mirtex");
    const QString sessionFile = folder + QStringLiteral("/session.json");
    const QString text = QStringLiteral("Testo mai salvato: città");

    {
        ProgramRun first(home.path());
        first.start({QStringLiteral("mirtex:?text=Testo%20mai%20salvato:%20citt%C3%A0")});
        // The 8-second timer writes the session and the backup.
        ASSERT_TRUE(waitFor(
            [&] { return !backupText(folder, sessionEntries(sessionFile), text).isEmpty(); },
            20000))
            << "the periodic session write did not keep the handed-over text";
        ::kill(pid_t(first.process().processId()), SIGKILL);
        first.process().waitForFinished(5000);
    }

    ProgramRun second(home.path());
    second.start({});
    QThread::msleep(3000); // let it restore and settle
    ASSERT_TRUE(QFile::remove(sessionFile));
    ::kill(pid_t(second.process().processId()), SIGTERM);
    ASSERT_TRUE(second.process().waitForFinished(10000));
    EXPECT_EQ(second.process().exitStatus(), QProcess::NormalExit);
    // Written by the signal, not by a timer tick, and still holding the restored text.
    EXPECT_EQ(backupText(folder, sessionEntries(sessionFile), text), text);
}

// Two windows started on purpose as separate instances share the state folder: only the first
// keeps the session; the second never writes, prunes or takes over the first's backups.
TEST(SessionProcess, ASecondInstanceLeavesTheFirstsSessionAlone)
{
    QTemporaryDir home;
    const QString folder = home.path() + QStringLiteral("/state/Mirtex");
    const QString sessionFile = folder + QStringLiteral("/session.json");
    const QString text = QStringLiteral("della prima");

    ProgramRun first(home.path());
    first.start({QStringLiteral("mirtex:?text=della%20prima")});
    ASSERT_TRUE(waitFor(
        [&] { return !backupText(folder, sessionEntries(sessionFile), text).isEmpty(); }, 20000));
    auto snapshot = [&] {
        QStringList files{sessionFile};
        for (const QString &name : QDir(folder + QStringLiteral("/backup")).entryList(QDir::Files))
            files.append(folder + QStringLiteral("/backup/") + name);
        QByteArray all;
        for (const QString &file : files) {
            QFile f(file);
            all += file.toUtf8() + (f.open(QIODevice::ReadOnly) ? f.readAll() : "<missing>");
        }
        return all;
    };
    const QByteArray before = snapshot();

    ProgramRun second(home.path());
    second.start({QStringLiteral("mirtex:?text=della%20seconda")});
    QThread::msleep(10000); // past the second's first periodic write
    EXPECT_EQ(snapshot(), before) << "the second instance wrote into the first's session";
    ::kill(pid_t(second.process().processId()), SIGTERM);
    ASSERT_TRUE(second.process().waitForFinished(10000));
    EXPECT_EQ(snapshot(), before) << "the second instance wrote at its termination";

    ::kill(pid_t(first.process().processId()), SIGTERM);
    ASSERT_TRUE(first.process().waitForFinished(10000));
    EXPECT_EQ(backupText(folder, sessionEntries(sessionFile), text), text);
    EXPECT_EQ(QFileInfo(folder).permissions() & 0x0077, 0) << "the state folder is private";
}

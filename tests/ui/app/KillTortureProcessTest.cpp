// The real program killed with SIGKILL at random moments while it types, saves and writes its
// session many times a second: every file and backup on disk is always a whole version (old or
// new, never a mix or a cut), no backup the session names is missing, and no text goes back.
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <csignal>

namespace {

// Lines "riga NNNNNN xxx…" counting up from 1 (the first line of an empty tab is number 1), all
// complete; the number of lines, or -1 when the text is not such a whole version.
qsizetype wholeVersionLines(const QByteArray &text)
{
    if (text.isEmpty())
        return 0;
    if (!text.endsWith('\n'))
        return -1;
    const QList<QByteArray> lines = text.chopped(1).split('\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QByteArray expected = "riga " + QByteArray::number(i + 1).rightJustified(6, '0') + ' '
                                    + QByteArray(2000, 'x');
        if (lines[i] != expected)
            return -1;
    }
    return lines.size();
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

TEST(KillTortureProcess, NoKillLeavesAMixedFileOrLosesABackup)
{
    QTemporaryDir home;
    const QString folder = home.path() + QStringLiteral("/state/Mirtex");
    const QString file = home.filePath(QStringLiteral("registro.txt"));
    QFile(file).open(QIODevice::WriteOnly);
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("XDG_STATE_HOME"), home.path() + QStringLiteral("/state"));
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), home.path() + QStringLiteral("/config"));
    env.insert(QStringLiteral("XDG_RUNTIME_DIR"), home.path());
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("MIRTEX_SESSION_STRESS"), file);

    QRandomGenerator random(20261123);
    qsizetype savedLines = 0;
    QHash<QString, qsizetype> backupLines; // by backup file name: never fewer lines later
    int kills = 0;
    for (int cycle = 0; cycle < 14; ++cycle) {
        QProcess program;
        program.setProcessEnvironment(env);
        program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        program.start(QStringLiteral(MIRTEX_BINARY), {QStringLiteral("--new-instance")});
        ASSERT_TRUE(program.waitForStarted(10000));
        QThread::msleep(600 + random.bounded(1600));
        ::kill(pid_t(program.processId()), SIGKILL);
        program.waitForFinished(10000);
        ++kills;

        const qsizetype lines = wholeVersionLines(contents(file));
        ASSERT_GE(lines, 0) << "cycle " << cycle << ": the saved file is not a whole version";
        EXPECT_GE(lines, savedLines) << "cycle " << cycle << ": the saved file went back";
        savedLines = lines;

        const auto session
            = QJsonDocument::fromJson(contents(folder + QStringLiteral("/session.json")));
        if (!session.isObject())
            continue; // killed before the first write
        for (const QJsonValue &entry : session[QStringLiteral("entries")].toArray()) {
            if (!entry[QStringLiteral("hasBackup")].toBool())
                continue;
            const QString name = entry[QStringLiteral("id")].toString() + QStringLiteral(".txt");
            const QString path = folder + QStringLiteral("/backup/") + name;
            ASSERT_TRUE(QFile::exists(path)) << "cycle " << cycle << ": a named backup is missing";
            const qsizetype backup = wholeVersionLines(contents(path));
            ASSERT_GE(backup, 0) << "cycle " << cycle << ": backup " << qPrintable(name)
                                 << " is not a whole version";
            EXPECT_GE(backup, backupLines.value(name)) << "cycle " << cycle << ": text was lost";
            backupLines[name] = backup;
        }
    }
    EXPECT_GT(savedLines, 0) << "the workload never saved: the test tested nothing";
    EXPECT_FALSE(backupLines.isEmpty()) << "the workload never wrote a backup";
    EXPECT_EQ(kills, 14);
}

#include "core/document/SessionStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <iostream>
#include <sys/resource.h>

using namespace mirtex;

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

struct Doc
{
    QString id;
    std::optional<QString> path;
    bool needsBackup;
    qint64 changeCount;
    qint64 backedUp;
    QString text;
};

class SessionStoreTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_home.isValid());
        m_previous = qgetenv("XDG_STATE_HOME");
        qputenv("XDG_STATE_HOME", m_home.path().toUtf8());
    }

    void TearDown() override
    {
        if (m_previous.isEmpty())
            qunsetenv("XDG_STATE_HOME");
        else
            qputenv("XDG_STATE_HOME", m_previous);
    }

    // Builds the writer's input; every text produced is counted in textsAsked.
    QList<SessionDocument> documents(const QList<Doc> &docs)
    {
        QList<SessionDocument> list;
        for (const Doc &doc : docs) {
            SessionDocument document;
            document.entry.id = doc.id;
            document.entry.path = doc.path;
            if (!doc.path)
                document.entry.untitledName = QStringLiteral("nuovo ") + doc.id;
            document.needsBackup = doc.needsBackup;
            document.changeCount = doc.changeCount;
            document.backedUpChangeCount = doc.backedUp;
            document.text = [this, text = doc.text] {
                ++textsAsked;
                return text;
            };
            list.append(document);
        }
        return list;
    }

    QString folder() const { return m_home.filePath(QStringLiteral("Mirtex")); }

    QTemporaryDir m_home;
    QByteArray m_previous;
    int textsAsked = 0;
};

} // namespace

TEST_F(SessionStoreTest, WritesBackupsOnlyWhenTheChangeCountMovedAndLoadsThemBack)
{
    SessionStore store;
    ASSERT_EQ(store.folderPath(), folder());
    const QList<Doc> docs{{"a", std::nullopt, true, 3, -1, QStringLiteral("ciao\nè")},
                          {"b", QStringLiteral("/tmp/b.txt"), false, 0, -1, "clean"},
                          {"c", QStringLiteral("/tmp/c.txt"), true, 2, 2, "unchanged"}};
    const auto first = store.write(documents(docs), 1, {QStringLiteral("/w")}, true);
    EXPECT_TRUE(first.succeeded) << first.failure.toStdString();
    // "c" claims a current backup that the folder does not hold, so it is written too.
    EXPECT_EQ(first.backedUpChangeCounts, (QHash<QString, qint64>{{"a", 3}, {"c", 2}}));
    EXPECT_EQ(textsAsked, 2);
    EXPECT_FALSE(QFile::exists(store.backupFilePath(QStringLiteral("b"))));

    // Nothing moved: no text asked, nothing reported.
    QList<Doc> next = docs;
    next[0].backedUp = 3;
    textsAsked = 0;
    EXPECT_TRUE(store.write(documents(next), 1, {QStringLiteral("/w")}, true)
                    .backedUpChangeCounts.isEmpty());
    EXPECT_EQ(textsAsked, 0);

    next[0].changeCount = 4;
    next[0].text = QStringLiteral("ciao!");
    EXPECT_EQ(store.write(documents(next), 1, {QStringLiteral("/w")}, true).backedUpChangeCounts,
              (QHash<QString, qint64>{{"a", 4}}));
    EXPECT_EQ(textsAsked, 1);

    const SessionStore reader;
    const auto state = reader.load();
    ASSERT_TRUE(state);
    ASSERT_EQ(state->entries.size(), 3);
    EXPECT_TRUE(state->entries[0].hasBackup);
    EXPECT_FALSE(state->entries[1].hasBackup);
    EXPECT_EQ(state->entries[1].path, u"/tmp/b.txt");
    EXPECT_EQ(state->selected, 1);
    EXPECT_TRUE(state->sidebarVisible);
    EXPECT_EQ(reader.readBackup(QStringLiteral("a")), u"ciao!");
    EXPECT_EQ(reader.readBackup(QStringLiteral("c")), u"unchanged");
    EXPECT_EQ(reader.readBackup(QStringLiteral("b")), std::nullopt);
    EXPECT_EQ(reader.readBackup(QStringLiteral("../Mirtex/session.json")), std::nullopt);
}

TEST_F(SessionStoreTest, RemovesBackupsNoEntryNames)
{
    SessionStore store;
    store.write(
        documents({{"a", std::nullopt, true, 1, -1, "a"}, {"b", std::nullopt, true, 1, -1, "b"}}),
        0,
        {},
        false);
    QFile stray(QDir(folder()).filePath(QStringLiteral("backup/stray.tmp")));
    ASSERT_TRUE(stray.open(QIODevice::WriteOnly));
    stray.close();

    // "a" was closed; "b" was saved and is clean now.
    SessionStore restarted;
    EXPECT_TRUE(
        restarted
            .write(documents({{"b", QStringLiteral("/tmp/b"), false, 1, 1, "b"}}), 0, {}, false)
            .succeeded);
    EXPECT_TRUE(QDir(folder() + QStringLiteral("/backup")).isEmpty());
}

TEST_F(SessionStoreTest, FallsBackToThePreviousSessionWhenTheFileIsDamaged)
{
    SessionStore store;
    store.write(documents({{"first", QStringLiteral("/tmp/1"), false, 0, -1, ""}}), 0, {}, false);
    store.write(documents({{"second", QStringLiteral("/tmp/2"), false, 0, -1, ""}}), 0, {}, false);
    const QString sessionFile = store.sessionFilePath();
    const QByteArray written = contents(sessionFile);

    for (const QByteArray &damage : {written.left(written.size() / 2), QByteArray("[1,2]")}) {
        QFile file(sessionFile);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(damage);
        file.close();
        const auto state = SessionStore().load();
        ASSERT_TRUE(state);
        EXPECT_EQ(state->entries.value(0).id, u"first");
    }
    // A new run does not keep the damaged file as the previous session.
    SessionStore next;
    next.write(documents({{"third", QStringLiteral("/tmp/3"), false, 0, -1, ""}}), 0, {}, false);
    QFile::remove(sessionFile);
    EXPECT_EQ(next.load()->entries.value(0).id, u"first");

    next.removeSessionFile();
    EXPECT_FALSE(next.load());
}

TEST_F(SessionStoreTest, AFailedWriteLeavesTheOldFilesWholeAndIsRetried)
{
    enum class Failure {
        readOnlyFolder,
        fileSizeLimit
    };
    for (Failure failure : {Failure::readOnlyFolder, Failure::fileSizeLimit}) {
        SCOPED_TRACE(failure == Failure::readOnlyFolder ? "read-only folder" : "file size limit");
        QDir(folder()).removeRecursively();
        SessionStore store;
        ASSERT_TRUE(store
                        .write(documents({{"a", std::nullopt, true, 1, -1, "old a"},
                                          {"b", std::nullopt, true, 1, -1, "old b"}}),
                               0,
                               {},
                               false)
                        .succeeded);
        ASSERT_TRUE(store
                        .write(documents({{"a", std::nullopt, true, 2, 1, "old a 2"},
                                          {"b", std::nullopt, true, 1, 1, "old b"}}),
                               1,
                               {},
                               false)
                        .succeeded);
        const QByteArray session = contents(store.sessionFilePath());
        const QByteArray previous = contents(store.sessionFilePath() + QStringLiteral(".bak"));

        const QList<SessionDocument> changed
            = documents({{"a", std::nullopt, true, 5, 2, QString(4096, u'x')}});
        const QStringList lockedFolders{folder() + QStringLiteral("/backup"), folder()};

        struct rlimit savedLimit
        {};

        if (failure == Failure::readOnlyFolder) {
            for (const QString &path : lockedFolders)
                QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner);
            QFile probe(folder() + QStringLiteral("/probe"));
            if (probe.open(QIODevice::WriteOnly)) {
                probe.remove();
                for (const QString &path : lockedFolders)
                    QFile::setPermissions(path,
                                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
                std::cout << "[ SKIPPED  ] read-only folder: running with rights that ignore "
                             "permissions; the file size limit covers failed writes\n";
                continue;
            }
        } else {
            std::signal(SIGXFSZ, SIG_IGN);
            getrlimit(RLIMIT_FSIZE, &savedLimit);
            struct rlimit small = savedLimit;
            small.rlim_cur = 64; // smaller than session.json and the backup
            setrlimit(RLIMIT_FSIZE, &small);
        }

        const auto failed = store.write(changed, 0, {}, false);

        if (failure == Failure::readOnlyFolder) {
            for (const QString &path : lockedFolders)
                QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        } else {
            setrlimit(RLIMIT_FSIZE, &savedLimit);
            std::signal(SIGXFSZ, SIG_DFL);
        }
        EXPECT_FALSE(failed.succeeded);
        EXPECT_TRUE(failed.backedUpChangeCounts.isEmpty());
        EXPECT_EQ(contents(store.sessionFilePath()), session);
        EXPECT_EQ(contents(store.sessionFilePath() + QStringLiteral(".bak")), previous);
        EXPECT_EQ(store.readBackup(QStringLiteral("a")), u"old a 2");
        EXPECT_EQ(store.readBackup(QStringLiteral("b")), u"old b"); // not removed as stale
        EXPECT_EQ(QDir(folder() + QStringLiteral("/backup")).entryList(QDir::Files).size(), 2);

        const auto retried = store.write(changed, 0, {}, false);
        EXPECT_TRUE(retried.succeeded);
        EXPECT_EQ(retried.backedUpChangeCounts, (QHash<QString, qint64>{{"a", 5}}));
        EXPECT_EQ(store.load()->entries.size(), 1);
        EXPECT_EQ(store.readBackup(QStringLiteral("b")), std::nullopt);
    }
}

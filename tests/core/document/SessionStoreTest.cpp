#include "core/document/SessionStore.h"

#include "core/document/SessionFolder.h"
#include "core/document/SessionRecovery.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
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
            document.utf8Text = [this, utf8 = doc.text.toUtf8()] {
                ++textsAsked;
                return utf8;
            };
            list.append(document);
        }
        return list;
    }

    SessionWriteResult write(SessionStore &store, const QList<Doc> &docs, qsizetype selected = 0)
    {
        return store.write(documents(docs), selected, {}, false);
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
    QList<Doc> docs{{"a", std::nullopt, true, 3, -1, QStringLiteral("ciao\nè")},
                    {"b", QStringLiteral("/tmp/b.txt"), false, 0, -1, "clean"},
                    {"c", QStringLiteral("/tmp/c.txt"), true, 2, 2, "unchanged"}};
    const auto first = store.write(documents(docs), 1, {QStringLiteral("/w")}, true);
    EXPECT_TRUE(first.succeeded) << first.failure.toStdString();
    // "c" claims a current backup that the folder does not hold, so it is written too.
    EXPECT_EQ(first.backedUpChangeCounts, (QHash<QString, qint64>{{"a", 3}, {"c", 2}}));
    EXPECT_EQ(textsAsked, 2);
    EXPECT_FALSE(QFile::exists(store.backupFilePath(QStringLiteral("b"))));

    // Nothing moved: no text asked, nothing reported.
    docs[0].backedUp = 3;
    textsAsked = 0;
    const auto idle = store.write(documents(docs), 1, {QStringLiteral("/w")}, true);
    EXPECT_TRUE(idle.backedUpChangeCounts.isEmpty());
    EXPECT_EQ(textsAsked, 0);

    docs[0].changeCount = 4;
    docs[0].text = QStringLiteral("ciao!");
    const auto edited = store.write(documents(docs), 1, {QStringLiteral("/w")}, true);
    EXPECT_EQ(edited.backedUpChangeCounts, (QHash<QString, qint64>{{"a", 4}}));
    EXPECT_EQ(textsAsked, 1);

    SessionStore reader;
    const auto state = reader.load();
    ASSERT_TRUE(state);
    ASSERT_EQ(state->entries.size(), 3);
    EXPECT_TRUE(state->entries[0].hasBackup);
    EXPECT_FALSE(state->entries[1].hasBackup);
    EXPECT_EQ(state->entries[1].path, u"/tmp/b.txt");
    EXPECT_EQ(state->selected, 1);
    EXPECT_TRUE(state->sidebarVisible);
    EXPECT_EQ(reader.readBackup(QStringLiteral("a")), "ciao!");
    EXPECT_EQ(reader.readBackup(QStringLiteral("c")), "unchanged");
    EXPECT_EQ(reader.readBackup(QStringLiteral("b")), std::nullopt);
    EXPECT_EQ(reader.readBackup(QStringLiteral("../Mirtex/session.json")), std::nullopt);
}

// A backup holds the editor's bytes as they are: a leading U+FEFF (which a UTF-8 decoder would
// take for a byte-order mark and drop), characters outside the BMP, a NUL.
TEST_F(SessionStoreTest, BackupsKeepTheEditorsBytesExactly)
{
    const QByteArray utf8 = "\xEF\xBB\xBF"
                            "a\xF0\x9F\x98\x80"
                            "b\n\xF0\x9D\x84\x9E"
                            "c"
                            + QByteArray(1, '\0') + "\xC3\xA8\n";
    SessionStore store;
    QList<SessionDocument> docs = documents({{"a", std::nullopt, true, 1, -1, {}}});
    docs[0].utf8Text = [utf8] { return utf8; };
    ASSERT_TRUE(store.write(docs, 0, {}, false).succeeded);
    EXPECT_EQ(contents(store.backupFilePath(QStringLiteral("a"))), utf8);
    EXPECT_EQ(SessionStore().readBackup(QStringLiteral("a")), utf8);

    QFile damaged(store.backupFilePath(QStringLiteral("a")));
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    damaged.write("ok \xC3(");
    damaged.close();
    // The text comes back with the bad byte shown as U+FFFD; the bytes as they were are kept.
    bool repaired = false;
    EXPECT_EQ(SessionStore().readBackup(QStringLiteral("a"), std::nullopt, &repaired),
              "ok \xEF\xBF\xBD(");
    EXPECT_TRUE(repaired);
    const auto recovered = SessionRecovery::list(folder());
    ASSERT_EQ(recovered.size(), 1);
    EXPECT_EQ(contents(recovered[0].path), "ok \xC3(");
}

// Only what the session this store wrote or loaded named is deleted; anything else no entry names
// (a damaged session, another run's leftovers) is set aside in the recovery folder.
TEST_F(SessionStoreTest, DeletesOnlyItsOwnClosedTabsBackupsAndSetsTheRestAside)
{
    const QString backups = folder() + QStringLiteral("/backup");
    SessionStore store;
    write(store, {{"a", std::nullopt, true, 1, -1, "a"}, {"b", std::nullopt, true, 1, -1, "b"}});
    QFile stray(QDir(backups).filePath(QStringLiteral("stray.tmp")));
    ASSERT_TRUE(stray.open(QIODevice::WriteOnly));
    stray.close();

    // "a" was closed; "b" is still there.
    write(store, {{"b", std::nullopt, true, 1, 1, "b"}});
    EXPECT_EQ(QDir(backups).entryList(QDir::Files), QStringList{QStringLiteral("b.txt")});
    EXPECT_TRUE(SessionRecovery::list(folder()).isEmpty());

    // A run that never read the session does not know whose "b" is: it is set aside, not lost.
    SessionStore restarted;
    write(restarted, {{"c", std::nullopt, true, 1, -1, "c"}});
    EXPECT_EQ(QDir(backups).entryList(QDir::Files), QStringList{QStringLiteral("c.txt")});
    const auto recovered = SessionRecovery::list(folder());
    ASSERT_EQ(recovered.size(), 1);
    EXPECT_EQ(recovered[0].firstLine, u"b");

    // A run that read the session owns "c": saving it deletes its backup.
    SessionStore reader;
    ASSERT_TRUE(reader.load());
    write(reader, {{"c", QStringLiteral("/tmp/c"), false, 2, 1, "c"}});
    EXPECT_TRUE(QDir(backups).entryList(QDir::Files).isEmpty());
    EXPECT_EQ(SessionRecovery::list(folder()).size(), 1);
}

TEST_F(SessionStoreTest, DamagedSessionsNeverCostABackup)
{
    for (const QByteArray &damage :
         {QByteArray(R"({"entries":[{"id":"a","hasB)"), QByteArray("[1,2]"), QByteArray("{}")}) {
        SCOPED_TRACE(damage.toStdString());
        QDir(folder()).removeRecursively();
        SessionStore store;
        write(store, {{"a", std::nullopt, true, 1, -1, "a"}});
        for (const QString &file : QStringList{store.sessionFilePath(),
                                               store.sessionFilePath() + QStringLiteral(".bak")}) {
            QFile session(file);
            ASSERT_TRUE(session.open(QIODevice::WriteOnly | QIODevice::Truncate));
            session.write(damage);
        }
        SessionStore next;
        EXPECT_FALSE(next.load());
        write(next, {});
        const auto recovered = SessionRecovery::list(folder());
        ASSERT_EQ(recovered.size(), 1);
        EXPECT_EQ(contents(recovered[0].path), "a");
    }
}

TEST_F(SessionStoreTest, RepeatedIdsGetFreshOnesAndNoOtherTabsText)
{
    QDir().mkpath(folder() + QStringLiteral("/backup"));
    QFile backup(folder() + QStringLiteral("/backup/d.txt"));
    ASSERT_TRUE(backup.open(QIODevice::WriteOnly));
    backup.write("testo di d");
    backup.close();
    QFile session(folder() + QStringLiteral("/session.json"));
    ASSERT_TRUE(session.open(QIODevice::WriteOnly));
    session.write(R"({"entries":[{"id":"d","path":"/tmp/d1"},{"id":"d","hasBackup":true},)"
                  R"({"id":"d","hasBackup":true}]})");
    session.close();

    SessionStore store;
    const auto state = store.load();
    ASSERT_TRUE(state);
    ASSERT_EQ(state->entries.size(), 3);
    EXPECT_EQ(state->entries[1].id, u"d") << "the first entry with a backup keeps the id";
    EXPECT_TRUE(state->entries[1].hasBackup);
    for (int i : {0, 2}) {
        EXPECT_NE(state->entries[i].id, u"d") << i;
        EXPECT_FALSE(state->entries[i].hasBackup) << i;
    }
    EXPECT_NE(state->entries[0].id, state->entries[2].id);
}

TEST_F(SessionStoreTest, ABackupPathTakenByAFolderIsWrittenBeside)
{
    ASSERT_TRUE(QDir().mkpath(folder() + QStringLiteral("/backup/a.txt")));
    SessionStore store;
    const auto result = write(store, {{"a", std::nullopt, true, 1, -1, "salvato accanto"}});
    EXPECT_TRUE(result.succeeded) << result.failure.toStdString();
    EXPECT_EQ(result.backedUpChangeCounts.value(QStringLiteral("a")), 1);

    SessionStore next;
    const auto state = next.load();
    ASSERT_TRUE(state);
    EXPECT_EQ(state->entries[0].backupName, u"a.1.txt");
    EXPECT_EQ(next.readBackup(QStringLiteral("a"), state->entries[0].backupName),
              "salvato accanto");
}

TEST_F(SessionStoreTest, StateFilesAreTheUsersAlone)
{
    SessionStore store;
    write(store, {{"a", std::nullopt, true, 1, -1, "privato"}});
    write(store, {{"a", std::nullopt, true, 2, 1, "privato 2"}}, 1);
    const auto folderMode = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    const auto fileMode = QFile::ReadOwner | QFile::WriteOwner;
    auto mode = [](const QString &path) {
        return QFileInfo(path).permissions()
               & ~(QFile::ReadUser | QFile::WriteUser | QFile::ExeUser);
    };
    EXPECT_EQ(mode(folder()), folderMode);
    EXPECT_EQ(mode(folder() + QStringLiteral("/backup")), folderMode);
    for (const QString &file : QStringList{store.sessionFilePath(),
                                           store.sessionFilePath() + QStringLiteral(".bak"),
                                           store.backupFilePath(QStringLiteral("a"))})
        EXPECT_EQ(mode(file), fileMode) << file.toStdString();

    // Files an earlier version left with the umask's modes are fixed at start.
    QFile::setPermissions(store.backupFilePath(QStringLiteral("a")),
                          fileMode | QFile::ReadGroup | QFile::ReadOther);
    QFile::setPermissions(folder(), folderMode | QFile::ReadOther | QFile::ExeOther);
    SessionFolder::makeAllPrivate(folder());
    EXPECT_EQ(mode(store.backupFilePath(QStringLiteral("a"))), fileMode);
    EXPECT_EQ(mode(folder()), folderMode);
}

TEST_F(SessionStoreTest, RecoveredTextsAreKeptThirtyDays)
{
    const QDateTime now = QDateTime::currentDateTime();
    const QString recovery = SessionRecovery::folderPath(folder());
    QDir().mkpath(recovery);

    const struct
    {
        const char *name;
        int ageDays;
        bool kept;
    } cases[] = {{"vecchio.txt", 31, false}, {"recente.txt", 29, true}, {"futuro.txt", -3, true}};

    for (const auto &c : cases) {
        QFile file(QDir(recovery).filePath(QString::fromLatin1(c.name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("x");
        file.flush();
        ASSERT_TRUE(file.setFileTime(now.addDays(-c.ageDays), QFileDevice::FileModificationTime));
    }
    SessionRecovery::expire(folder(), now);
    for (const auto &c : cases)
        EXPECT_EQ(QFile::exists(QDir(recovery).filePath(QString::fromLatin1(c.name))), c.kept)
            << c.name;
}

TEST_F(SessionStoreTest, FallsBackToThePreviousSessionWhenTheFileIsDamaged)
{
    SessionStore store;
    write(store, {{"first", QStringLiteral("/tmp/1"), false, 0, -1, ""}});
    write(store, {{"second", QStringLiteral("/tmp/2"), false, 0, -1, ""}});
    const QString sessionFile = store.sessionFilePath();
    const QByteArray written = contents(sessionFile);

    for (const QByteArray &damage : {written.left(written.size() / 2),
                                     QByteArray("[1,2]"),
                                     QByteArray(R"({"entries":{"id":"x"}})")}) {
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
    write(next, {{"third", QStringLiteral("/tmp/3"), false, 0, -1, ""}});
    QFile::remove(sessionFile);
    EXPECT_EQ(next.load()->entries.value(0).id, u"first");

    next.removeSessionFile();
    EXPECT_FALSE(next.load());
}

namespace {

// Ways to make writes fail; each answers false when it cannot (rights that ignore permissions).
struct WriteBlocker
{
    virtual ~WriteBlocker() = default;
    virtual bool block() = 0;
    virtual void unblock() = 0;
};

struct ReadOnlyFolders : WriteBlocker
{
    explicit ReadOnlyFolders(QStringList folders)
        : paths(std::move(folders))
    {}

    bool block() override
    {
        for (const QString &path : paths)
            QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner);
        QFile probe(paths.constLast() + QStringLiteral("/probe"));
        if (!probe.open(QIODevice::WriteOnly))
            return true;
        probe.remove();
        unblock();
        return false;
    }

    void unblock() override
    {
        for (const QString &path : paths)
            QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QStringList paths;
};

// Also stops root: like a full disk, every write beyond 64 bytes comes up short.
struct FileSizeLimit : WriteBlocker
{
    bool block() override
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &saved);
        struct rlimit small = saved;
        small.rlim_cur = 64;
        return setrlimit(RLIMIT_FSIZE, &small) == 0;
    }

    void unblock() override
    {
        setrlimit(RLIMIT_FSIZE, &saved);
        std::signal(SIGXFSZ, SIG_DFL);
    }

    struct rlimit saved
    {};
};

} // namespace

TEST_F(SessionStoreTest, AFailedWriteLeavesTheOldFilesWholeAndIsRetried)
{
    ReadOnlyFolders readOnly({folder() + QStringLiteral("/backup"), folder()});
    FileSizeLimit sizeLimit;
    for (WriteBlocker *blocker : std::initializer_list<WriteBlocker *>{&readOnly, &sizeLimit}) {
        SCOPED_TRACE(blocker == &readOnly ? "read-only folder" : "file size limit");
        QDir(folder()).removeRecursively();
        SessionStore store;
        write(store,
              {{"a", std::nullopt, true, 1, -1, "a 1"}, {"b", std::nullopt, true, 1, -1, "b"}});
        write(store,
              {{"a", std::nullopt, true, 2, 1, "a 2"}, {"b", std::nullopt, true, 1, 1, "b"}},
              1);
        const QByteArray session = contents(store.sessionFilePath());
        const QByteArray previous = contents(store.sessionFilePath() + QStringLiteral(".bak"));
        ASSERT_FALSE(previous.isEmpty());

        const QList<Doc> changed{{"a", std::nullopt, true, 5, 2, QString(4096, u'x')}};
        if (!blocker->block()) {
            std::cout << "[ SKIPPED  ] read-only folder: these rights ignore permissions\n";
            continue;
        }
        const auto failed = write(store, changed);
        blocker->unblock();

        EXPECT_FALSE(failed.succeeded);
        EXPECT_TRUE(failed.backedUpChangeCounts.isEmpty());
        EXPECT_EQ(contents(store.sessionFilePath()), session);
        EXPECT_EQ(contents(store.sessionFilePath() + QStringLiteral(".bak")), previous);
        EXPECT_EQ(store.readBackup(QStringLiteral("a")), "a 2");
        EXPECT_EQ(store.readBackup(QStringLiteral("b")), "b"); // not removed as stale
        EXPECT_EQ(QDir(folder() + QStringLiteral("/backup")).entryList(QDir::Files).size(), 2);

        const auto retried = write(store, changed);
        EXPECT_TRUE(retried.succeeded);
        EXPECT_EQ(retried.backedUpChangeCounts, (QHash<QString, qint64>{{"a", 5}}));
        EXPECT_EQ(store.load()->entries.size(), 1);
        EXPECT_EQ(store.readBackup(QStringLiteral("b")), std::nullopt);
    }
}

#include "core/app/UrlEvent.h"

#include "support/QStringPrinter.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;
using Kind = UrlEvent::Kind;

namespace {

// A stand-in for the system's temporary folder ("tmp") next to an ordinary one ("home").
class UrlEventFilesTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_root.isValid());
        ASSERT_TRUE(QDir(m_root.path()).mkpath(u"tmp"_s));
        ASSERT_TRUE(QDir(m_root.path()).mkpath(u"home"_s));
    }

    QString at(const QString &relative) const { return m_root.filePath(relative); }

    QTemporaryDir m_root;
};

} // namespace

TEST(UrlEventTest, ParsesSchemeAndQuery)
{
    const struct
    {
        const char *url;
        std::optional<Kind> kind;
        QString value;
    } cases[] = {
        {"mirtex:?text=Ciao", Kind::text, u"Ciao"_s},
        {"mirtex://open?text=caff%C3%A8%20e%0Apane", Kind::text, u"caffè e\npane"_s},
        {"mirtex:?text=a&text=b", Kind::text, u"a"_s},
        {"mirtex:?text=Ciao&path=/x/a.txt", Kind::path, u"/x/a.txt"_s},
        {"mirtex:?path=%2Fx%2Fcon%20spazio.txt", Kind::path, u"/x/con spazio.txt"_s},
        {"mirtex:?path=&text=t", Kind::text, u"t"_s},
        {"mirtex:?path&text=t", Kind::text, u"t"_s},
        {"mirtex:?path=&path=/x&text=t", Kind::text, u"t"_s}, // only the first "path"
        {"other:?text=No", std::nullopt, {}},
        {"?text=No", std::nullopt, {}},
        {"mirtex:?path=", std::nullopt, {}},
        {"mirtex:", std::nullopt, {}},
        {"mirtex:?testo=x", std::nullopt, {}},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.url);
        const auto event = UrlEvent::parse(QString::fromUtf8(c.url));
        ASSERT_EQ(event.has_value(), c.kind.has_value());
        if (!event)
            continue;
        EXPECT_EQ(event->kind, *c.kind);
        EXPECT_EQ(event->value, c.value);
    }
}

TEST_F(UrlEventFilesTest, PathIsReadAndOnlyTemporaryFilesDeleted)
{
    writeFile(at(u"tmp/handed.txt"_s), "Perch\xC3\xA9\r\nbis");
    writeFile(at(u"home/kept.txt"_s), "resta");

    const struct
    {
        QString path;
        std::optional<QString> text;
        bool remains;
    } cases[] = {
        {at(u"tmp/handed.txt"_s), u"Perché\nbis"_s, false},
        {at(u"home/kept.txt"_s), u"resta"_s, true},
        {at(u"tmp/missing.txt"_s), std::nullopt, false},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.path.toStdString());
        const UrlEvent event{Kind::path, c.path};
        const auto text = event.resolveText(at(u"tmp"_s));
        EXPECT_EQ(text ? std::optional(*text) : std::nullopt, c.text);
        EXPECT_EQ(QFile::exists(c.path), c.remains);
    }
    // A text item needs no file; its line breaks become LF like a file's.
    EXPECT_EQ((UrlEvent{Kind::text, u"a\r\nb\rc\n"_s}.resolveText(at(u"tmp"_s))).value(),
              u"a\nb\nc\n"_s);
}

TEST_F(UrlEventFilesTest, InsideTheTemporaryFolderMeansReallyInside)
{
    writeFile(at(u"tmp/a.txt"_s), "a");
    writeFile(at(u"home/x.txt"_s), "x");
    writeFile(at(u"tmpfoo.txt"_s), "f");
    ASSERT_TRUE(QFile::link(at(u"home/x.txt"_s), at(u"tmp/link.txt"_s)));
    ASSERT_TRUE(QFile::link(at(u"tmp"_s), at(u"tmplink"_s)));

    const struct
    {
        QString path;
        QString folder;
        bool inside;
    } cases[] = {
        {at(u"tmp/a.txt"_s), at(u"tmp"_s), true},
        {at(u"tmp/./a.txt"_s), at(u"tmp/"_s), true},
        {at(u"tmp/../home/x.txt"_s), at(u"tmp"_s), false},
        {at(u"tmp/link.txt"_s), at(u"tmp"_s), false}, // points outside
        {at(u"tmpfoo.txt"_s), at(u"tmp"_s), false},   // a name that shares the prefix
        {at(u"tmp"_s), at(u"tmp"_s), false},
        {at(u"tmp/a.txt"_s), at(u"tmplink"_s), true}, // the folder is a link
        {at(u"tmplink/a.txt"_s), at(u"tmp"_s), true},
        {at(u"tmp/missing.txt"_s), at(u"tmp"_s), false},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.path.toStdString() + " in " + c.folder.toStdString());
        EXPECT_EQ(UrlEvent::isInsideFolder(c.path, c.folder), c.inside);
    }

    // Reading through the link leaves both the link's target and the link alone.
    const UrlEvent event{Kind::path, at(u"tmp/link.txt"_s)};
    EXPECT_EQ(event.resolveText(at(u"tmp"_s)).value(), u"x"_s);
    EXPECT_TRUE(QFile::exists(at(u"home/x.txt"_s)));
}

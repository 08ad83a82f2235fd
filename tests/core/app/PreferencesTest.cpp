#include "core/app/Preferences.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>

using namespace mirtex;

namespace {

// Points XDG_CONFIG_HOME at a fresh folder for the life of the test.
class PreferencesTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_home.isValid());
        m_previous = qgetenv("XDG_CONFIG_HOME");
        m_hadPrevious = qEnvironmentVariableIsSet("XDG_CONFIG_HOME");
        qputenv("XDG_CONFIG_HOME", m_home.path().toUtf8());
    }

    void TearDown() override
    {
        if (m_hadPrevious)
            qputenv("XDG_CONFIG_HOME", m_previous);
        else
            qunsetenv("XDG_CONFIG_HOME");
    }

    QString configFile() const { return m_home.filePath(QStringLiteral("Mirtex/Mirtex++.conf")); }

    void writeConfig(const QByteArray &contents) const
    {
        QDir().mkpath(QFileInfo(configFile()).path());
        QFile file(configFile());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }

    QTemporaryDir m_home;
    QByteArray m_previous;
    bool m_hadPrevious = false;
};

struct Expected
{
    const char *key;
    std::function<QVariant(const Preferences &)> getter;
    QVariant value;
};

const QList<Expected> &defaults()
{
    static const QList<Expected> table{
        {"fontName", &Preferences::fontName, QString()},
        {"fontSize", &Preferences::fontSize, 13.0},
        {"zoom", &Preferences::zoom, 0},
        {"theme", &Preferences::themeID, QStringLiteral("auto")},
        {"tabWidth", &Preferences::tabWidth, 4},
        {"useSpaces", &Preferences::useSpaces, false},
        {"autoIndent", &Preferences::autoIndent, true},
        {"autoClose", &Preferences::autoClose, false},
        {"wordWrap", &Preferences::wordWrap, false},
        {"showLineNumbers", &Preferences::showLineNumbers, true},
        {"highlightCurrentLine", &Preferences::highlightCurrentLine, true},
        {"smartHighlight", &Preferences::smartHighlight, true},
        {"braceMatch", &Preferences::braceMatch, true},
        {"showWhitespace", &Preferences::showWhitespace, false},
        {"showLineEndings", &Preferences::showLineEndings, false},
        {"showIndentGuides", &Preferences::showIndentGuides, false},
        {"rememberSession", &Preferences::rememberSession, true},
        {"checkExternalChanges", &Preferences::checkExternalChanges, true},
        {"defaultEncoding", &Preferences::defaultEncodingID, QStringLiteral("4")},
        {"defaultLineEnding", &Preferences::defaultLineEndingID, QStringLiteral("lf")},
        {"showHiddenFiles", &Preferences::showHiddenFiles, false},
        {"showStatusBar", &Preferences::showStatusBar, true},
        {"alwaysOnTop", &Preferences::alwaysOnTop, false},
        {"markdownPreviewOnOpen", &Preferences::markdownPreviewOnOpen, true},
    };
    return table;
}

} // namespace

TEST_F(PreferencesTest, FreshStoreYieldsTheDefaultsInTheUsersConfigFolder)
{
    const Preferences preferences;
    EXPECT_EQ(preferences.settingsFilePath(), configFile());
    for (const Expected &expected : defaults()) {
        SCOPED_TRACE(expected.key);
        EXPECT_EQ(expected.getter(preferences), expected.value);
        EXPECT_EQ(preferences.value(QString::fromLatin1(expected.key)), expected.value);
    }
}

TEST_F(PreferencesTest, SettersStoreUnderTheirKeyAndNotifyOnlyOnChange)
{
    QStringList notified;
    {
        Preferences preferences;
        QObject::connect(
            &preferences, &Preferences::changed, [&](const QString &key) { notified.append(key); });
        preferences.setTabWidth(8);
        preferences.setTabWidth(8);
        preferences.setThemeID(QStringLiteral("dracula"));
        preferences.setFontSize(15.5);
        preferences.setRememberSession(false);
        preferences.setDefaultLineEndingID(QStringLiteral("crlf"));
        preferences.setZoom(-3);
        preferences.setAutoIndent(true); // already the default
        preferences.setValue(QStringLiteral("lastSaveDirectory"), QStringLiteral("/tmp/x"));
        preferences.setValue(QStringLiteral("findHistory"), QStringList{"a", "b, c"});
        preferences.setValue(QStringLiteral("useSpaces"), true);
        EXPECT_EQ(preferences.tabWidth(), 8);
        EXPECT_TRUE(preferences.useSpaces());
        preferences.sync();
    }
    EXPECT_EQ(notified,
              QStringList({"tabWidth",
                           "theme",
                           "fontSize",
                           "rememberSession",
                           "defaultLineEnding",
                           "zoom",
                           "lastSaveDirectory",
                           "findHistory",
                           "useSpaces"}));

    const Preferences reread;
    EXPECT_EQ(reread.tabWidth(), 8);
    EXPECT_EQ(reread.themeID(), u"dracula");
    EXPECT_EQ(reread.fontSize(), 15.5);
    EXPECT_FALSE(reread.rememberSession());
    EXPECT_EQ(reread.defaultLineEndingID(), u"crlf");
    EXPECT_EQ(reread.zoom(), -3);
    EXPECT_TRUE(reread.useSpaces());
    EXPECT_EQ(reread.value(QStringLiteral("lastSaveDirectory")).toString(), u"/tmp/x");
    EXPECT_EQ(reread.value(QStringLiteral("findHistory")).toStringList(),
              QStringList({"a", "b, c"}));
    EXPECT_EQ(reread.value(QStringLiteral("findDirectory"), 7), 7);
}

TEST_F(PreferencesTest, StoredValuesOfTheWrongTypeReadAsZeroValues)
{
    writeConfig("[General]\n"
                "tabWidth=abc\n"
                "fontSize=big\n"
                "zoom=-2\n"
                "useSpaces=maybe\n"
                "autoIndent=false\n"
                "showStatusBar=0\n"
                "alwaysOnTop=1\n"
                "fontName=a, b\n"
                "theme=12\n");
    const Preferences preferences;
    EXPECT_EQ(preferences.tabWidth(), 0);
    EXPECT_EQ(preferences.fontSize(), 0.0);
    EXPECT_EQ(preferences.zoom(), -2);
    EXPECT_FALSE(preferences.useSpaces());
    EXPECT_FALSE(preferences.autoIndent());
    EXPECT_FALSE(preferences.showStatusBar());
    EXPECT_TRUE(preferences.alwaysOnTop());
    EXPECT_EQ(preferences.fontName(), QString()); // a list is not a string
    EXPECT_EQ(preferences.themeID(), u"12");
    EXPECT_TRUE(preferences.braceMatch()); // absent: its default
}

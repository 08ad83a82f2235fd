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

// The table is what the pinned list says, row for row; every field stores, rereads and notifies
// under its own key and enumerator.
TEST_F(PreferencesTest, EveryFieldOfTheTableStoresUnderItsKeyAndNotifiesItself)
{
    ASSERT_EQ(Preferences::kFieldCount, defaults().size());
    QList<Preferences::Field> notified;
    {
        Preferences preferences;
        QObject::connect(&preferences, &Preferences::changed, [&](Preferences::Field field) {
            notified.append(field);
        });
        for (int i = 0; i < Preferences::kFieldCount; ++i) {
            const auto field = Preferences::Field(i);
            const Expected &expected = defaults()[i];
            SCOPED_TRACE(expected.key);
            EXPECT_EQ(Preferences::key(field), QLatin1StringView(expected.key));
            EXPECT_EQ(Preferences::fieldForKey(QString::fromLatin1(expected.key)), field);
            EXPECT_EQ(Preferences::defaultValue(field), expected.value);
            EXPECT_EQ(preferences.value(field), expected.value);
            const QVariant other = [&]() -> QVariant {
                switch (Preferences::kind(field)) {
                case Preferences::Kind::string:
                    EXPECT_EQ(expected.value.typeId(), QMetaType::QString);
                    return QString(QStringLiteral("x") + QString::number(i));
                case Preferences::Kind::real:
                    EXPECT_EQ(expected.value.typeId(), QMetaType::Double);
                    return 100.5 + i;
                case Preferences::Kind::integer:
                    EXPECT_EQ(expected.value.typeId(), QMetaType::Int);
                    return 100 + i;
                case Preferences::Kind::boolean:
                    EXPECT_EQ(expected.value.typeId(), QMetaType::Bool);
                    return !expected.value.toBool();
                }
                return {};
            }();
            preferences.setValue(field, other);
            EXPECT_EQ(expected.getter(preferences), other);
            ASSERT_EQ(notified.size(), i + 1);
            EXPECT_EQ(notified.back(), field);
        }
        EXPECT_EQ(Preferences::fieldForKey(QStringLiteral("lastSaveDirectory")), std::nullopt);
    }
    const Preferences reread;
    for (int i = 0; i < Preferences::kFieldCount; ++i) {
        SCOPED_TRACE(defaults()[i].key);
        EXPECT_NE(reread.value(Preferences::Field(i)), defaults()[i].value);
        EXPECT_EQ(reread.value(QString::fromLatin1(defaults()[i].key)),
                  reread.value(Preferences::Field(i)));
    }
}

TEST_F(PreferencesTest, SettersStoreUnderTheirKeyAndNotifyOnlyOnChange)
{
    using Field = Preferences::Field;
    QList<Field> notified;
    {
        Preferences preferences;
        QObject::connect(
            &preferences, &Preferences::changed, [&](Field field) { notified.append(field); });
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
    // Keys that are not fields are stored without notice.
    EXPECT_EQ(notified,
              QList<Field>({Field::tabWidth,
                            Field::themeID,
                            Field::fontSize,
                            Field::rememberSession,
                            Field::defaultLineEndingID,
                            Field::zoom,
                            Field::useSpaces}));

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

// The registry on its own: dispatch, listeners, and the actions that show commands.
#include "ui/commands/CommandRegistry.h"

#include "support/QStringPrinter.h"

#include <QAction>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

struct Heard
{
    QString name;
    QVariant argument;
};

class CommandRegistryTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        registry.add(
            {u"plain:"_s, u"Semplice"_s, {QKeySequence(u"Ctrl+K"_s)}, [this](const QVariant &a) {
                 ran.append({u"plain:"_s, a});
             }});
        registry.add({u"pick:"_s,
                      u"Scegli"_s,
                      {},
                      [this](const QVariant &a) {
                          ran.append({u"pick:"_s, a});
                          chosen = a.toString();
                      },
                      [this](const QVariant &a) { return enabled && a.toString() != u"off"_s; },
                      [this](const QVariant &a) { return a.toString() == chosen; }});
    }

    CommandRegistry registry;
    QList<Heard> ran;
    QString chosen = u"a"_s;
    bool enabled = true;
};

} // namespace

TEST_F(CommandRegistryTest, DispatchRunsOnlyKnownEnabledCommandsWithTheirArgument)
{
    const struct
    {
        QString name;
        QVariant argument;
        bool runs;
    } cases[] = {
        {u"plain:"_s, {}, true},
        {u"pick:"_s, u"b"_s, true},
        {u"pick:"_s, u"off"_s, false}, // disabled for this argument
        {u"missing:"_s, {}, false},
        {u"plain"_s, {}, false}, // names are exact
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.name.toStdString() + " " + c.argument.toString().toStdString());
        ran.clear();
        EXPECT_EQ(registry.dispatch(c.name, c.argument), c.runs);
        ASSERT_EQ(ran.size(), c.runs ? 1 : 0);
        if (c.runs) {
            EXPECT_EQ(ran[0].name, c.name);
            EXPECT_EQ(ran[0].argument, c.argument);
        }
    }
    enabled = false;
    EXPECT_FALSE(registry.dispatch(u"pick:"_s, u"b"_s));
    EXPECT_FALSE(registry.isEnabled(u"pick:"_s, u"b"_s));
    EXPECT_TRUE(registry.isEnabled(u"plain:"_s));
    EXPECT_FALSE(registry.isEnabled(u"missing:"_s));
}

TEST_F(CommandRegistryTest, ListenersHearEveryDispatchThatRunsUntilRemoved)
{
    QList<Heard> heard;
    const int id = registry.addListener([&heard](const QString &name, const QVariant &argument) {
        heard.append({name, argument});
    });
    registry.dispatch(u"plain:"_s);
    registry.dispatch(u"pick:"_s, u"off"_s);        // not run, not heard
    registry.action(u"pick:"_s, u"c"_s)->trigger(); // a menu goes through dispatch too
    ASSERT_EQ(heard.size(), 2);
    EXPECT_EQ(heard[0].name, u"plain:"_s);
    EXPECT_FALSE(heard[0].argument.isValid());
    EXPECT_EQ(heard[1].name, u"pick:"_s);
    EXPECT_EQ(heard[1].argument, QVariant(u"c"_s));
    EXPECT_EQ(chosen, u"c"_s);

    registry.removeListener(id);
    registry.dispatch(u"plain:"_s);
    EXPECT_EQ(heard.size(), 2);
}

TEST_F(CommandRegistryTest, ActionsAreSharedNamedAndKeptCurrent)
{
    QAction *plain = registry.action(u"plain:"_s);
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain, registry.action(u"plain:"_s));
    EXPECT_EQ(plain->objectName(), u"plain:"_s);
    EXPECT_EQ(plain->text(), u"Semplice"_s);
    EXPECT_EQ(plain->shortcut(), QKeySequence(u"Ctrl+K"_s));
    EXPECT_FALSE(plain->isCheckable());
    EXPECT_EQ(registry.action(u"missing:"_s), nullptr);

    QAction *a = registry.action(u"pick:"_s, u"a"_s, u"Prima"_s);
    QAction *b = registry.action(u"pick:"_s, u"b"_s, u"Seconda"_s);
    EXPECT_EQ(b->objectName(), u"pick:b"_s);
    EXPECT_EQ(b->text(), u"Seconda"_s);
    EXPECT_TRUE(a->isChecked());
    EXPECT_FALSE(b->isChecked());

    chosen = u"b"_s;
    enabled = false;
    EXPECT_TRUE(a->isChecked()) << "states change on refresh only";
    registry.refresh();
    EXPECT_FALSE(a->isChecked());
    EXPECT_TRUE(b->isChecked());
    EXPECT_FALSE(a->isEnabled());

    // A check mark the command did not follow goes back.
    enabled = true;
    registry.refresh();
    registry.add({u"inert:"_s,
                  u"Fermo"_s,
                  {},
                  [](const QVariant &) {},
                  {},
                  [](const QVariant &) { return false; }});
    QAction *inert = registry.action(u"inert:"_s);
    inert->trigger();
    EXPECT_FALSE(inert->isChecked());
}

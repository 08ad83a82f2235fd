// A mirtex: URL whose file cannot be read says so, with the reason, as a file named on the
// command line does; before the window is up, once it is.
#include "core/app/Preferences.h"
#include "support/QStringPrinter.h"
#include "ui/app/AppAssembly.h"
#include "ui/app/AppDelegate.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/MainWindow.h"

#include <QDir>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

QString urlFor(const QString &path)
{
    return u"mirtex:?path="_s + QString::fromUtf8(QUrl::toPercentEncoding(path));
}

} // namespace

TEST(UrlAlertTest, AnUnreadableFileInAUrlIsReportedWithItsReason)
{
    QTemporaryDir dir;
    QDir(dir.path()).mkdir(u"cartella"_s);

    const struct
    {
        QString path;
        bool beforeLaunch;
        QString message;
        QString reason;
    } cases[] = {
        {dir.filePath(u"manca.txt"_s),
         false,
         u"Impossibile leggere “manca.txt”."_s,
         u"Il file non esiste."_s},
        {dir.filePath(u"cartella"_s),
         false,
         u"Impossibile leggere “cartella”."_s,
         u"È una cartella."_s},
        {dir.filePath(u"manca.txt"_s),
         true,
         u"Impossibile leggere “manca.txt”."_s,
         u"Il file non esiste."_s},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.path.toStdString() + (c.beforeLaunch ? " before launch" : ""));
        Preferences prefs{dir.filePath(u"settings.conf"_s)};
        ScriptedQuestions questions;
        AppAssembly app{prefs, questions};
        if (!c.beforeLaunch)
            app.delegate().launch(false);
        app.delegate().handleUrlEvent(urlFor(c.path));
        if (c.beforeLaunch) {
            EXPECT_TRUE(questions.asked().empty()) << "no alert before the window is up";
            app.delegate().launch(false);
        }
        ASSERT_EQ(questions.asked().size(), 1u);
        EXPECT_EQ(questions.asked().front().message, c.message);
        EXPECT_EQ(questions.asked().front().informative, c.reason);
        EXPECT_EQ(app.window().documents().size(), 1) << "only the first empty tab";
    }
}

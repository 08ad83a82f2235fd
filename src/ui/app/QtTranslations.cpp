#include "ui/app/QtTranslations.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLibraryInfo>
#include <QTranslator>

namespace mirtex::QtTranslations {

namespace {

// Languages the program's own texts exist in; Italian is the source.
bool programSpeaks(const QString &language)
{
    return language == QLatin1String("it")
           || QFile::exists(QStringLiteral(":/i18n/mirtex_%1.qm").arg(language));
}

} // namespace

QString interfaceLanguage(const QLocale &system)
{
    const QString language = QLocale::languageToCode(system.language());
    return programSpeaks(language) ? language : QStringLiteral("it");
}

QStringList install()
{
    static QStringList installed;
    static bool done = false;
    if (done)
        return installed;
    done = true;
    const QString language = interfaceLanguage();
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    // qtbase holds the widgets' and dialogs' texts; QScintilla ships few languages.
    for (const char *catalogue : {"qtbase", "qscintilla"}) {
        auto *translator = new QTranslator(QCoreApplication::instance());
        if (translator->load(QLatin1String(catalogue) + u'_' + language, folder)
            && QCoreApplication::installTranslator(translator)) {
            installed.append(translator->filePath());
        } else {
            delete translator;
        }
    }
    return installed;
}

} // namespace mirtex::QtTranslations

#include "core/app/CommandLine.h"

#include "core/app/AppInfo.h"

#include <QCoreApplication>
#include <QDir>
#include <QRegularExpression>
#include <QUrl>

namespace mirtex {

namespace {

std::optional<QSize> parseSize(const QString &value)
{
    const QStringList parts = value.toLower().split(u'x');
    if (parts.size() != 2)
        return std::nullopt;
    bool okW = false;
    bool okH = false;
    const int w = parts[0].toInt(&okW);
    const int h = parts[1].toInt(&okH);
    if (!okW || !okH || w < 100 || h < 100 || w > 8000 || h > 8000)
        return std::nullopt;
    return QSize(w, h);
}

// Joined by hand: QDir takes a name that starts with ":" for one of Qt's resources.
QString absolute(const QString &path, const QString &workingDir)
{
    if (path.startsWith(QLatin1String("file:/")))
        return QUrl(path).toLocalFile();
    if (path.startsWith(u'/'))
        return QDir::cleanPath(path);
    return QDir::cleanPath(workingDir + u'/' + path);
}

// "http://…" and the like: a desktop may hand any URL to the program; only files and mirtex: are
// its own.
bool isForeignUrl(const QString &argument)
{
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]*://"));
    return scheme.match(argument).hasMatch() && !argument.startsWith(QLatin1String("file:/"));
}

} // namespace

CommandLine CommandLine::parse(const QStringList &arguments, const QString &workingDir)
{
    CommandLine result;
    if (arguments.contains(QLatin1String("--selftest"))) {
        result.mode = Mode::selfTest;
        return result;
    }
    // Asked for anywhere on the line, they win over everything else, as in other programs.
    if (arguments.contains(QLatin1String("--help")) || arguments.contains(QLatin1String("-h"))) {
        result.mode = Mode::help;
        return result;
    }
    if (arguments.contains(QLatin1String("--version"))) {
        result.mode = Mode::version;
        return result;
    }
    // --export SOURCE OUTPUT, alone on the line.
    if (arguments.contains(QLatin1String("--export"))) {
        if (arguments.size() != 3 || arguments.first() != QLatin1String("--export")) {
            result.mode = Mode::invalid;
            result.error = QStringLiteral("--export needs FILE.md OUT.html|OUT.pdf");
            return result;
        }
        result.mode = Mode::exportDocument;
        result.exportSource = absolute(arguments[1], workingDir);
        result.exportOutput = absolute(arguments[2], workingDir);
        return result;
    }
    const bool snapshot = arguments.contains(QLatin1String("--snapshot"));
    if (snapshot)
        result.mode = Mode::snapshot;

    auto fail = [&result](const QString &why) {
        result.mode = Mode::invalid;
        result.error = why;
        return result;
    };

    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &arg = arguments[i];
        const bool hasValue = i + 1 < arguments.size();
        auto value = [&]() { return arguments[++i]; };
        if (arg == QLatin1String("--snapshot")) {
            continue;
        } else if (arg == QLatin1String("--new-instance")) {
            result.newInstance = true;
        } else if (snapshot && arg == QLatin1String("--dark")) {
            result.snapshot.dark = true;
        } else if (snapshot && arg == QLatin1String("--preview-only")) {
            result.snapshot.previewOnly = true;
        } else if (snapshot && arg.startsWith(QLatin1String("--"))) {
            if (!hasValue)
                return fail(QStringLiteral("%1 needs a value").arg(arg));
            const QString v = value();
            if (arg == QLatin1String("--out")) {
                result.snapshot.outputPath = absolute(v, workingDir);
            } else if (arg == QLatin1String("--size")) {
                const auto size = parseSize(v);
                if (!size)
                    return fail(QStringLiteral("bad --size %1 (expected WIDTHxHEIGHT)").arg(v));
                result.snapshot.size = *size;
            } else if (arg == QLatin1String("--tab")) {
                bool ok = false;
                const int tab = v.toInt(&ok);
                if (!ok || tab < 0)
                    return fail(QStringLiteral("bad --tab %1").arg(v));
                result.snapshot.tab = tab;
            } else if (arg == QLatin1String("--split")) {
                if (v != QLatin1String("side") && v != QLatin1String("stacked"))
                    return fail(QStringLiteral("bad --split %1 (side or stacked)").arg(v));
                result.snapshot.split = v;
            } else if (arg == QLatin1String("--select-word")) {
                result.snapshot.selectWord = v;
            } else if (arg == QLatin1String("--find")) {
                result.snapshot.findQuery = v;
            } else if (arg == QLatin1String("--fold")) {
                // Lines from 1, separated by commas; the option may be repeated.
                for (const QString &part : v.split(u',', Qt::SkipEmptyParts)) {
                    bool ok = false;
                    const qint64 line = part.trimmed().toLongLong(&ok);
                    if (!ok || line < 1)
                        return fail(QStringLiteral("bad --fold %1 (line numbers from 1)").arg(v));
                    result.snapshot.foldLines.append(line);
                }
            } else if (arg == QLatin1String("--sidebar")) {
                result.snapshot.sidebarFolder = absolute(v, workingDir);
            } else if (arg == QLatin1String("--find-all")) {
                result.snapshot.findAll = v;
            } else {
                return fail(QStringLiteral("unknown option %1").arg(arg));
            }
        } else if (arg.startsWith(QLatin1String("mirtex:"), Qt::CaseInsensitive)) {
            result.urls.append(arg);
        } else if (arg.startsWith(QLatin1String("--"))) {
            return fail(QStringLiteral("unknown option %1").arg(arg));
        } else if (isForeignUrl(arg)) {
            continue;
        } else {
            result.files.append(absolute(arg, workingDir));
        }
    }
    if (snapshot) {
        result.snapshot.files = result.files;
        if (result.snapshot.outputPath.isEmpty())
            return fail(QStringLiteral("--snapshot needs --out FILE.png"));
    }
    return result;
}

QString CommandLine::helpText()
{
    return QCoreApplication::translate(
        "CommandLine",
        "Uso: mirtex [opzioni] [file o cartelle…] [mirtex:…]\n"
        "\n"
        "Apre i file nelle schede della finestra già aperta, o in una nuova finestra.\n"
        "Un file che non esiste si apre vuoto e viene creato al primo salvataggio;\n"
        "una cartella si apre nella barra laterale.\n"
        "\n"
        "Opzioni:\n"
        "  --new-instance   apre una finestra a sé invece di passare i file a quella aperta\n"
        "  --help, -h       mostra questo aiuto ed esce\n"
        "  --version        mostra la versione ed esce\n"
        "  --selftest       esegue la prova interna ed esce\n"
        "  --snapshot --out FILE.png [--size LxA] [--tab N] [--split side|stacked]\n"
        "             [--sidebar CARTELLA] [--select-word PAROLA] [--fold RIGA,…] [--dark]\n"
        "             [--find TESTO] [--find-all TESTO] [--preview-only]\n"
        "             [file…]\n"
        "                   salva un'immagine della finestra con i file indicati ed esce\n"
        "  --compare-snapshot A B --out FILE.png [--hunk N] [--size LxA] [--dark]\n"
        "                   salva un'immagine del confronto di due file ed esce\n"
        "  --markdown-snapshot FILE.md --out FILE.png|FILE.pdf [--size LxA] [--dark]\n"
        "                   salva l'anteprima di un documento Markdown ed esce\n"
        "  --export FILE.md USCITA.html|USCITA.pdf\n"
        "                   scrive il documento Markdown come pagina ed esce\n");
}

QString CommandLine::versionText()
{
    return AppInfo::name() + u' ' + AppInfo::version() + u'\n';
}

} // namespace mirtex

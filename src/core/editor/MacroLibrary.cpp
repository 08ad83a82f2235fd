#include "core/editor/MacroLibrary.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>
#include <cmath>

namespace mirtex {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("MacroLibrary", text);
}

bool sameName(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

std::unexpected<MacroLibraryError> failure(MacroLibraryError::Kind kind, QString subject)
{
    return std::unexpected(MacroLibraryError{kind, std::move(subject)});
}

std::optional<SavedMacro> macroFromJson(const QJsonValue &value)
{
    const QJsonObject object = value.toObject();
    SavedMacro macro;
    macro.name = object.value(QStringLiteral("name")).toString().trimmed();
    macro.shortcut = object.value(QStringLiteral("shortcut")).toString();
    const QJsonArray steps = object.value(QStringLiteral("steps")).toArray();
    for (const QJsonValue &stepValue : steps) {
        const std::optional<MacroStep> step = MacroStep::fromJson(stepValue.toObject());
        if (!step)
            return std::nullopt;
        macro.steps.append(*step);
    }
    if (macro.name.isEmpty() || macro.steps.isEmpty())
        return std::nullopt;
    return macro;
}

} // namespace

QString MacroLibraryError::description() const
{
    switch (kind) {
    case Kind::emptyName:
        return tr("Scrivi un nome per la macro.");
    case Kind::nameInUse:
        return tr("Esiste già una macro di nome «%1».").arg(subject);
    case Kind::unknownName:
        return tr("Non c'è nessuna macro di nome «%1».").arg(subject);
    case Kind::emptyMacro:
        return tr("Non c'è nessuna macro da salvare: registrane una prima.");
    case Kind::corruptFile:
        return tr("Il file delle macro «%1» è danneggiato e non è stato letto. Non verrà "
                  "sovrascritto: correggilo o spostalo altrove.")
            .arg(subject);
    case Kind::newerFile:
        return tr("Il file delle macro «%1» è stato scritto da una versione più recente di "
                  "Mirtex++ e non è stato letto. Non verrà sovrascritto.")
            .arg(subject);
    case Kind::unreadableFile:
        return tr("Le macro non si possono modificare: il file «%1» non è stato letto e non "
                  "verrà sovrascritto.")
            .arg(subject);
    case Kind::writeFailed:
        return tr("Non è stato possibile scrivere il file delle macro «%1».").arg(subject);
    }
    return {};
}

QString MacroLibrary::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
           + QStringLiteral("/Mirtex/macros.json");
}

MacroLibrary::MacroLibrary(QString path)
    : m_path(std::move(path))
{}

std::expected<void, MacroLibraryError> MacroLibrary::load()
{
    m_macros.clear();
    m_refused = false;
    QFile file(m_path);
    if (!file.exists())
        return {};
    m_refused = true;
    if (!file.open(QIODevice::ReadOnly))
        return failure(MacroLibraryError::Kind::corruptFile, m_path);
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
    const QJsonObject root = document.object();
    const QJsonValue version = root.value(QStringLiteral("version"));
    if (parseError.error != QJsonParseError::NoError || !document.isObject() || !version.isDouble()
        || version.toDouble() < 1 || version.toDouble() != std::floor(version.toDouble()))
        return failure(MacroLibraryError::Kind::corruptFile, m_path);
    if (version.toDouble() > kFormatVersion)
        return failure(MacroLibraryError::Kind::newerFile, m_path);
    const QJsonValue list = root.value(QStringLiteral("macros"));
    if (!list.isArray())
        return failure(MacroLibraryError::Kind::corruptFile, m_path);
    QList<SavedMacro> macros;
    for (const QJsonValue &value : list.toArray()) {
        std::optional<SavedMacro> macro = macroFromJson(value);
        const bool taken = macro && std::ranges::any_of(macros, [&](const SavedMacro &m) {
                               return sameName(m.name, macro->name);
                           });
        if (!macro || taken)
            return failure(MacroLibraryError::Kind::corruptFile, m_path);
        macros.append(std::move(*macro));
    }
    m_macros = std::move(macros);
    m_refused = false;
    return {};
}

qsizetype MacroLibrary::indexOf(const QString &name) const
{
    for (qsizetype i = 0; i < m_macros.size(); ++i) {
        if (sameName(m_macros[i].name, name))
            return i;
    }
    return -1;
}

const SavedMacro *MacroLibrary::find(const QString &name) const
{
    const qsizetype index = indexOf(name);
    return index < 0 ? nullptr : &m_macros[index];
}

std::optional<MacroLibraryError> MacroLibrary::nameProblem(const QString &name,
                                                           const QString &except) const
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return MacroLibraryError{MacroLibraryError::Kind::emptyName, {}};
    if (find(trimmed) && !(!except.isEmpty() && sameName(trimmed, except)))
        return MacroLibraryError{MacroLibraryError::Kind::nameInUse, trimmed};
    return std::nullopt;
}

std::expected<void, MacroLibraryError> MacroLibrary::add(SavedMacro macro)
{
    macro.name = macro.name.trimmed();
    if (const auto problem = nameProblem(macro.name))
        return std::unexpected(*problem);
    if (macro.steps.isEmpty())
        return failure(MacroLibraryError::Kind::emptyMacro, macro.name);
    QList<SavedMacro> macros = m_macros;
    macros.append(std::move(macro));
    return write(macros);
}

std::expected<void, MacroLibraryError> MacroLibrary::rename(const QString &name,
                                                            const QString &newName)
{
    const qsizetype index = indexOf(name);
    if (index < 0)
        return failure(MacroLibraryError::Kind::unknownName, name);
    if (const auto problem = nameProblem(newName, name))
        return std::unexpected(*problem);
    QList<SavedMacro> macros = m_macros;
    macros[index].name = newName.trimmed();
    return write(macros);
}

std::expected<void, MacroLibraryError> MacroLibrary::remove(const QString &name)
{
    const qsizetype index = indexOf(name);
    if (index < 0)
        return failure(MacroLibraryError::Kind::unknownName, name);
    QList<SavedMacro> macros = m_macros;
    macros.removeAt(index);
    return write(macros);
}

std::expected<void, MacroLibraryError> MacroLibrary::setShortcut(const QString &name,
                                                                 const QString &shortcut)
{
    const qsizetype index = indexOf(name);
    if (index < 0)
        return failure(MacroLibraryError::Kind::unknownName, name);
    QList<SavedMacro> macros = m_macros;
    macros[index].shortcut = shortcut;
    return write(macros);
}

std::expected<void, MacroLibraryError> MacroLibrary::write(const QList<SavedMacro> &macros)
{
    if (m_refused)
        return failure(MacroLibraryError::Kind::unreadableFile, m_path);
    QJsonArray list;
    for (const SavedMacro &macro : macros) {
        QJsonArray steps;
        for (const MacroStep &step : macro.steps)
            steps.append(step.toJson());
        QJsonObject object{{QStringLiteral("name"), macro.name}, {QStringLiteral("steps"), steps}};
        if (!macro.shortcut.isEmpty())
            object.insert(QStringLiteral("shortcut"), macro.shortcut);
        list.append(object);
    }
    const QJsonObject root{{QStringLiteral("version"), kFormatVersion},
                           {QStringLiteral("macros"), list}};
    QDir().mkpath(QFileInfo(m_path).absolutePath());
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly)
        || file.write(QJsonDocument(root).toJson(QJsonDocument::Indented)) < 0 || !file.commit())
        return failure(MacroLibraryError::Kind::writeFailed, m_path);
    m_macros = macros;
    return {};
}

} // namespace mirtex

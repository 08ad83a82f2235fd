// The settings store: one table of keys, types and defaults, and typed readers that turn a value
// of the wrong type into the type's zero value instead of guessing.
#include "core/app/Preferences.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>

#include <cmath>
#include <limits>
#include <optional>

namespace mirtex {

namespace {

enum class Kind {
    string,
    real,
    integer,
    boolean
};

struct FieldSpec
{
    const char *key;
    Kind kind;
    QVariant defaultValue;
};

// In the order of Preferences::Field.
const std::array<FieldSpec, 24> &fieldSpecs()
{
    static const std::array<FieldSpec, 24> specs{{
        {"fontName", Kind::string, QString()},
        {"fontSize", Kind::real, 13.0},
        {"zoom", Kind::integer, 0},
        {"theme", Kind::string, QStringLiteral("auto")},
        {"tabWidth", Kind::integer, 4},
        {"useSpaces", Kind::boolean, false},
        {"autoIndent", Kind::boolean, true},
        {"autoClose", Kind::boolean, false},
        {"wordWrap", Kind::boolean, false},
        {"showLineNumbers", Kind::boolean, true},
        {"highlightCurrentLine", Kind::boolean, true},
        {"smartHighlight", Kind::boolean, true},
        {"braceMatch", Kind::boolean, true},
        {"showWhitespace", Kind::boolean, false},
        {"showLineEndings", Kind::boolean, false},
        {"showIndentGuides", Kind::boolean, false},
        {"rememberSession", Kind::boolean, true},
        {"checkExternalChanges", Kind::boolean, true},
        {"defaultEncoding", Kind::string, QStringLiteral("4")},
        {"defaultLineEnding", Kind::string, QStringLiteral("lf")},
        {"showHiddenFiles", Kind::boolean, false},
        {"showStatusBar", Kind::boolean, true},
        {"alwaysOnTop", Kind::boolean, false},
        {"markdownPreviewOnOpen", Kind::boolean, true},
    }};
    return specs;
}

int fieldIndexOf(const QString &key)
{
    const auto &specs = fieldSpecs();
    for (std::size_t i = 0; i < specs.size(); ++i) {
        if (key == QLatin1StringView(specs[i].key))
            return int(i);
    }
    return -1;
}

bool isNumber(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
        return true;
    default:
        return false;
    }
}

// A number from a stored value: numbers as they are, strings only when they spell a number.
std::optional<double> numberFrom(const QVariant &value)
{
    if (isNumber(value))
        return value.toDouble();
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? 1.0 : 0.0;
    if (value.typeId() == QMetaType::QString) {
        bool ok = false;
        const double number = value.toString().trimmed().toDouble(&ok);
        if (ok && std::isfinite(number))
            return number;
    }
    return std::nullopt;
}

QVariant readAs(Kind kind, const QVariant &stored)
{
    switch (kind) {
    case Kind::string:
        if (stored.typeId() == QMetaType::QString || isNumber(stored))
            return stored.toString();
        return QString();
    case Kind::real:
        return numberFrom(stored).value_or(0.0);
    case Kind::integer: {
        const double number = numberFrom(stored).value_or(0.0);
        if (number < double(std::numeric_limits<int>::min())
            || number > double(std::numeric_limits<int>::max()))
            return 0;
        return int(number);
    }
    case Kind::boolean:
        if (stored.typeId() == QMetaType::QString) {
            const QString text = stored.toString().trimmed().toLower();
            if (text == u"true" || text == u"yes")
                return true;
            if (text == u"false" || text == u"no")
                return false;
        }
        return numberFrom(stored).value_or(0.0) != 0.0;
    }
    return {};
}

} // namespace

Preferences::Preferences(QObject *parent)
    : Preferences(defaultSettingsFilePath(), parent)
{}

Preferences::Preferences(const QString &settingsFilePath, QObject *parent)
    : QObject(parent)
    , m_settings(std::make_unique<QSettings>(settingsFilePath, QSettings::IniFormat))
{
    static_assert(kFieldCount == 24, "the field table and the enum must agree");
    readAll();
}

Preferences::~Preferences() = default;

// Computed on every call rather than through QSettings' own default location, which is fixed the
// first time any QSettings is made; this way XDG_CONFIG_HOME is always honoured.
QString Preferences::defaultSettingsFilePath()
{
    const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return QDir(base).filePath(QStringLiteral("Mirtex/Mirtex++.conf"));
}

QString Preferences::settingsFilePath() const
{
    return m_settings->fileName();
}

void Preferences::readAll()
{
    const auto &specs = fieldSpecs();
    for (std::size_t i = 0; i < specs.size(); ++i) {
        const QVariant stored = m_settings->value(QLatin1StringView(specs[i].key));
        m_values[i] = stored.isValid() ? readAs(specs[i].kind, stored) : specs[i].defaultValue;
    }
}

void Preferences::set(Field field, const QVariant &value)
{
    const FieldSpec &info = fieldSpecs()[index(field)];
    const QVariant typed = readAs(info.kind, value);
    if (typed == m_values[index(field)])
        return;
    m_values[index(field)] = typed;
    const QString key = QLatin1StringView(info.key);
    m_settings->setValue(key, typed);
    Q_EMIT changed(key);
}

QVariant Preferences::value(const QString &key, const QVariant &fallback) const
{
    const int field = fieldIndexOf(key);
    if (field >= 0)
        return m_values[field];
    return m_settings->value(key, fallback);
}

void Preferences::setValue(const QString &key, const QVariant &value)
{
    const int field = fieldIndexOf(key);
    if (field >= 0) {
        set(Field(field), value);
        return;
    }
    if (m_settings->contains(key) && m_settings->value(key) == value)
        return;
    m_settings->setValue(key, value);
    Q_EMIT changed(key);
}

void Preferences::sync()
{
    m_settings->sync();
}

} // namespace mirtex

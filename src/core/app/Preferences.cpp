// The settings store: the table of PreferenceTable.h as keys, types and defaults, and typed readers
// that turn a value of the wrong type into the type's zero value instead of guessing.
#include "core/app/Preferences.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>

#include <cmath>
#include <limits>
#include <optional>
#include <type_traits>

namespace mirtex {

namespace {

using Kind = Preferences::Kind;

template<class T>
constexpr Kind kindOf()
{
    if constexpr (std::is_same_v<T, QString>)
        return Kind::string;
    else if constexpr (std::is_same_v<T, double>)
        return Kind::real;
    else if constexpr (std::is_same_v<T, int>)
        return Kind::integer;
    else {
        static_assert(std::is_same_v<T, bool>, "a preference is a string, a number or a flag");
        return Kind::boolean;
    }
}

struct FieldSpec
{
    const char *key;
    Kind kind;
    QVariant defaultValue;
};

const std::array<FieldSpec, Preferences::kFieldCount> &fieldSpecs()
{
#define MIRTEX_PREFERENCE_SPEC(field, setter, type, key, fallback)                                 \
    FieldSpec{key, kindOf<type>(), QVariant::fromValue<type>(fallback)},
    static const std::array<FieldSpec, Preferences::kFieldCount> specs{
        {MIRTEX_PREFERENCES(MIRTEX_PREFERENCE_SPEC)}};
#undef MIRTEX_PREFERENCE_SPEC
    return specs;
}

const FieldSpec &specOf(Preferences::Field field)
{
    return fieldSpecs()[std::size_t(field)];
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

QString Preferences::key(Field field)
{
    return QLatin1StringView(specOf(field).key);
}

Preferences::Kind Preferences::kind(Field field)
{
    return specOf(field).kind;
}

QVariant Preferences::defaultValue(Field field)
{
    return specOf(field).defaultValue;
}

std::optional<Preferences::Field> Preferences::fieldForKey(const QString &key)
{
    const auto &specs = fieldSpecs();
    for (std::size_t i = 0; i < specs.size(); ++i) {
        if (key == QLatin1StringView(specs[i].key))
            return Field(i);
    }
    return std::nullopt;
}

void Preferences::setValue(Field field, const QVariant &value)
{
    const FieldSpec &info = specOf(field);
    const QVariant typed = readAs(info.kind, value);
    if (typed == m_values[index(field)])
        return;
    m_values[index(field)] = typed;
    m_settings->setValue(QLatin1StringView(info.key), typed);
    Q_EMIT changed(field);
}

QVariant Preferences::value(const QString &key, const QVariant &fallback) const
{
    if (const auto field = fieldForKey(key))
        return value(*field);
    return m_settings->value(key, fallback);
}

void Preferences::setValue(const QString &key, const QVariant &value)
{
    if (const auto field = fieldForKey(key)) {
        setValue(*field, value);
        return;
    }
    if (m_settings->contains(key) && m_settings->value(key) == value)
        return;
    m_settings->setValue(key, value);
}

void Preferences::sync()
{
    m_settings->sync();
}

} // namespace mirtex

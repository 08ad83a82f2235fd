// The user's settings for the whole application, kept in the per-user settings file and announced
// to observers whenever one of them changes.
#pragma once

#include "core/app/PreferenceTable.h"

#include <QObject>
#include <QString>
#include <QVariant>

#include <array>
#include <memory>
#include <optional>
#include <type_traits>

class QSettings;

namespace mirtex {

// Keys of the same store that belong to other parts of the program (read with value()).
namespace PreferenceKeys {
inline constexpr auto kLastSaveDirectory = "lastSaveDirectory";
inline constexpr auto kFindHistory = "findHistory"; // a string list
inline constexpr auto kFindDirectory = "findDirectory";
inline constexpr auto kToolbarHasAssistant = "toolbarHasAssistant";
inline constexpr auto kToolbarHasCompare = "toolbarHasCompare";
} // namespace PreferenceKeys

// Main thread only. Every field is read once at construction; a stored value of the wrong type
// reads as the zero value of the field's type (empty string, 0, false), an absent one as its
// default. A setter stores the value under the field's key and then emits changed(field); a
// setter given the current value does nothing. Writes reach the file lazily; sync() forces them.
class Preferences : public QObject
{
    Q_OBJECT

public:
    // One enumerator per row of PreferenceTable.h, in its order.
    enum class Field {
#define MIRTEX_PREFERENCE_FIELD(field, setter, type, key, value) field,
        MIRTEX_PREFERENCES(MIRTEX_PREFERENCE_FIELD)
#undef MIRTEX_PREFERENCE_FIELD
    };
#define MIRTEX_PREFERENCE_COUNT(field, setter, type, key, value) +1
    static constexpr int kFieldCount = 0 MIRTEX_PREFERENCES(MIRTEX_PREFERENCE_COUNT);
#undef MIRTEX_PREFERENCE_COUNT

    // The type of a field's values.
    enum class Kind {
        string,
        real,
        integer,
        boolean
    };

    // The default store: $XDG_CONFIG_HOME/Mirtex/Mirtex++.conf (~/.config when unset).
    explicit Preferences(QObject *parent = nullptr);
    // Another settings file in the same format (tests, tools).
    explicit Preferences(const QString &settingsFilePath, QObject *parent = nullptr);
    ~Preferences() override;

    static QString defaultSettingsFilePath();
    QString settingsFilePath() const;

    // What the table says of a field.
    static QString key(Field field);
    static Kind kind(Field field);
    static QVariant defaultValue(Field field);
    static std::optional<Field> fieldForKey(const QString &key);

    // A field's value, of its kind's type (QString, double, int, bool).
    QVariant value(Field field) const
    {
        return m_values[index(field)];
    }

    // Stores `value` converted to the field's type, as the field's setter does.
    void setValue(Field field, const QVariant &value);

    // Setters take small values by value and strings by reference.
    template<class T>
    using Parameter = std::conditional_t<std::is_scalar_v<T>, T, const T &>;

    // The typed accessor and setter of every field: fontName() and setFontName(), and so on.
#define MIRTEX_PREFERENCE_ACCESSORS(field, setter, type, storedKey, fallback)                      \
    type field() const                                                                             \
    {                                                                                              \
        return m_values[index(Field::field)].value<type>();                                        \
    }                                                                                              \
    void setter(Parameter<type> newValue)                                                          \
    {                                                                                              \
        setValue(Field::field, QVariant::fromValue<type>(newValue));                               \
    }
    MIRTEX_PREFERENCES(MIRTEX_PREFERENCE_ACCESSORS)
#undef MIRTEX_PREFERENCE_ACCESSORS

    // Any key of the store. A field's key answers the field's typed value (its default when
    // absent); other keys answer what is stored, or fallback. setValue on a field's key goes
    // through the field's typed setter; on another key it stores the value without notice.
    QVariant value(const QString &key, const QVariant &fallback = {}) const;
    void setValue(const QString &key, const QVariant &value);

    // Writes pending changes to the file.
    void sync();

Q_SIGNALS:
    void changed(mirtex::Preferences::Field field);

private:
    static constexpr int index(Field field)
    {
        return int(field);
    }

    void readAll();

    std::unique_ptr<QSettings> m_settings;
    // Each value already has its field's type.
    std::array<QVariant, kFieldCount> m_values;
};

} // namespace mirtex

// The user's settings for the whole application, kept in the per-user settings file and announced
// to observers whenever one of them changes.
#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

#include <array>
#include <memory>

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
// default. A setter stores the value under its key and then emits changed(key) with the store
// key (for example "theme" for themeID); a setter given the current value does nothing.
// Writes reach the file lazily; sync() forces them.
class Preferences : public QObject
{
    Q_OBJECT

public:
    // The default store: $XDG_CONFIG_HOME/Mirtex/Mirtex++.conf (~/.config when unset).
    explicit Preferences(QObject *parent = nullptr);
    // Another settings file in the same format (tests, tools).
    explicit Preferences(const QString &settingsFilePath, QObject *parent = nullptr);
    ~Preferences() override;

    static QString defaultSettingsFilePath();
    QString settingsFilePath() const;

    QString fontName() const { return string(Field::fontName); } // empty: system monospaced

    double fontSize() const { return m_values[index(Field::fontSize)].toDouble(); } // points

    int zoom() const { return integer(Field::zoom); } // zoom steps, may be negative

    QString themeID() const { return string(Field::themeID); } // a theme id or "auto"

    int tabWidth() const { return integer(Field::tabWidth); } // columns

    bool useSpaces() const { return boolean(Field::useSpaces); }

    bool autoIndent() const { return boolean(Field::autoIndent); }

    bool autoClose() const { return boolean(Field::autoClose); }

    bool wordWrap() const { return boolean(Field::wordWrap); }

    bool showLineNumbers() const { return boolean(Field::showLineNumbers); }

    bool highlightCurrentLine() const { return boolean(Field::highlightCurrentLine); }

    bool smartHighlight() const { return boolean(Field::smartHighlight); }

    bool braceMatch() const { return boolean(Field::braceMatch); }

    bool showWhitespace() const { return boolean(Field::showWhitespace); }

    bool showLineEndings() const { return boolean(Field::showLineEndings); }

    bool showIndentGuides() const { return boolean(Field::showIndentGuides); }

    bool rememberSession() const { return boolean(Field::rememberSession); }

    bool checkExternalChanges() const { return boolean(Field::checkExternalChanges); }

    QString defaultEncodingID() const { return string(Field::defaultEncodingID); } // "4": UTF-8

    QString defaultLineEndingID() const { return string(Field::defaultLineEndingID); }

    bool showHiddenFiles() const { return boolean(Field::showHiddenFiles); }

    bool showStatusBar() const { return boolean(Field::showStatusBar); }

    bool alwaysOnTop() const { return boolean(Field::alwaysOnTop); }

    bool markdownPreviewOnOpen() const { return boolean(Field::markdownPreviewOnOpen); }

    void setFontName(const QString &value) { set(Field::fontName, value); }

    void setFontSize(double value) { set(Field::fontSize, value); }

    void setZoom(int value) { set(Field::zoom, value); }

    void setThemeID(const QString &value) { set(Field::themeID, value); }

    void setTabWidth(int value) { set(Field::tabWidth, value); }

    void setUseSpaces(bool value) { set(Field::useSpaces, value); }

    void setAutoIndent(bool value) { set(Field::autoIndent, value); }

    void setAutoClose(bool value) { set(Field::autoClose, value); }

    void setWordWrap(bool value) { set(Field::wordWrap, value); }

    void setShowLineNumbers(bool value) { set(Field::showLineNumbers, value); }

    void setHighlightCurrentLine(bool value) { set(Field::highlightCurrentLine, value); }

    void setSmartHighlight(bool value) { set(Field::smartHighlight, value); }

    void setBraceMatch(bool value) { set(Field::braceMatch, value); }

    void setShowWhitespace(bool value) { set(Field::showWhitespace, value); }

    void setShowLineEndings(bool value) { set(Field::showLineEndings, value); }

    void setShowIndentGuides(bool value) { set(Field::showIndentGuides, value); }

    void setRememberSession(bool value) { set(Field::rememberSession, value); }

    void setCheckExternalChanges(bool value) { set(Field::checkExternalChanges, value); }

    void setDefaultEncodingID(const QString &value) { set(Field::defaultEncodingID, value); }

    void setDefaultLineEndingID(const QString &value) { set(Field::defaultLineEndingID, value); }

    void setShowHiddenFiles(bool value) { set(Field::showHiddenFiles, value); }

    void setShowStatusBar(bool value) { set(Field::showStatusBar, value); }

    void setAlwaysOnTop(bool value) { set(Field::alwaysOnTop, value); }

    void setMarkdownPreviewOnOpen(bool value) { set(Field::markdownPreviewOnOpen, value); }

    // Any key of the store. A field's key answers the field's typed value (its default when
    // absent); other keys answer what is stored, or fallback. setValue on a field's key goes
    // through the field's typed setter.
    QVariant value(const QString &key, const QVariant &fallback = {}) const;
    void setValue(const QString &key, const QVariant &value);

    // Writes pending changes to the file.
    void sync();

Q_SIGNALS:
    void changed(const QString &key);

private:
    enum class Field {
        fontName,
        fontSize,
        zoom,
        themeID,
        tabWidth,
        useSpaces,
        autoIndent,
        autoClose,
        wordWrap,
        showLineNumbers,
        highlightCurrentLine,
        smartHighlight,
        braceMatch,
        showWhitespace,
        showLineEndings,
        showIndentGuides,
        rememberSession,
        checkExternalChanges,
        defaultEncodingID,
        defaultLineEndingID,
        showHiddenFiles,
        showStatusBar,
        alwaysOnTop,
        markdownPreviewOnOpen,
    };
    static constexpr int kFieldCount = int(Field::markdownPreviewOnOpen) + 1;

    static constexpr int index(Field field) { return int(field); }

    QString string(Field field) const { return m_values[index(field)].toString(); }

    int integer(Field field) const { return m_values[index(field)].toInt(); }

    bool boolean(Field field) const { return m_values[index(field)].toBool(); }

    void readAll();
    void set(Field field, const QVariant &value);

    std::unique_ptr<QSettings> m_settings;
    // Each value already has its field's type.
    std::array<QVariant, kFieldCount> m_values;
};

} // namespace mirtex

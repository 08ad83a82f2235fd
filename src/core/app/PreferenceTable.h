// Every setting of the application, declared once: the field (its enumerator and accessor name),
// its setter, its type, the key it is stored under and its default. Preferences expands this list
// into its Field enum, its typed accessors and setters and its table of keys and defaults.
// Stored keys and defaults are what existing settings files hold: never change one.
//   fontName        empty: the system's monospaced font
//   fontSize        points
//   zoom            zoom steps, may be negative
//   themeID         a theme id or "auto"
//   tabWidth        columns
//   defaultEncoding a TextEncoding id; "4" is UTF-8
#pragma once

// X(field, setter, type, key, default value)
#define MIRTEX_PREFERENCES(X)                                                                      \
    X(fontName, setFontName, QString, "fontName", QString())                                       \
    X(fontSize, setFontSize, double, "fontSize", 13.0)                                             \
    X(zoom, setZoom, int, "zoom", 0)                                                               \
    X(themeID, setThemeID, QString, "theme", QStringLiteral("auto"))                               \
    X(tabWidth, setTabWidth, int, "tabWidth", 4)                                                   \
    X(useSpaces, setUseSpaces, bool, "useSpaces", false)                                           \
    X(autoIndent, setAutoIndent, bool, "autoIndent", true)                                         \
    X(autoClose, setAutoClose, bool, "autoClose", false)                                           \
    X(wordWrap, setWordWrap, bool, "wordWrap", false)                                              \
    X(showLineNumbers, setShowLineNumbers, bool, "showLineNumbers", true)                          \
    X(highlightCurrentLine, setHighlightCurrentLine, bool, "highlightCurrentLine", true)           \
    X(smartHighlight, setSmartHighlight, bool, "smartHighlight", true)                             \
    X(braceMatch, setBraceMatch, bool, "braceMatch", true)                                         \
    X(showWhitespace, setShowWhitespace, bool, "showWhitespace", false)                            \
    X(showLineEndings, setShowLineEndings, bool, "showLineEndings", false)                         \
    X(showIndentGuides, setShowIndentGuides, bool, "showIndentGuides", false)                      \
    X(rememberSession, setRememberSession, bool, "rememberSession", true)                          \
    X(checkExternalChanges, setCheckExternalChanges, bool, "checkExternalChanges", true)           \
    X(defaultEncodingID, setDefaultEncodingID, QString, "defaultEncoding", QStringLiteral("4"))    \
    X(defaultLineEndingID,                                                                         \
      setDefaultLineEndingID,                                                                      \
      QString,                                                                                     \
      "defaultLineEnding",                                                                         \
      QStringLiteral("lf"))                                                                        \
    X(showHiddenFiles, setShowHiddenFiles, bool, "showHiddenFiles", false)                         \
    X(showStatusBar, setShowStatusBar, bool, "showStatusBar", true)                                \
    X(alwaysOnTop, setAlwaysOnTop, bool, "alwaysOnTop", false)                                     \
    X(markdownPreviewOnOpen, setMarkdownPreviewOnOpen, bool, "markdownPreviewOnOpen", true)

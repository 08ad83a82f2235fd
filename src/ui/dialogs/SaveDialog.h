// The save panel: a file dialog with the encoding and line-ending pop-ups below it, starting in
// the folder of the last save.
#pragma once

#include "core/document/LineEnding.h"
#include "core/document/TextEncoding.h"

#include <QString>

#include <optional>

class QWidget;

namespace mirtex {

class Document;
class Preferences;

struct SaveDialogChoice
{
    QString path;
    TextEncoding encoding;
    LineEnding lineEnding = LineEnding::lf;
};

class SaveDialog
{
public:
    // Nothing when cancelled.
    static std::optional<SaveDialogChoice>
    ask(QWidget *parent, Preferences &prefs, const Document &document, const QString &title);
};

} // namespace mirtex

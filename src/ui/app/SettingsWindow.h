// "Impostazioni di Mirtex++": every choice writes its preference at once; the editors follow.
#pragma once

#include "core/app/Preferences.h"

#include <QDialog>

class QLabel;
class QComboBox;

namespace mirtex {

class SettingsWindow : public QDialog
{
    Q_OBJECT

public:
    SettingsWindow(Preferences &prefs, QWidget *parent = nullptr);

private:
    using Field = Preferences::Field;

    // Shows the field in a check box (flags), spin box (numbers) or combo box (strings, the
    // items' data being the stored values) and stores what the user sets.
    void bind(QWidget *widget, Field field);
    void refreshSessionNote();
    void refreshThemePreview();

    Preferences &m_prefs;
    QLabel *m_sessionNote;
    QComboBox *m_theme;
    QLabel *m_themePreview;
};

} // namespace mirtex

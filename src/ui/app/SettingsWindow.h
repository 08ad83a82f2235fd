// "Impostazioni di Mirtex++": every choice writes its preference at once; the editors follow.
#pragma once

#include <QDialog>

class QLabel;
class QComboBox;

namespace mirtex {

class Preferences;

class SettingsWindow : public QDialog
{
    Q_OBJECT

public:
    SettingsWindow(Preferences &prefs, QWidget *parent = nullptr);

private:
    void refreshSessionNote();
    void refreshThemePreview();

    Preferences &m_prefs;
    QLabel *m_sessionNote;
    QComboBox *m_theme;
    QLabel *m_themePreview;
};

} // namespace mirtex

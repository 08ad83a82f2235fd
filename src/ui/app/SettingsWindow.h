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

    // Where a theme chooser and its preview go (added by the themes' own code).
    QWidget *themeArea() const { return m_themeArea; }

private:
    void refreshSessionNote();

    Preferences &m_prefs;
    QLabel *m_sessionNote;
    QWidget *m_themeArea;
};

} // namespace mirtex

// A strip across the top of a tab's page telling the user something about its file: a message,
// buttons for what can be done about it and, when it may be dismissed, a close button. Its
// colours are mixed from the window's palette, so it fits light and dark themes alike.
#pragma once

#include <QFrame>

#include <functional>

class QAbstractButton;
class QHBoxLayout;
class QLabel;
class QPushButton;

namespace mirtex {

class InfoBar : public QFrame
{
    Q_OBJECT

public:
    enum class Tone {
        information,
        warning
    };

    explicit InfoBar(const QString &text, Tone tone = Tone::information, QWidget *parent = nullptr);

    QString text() const;
    void setText(const QString &text);

    Tone tone() const { return m_tone; }

    // Adds a button after the message. `action` runs once the click has been handled, so it may
    // remove the bar.
    QPushButton *addButton(const QString &label, std::function<void()> action);

    QList<QPushButton *> buttons() const { return m_buttons; }

    // A bar that may not be closed has no close button and ignores Escape.
    void setClosable(bool closable);
    bool isClosable() const;

    QAbstractButton *closeButton() const;

    // Puts the keyboard focus on the first button (or the close button).
    void focusFirstControl();

Q_SIGNALS:
    // The close button or Escape in a closable bar; the owner removes the bar.
    void closeRequested();
    // Escape in a bar that stays: the owner gives the focus back to the text.
    void leaveRequested();

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QColor accent() const;

    Tone m_tone;
    QHBoxLayout *m_row;
    QLabel *m_label;
    QList<QPushButton *> m_buttons;
    QAbstractButton *m_close;
};

} // namespace mirtex

#include "ui/document/InfoBar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QTimer>
#include <QToolButton>

namespace mirtex {

namespace {

constexpr int kStripeWidth = 4;

QColor mixed(const QColor &base, const QColor &over, double amount)
{
    const auto mix = [amount](int a, int b) { return int(a + (b - a) * amount + 0.5); };
    return QColor(mix(base.red(), over.red()),
                  mix(base.green(), over.green()),
                  mix(base.blue(), over.blue()));
}

} // namespace

InfoBar::InfoBar(const QString &text, Tone tone, QWidget *parent)
    : QFrame(parent)
    , m_tone(tone)
    , m_row(new QHBoxLayout(this))
    , m_label(new QLabel(text, this))
    , m_close(new QToolButton(this))
{
    setAccessibleName(tone == Tone::warning ? tr("Avviso") : tr("Informazione"));
    setAccessibleDescription(text);
    setFocusPolicy(Qt::NoFocus);
    m_row->setContentsMargins(kStripeWidth + 8, 4, 4, 4);
    m_row->setSpacing(6);
    m_label->setWordWrap(true);
    m_label->setTextFormat(Qt::PlainText);
    m_label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_label->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_row->addWidget(m_label, 1);

    auto *close = static_cast<QToolButton *>(m_close);
    close->setAutoRaise(true);
    close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    close->setToolTip(tr("Chiudi"));
    close->setAccessibleName(tr("Chiudi"));
    close->setFocusPolicy(Qt::StrongFocus);
    m_row->addWidget(close);
    // Queued: the owner deletes the bar, which must not happen inside the button's own click.
    connect(close, &QToolButton::clicked, this, &InfoBar::closeRequested, Qt::QueuedConnection);
}

QString InfoBar::text() const
{
    return m_label->text();
}

void InfoBar::setText(const QString &text)
{
    m_label->setText(text);
    setAccessibleDescription(text);
}

QPushButton *InfoBar::addButton(const QString &label, std::function<void()> action)
{
    auto *button = new QPushButton(label, this);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setAutoDefault(true); // Enter presses the focused button
    m_row->insertWidget(m_row->indexOf(m_close), button);
    connect(button, &QPushButton::clicked, this, std::move(action), Qt::QueuedConnection);
    m_buttons.append(button);
    return button;
}

void InfoBar::setClosable(bool closable)
{
    m_close->setVisible(closable);
    m_close->setEnabled(closable);
}

bool InfoBar::isClosable() const
{
    return m_close->isEnabled();
}

QAbstractButton *InfoBar::closeButton() const
{
    return m_close;
}

void InfoBar::focusFirstControl()
{
    for (QPushButton *button : m_buttons) {
        if (button->isEnabled()) {
            button->setFocus(Qt::ShortcutFocusReason);
            return;
        }
    }
    if (isClosable())
        m_close->setFocus(Qt::ShortcutFocusReason);
}

QColor InfoBar::accent() const
{
    // Amber for what could cost the user data; the palette's own highlight for the rest.
    return m_tone == Tone::warning ? QColor(0xE0, 0x9A, 0x12)
                                   : palette().color(QPalette::Highlight);
}

void InfoBar::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    const QColor window = palette().color(QPalette::Window);
    const QColor accentColor = accent();
    // Dark windows need a little more of the accent to tell the strip from the window.
    const double amount = window.lightness() < 128 ? 0.28 : 0.18;
    painter.fillRect(rect(), mixed(window, accentColor, amount));
    painter.fillRect(QRect(0, 0, kStripeWidth, height()), accentColor);
    painter.fillRect(QRect(0, height() - 1, width(), 1), mixed(window, accentColor, 0.5));
    QFrame::paintEvent(event);
}

void InfoBar::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        if (isClosable())
            QTimer::singleShot(0, this, &InfoBar::closeRequested);
        else
            Q_EMIT leaveRequested();
        event->accept();
        return;
    }
    QFrame::keyPressEvent(event);
}

} // namespace mirtex

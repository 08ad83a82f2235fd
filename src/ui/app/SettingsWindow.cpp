#include "ui/app/SettingsWindow.h"

#include "core/app/Preferences.h"
#include "core/languages/Theme.h"
#include "ui/app/AppearanceController.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDoubleSpinBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSpinBox>
#include <QVBoxLayout>

namespace mirtex {

namespace {

QLabel *note(const QString &text)
{
    auto *label = new QLabel(text);
    label->setWordWrap(true);
    QFont small = label->font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    label->setFont(small);
    label->setContentsMargins(22, 0, 0, 4);
    return label;
}
} // namespace

SettingsWindow::SettingsWindow(Preferences &prefs, QWidget *parent)
    : QDialog(parent)
    , m_prefs(prefs)
    , m_sessionNote(note({}))
    , m_theme(new QComboBox)
    , m_themePreview(new QLabel)
{
    setObjectName(QStringLiteral("mirtex.settings"));
    setWindowTitle(tr("Impostazioni di Mirtex++"));
    setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowCloseButtonHint
                   | Qt::WindowMinimizeButtonHint);
    // Two columns keep the window short enough for small screens.
    auto *columns = new QHBoxLayout(this);
    auto *layout = new QVBoxLayout;
    auto *right = new QVBoxLayout;
    columns->addLayout(layout);
    columns->addLayout(right);

    auto *fontBox = new QGroupBox(tr("Carattere"));
    auto *fontForm = new QFormLayout(fontBox);
    auto *family = new QComboBox;
    family->addItem(tr("Monospaziato di sistema"), QString());
    for (const QString &name : QFontDatabase::families()) {
        if (QFontDatabase::isFixedPitch(name))
            family->addItem(name, name);
    }
    family->setCurrentIndex(std::max(0, family->findData(prefs.fontName())));
    connect(family, &QComboBox::currentIndexChanged, this, [this, family]() {
        m_prefs.setFontName(family->currentData().toString());
    });
    auto *size = new QDoubleSpinBox;
    size->setRange(6, 72);
    size->setDecimals(1);
    size->setValue(prefs.fontSize());
    connect(
        size, &QDoubleSpinBox::valueChanged, this, [this](double v) { m_prefs.setFontSize(v); });
    fontForm->addRow(tr("Famiglia:"), family);
    fontForm->addRow(tr("Dimensione:"), size);
    layout->addWidget(fontBox);

    auto *editing = new QGroupBox(tr("Scrittura"));
    auto *editLayout = new QVBoxLayout(editing);
    auto check = [this](QVBoxLayout *into,
                        const QString &label,
                        bool (Preferences::*get)() const,
                        void (Preferences::*set)(bool)) {
        auto *box = new QCheckBox(label);
        box->setChecked((m_prefs.*get)());
        connect(box, &QCheckBox::toggled, this, [this, set](bool on) { (m_prefs.*set)(on); });
        into->addWidget(box);
        return box;
    };
    check(editLayout,
          tr("Rientro automatico sulla nuova riga"),
          &Preferences::autoIndent,
          &Preferences::setAutoIndent);
    check(editLayout,
          tr("Chiudi automaticamente parentesi e virgolette"),
          &Preferences::autoClose,
          &Preferences::setAutoClose);
    check(editLayout,
          tr("Inserisci spazi al posto del TAB"),
          &Preferences::useSpaces,
          &Preferences::setUseSpaces);
    auto *tabRow = new QFormLayout;
    auto *tabWidth = new QSpinBox;
    tabWidth->setRange(1, 16);
    tabWidth->setValue(prefs.tabWidth());
    connect(tabWidth, &QSpinBox::valueChanged, this, [this](int v) { m_prefs.setTabWidth(v); });
    tabRow->addRow(tr("Larghezza del TAB:"), tabWidth);
    editLayout->addLayout(tabRow);
    check(editLayout,
          tr("Evidenziazione intelligente della parola selezionata"),
          &Preferences::smartHighlight,
          &Preferences::setSmartHighlight);
    check(editLayout,
          tr("Evidenzia le parentesi corrispondenti"),
          &Preferences::braceMatch,
          &Preferences::setBraceMatch);
    layout->addWidget(editing);

    auto *files = new QGroupBox(tr("File e sessione"));
    auto *fileLayout = new QVBoxLayout(files);
    auto *remember = check(fileLayout,
                           tr("Ricorda la sessione (schede e testo non salvato) all'uscita"),
                           &Preferences::rememberSession,
                           &Preferences::setRememberSession);
    fileLayout->addWidget(m_sessionNote);
    connect(remember, &QCheckBox::toggled, this, &SettingsWindow::refreshSessionNote);
    check(fileLayout,
          tr("Avvisa se un file aperto viene cambiato da un altro programma"),
          &Preferences::checkExternalChanges,
          &Preferences::setCheckExternalChanges);
    check(fileLayout,
          tr("Mostra i file e le cartelle nascosti"),
          &Preferences::showHiddenFiles,
          &Preferences::setShowHiddenFiles);
    check(fileLayout,
          tr("Apri i file Markdown con l'anteprima accanto"),
          &Preferences::markdownPreviewOnOpen,
          &Preferences::setMarkdownPreviewOnOpen);
    fileLayout->addWidget(
        note(tr("Ctrl+Shift+V mostra o nasconde l'anteprima; da lì puoi anche esportare in PDF.")));
    right->addWidget(files);

    auto *themeBox = new QGroupBox(tr("Tema"));
    auto *themeLayout = new QFormLayout(themeBox);
    for (const ThemeChoice &choice : Theme::choices())
        m_theme->addItem(choice.name, choice.id);
    m_theme->setCurrentIndex(std::max(0, m_theme->findData(prefs.themeID())));
    connect(m_theme, &QComboBox::currentIndexChanged, this, [this]() {
        m_prefs.setThemeID(m_theme->currentData().toString());
    });
    connect(&m_prefs, &Preferences::changed, this, [this](const QString &key) {
        if (key != QLatin1String("theme"))
            return;
        const QSignalBlocker block(m_theme);
        m_theme->setCurrentIndex(std::max(0, m_theme->findData(m_prefs.themeID())));
        refreshThemePreview();
    });
    m_themePreview->setTextFormat(Qt::RichText);
    m_themePreview->setAutoFillBackground(true);
    m_themePreview->setContentsMargins(8, 6, 8, 6);
    themeLayout->addRow(tr("Tema:"), m_theme);
    themeLayout->addRow(tr("Anteprima del tema"), m_themePreview);
    right->addWidget(themeBox);
    refreshThemePreview();
    layout->addStretch(1);
    right->addStretch(1);
    refreshSessionNote();
}

void SettingsWindow::refreshThemePreview()
{
    const Theme &theme = Theme::resolve(m_prefs.themeID(), AppearanceController::systemIsDark());
    auto span = [&theme](TokenKind kind, const QString &text) {
        return QStringLiteral("<span style=\"color:%1\">%2</span>")
            .arg(theme.color(kind).hexName(), text.toHtmlEscaped());
    };
    const QString line
        = span(TokenKind::keyword, QStringLiteral("let")) + QStringLiteral(" saluto = ")
          + span(TokenKind::string, QStringLiteral("\"Ciao, \\(nome)!\"")) + QStringLiteral(" ")
          + span(TokenKind::comment, QStringLiteral("// 3 volte"));
    m_themePreview->setText(
        QStringLiteral("<span style=\"font-family:monospace; color:%1\">%2</span>")
            .arg(theme.text.hexName(), line));
    QPalette palette = m_themePreview->palette();
    palette.setColor(QPalette::Window, QColor::fromRgba(theme.background.argb()));
    m_themePreview->setPalette(palette);
}

void SettingsWindow::refreshSessionNote()
{
    m_sessionNote->setText(
        m_prefs.rememberSession()
            ? tr("Uscendo non ti viene chiesto di salvare: alla riapertura ritrovi tutto, anche le "
                 "schede mai salvate.")
            : tr("Uscendo ti viene chiesto se salvare ogni documento modificato."));
}

} // namespace mirtex

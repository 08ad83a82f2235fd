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
    bind(family, Field::fontName);
    auto *size = new QDoubleSpinBox;
    size->setRange(6, 72);
    size->setDecimals(1);
    bind(size, Field::fontSize);
    fontForm->addRow(tr("Famiglia:"), family);
    fontForm->addRow(tr("Dimensione:"), size);
    layout->addWidget(fontBox);

    auto *editing = new QGroupBox(tr("Scrittura"));
    auto *editLayout = new QVBoxLayout(editing);
    auto check = [this](QVBoxLayout *into, const QString &label, Field field) {
        auto *box = new QCheckBox(label);
        bind(box, field);
        into->addWidget(box);
    };
    check(editLayout, tr("Rientro automatico sulla nuova riga"), Field::autoIndent);
    check(editLayout, tr("Chiudi automaticamente parentesi e virgolette"), Field::autoClose);
    check(editLayout, tr("Inserisci spazi al posto del TAB"), Field::useSpaces);
    auto *tabRow = new QFormLayout;
    auto *tabWidth = new QSpinBox;
    tabWidth->setRange(1, 16);
    bind(tabWidth, Field::tabWidth);
    tabRow->addRow(tr("Larghezza del TAB:"), tabWidth);
    editLayout->addLayout(tabRow);
    check(editLayout,
          tr("Evidenziazione intelligente della parola selezionata"),
          Field::smartHighlight);
    check(editLayout, tr("Evidenzia le parentesi corrispondenti"), Field::braceMatch);
    layout->addWidget(editing);

    auto *files = new QGroupBox(tr("File e sessione"));
    auto *fileLayout = new QVBoxLayout(files);
    check(fileLayout,
          tr("Ricorda la sessione (schede e testo non salvato) all'uscita"),
          Field::rememberSession);
    fileLayout->addWidget(m_sessionNote);
    check(fileLayout,
          tr("Avvisa se un file aperto viene cambiato da un altro programma"),
          Field::checkExternalChanges);
    check(fileLayout, tr("Mostra i file e le cartelle nascosti"), Field::showHiddenFiles);
    check(fileLayout,
          tr("Apri i file Markdown con l'anteprima accanto"),
          Field::markdownPreviewOnOpen);
    fileLayout->addWidget(
        note(tr("Ctrl+Shift+V mostra o nasconde l'anteprima; da lì puoi anche esportare in PDF.")));
    right->addWidget(files);

    auto *themeBox = new QGroupBox(tr("Tema"));
    auto *themeLayout = new QFormLayout(themeBox);
    for (const ThemeChoice &choice : Theme::choices())
        m_theme->addItem(choice.name, choice.id);
    bind(m_theme, Field::themeID);
    connect(&m_prefs, &Preferences::changed, this, [this](Field field) {
        if (field == Field::themeID)
            refreshThemePreview();
        else if (field == Field::rememberSession)
            refreshSessionNote();
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

void SettingsWindow::bind(QWidget *widget, Field field)
{
    // The widget shows the field's value now and whenever it changes elsewhere (a menu, another
    // window); what the user sets is stored at once.
    auto show = [this, widget, field]() {
        const QSignalBlocker block(widget);
        const QVariant value = m_prefs.value(field);
        if (auto *box = qobject_cast<QCheckBox *>(widget))
            box->setChecked(value.toBool());
        else if (auto *spin = qobject_cast<QSpinBox *>(widget))
            spin->setValue(value.toInt());
        else if (auto *real = qobject_cast<QDoubleSpinBox *>(widget))
            real->setValue(value.toDouble());
        else if (auto *combo = qobject_cast<QComboBox *>(widget))
            combo->setCurrentIndex(std::max(0, combo->findData(value.toString())));
    };
    show();
    auto store = [this, field](const QVariant &value) { m_prefs.setValue(field, value); };
    if (auto *box = qobject_cast<QCheckBox *>(widget))
        connect(box, &QCheckBox::toggled, this, store);
    else if (auto *spin = qobject_cast<QSpinBox *>(widget))
        connect(spin, &QSpinBox::valueChanged, this, store);
    else if (auto *real = qobject_cast<QDoubleSpinBox *>(widget))
        connect(real, &QDoubleSpinBox::valueChanged, this, store);
    else if (auto *combo = qobject_cast<QComboBox *>(widget))
        connect(combo, &QComboBox::currentIndexChanged, this, [store, combo]() {
            store(combo->currentData());
        });
    else
        Q_ASSERT_X(false, "SettingsWindow::bind", "no binding for this kind of widget");
    connect(&m_prefs, &Preferences::changed, widget, [show, field](Field changed) {
        if (changed == field)
            show();
    });
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

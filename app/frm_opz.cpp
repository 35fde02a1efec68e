#include "app/frm_opz.h"

#include "tools/spell_checker.h"
#include "tools/spell_marks.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QFrame>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

namespace tornelia {

namespace {

const QString kApp = QStringLiteral("Tornelia");

QString flag(bool on) { return on ? QStringLiteral("1") : QStringLiteral("0"); }

int positive(const QString& text, int fallback)
{
    bool ok = false;
    const int n = text.toInt(&ok);
    return ok && n > 0 ? n : fallback;
}

// A toolbar is shown unless the setting says otherwise.
bool shown(const QString& value) { return value != QLatin1String("0") && value != QLatin1String("False"); }

QLabel* wrapped(const QString& text, QWidget* parent)
{
    auto* l = new QLabel(text, parent);
    l->setWordWrap(true);
    return l;
}

// The text of a check box too long for one line: a click on it toggles the
// box, as a click on a check box's own text would.
class ToggleLabel : public QLabel {
public:
    ToggleLabel(QCheckBox* box, const QString& text, QWidget* parent) : QLabel(text, parent), box_(box)
    {
        setWordWrap(true);
    }

protected:
    void mouseReleaseEvent(QMouseEvent* e) override
    {
        QLabel::mouseReleaseEvent(e);
        box_->toggle();
    }

private:
    QCheckBox* box_;
};

}  // namespace

QStringList filtriApri()
{
    return {QStringLiteral("Tutti i file (*.*)"), QStringLiteral("Tutti i file di testo (*.tnl, *.rtf, *.txt)"),
            QStringLiteral("File Tornelia (*.tnl)"), QStringLiteral("Rich Text File (*.rtf)"),
            QStringLiteral("File di testo (*.txt)")};
}

QStringList filtriSalva()
{
    return {QStringLiteral("File Tornelia (*.tnl)"), QStringLiteral("Rich Text File (*.rtf)"),
            QStringLiteral("File di testo (*.txt)")};
}

Opzioni Opzioni::leggi(const SettingsStore& s)
{
    Opzioni o;
    o.fontNome = s.leggiReg(kApp, QStringLiteral("Font"), QStringLiteral("1"), QStringLiteral("Tahoma"));
    bool ok = false;
    const float size = s.leggiReg(kApp, QStringLiteral("Font"), QStringLiteral("2"), QStringLiteral("10")).toFloat(&ok);
    o.fontDim = ok && size > 0 ? size : 10;
    const int m = positive(s.leggiReg(kApp, QStringLiteral("Salva"), QStringLiteral("0")), 0);
    o.salvaAuto = m > 0;
    o.minuti = m > 0 ? m : 10;
    o.salvaUscita = s.leggiReg(kApp, QStringLiteral("Salva"), QStringLiteral("1")) == QLatin1String("1");
    o.filtroApri = s.leggiReg(kApp, QStringLiteral("DefaultExt"), QStringLiteral("Apri"), o.filtroApri);
    o.filtroSalva = s.leggiReg(kApp, QStringLiteral("DefaultExt"), QStringLiteral("Salva"), o.filtroSalva);
    o.appunti = s.leggiReg(kApp, QStringLiteral("Appunti"), QStringLiteral("1")) == QLatin1String("1");
    o.appuntiSecondi = positive(s.leggiReg(kApp, QStringLiteral("Appunti"), QStringLiteral("2")), 1);
    o.stileMenu = s.leggiReg(kApp, QStringLiteral("Menu"), QStringLiteral("Stile"), o.stileMenu);
    o.toolbarStandard = shown(s.leggiReg(kApp, QStringLiteral("Toolbar 1"), QStringLiteral("1")));
    o.toolbarFormattazione = shown(s.leggiReg(kApp, QStringLiteral("Toolbar 2"), QStringLiteral("1")));
    o.tastiera = s.leggiReg(kApp, QStringLiteral("Tast"), QStringLiteral("1")) == QLatin1String("True");
    o.finestraAvvio = s.leggiReg(kApp, QStringLiteral("Load"), QStringLiteral("1")) == QLatin1String("1");
    o.linguaCorrettore = spellLanguageSetting(s);
    o.ortografiaDigitazione = spellWhileTypingSetting(s);
    return o;
}

void Opzioni::scrivi(SettingsStore& s) const
{
    s.scriviReg(kApp, QStringLiteral("Font"), QStringLiteral("1"), fontNome);
    s.scriviReg(kApp, QStringLiteral("Font"), QStringLiteral("2"), QString::number(fontDim));
    s.scriviReg(kApp, QStringLiteral("Salva"), QStringLiteral("0"), QString::number(salvaAuto ? minuti : 0));
    s.scriviReg(kApp, QStringLiteral("Salva"), QStringLiteral("1"), flag(salvaUscita));
    s.scriviReg(kApp, QStringLiteral("DefaultExt"), QStringLiteral("Apri"), filtroApri);
    s.scriviReg(kApp, QStringLiteral("DefaultExt"), QStringLiteral("Salva"), filtroSalva);
    s.scriviReg(kApp, QStringLiteral("Appunti"), QStringLiteral("1"), flag(appunti));
    s.scriviReg(kApp, QStringLiteral("Appunti"), QStringLiteral("2"), QString::number(appuntiSecondi));
    s.scriviReg(kApp, QStringLiteral("Menu"), QStringLiteral("Stile"), stileMenu);
    s.scriviReg(kApp, QStringLiteral("Toolbar 1"), QStringLiteral("1"), flag(toolbarStandard));
    s.scriviReg(kApp, QStringLiteral("Toolbar 2"), QStringLiteral("1"), flag(toolbarFormattazione));
    s.scriviReg(kApp, QStringLiteral("Tast"), QStringLiteral("1"),
                tastiera ? QStringLiteral("True") : QStringLiteral("False"));
    s.scriviReg(kApp, QStringLiteral("Load"), QStringLiteral("1"), flag(finestraAvvio));
    setSpellLanguageSetting(s, linguaCorrettore);
    setSpellWhileTypingSetting(s, ortografiaDigitazione);
}

// --- the window --------------------------------------------------------------

FrmOpz::FrmOpz(SettingsStore& settings, DialogPort& dialogs, MessagePort& messages, QWidget* parent)
    : QDialog(parent), settings_(settings), dialogs_(dialogs), messages_(messages)
{
    setObjectName(QStringLiteral("FrmOpz"));
    setWindowTitle(QStringLiteral("Opzioni"));

    tabs_ = new QTabWidget(this);
    tabs_->addTab(buildAppunti(), QStringLiteral("Appunti"));
    tabs_->addTab(buildVarie(), QStringLiteral("Varie"));
    tabs_->addTab(buildRecenti(), QStringLiteral("File recenti"));
    tabs_->addTab(buildCarattere(), QStringLiteral("Carattere"));
    tabs_->addTab(buildApriSalva(), QStringLiteral("Apri e salva"));
    tabs_->addTab(buildOrtografia(), QStringLiteral("Ortografia"));

    salva_ = new QPushButton(QStringLiteral("Salva modifiche"), this);
    salva_->setDefault(true);
    annulla_ = new QPushButton(QStringLiteral("Annulla"), this);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(salva_);
    buttons->addWidget(annulla_);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs_, 1);
    layout->addLayout(buttons);

    connect(salva_, &QPushButton::clicked, this, &FrmOpz::salvaModifiche);
    connect(annulla_, &QPushButton::clicked, this, &QDialog::reject);

    mostra(Opzioni::leggi(settings_));
    setAssociazioni({});
    resize(sizeHint().expandedTo(QSize(520, 340)));
}

QWidget* FrmOpz::buildCarattere()
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(wrapped(
        QStringLiteral("Imposta il carattere che verrà utilizzato come predefinito all'avvio di Tornelia"), page));
    fontSample_ = new QLabel(page);
    fontSample_->setFrameShape(QFrame::StyledPanel);
    fontSample_->setAlignment(Qt::AlignCenter);
    fontSample_->setMinimumHeight(64);
    fontSample_->setAutoFillBackground(true);
    fontSample_->setBackgroundRole(QPalette::Base);
    layout->addWidget(fontSample_);
    defC_ = new QPushButton(QStringLiteral("Cambia carattere..."), page);
    defD_ = new QPushButton(QStringLiteral("Carattere predefinito"), page);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(defC_);
    row->addWidget(defD_);
    layout->addLayout(row);
    layout->addStretch(1);

    connect(defC_, &QPushButton::clicked, this, [this] {
        FontChoice initial;
        initial.name = fontNome_;
        initial.size = fontDim_;
        if (const auto chosen = dialogs_.chooseFont(initial)) {
            fontNome_ = chosen->name;
            fontDim_ = chosen->size > 0 ? chosen->size : fontDim_;
            showFont();
        }
    });
    connect(defD_, &QPushButton::clicked, this, [this] {
        fontNome_ = Opzioni{}.fontNome;
        fontDim_ = Opzioni{}.fontDim;
        showFont();
    });
    return page;
}

QWidget* FrmOpz::buildApriSalva()
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* save = new QGroupBox(QStringLiteral("Salvataggio"), page);
    auto* saveLayout = new QVBoxLayout(save);
    auto* autoRow = new QHBoxLayout;
    salvaAuto_ = new QCheckBox(QStringLiteral("Salva automaticamente ogni"), save);
    minuti_ = new QSpinBox(save);
    minuti_->setRange(1, 999);
    autoRow->addWidget(salvaAuto_);
    autoRow->addWidget(minuti_);
    autoRow->addWidget(new QLabel(QStringLiteral("minuti"), save));
    autoRow->addStretch(1);
    saveLayout->addLayout(autoRow);
    salvaUscita_ = new QCheckBox(save);
    // A check box does not wrap its text; the label beside it does.
    auto* exitRow = new QHBoxLayout;
    auto* exitText = new ToggleLabel(salvaUscita_, QStringLiteral("Salva documento in uscita per prevenire perdite di dati accidentali "
                                            "(il file viene salvato nella cartella Temp del prog.)"),
                                     save);
    exitRow->addWidget(salvaUscita_, 0, Qt::AlignTop);
    exitRow->addWidget(exitText, 1);
    saveLayout->addLayout(exitRow);
    layout->addWidget(save);
    connect(salvaAuto_, &QCheckBox::toggled, minuti_, &QWidget::setEnabled);

    auto* filters = new QGroupBox(QStringLiteral("Tipo di file proposto"), page);
    auto* form = new QFormLayout(filters);
    filtroApri_ = new QComboBox(filters);
    filtroApri_->addItems(filtriApri());
    filtroSalva_ = new QComboBox(filters);
    filtroSalva_->addItems(filtriSalva());
    form->addRow(QStringLiteral("Apri:"), filtroApri_);
    form->addRow(QStringLiteral("Salva:"), filtroSalva_);
    layout->addWidget(filters);
    layout->addStretch(1);
    return page;
}

QWidget* FrmOpz::buildAppunti()
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    appunti_ = new QCheckBox(QStringLiteral("Abilita il riquadro degli appunti"), page);
    layout->addWidget(appunti_);
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(QStringLiteral("Aggiorna appunti ogni"), page));
    secondi_ = new QSpinBox(page);
    secondi_->setRange(1, 3600);
    row->addWidget(secondi_);
    row->addWidget(new QLabel(QStringLiteral("secondi"), page));
    row->addStretch(1);
    layout->addLayout(row);
    layout->addStretch(1);
    return page;
}

QWidget* FrmOpz::buildVarie()
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* menuRow = new QHBoxLayout;
    menuRow->addWidget(new QLabel(QStringLiteral("Stile menu:"), page));
    CmbMnu_ = new QComboBox(page);
    CmbMnu_->addItems({QStringLiteral("Office 2000"), QStringLiteral("Office XP")});
    menuRow->addWidget(CmbMnu_);
    menuRow->addStretch(1);
    layout->addLayout(menuRow);
    toolbar1_ = new QCheckBox(QStringLiteral("Visualizza Barra degli strumenti Standard"), page);
    toolbar2_ = new QCheckBox(QStringLiteral("Visualizza Barra degli strumenti Formattazione"), page);
    tastiera_ = new QCheckBox(QStringLiteral("Tastiera"), page);
    avvio_ = new QCheckBox(QStringLiteral("Finestra all'avvio"), page);
    layout->addWidget(toolbar1_);
    layout->addWidget(toolbar2_);
    layout->addWidget(tastiera_);
    layout->addWidget(avvio_);
    layout->addStretch(1);
    auto* note = new QLabel(QStringLiteral("Le modifiche saranno applicate dal prossimo avvio"), page);
    note->setEnabled(false);
    layout->addWidget(note);
    return page;
}

QWidget* FrmOpz::buildOrtografia()
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    ortografia_ = new QCheckBox(QStringLiteral("Controlla ortografia durante la digitazione"), page);
    layout->addWidget(ortografia_);
    auto* row = new QHBoxLayout;
    auto* label = new QLabel(QStringLiteral("Lingua del correttore"), page);
    lingua_ = new QComboBox(page);
    lingua_->setObjectName(QStringLiteral("cmbLinguaCorrettore"));
    label->setBuddy(lingua_);
    for (const QString& code : SpellChecker::installedLanguages())
        lingua_->addItem(SpellChecker::languageName(code), code);
    row->addWidget(label);
    row->addWidget(lingua_, 1);
    layout->addLayout(row);
    layout->addStretch(1);
    return page;
}

QWidget* FrmOpz::buildRecenti()
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(wrapped(QStringLiteral("L'elenco dei file aperti di recente compare nel menu File e nella "
                                             "finestra all'avvio."),
                              page));
    clearRecent_ = new QPushButton(QStringLiteral("Cancella l'elenco dei file recenti"), page);
    associa_ = new QPushButton(QStringLiteral("Associazioni..."), page);
    auto* row = new QHBoxLayout;
    row->addWidget(clearRecent_);
    row->addWidget(associa_);
    row->addStretch(1);
    layout->addLayout(row);
    layout->addStretch(1);

    connect(clearRecent_, &QPushButton::clicked, this, [this] {
        if (recent_) {
            recent_->svuota();
        } else {
            RecentFiles list(settings_);
            list.svuota();
        }
        messages_.mostraMsg(QStringLiteral("File recenti"), QStringLiteral("L'elenco dei file recenti è stato cancellato."),
                            0, 1);
    });
    connect(associa_, &QPushButton::clicked, this, [this] {
        if (associazioni_)
            associazioni_();
    });
    return page;
}

void FrmOpz::setAssociazioni(std::function<void()> open)
{
    associazioni_ = std::move(open);
    associa_->setEnabled(bool(associazioni_));
}

void FrmOpz::showFont()
{
    fontSample_->setText(QStringLiteral("%1, %2").arg(fontNome_, QString::number(fontDim_)));
    QFont f(fontNome_);
    f.setPointSizeF(fontDim_);
    fontSample_->setFont(f);
}

void FrmOpz::mostra(const Opzioni& o)
{
    fontNome_ = o.fontNome;
    fontDim_ = o.fontDim;
    showFont();
    salvaAuto_->setChecked(o.salvaAuto);
    minuti_->setValue(o.minuti);
    minuti_->setEnabled(o.salvaAuto);
    salvaUscita_->setChecked(o.salvaUscita);
    // A filter not offered here (written by hand, or by an older version)
    // is kept as it is rather than lost at the next save.
    auto pick = [](QComboBox* box, const QString& value) {
        if (box->findText(value) < 0)
            box->addItem(value);
        box->setCurrentIndex(box->findText(value));
    };
    pick(filtroApri_, o.filtroApri);
    pick(filtroSalva_, o.filtroSalva);
    appunti_->setChecked(o.appunti);
    secondi_->setValue(o.appuntiSecondi);
    pick(CmbMnu_, o.stileMenu);
    toolbar1_->setChecked(o.toolbarStandard);
    toolbar2_->setChecked(o.toolbarFormattazione);
    ortografia_->setChecked(o.ortografiaDigitazione);
    // A language whose dictionary went away is kept, not lost at the next save.
    if (lingua_->findData(o.linguaCorrettore) < 0)
        lingua_->addItem(o.linguaCorrettore, o.linguaCorrettore);
    lingua_->setCurrentIndex(lingua_->findData(o.linguaCorrettore));
    tastiera_->setChecked(o.tastiera);
    avvio_->setChecked(o.finestraAvvio);
}

Opzioni FrmOpz::valori() const
{
    Opzioni o;
    o.fontNome = fontNome_;
    o.fontDim = fontDim_;
    o.salvaAuto = salvaAuto_->isChecked();
    o.minuti = minuti_->value();
    o.salvaUscita = salvaUscita_->isChecked();
    o.filtroApri = filtroApri_->currentText();
    o.filtroSalva = filtroSalva_->currentText();
    o.appunti = appunti_->isChecked();
    o.appuntiSecondi = secondi_->value();
    o.stileMenu = CmbMnu_->currentText();
    o.toolbarStandard = toolbar1_->isChecked();
    o.toolbarFormattazione = toolbar2_->isChecked();
    o.tastiera = tastiera_->isChecked();
    o.finestraAvvio = avvio_->isChecked();
    if (lingua_->currentIndex() >= 0)
        o.linguaCorrettore = lingua_->currentData().toString();
    o.ortografiaDigitazione = ortografia_->isChecked();
    return o;
}

void FrmOpz::salvaModifiche()
{
    valori().scrivi(settings_);
    // The marks in the document follow the new language and switch at once.
    if (parentWidget())
        for (auto* spelling : parentWidget()->findChildren<SpellingSession*>())
            spelling->reloadSettings();
    accept();
}

}  // namespace tornelia

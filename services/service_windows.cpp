#include "services/service_windows.h"

#include "core/ports.h"
#include "core/rich_text_surface.h"
#include "core/undo_store.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QFormLayout>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTextEdit>
#include <QTime>
#include <QVBoxLayout>

#include <new>

namespace tornelia {

namespace {

QHBoxLayout* buttonRow(QPushButton* ok, QPushButton* cancel)
{
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(ok);
    row->addWidget(cancel);
    return row;
}

}  // namespace

// --- cR ------------------------------------------------------------------

CR::CR(UndoStore& undo, MessagePort& messages, QWidget* parent) : QDialog(parent), undo_(undo), messages_(messages)
{
    setObjectName(QStringLiteral("cR"));
    setWindowTitle(QStringLiteral("Cripta Documento"));
    auto* layout = new QVBoxLayout(this);
    auto* states = new QHBoxLayout;
    const char* const captions[] = {"Cripta", "Decripta"};
    for (int k = 0; k < 2; ++k) {
        but_[k] = new QPushButton(QString::fromUtf8(captions[k]), this);
        but_[k]->setObjectName(QStringLiteral("but%1").arg(k));
        but_[k]->setCheckable(true);
        // A click never releases the pressed one: one of the two stays down.
        connect(but_[k], &QPushButton::clicked, this, [this, k] { pressBut(k); });
        states->addWidget(but_[k]);
    }
    layout->addLayout(states);
    auto* combo = new QComboBox(this);
    combo->setObjectName(QStringLiteral("Combo1"));
    combo->addItem(QStringLiteral("RC4"));
    layout->addWidget(combo);
    auto* testo = new QTextEdit(this);
    testo->setObjectName(QStringLiteral("testo"));
    layout->addWidget(testo, 1);
    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("u1"));
    auto* cancel = new QPushButton(QStringLiteral("Annulla"), this);
    cancel->setObjectName(QStringLiteral("u2"));
    connect(ok, &QPushButton::clicked, this, &CR::u1);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    layout->addLayout(buttonRow(ok, cancel));
    pressBut(0);
    resize(360, 260);
}

void CR::pressBut(int k)
{
    for (int i = 0; i < 2; ++i)
        but_[i]->setChecked(i == k);
}

int CR::pressed() const
{
    return but_[1]->isChecked() ? 1 : 0;
}

void CR::u1()
{
    try {
        undo_.unDO();
        undo_.unDO();
    } catch (const std::bad_alloc&) {
        messages_.mostraMsg(QStringLiteral("Memoria"), QStringLiteral("Memoria insufficiente per eseguire l'operazione"),
                            0, 3);
        return;
    }
    accept();
}

// --- frmZip --------------------------------------------------------------

FrmZip::FrmZip(DialogPort& dialogs, MessagePort& messages, ShellPort& shell, QStringList folders, QWidget* parent)
    : QDialog(parent), dialogs_(dialogs), messages_(messages), shell_(shell), toolFolders_(std::move(folders))
{
    setObjectName(QStringLiteral("frmZip"));
    setWindowTitle(QStringLiteral("Compressione documento"));
    auto* layout = new QVBoxLayout(this);
    auto* mode = new QGroupBox(QStringLiteral("Operazione"), this);
    auto* modeRow = new QHBoxLayout(mode);
    u_[0] = new QRadioButton(QStringLiteral("Comprimi"), mode);
    u_[1] = new QRadioButton(QStringLiteral("Decomprimi"), mode);
    u_[0]->setChecked(true);
    for (int i = 0; i < 2; ++i) {
        u_[i]->setObjectName(QStringLiteral("u%1").arg(i));
        modeRow->addWidget(u_[i]);
    }
    connect(u_[0], &QRadioButton::toggled, this, [this](bool on) { setMode(on); });
    layout->addWidget(mode);

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(QStringLiteral("File di orgine:"), this), 0, 0);
    label1_ = new QLabel(this);
    label1_->setObjectName(QStringLiteral("Label1"));
    grid->addWidget(label1_, 1, 0);
    for (int i = 0; i < 2; ++i) {
        t_[i] = new QLineEdit(this);
        t_[i]->setObjectName(QStringLiteral("t%1").arg(i));
        t_[i]->setMinimumWidth(300);
        grid->addWidget(t_[i], i, 1);
        auto* browse = new QPushButton(QStringLiteral("..."), this);
        browse->setObjectName(QStringLiteral("b%1").arg(i));
        grid->addWidget(browse, i, 2);
        connect(browse, &QPushButton::clicked, this, [this, i] { i == 0 ? browseSource() : browseDestination(); });
    }
    layout->addLayout(grid);
    auto* go = new QPushButton(QStringLiteral("Esegui"), this);
    go->setObjectName(QStringLiteral("b2"));
    connect(go, &QPushButton::clicked, this, [this] {
        if (run())
            accept();
    });
    auto* close = new QPushButton(QStringLiteral("Chiudi"), this);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    layout->addLayout(buttonRow(go, close));
    setMode(true);
}

void FrmZip::setMode(bool compress)
{
    compress_ = compress;
    if (u_[0]->isChecked() != compress)
        u_[compress ? 0 : 1]->setChecked(true);
    label1_->setText(compress ? QStringLiteral("File di destinazione:") : QStringLiteral("Cartella di destinazione:"));
}

void FrmZip::setSource(const QString& path)
{
    t_[0]->setText(path);
}

void FrmZip::setDestination(const QString& path)
{
    t_[1]->setText(path);
}

QString FrmZip::destinationLabel() const
{
    return label1_->text();
}

void FrmZip::browseSource()
{
    const QString filter = compress_ ? QStringLiteral("Tutti i file (*)") : QStringLiteral("File compressi (*.zip)");
    if (const auto path = dialogs_.openFile(QStringLiteral("Seleziona il file di origine"), {filter}))
        t_[0]->setText(*path);
}

void FrmZip::browseDestination()
{
    if (compress_) {
        if (const auto path = dialogs_.saveFile(QStringLiteral("Seleziona il file di destinazione"),
                                                {QStringLiteral("File compressi (*.zip)")}, QString()))
            t_[1]->setText(*path);
    } else if (const auto folder = dialogs_.chooseFolder(QStringLiteral("Seleziona la cartella di destinazione"))) {
        t_[1]->setText(*folder);
    }
}

bool FrmZip::run()
{
    const QString source = t_[0]->text();
    const QString destination = t_[1]->text();
    if (!zipDataValid(compress_, source, destination)) {
        messages_.mostraMsg(QStringLiteral("Dati errati"), QStringLiteral("I dati immessi sono incompleti o errati!"), 0,
                            2);
        return false;
    }
    // Without the tool the command does nothing, as on a machine that never had it.
    const QString tool = findTool(QStringLiteral("zipper"), toolFolders_);
    if (!tool.isEmpty())
        shell_.startDetached(tool, {zipParameters(compress_, source, destination)});
    return true;
}

// --- FrmDebuG ------------------------------------------------------------

FrmDebuG::FrmDebuG(MessagePort& messages, ShellPort& shell, QString dataFolder, QWidget* parent)
    : QDialog(parent), messages_(messages), shell_(shell), dataFolder_(std::move(dataFolder))
{
    setObjectName(QStringLiteral("FrmDebuG"));
    setWindowTitle(QStringLiteral("Segnala errori"));
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    so_ = new QComboBox(this);
    so_->setObjectName(QStringLiteral("SO"));
    so_->addItems(systems());
    form->addRow(QStringLiteral("Sistema operativo:"), so_);
    auto* severity = new QWidget(this);
    auto* severityRow = new QHBoxLayout(severity);
    severityRow->setContentsMargins(0, 0, 0, 0);
    const char* const levels[] = {"Bassa", "Media", "Alta"};
    for (int i = 0; i < 3; ++i) {
        o_[i] = new QRadioButton(QString::fromUtf8(levels[i]), severity);
        o_[i]->setObjectName(QStringLiteral("o%1").arg(i));
        severityRow->addWidget(o_[i]);
    }
    o_[0]->setChecked(true);
    form->addRow(QStringLiteral("Gravità:"), severity);
    layout->addLayout(form);
    text1_ = new QPlainTextEdit(QStringLiteral("Ho riscontrato i seguenti errori..."), this);
    text1_->setObjectName(QStringLiteral("Text1"));
    layout->addWidget(text1_, 1);
    auto* send = new QPushButton(QStringLiteral("Invia"), this);
    send->setObjectName(QStringLiteral("se"));
    connect(send, &QPushButton::clicked, this, [this] {
        if (MaIL())
            accept();
    });
    auto* close = new QPushButton(QStringLiteral("Chiudi"), this);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    layout->addLayout(buttonRow(send, close));
    resize(440, 320);
}

QStringList FrmDebuG::systems()
{
    return {QStringLiteral("Scegli..."), QStringLiteral("Win95"),   QStringLiteral("Win98"),
            QStringLiteral("Win2000"),   QStringLiteral("WinNT"),   QStringLiteral("WinXp"),
            QStringLiteral("Altro... (specificare)!"), QStringLiteral("Linux")};
}

void FrmDebuG::setSystem(int index)
{
    so_->setCurrentIndex(index);
}

void FrmDebuG::setSeverity(int index)
{
    o_[index]->setChecked(true);
}

void FrmDebuG::setReportText(const QString& text)
{
    text1_->setPlainText(text);
}

bool FrmDebuG::MaIL()
{
    if (so_->currentIndex() == 0) {
        messages_.mostraMsg(QStringLiteral("Segnala errori"), QStringLiteral("Scegli il tuo sistema operativo!"), 0, 2);
        return false;
    }
    int severity = 0;
    for (int i = 0; i < 3; ++i) {
        if (o_[i]->isChecked())
            severity = i;
    }
    EmlMessage m;
    m.to = kSupportAddress;
    m.subject = QStringLiteral("Report bug di Tornelia");
    m.priority = reportPriority(severity);
    m.body = reportBody(o_[severity]->text(), so_->currentText(), text1_->toPlainText());
    QDir().mkpath(dataFolder_);
    const QString path = QDir(dataFolder_).filePath(QStringLiteral("temp.eml"));
    if (!writeEml(path, m)) {
        messages_.mostraMsg(QStringLiteral("Segnala errori"),
                            QStringLiteral("Impossibile scrivere il messaggio in %1.").arg(path), 0, 3);
        return false;
    }
    shell_.openDocument(path);
    return true;
}

// --- FrmAsso -------------------------------------------------------------

FrmAsso::FrmAsso(MessagePort& messages, QString programPath, QWidget* parent)
    : QDialog(parent), messages_(messages), programPath_(std::move(programPath)), dataHome_(xdgDataHome())
{
    setObjectName(QStringLiteral("FrmAsso"));
    setWindowTitle(QStringLiteral("Associa"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Associa Tornelia con le seguenti estensioni:"), this));
    const char* const captions[] = {".tnl", ".rtf", ".txt", "Altri file"};
    for (int i = 0; i < 4; ++i) {
        c_[i] = new QCheckBox(QString::fromUtf8(captions[i]), this);
        c_[i]->setObjectName(QStringLiteral("c%1").arg(i));
        layout->addWidget(c_[i]);
    }
    frame1_ = new QFrame(this);
    frame1_->setObjectName(QStringLiteral("Frame1"));
    frame1_->setFrameShape(QFrame::StyledPanel);
    auto* frameLayout = new QVBoxLayout(frame1_);
    frameLayout->addWidget(new QLabel(QStringLiteral("Specificare l'estensione da associare a Tornelia Es. .abc"), frame1_));
    auto* row = new QHBoxLayout;
    t_ = new QLineEdit(frame1_);
    t_->setObjectName(QStringLiteral("t"));
    row->addWidget(t_, 1);
    auto* now = new QPushButton(QStringLiteral("Associa"), frame1_);
    now->setObjectName(QStringLiteral("u3"));
    connect(now, &QPushButton::clicked, this, &FrmAsso::u3);
    row->addWidget(now);
    frameLayout->addLayout(row);
    layout->addWidget(frame1_);
    frame1_->setEnabled(false);
    connect(c_[3], &QCheckBox::toggled, frame1_, &QFrame::setEnabled);
    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("u1"));
    connect(ok, &QPushButton::clicked, this, &FrmAsso::u1);
    auto* close = new QPushButton(QStringLiteral("Chiudi"), this);
    close->setObjectName(QStringLiteral("u2"));
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    layout->addLayout(buttonRow(ok, close));
}

void FrmAsso::setChecked(int index, bool on)
{
    c_[index]->setChecked(on);
}

void FrmAsso::setOtherExtension(const QString& text)
{
    t_->setText(text);
}

bool FrmAsso::otherEnabled() const
{
    return frame1_->isEnabled();
}

void FrmAsso::associate(const QString& extension)
{
    const AssociationResult r = associateExtension(extension, programPath_, dataHome_, runTools_);
    if (r.ok) {
        messages_.mostraMsg(QStringLiteral("Associa"),
                            QStringLiteral("Associazione dei file %1 riuscita!").arg(normaliseExtension(extension)), 0, 1);
    } else {
        messages_.mostraMsg(QStringLiteral("Associa"),
                            QStringLiteral("Associazione dei file %1 non riuscita: %2").arg(extension, r.error), 0, 3);
    }
}

void FrmAsso::u1()
{
    // The field shows each extension as it is written; the one the person
    // typed is kept for the last box.
    const QString typed = t_->text();
    const char* const fixed[] = {".tnl", ".rtf", ".txt"};
    for (int i = 0; i < 3; ++i) {
        if (c_[i]->isChecked()) {
            t_->setText(QString::fromUtf8(fixed[i]));
            associate(QString::fromUtf8(fixed[i]));
        }
    }
    if (c_[3]->isChecked()) {
        t_->setText(typed);
        associate(typed);
    }
}

void FrmAsso::u3()
{
    associate(normaliseExtension(t_->text()));
}

// --- frmLett -------------------------------------------------------------

FrmLett::FrmLett(RichTextSurface& testo, QWidget* parent) : QDialog(parent), testo_(testo)
{
    setObjectName(QStringLiteral("frmLett"));
    setWindowTitle(QStringLiteral("Creazione veloce lettera"));
    auto* layout = new QVBoxLayout(this);
    auto* dateForm = new QFormLayout;
    cmbData_ = new QComboBox(this);
    cmbData_->setObjectName(QStringLiteral("cmbData"));
    cmbData_->setEditable(true);
    cmbData_->addItems(dateChoices(QDate::currentDate()));
    cmbData_->setCurrentIndex(0);
    dateForm->addRow(QStringLiteral("Data:"), cmbData_);
    layout->addLayout(dateForm);

    auto* sender = new QGroupBox(QStringLiteral("Mittente"), this);
    auto* senderForm = new QFormLayout(sender);
    const char* const senderLabels[] = {"Nome:", "Indirizzo:", "Tel.:", "Fax:", "E-mail:"};
    for (int i = 0; i < 5; ++i) {
        txtM_[i] = new QLineEdit(sender);
        txtM_[i]->setObjectName(QStringLiteral("txtM%1").arg(i));
        if (i != 1)
            senderForm->addRow(QString::fromUtf8(senderLabels[i]), txtM_[i]);
        else
            txtM_[i]->hide();
        if (i == 1) {
            // The sender's address takes two lines: street, then town.
            address_ = new QPlainTextEdit(sender);
            address_->setObjectName(QStringLiteral("txtM1"));
            address_->setTabChangesFocus(true);
            address_->setFixedHeight(address_->fontMetrics().lineSpacing() * 2 + 12);
            senderForm->addRow(QString::fromUtf8(senderLabels[i]), address_);
        }
    }
    auto* recipient = new QGroupBox(QStringLiteral("Destinatario"), this);
    auto* recipientForm = new QFormLayout(recipient);
    for (int i = 0; i < 4; ++i) {
        txtD_[i] = new QLineEdit(recipient);
        txtD_[i]->setObjectName(QStringLiteral("txtD%1").arg(i));
        recipientForm->addRow(QString::fromUtf8(senderLabels[i]), txtD_[i]);
    }
    for (int i = 0; i < 2; ++i) {
        cmbD_[i] = new QComboBox(recipient);
        cmbD_[i]->setObjectName(QStringLiteral("cmbD%1").arg(i));
        cmbD_[i]->setEditable(true);
    }
    cmbD_[0]->addItems({QStringLiteral("Egregio signore"), QStringLiteral("Spettabile signore"),
                        QStringLiteral("Gentile signore"), QStringLiteral("Caro")});
    cmbD_[1]->addItems({QStringLiteral("Cordiali saluti"), QStringLiteral("Distinti saluti"),
                        QStringLiteral("Con ossequi"), QStringLiteral("Con i migliori saluti"),
                        QStringLiteral("Con osservanza"), QStringLiteral("Grazie"), QStringLiteral("Ti ringrazio"),
                        QStringLiteral("Con affetto"), QStringLiteral("Stammi bene"), QStringLiteral("Salutoni")});
    recipientForm->addRow(QStringLiteral("Apertura:"), cmbD_[0]);
    recipientForm->addRow(QStringLiteral("Chiusura:"), cmbD_[1]);
    txtNC_ = new QLineEdit(recipient);
    txtNC_->setObjectName(QStringLiteral("txtNC"));
    recipientForm->addRow(QStringLiteral("Nome chiusura:"), txtNC_);
    // The name under the closing is the sender's unless the person changes it.
    connect(txtM_[0], &QLineEdit::textChanged, txtNC_, &QLineEdit::setText);
    QWidget* order[] = {txtM_[0], address_, txtM_[2], txtM_[3], txtM_[4], txtD_[0], txtD_[1],
                        txtD_[2], txtD_[3], cmbD_[0], cmbD_[1], txtNC_, cmbData_};
    for (int i = 0; i + 1 < 13; ++i)
        setTabOrder(order[i], order[i + 1]);
    txtM_[0]->setFocus();
    auto* columns = new QHBoxLayout;
    columns->addWidget(sender);
    columns->addWidget(recipient);
    layout->addLayout(columns);

    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("u0"));
    connect(ok, &QPushButton::clicked, this, &FrmLett::confirm);
    auto* cancel = new QPushButton(QStringLiteral("Annulla"), this);
    cancel->setObjectName(QStringLiteral("u1"));
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    layout->addLayout(buttonRow(ok, cancel));
}

LetterFields FrmLett::fields() const
{
    LetterFields f;
    f.date = cmbData_->currentText();
    for (int i = 0; i < 5; ++i)
        f.sender[i] = txtM_[i]->text();
    f.sender[1] = address_->toPlainText().replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
    for (int i = 0; i < 4; ++i)
        f.recipient[i] = txtD_[i]->text();
    f.opening = cmbD_[0]->currentText();
    f.closing = cmbD_[1]->currentText();
    f.closingName = txtNC_->text();
    return f;
}

void FrmLett::setField(const QString& name, const QString& text)
{
    if (name == QLatin1String("cmbData"))
        cmbData_->setEditText(text);
    else if (name == QLatin1String("txtNC"))
        txtNC_->setText(text);
    else if (name == QLatin1String("txtM1"))
        address_->setPlainText(text);
    else if (name.startsWith(QLatin1String("txtM")))
        txtM_[name.mid(4).toInt()]->setText(text);
    else if (name.startsWith(QLatin1String("txtD")))
        txtD_[name.mid(4).toInt()]->setText(text);
    else if (name.startsWith(QLatin1String("cmbD")))
        cmbD_[name.mid(4).toInt()]->setEditText(text);
}

void FrmLett::confirm()
{
    composeLetter(testo_, fields());
    accept();
}

// --- frmFax --------------------------------------------------------------

FrmFax::FrmFax(RichTextSurface& testo, QWidget* parent) : QDialog(parent), testo_(testo)
{
    setObjectName(QStringLiteral("frmFax"));
    setWindowTitle(QStringLiteral("Creazione veloce Fax"));
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    cmbData_ = new QComboBox(this);
    cmbData_->setObjectName(QStringLiteral("cmbData"));
    cmbData_->setEditable(true);
    cmbData_->addItems(dateChoices(QDate::currentDate()));
    cmbData_->setCurrentIndex(0);
    for (int i = 0; i < 5; ++i) {
        t_[i] = new QLineEdit(this);
        t_[i]->setObjectName(QStringLiteral("t%1").arg(i));
        t_[i]->setMinimumWidth(260);
    }
    form->addRow(QStringLiteral("Per:"), t_[3]);
    form->addRow(QStringLiteral("Fax:"), t_[2]);
    form->addRow(QStringLiteral("Da:"), t_[0]);
    form->addRow(QStringLiteral("Tel.:"), t_[1]);
    form->addRow(QStringLiteral("Data:"), cmbData_);
    form->addRow(QStringLiteral("Oggetto:"), t_[4]);
    layout->addLayout(form);
    // The keyboard goes down the form as it reads, from the recipient.
    QWidget* order[] = {t_[3], t_[2], t_[0], t_[1], cmbData_, t_[4]};
    for (int i = 0; i + 1 < 6; ++i)
        setTabOrder(order[i], order[i + 1]);
    t_[3]->setFocus();
    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("u0"));
    connect(ok, &QPushButton::clicked, this, &FrmFax::confirm);
    auto* cancel = new QPushButton(QStringLiteral("Annulla"), this);
    cancel->setObjectName(QStringLiteral("u1"));
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    layout->addLayout(buttonRow(ok, cancel));
}

FaxFields FrmFax::fields() const
{
    FaxFields f;
    f.date = cmbData_->currentText();
    f.time = QTime::currentTime().toString(QStringLiteral("hh:mm"));
    f.senderName = t_[0]->text();
    f.senderPhone = t_[1]->text();
    f.faxNumber = t_[2]->text();
    f.recipient = t_[3]->text();
    f.subject = t_[4]->text();
    return f;
}

void FrmFax::setField(int index, const QString& text)
{
    if (index < 0)
        cmbData_->setEditText(text);
    else
        t_[index]->setText(text);
}

void FrmFax::confirm()
{
    composeFax(testo_, fields());
    accept();
}

// --- about -----------------------------------------------------------------

QString FrmInfo::versionText(const QString& dataFolder)
{
    QFile f(QDir(dataFolder).filePath(QStringLiteral("Version.dat")));
    if (f.open(QIODevice::ReadOnly)) {
        const QString line = QString::fromUtf8(f.readLine()).trimmed();
        if (!line.isEmpty())
            return line;
    }
    return QCoreApplication::applicationVersion();
}

FrmInfo::FrmInfo(const QString& dataFolder, QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmInfo"));
    setWindowTitle(QStringLiteral("Informazioni su Tornelia"));
    auto* layout = new QVBoxLayout(this);
    auto* name = new QLabel(QStringLiteral("<h2>Tornelia</h2>"), this);
    layout->addWidget(name);
    layout->addWidget(new QLabel(QStringLiteral("Elaboratore di testi"), this));
    const QString version = versionText(dataFolder);
    layout->addWidget(new QLabel(QStringLiteral("Versione %1").arg(version.isEmpty() ? QStringLiteral("-") : version), this));
    layout->addWidget(new QLabel(QStringLiteral("Licenza: ") + kLicenceText, this));
    auto* site = new QLabel(QStringLiteral("<a href=\"%1\">%1</a>").arg(kTorneliaSite), this);
    site->setOpenExternalLinks(true);
    layout->addWidget(site);
    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(ok);
    layout->addLayout(row);
}

}  // namespace tornelia

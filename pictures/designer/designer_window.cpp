#include "pictures/designer/designer_window.h"

#include "core/ports.h"
#include "pictures/picture_windows.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QFocusEvent>
#include <QFontDatabase>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QSaveFile>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

namespace tornelia::designer {

namespace {

// The picture sits this far inside its frame on every side.
constexpr int kMargin = 17;
constexpr int kPad = 200;

QString sfondiCandidate(const QString& base)
{
    return QFileInfo(base).isDir() ? QDir(base).absolutePath() : QString();
}

// The program's file filter "Label|patterns" as the file dialog's label.
QString filterLabel(const QString& filter)
{
    const int bar = filter.indexOf(u'|');
    return filter.left(bar) + QStringLiteral(" (") + filter.mid(bar + 1) + u')';
}

const QString kGfxFilter = QStringLiteral("GFX Files|*.bmp;*.jpg;*.gif;*.wmf;.emf");

QCheckBox* check(QWidget* parent, const QString& name, const QString& caption, const QString& tip = {})
{
    auto* c = new QCheckBox(caption, parent);
    c->setObjectName(name);
    if (!tip.isEmpty())
        c->setToolTip(tip);
    return c;
}

QPushButton* button(QWidget* parent, const QString& name, const QString& caption, const QString& tip = {})
{
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    if (!tip.isEmpty())
        b->setToolTip(tip);
    b->setAutoDefault(false);
    return b;
}

QComboBox* combo(QWidget* parent, const QString& name, const QStringList& items, const QString& tip = {})
{
    auto* c = new QComboBox(parent);
    c->setObjectName(name);
    c->addItems(items);
    if (!tip.isEmpty())
        c->setToolTip(tip);
    return c;
}

// A bar beside its number box, kept in step both ways; `inverted` is for the
// size bars, whose value is the negative of the size so that up makes it
// larger.
QScrollBar* barFor(QWidget* parent, const QString& name, QSpinBox* box, Qt::Orientation o, bool inverted = false)
{
    auto* bar = new QScrollBar(o, parent);
    bar->setObjectName(name);
    if (inverted) {
        bar->setRange(-box->maximum(), -box->minimum());
        bar->setValue(-box->value());
        QObject::connect(bar, &QScrollBar::valueChanged, box, [box](int v) { box->setValue(-v); });
        QObject::connect(box, &QSpinBox::valueChanged, bar, [bar](int v) { bar->setValue(-v); });
    } else {
        bar->setRange(box->minimum(), box->maximum());
        bar->setValue(box->value());
        QObject::connect(bar, &QScrollBar::valueChanged, box, &QSpinBox::setValue);
        QObject::connect(box, &QSpinBox::valueChanged, bar, &QScrollBar::setValue);
    }
    if (o == Qt::Vertical)
        bar->setFixedHeight(box->sizeHint().height());
    else
        bar->setMinimumWidth(120);
    return bar;
}

QSpinBox* numberBox(QWidget* parent, const QString& name, int low, int high, int value, const QString& tip = {})
{
    auto* s = new QSpinBox(parent);
    s->setObjectName(name);
    s->setRange(low, high);
    s->setValue(value);
    if (!tip.isEmpty())
        s->setToolTip(tip);
    return s;
}

}  // namespace

// --- the textures folder --------------------------------------------------

QString shippedSfondiFolder()
{
    const QString app = QCoreApplication::applicationDirPath();
    QStringList candidates = {app + QStringLiteral("/sfondi")};
#ifdef TORNELIA_SFONDI_SOURCE_DIR
    candidates << QStringLiteral(TORNELIA_SFONDI_SOURCE_DIR);
#endif
    candidates << app + QStringLiteral("/../share/tornelia/sfondi");
#ifdef TORNELIA_INSTALL_DATADIR
    candidates << QStringLiteral(TORNELIA_INSTALL_DATADIR "/tornelia/sfondi");
#endif
    for (const QString& c : candidates) {
        const QString found = sfondiCandidate(c);
        if (!found.isEmpty())
            return found;
    }
    return {};
}

QStringList sfondiFiles(const QString& shippedFolder, const QString& userFolder)
{
    static const QStringList kinds{"*.png", "*.bmp", "*.jpg", "*.jpeg", "*.gif"};
    QMap<QString, QString> byName;
    for (const QString& folder : {shippedFolder, userFolder}) {
        if (folder.isEmpty())
            continue;
        const QDir dir(folder);
        for (const QString& name : dir.entryList(kinds, QDir::Files, QDir::Name))
            byName.insert(name.toLower(), dir.filePath(name));
    }
    return byName.values();
}

// --- the picture and the pad ------------------------------------------------

PicView::PicView(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("Pic"));
    setMouseTracking(false);
    setCursor(Qt::CrossCursor);
}

void PicView::setImage(const QImage& image)
{
    image_ = image;
    setFixedSize(image.size());
    update();
}

void PicView::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.drawImage(0, 0, image_);
}

void PicView::mousePressEvent(QMouseEvent* event)
{
    emit pressed(event->position().toPoint(), event->button());
}

void PicView::mouseMoveEvent(QMouseEvent* event)
{
    emit moved(event->position().toPoint(), event->buttons());
}

MagnifyPad::MagnifyPad(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("PicMagnify"));
    setFixedSize(kPad, kPad);
    setMouseTracking(true);
    sun_ = new QWidget(this);
    sun_->setObjectName(QStringLiteral("ShpSun"));
    sun_->setFixedSize(16, 16);
    sun_->setAttribute(Qt::WA_TransparentForMouseEvents);
    sun_->setStyleSheet(QStringLiteral("background: #ffd23f; border: 2px solid #b35c00; border-radius: 8px;"));
    sun_->hide();
}

void MagnifyPad::setPreview(const QImage& image)
{
    preview_ = image;
    update();
}

void MagnifyPad::clear()
{
    preview_ = QImage();
    update();
}

void MagnifyPad::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.fillRect(rect(), Qt::white);
    if (!preview_.isNull())
        p.drawImage(QRect(QPoint(0, 0), preview_.size().scaled(size(), Qt::KeepAspectRatio)), preview_);
    p.setPen(QColor(0x80, 0x80, 0x80));
    p.drawRect(rect().adjusted(0, 0, -1, -1));
}

void MagnifyPad::mouseMoveEvent(QMouseEvent* event)
{
    if (!sun_->isVisible())
        return;
    const QPoint at = event->position().toPoint();
    sun_->move(at - QPoint(sun_->width() / 2, sun_->height() / 2));
    emit hovered(at);
}

void MagnifyPad::mousePressEvent(QMouseEvent* event)
{
    if (!sun_->isVisible())
        return;
    emit fixed(event->position().toPoint());
}

// --- form2 ---------------------------------------------------------------

Form2::Form2(DesignerHost host, QWidget* owner)
    : QWidget(owner, Qt::Window)
    , host_(std::move(host))
    , engine_(std::make_unique<DesignerEngine>())
{
    setObjectName(QStringLiteral("form2"));
    setWindowTitle(QStringLiteral("Testo speciale"));

    auto* outer = new QVBoxLayout(this);

    // The picture on top, in a frame that keeps a margin around it.
    scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("scroll"));
    scroll->setBackgroundRole(QPalette::Dark);
    scroll->setMinimumHeight(180);
    frame = new QFrame;
    frame->setObjectName(QStringLiteral("Frame"));
    Pic = new PicView(frame);
    Pic->move(kMargin, kMargin);
    scroll->setWidget(frame);
    scroll->setAlignment(Qt::AlignCenter);
    outer->addWidget(scroll, 1);

    tabs = new QTabWidget(this);
    tabs->setObjectName(QStringLiteral("tabs"));
    tabs->addTab(buildTextTab(), QStringLiteral("&Testo"));
    tabs->addTab(buildFillTab(), QStringLiteral("&Riempimento"));
    tabs->addTab(buildBorderTab(), QStringLiteral("&Bordo"));
    tabs->addTab(buildBackgroundTab(), QStringLiteral("S&fondo"));
    tabs->addTab(buildEffectsTab(), QStringLiteral("&Effetti"));
    outer->addWidget(tabs);

    auto* out = new QHBoxLayout;
    PBar = new QProgressBar(this);
    PBar->setObjectName(QStringLiteral("PBar"));
    PBar->setTextVisible(false);
    PBar->hide();
    out->addWidget(PBar, 1);
    out->addStretch();
    cmdsaveButton = button(this, QStringLiteral("cmdsave"), QStringLiteral("&Salva immagine..."),
                           QStringLiteral("Salva l'immagine in un file bitmap"));
    cmdclipboardButton = button(this, QStringLiteral("cmdclipboard"), QStringLiteral("&Inserisci nel documento"),
                                QStringLiteral("Copia l'immagine negli appunti e inseriscila nel documento"));
    auto* close = button(this, QStringLiteral("cmdClose"), QStringLiteral("&Chiudi"));
    out->addWidget(cmdsaveButton);
    out->addWidget(cmdclipboardButton);
    out->addWidget(close);
    outer->addLayout(out);

    // The cover that takes every press while a filter runs.
    FrmBlock = new QWidget(this);
    FrmBlock->setObjectName(QStringLiteral("FrmBlock"));
    FrmBlock->setAttribute(Qt::WA_NoSystemBackground);
    FrmBlock->setFocusPolicy(Qt::StrongFocus);
    FrmBlock->hide();

    connect(cmdsaveButton, &QPushButton::clicked, this, &Form2::cmdsave);
    connect(cmdclipboardButton, &QPushButton::clicked, this, &Form2::cmdclipboard);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    connect(Pic, &PicView::pressed, this, [this](QPoint at, Qt::MouseButton b) {
        if (b == Qt::LeftButton)
            pictureMouse(at, true);
    });
    connect(Pic, &PicView::moved, this, [this](QPoint at, Qt::MouseButtons b) {
        if (b & Qt::LeftButton)
            pictureMouse(at, false);
    });
    connect(PicMagnify, &MagnifyPad::hovered, this, &Form2::previewSun);
    connect(PicMagnify, &MagnifyPad::fixed, this, &Form2::fixSun);

    // At load: the controls take the engine's starting values, then the
    // lists of textures, each texture its first file.
    const DesignerSettings d;
    TxtSizeX->setValue(d.sizeX);
    TxtSizeY->setValue(d.sizeY);
    TxtBordersize->setValue(d.borderSize);
    TxtAlpha->setValue(d.alphaPercent);
    for (int i = 0; i < 2; ++i) {
        ChkCol[i]->setChecked(d.chkCol[i]);
        setButtonColour(CmdSolCol[i], d.solidColour[i]);
    }
    for (int i = 0; i < 3; ++i) {
        ChkGrad[i]->setChecked(d.chkGrad[i]);
        CboGrStyle[i]->setCurrentIndex(d.grStyle[i]);
    }
    for (int i = 0; i < 6; ++i)
        setButtonColour(CmdGrCol[i], d.gradColour[i]);
    setButtonColour(CmdBackcolor, d.backColour);
    refreshFileLists();
    for (int i = 0; i < 2; ++i)
        if (File[i]->count() > 0)
            File[i]->setCurrentRow(0);
    loading_ = false;
    if (host_.shippedSfondiFolder.isEmpty())
        host_.messages.mostraMsg(QStringLiteral("Sfondi non trovati"),
                                 QStringLiteral("La cartella contenente gli sfondi non è stata trovata"), 0, 2);
    resizeCanvas(TxtSizeX->value(), TxtSizeY->value());
    resize(760, 680);
}

Form2::~Form2() = default;

QWidget* Form2::buildTextTab()
{
    auto* w = new QWidget;
    auto* g = new QGridLayout(w);

    Text1 = new QLineEdit(QStringLiteral("Tornelia"), w);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setToolTip(QStringLiteral("Scrivi qui il testo"));
    Text1->installEventFilter(this);
    g->addWidget(new QLabel(QStringLiteral("Testo:"), w), 0, 0);
    g->addWidget(Text1, 0, 1, 1, 5);

    CboName = combo(w, QStringLiteral("CboName"), QFontDatabase::families(), QStringLiteral("Nome Font"));
    CboName->setCurrentIndex(0);
    CboStyle = combo(w, QStringLiteral("CboStyle"),
                     {QStringLiteral("Normale"), QStringLiteral("Grassetto"), QStringLiteral("Corsivo"),
                      QStringLiteral("Sottolineato")},
                     QStringLiteral("Stile font"));
    QStringList sizes;
    for (int s = 12; s <= 72; s += 4)
        sizes << QString::number(s);
    CboSize = combo(w, QStringLiteral("CboSize"), sizes, QStringLiteral("Dimensioni font"));
    CboSize->setEditable(true);
    CboSize->setCurrentText(QStringLiteral("36"));
    CboSize->setMaximumWidth(80);
    CboAlign = combo(w, QStringLiteral("CboAlign"),
                     {QStringLiteral("Centro"), QStringLiteral("Sinistra"), QStringLiteral("Destra"),
                      QStringLiteral("Manuale")},
                     QStringLiteral("Allineamento font"));
    g->addWidget(new QLabel(QStringLiteral("Font:"), w), 1, 0);
    g->addWidget(CboName, 1, 1, 1, 2);
    g->addWidget(CboStyle, 1, 3);
    g->addWidget(CboSize, 1, 4);
    g->addWidget(new QLabel(QStringLiteral("Allineamento:"), w), 2, 0);
    g->addWidget(CboAlign, 2, 1);

    ChkAlias = check(w, QStringLiteral("ChkAlias"), QStringLiteral("Anti Alias"));
    ChkMirror = check(w, QStringLiteral("ChkMirror"), QStringLiteral("Specchio"), QStringLiteral("Effetto specchio"));
    ChkInvert = check(w, QStringLiteral("ChkInvert"), QStringLiteral("Inverti"));
    auto* flags = new QHBoxLayout;
    flags->addWidget(ChkAlias);
    flags->addWidget(ChkMirror);
    flags->addWidget(ChkInvert);
    flags->addStretch();
    g->addLayout(flags, 2, 2, 1, 4);

    ChkAlpha = check(w, QStringLiteral("ChkAlpha"), QStringLiteral("Canale alpha"));
    TxtAlpha = numberBox(w, QStringLiteral("TxtAlpha"), 0, 100, 100,
                         QStringLiteral("Transparenza in % (0 = trasparente / 100 = opaco)"));
    VScrAlpha = barFor(w, QStringLiteral("VScrAlpha"), TxtAlpha, Qt::Vertical, true);
    auto* alpha = new QHBoxLayout;
    alpha->addWidget(ChkAlpha);
    alpha->addWidget(TxtAlpha);
    alpha->addWidget(VScrAlpha);
    alpha->addStretch();
    g->addLayout(alpha, 3, 0, 1, 3);

    TxtSizeX = numberBox(w, QStringLiteral("TxtSizeX"), 1, 4000, 400, QStringLiteral("Dimensione orizzontale"));
    TxtSizeY = numberBox(w, QStringLiteral("TxtSizeY"), 1, 4000, 100, QStringLiteral("Dimensione verticale"));
    VscrX = barFor(w, QStringLiteral("VscrX"), TxtSizeX, Qt::Vertical, true);
    VscrY = barFor(w, QStringLiteral("VscrY"), TxtSizeY, Qt::Vertical, true);
    auto* size = new QHBoxLayout;
    size->addWidget(new QLabel(QStringLiteral("Largh."), w));
    size->addWidget(TxtSizeX);
    size->addWidget(VscrX);
    size->addSpacing(12);
    size->addWidget(new QLabel(QStringLiteral("Altezza"), w));
    size->addWidget(TxtSizeY);
    size->addWidget(VscrY);
    size->addStretch();
    g->addLayout(size, 3, 3, 1, 3);
    g->setColumnStretch(5, 1);
    g->setRowStretch(4, 1);

    connect(Text1, &QLineEdit::textChanged, this, &Form2::changed);
    connect(CboName, &QComboBox::currentIndexChanged, this, &Form2::changed);
    connect(CboStyle, &QComboBox::currentIndexChanged, this, &Form2::changed);
    connect(CboSize, &QComboBox::currentTextChanged, this, &Form2::changed);
    connect(CboAlign, &QComboBox::currentIndexChanged, this, &Form2::changed);
    for (QCheckBox* c : {ChkAlias, ChkAlpha, ChkMirror, ChkInvert})
        connect(c, &QCheckBox::toggled, this, &Form2::changed);
    connect(TxtAlpha, &QSpinBox::valueChanged, this, &Form2::changed);
    connect(TxtSizeX, &QSpinBox::valueChanged, this, [this](int x) { resizeCanvas(x, TxtSizeY->value()); });
    connect(TxtSizeY, &QSpinBox::valueChanged, this, [this](int y) { resizeCanvas(TxtSizeX->value(), y); });
    return w;
}

QPushButton* Form2::colourButton(QWidget* parent, const QString& name, std::uint32_t colour, const QString& tip)
{
    auto* b = button(parent, name, QString(), tip);
    b->setFixedSize(44, 24);
    setButtonColour(b, colour);
    connect(b, &QPushButton::clicked, this, [this, b] { pickColour(b); });
    return b;
}

std::uint32_t Form2::buttonColour(const QPushButton* button)
{
    return button->property("colour").toUInt();
}

void Form2::setButtonColour(QPushButton* button, std::uint32_t colour)
{
    button->setProperty("colour", colour);
    const QColor c(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
    button->setStyleSheet(QStringLiteral("QPushButton { background: %1; border: 1px solid #555; }").arg(c.name()));
}

void Form2::pickColour(QPushButton* button)
{
    if (const auto c = host_.dialogs.chooseColour(buttonColour(button))) {
        setButtonColour(button, *c);
        changed();
    }
}

// The paint of the text (0) or of the border (1): a solid colour, a
// gradient, or a texture from the folder.
QWidget* Form2::buildFillGroup(int index)
{
    auto* w = new QWidget;
    auto* g = new QGridLayout(w);
    g->setContentsMargins(0, 0, 0, 0);
    ChkCol[index] = check(w, QStringLiteral("ChkCol(%1)").arg(index), QStringLiteral("Colore"),
                          QStringLiteral("Colore Font"));
    CmdSolCol[index] = colourButton(w, QStringLiteral("CmdSolCol(%1)").arg(index), index == 0 ? 0x000000 : 0x0000C0,
                                    QStringLiteral("Colore"));
    ChkGrad[index] = check(w, QStringLiteral("ChkGrad(%1)").arg(index), QStringLiteral("Gradiente"));
    CmdGrCol[2 * index] = colourButton(w, QStringLiteral("CmdGrCol(%1)").arg(2 * index), index == 0 ? 0x0000FF : 0x000000,
                                       QStringLiteral("Primo colore"));
    CmdGrCol[2 * index + 1] = colourButton(w, QStringLiteral("CmdGrCol(%1)").arg(2 * index + 1),
                                           index == 0 ? 0xFF0000 : 0x00FFFF, QStringLiteral("Secondo colore"));
    CmdSwapColors[index] = button(w, QStringLiteral("CmdSwapColors(%1)").arg(index), QStringLiteral("Inverti colori"));
    CboGrStyle[index] = combo(w, QStringLiteral("CboGrStyle(%1)").arg(index),
                              {QStringLiteral("Circolare"), QStringLiteral("Orizziontale"), QStringLiteral("Verticale")},
                              QStringLiteral("Stile gradiente"));
    CboGrStyle[index]->setCurrentIndex(1);
    g->addWidget(ChkCol[index], 0, 0);
    g->addWidget(CmdSolCol[index], 0, 1);
    g->addWidget(ChkGrad[index], 1, 0);
    auto* grad = new QHBoxLayout;
    grad->addWidget(CmdGrCol[2 * index]);
    grad->addWidget(CmdGrCol[2 * index + 1]);
    grad->addWidget(CmdSwapColors[index]);
    grad->addWidget(CboGrStyle[index]);
    grad->addStretch();
    g->addLayout(grad, 1, 1);

    auto* tex = new QGroupBox(QStringLiteral("Trama"), w);
    auto* t = new QGridLayout(tex);
    t->addWidget(new QLabel(QStringLiteral("Sfondi"), tex), 0, 0);
    File[index] = new QListWidget(tex);
    File[index]->setObjectName(QStringLiteral("File(%1)").arg(index));
    File[index]->setIconSize(QSize(20, 20));
    File[index]->setMinimumWidth(150);
    File[index]->setMaximumHeight(110);
    t->addWidget(File[index], 1, 0, 3, 1);
    ImgPrev[index] = new QLabel(tex);
    ImgPrev[index]->setObjectName(QStringLiteral("ImgPrev(%1)").arg(index));
    ImgPrev[index]->setToolTip(QStringLiteral(
        "Anteprima - muovi la barra per applicare + o - trasparenza all'immagine e conferma con OK"));
    ImgPrev[index]->setFixedSize(64, 64);
    ImgPrev[index]->setScaledContents(true);
    ImgPrev[index]->setFrameShape(QFrame::StyledPanel);
    t->addWidget(ImgPrev[index], 1, 1, 2, 1);
    HScrDL[index] = new QScrollBar(Qt::Horizontal, tex);
    HScrDL[index]->setObjectName(QStringLiteral("HScrDL(%1)").arg(index));
    // Left darkens, right lightens; the middle leaves the texture as it is.
    HScrDL[index]->setRange(-255, 255);
    HScrDL[index]->setMinimumWidth(100);
    CmdDLOK[index] = button(tex, QStringLiteral("CmdDLOK(%1)").arg(index), QStringLiteral("OK"),
                            QStringLiteral("Conferma la trasparenza dell'immagine"));
    CmdDLOK[index]->hide();
    auto* dl = new QHBoxLayout;
    dl->addWidget(HScrDL[index]);
    dl->addWidget(CmdDLOK[index]);
    t->addLayout(dl, 3, 1, 1, 2);
    cmdloadButton[index] = button(tex, QStringLiteral("cmdload(%1)").arg(index), QStringLiteral("Carica..."),
                                  QStringLiteral("Carica una trama da un file"));
    CmdToTexButton[index] = button(tex, QStringLiteral("CmdToTex(%1)").arg(index), QStringLiteral("Aggiungi agli sfondi..."),
                                   QStringLiteral("Copia un file nella cartella degli sfondi"));
    t->addWidget(cmdloadButton[index], 1, 2);
    t->addWidget(CmdToTexButton[index], 2, 2);
    t->setColumnStretch(0, 1);
    g->addWidget(tex, 2, 0, 1, 2);

    connect(ChkCol[index], &QCheckBox::toggled, this, &Form2::changed);
    connect(ChkGrad[index], &QCheckBox::toggled, this, &Form2::changed);
    connect(CboGrStyle[index], &QComboBox::currentIndexChanged, this, &Form2::changed);
    connect(CmdSwapColors[index], &QPushButton::clicked, this, [this, index] {
        const std::uint32_t a = buttonColour(CmdGrCol[2 * index]);
        setButtonColour(CmdGrCol[2 * index], buttonColour(CmdGrCol[2 * index + 1]));
        setButtonColour(CmdGrCol[2 * index + 1], a);
        changed();
    });
    connect(File[index], &QListWidget::currentRowChanged, this, [this, index](int row) {
        if (row >= 0)
            loadTexture(index, File[index]->item(row)->data(Qt::UserRole).toString());
    });
    connect(HScrDL[index], &QScrollBar::valueChanged, this, [this, index] { previewTransparency(index, false); });
    connect(CmdDLOK[index], &QPushButton::clicked, this, [this, index] { previewTransparency(index, true); });
    connect(cmdloadButton[index], &QPushButton::clicked, this, [this, index] { cmdload(index); });
    connect(CmdToTexButton[index], &QPushButton::clicked, this, &Form2::CmdToTex);
    return w;
}

QWidget* Form2::buildFillTab()
{
    auto* w = new QWidget;
    auto* v = new QVBoxLayout(w);
    // Made after the paints, so the keyboard meets them first.
    v->addWidget(buildFillGroup(0));
    ChkTransparent = check(w, QStringLiteral("ChkTransparent"), QStringLiteral("Transparente"),
                           QStringLiteral("Imposta il colore del testo a trasparente"));
    v->addWidget(ChkTransparent);
    v->addStretch();
    connect(ChkTransparent, &QCheckBox::toggled, this, &Form2::changed);
    return w;
}

QWidget* Form2::buildBorderTab()
{
    auto* w = new QWidget;
    auto* v = new QVBoxLayout(w);
    auto* top = new QHBoxLayout;
    ChkBorder = check(w, QStringLiteral("ChkBorder"), QStringLiteral("Bordo"), QStringLiteral("Bordo intorno al testo"));
    TxtBordersize = numberBox(w, QStringLiteral("TxtBordersize"), 0, 50, 2, QStringLiteral("Spessore bordo"));
    VScroll1 = barFor(w, QStringLiteral("VScroll1"), TxtBordersize, Qt::Vertical, true);
    top->addWidget(ChkBorder);
    top->addWidget(TxtBordersize);
    top->addWidget(VScroll1);
    top->addSpacing(16);
    ChkLeft = check(w, QStringLiteral("ChkLeft"), QStringLiteral("Sinistra"), QStringLiteral("Il bordo cresce a sinistra"));
    ChkRight = check(w, QStringLiteral("ChkRight"), QStringLiteral("Destra"), QStringLiteral("Il bordo cresce a destra"));
    ChkTop = check(w, QStringLiteral("ChkTop"), QStringLiteral("Sopra"), QStringLiteral("Il bordo cresce in alto"));
    ChkBottom = check(w, QStringLiteral("ChkBottom"), QStringLiteral("Sotto"), QStringLiteral("Il bordo cresce in basso"));
    for (QCheckBox* c : {ChkLeft, ChkRight, ChkTop, ChkBottom}) {
        c->setChecked(true);
        top->addWidget(c);
    }
    top->addSpacing(16);
    ChkGlow = check(w, QStringLiteral("ChkGlow"), QStringLiteral("Trasparente"),
                    QStringLiteral("Sfoca il bordo col colore specificato"));
    ChkFade = check(w, QStringLiteral("ChkFade"), QStringLiteral("Sfoca sfondo"),
                    QStringLiteral("Sfoca il bordo e lo sfondo mescolandoli"));
    top->addWidget(ChkGlow);
    top->addWidget(ChkFade);
    top->addStretch();
    v->addLayout(top);
    v->addWidget(buildFillGroup(1));
    v->addStretch();
    for (QCheckBox* c : {ChkBorder, ChkLeft, ChkRight, ChkTop, ChkBottom, ChkGlow, ChkFade})
        connect(c, &QCheckBox::toggled, this, &Form2::changed);
    connect(TxtBordersize, &QSpinBox::valueChanged, this, &Form2::changed);
    return w;
}

QWidget* Form2::buildBackgroundTab()
{
    auto* w = new QWidget;
    auto* g = new QGridLayout(w);
    CmdBackcolor = colourButton(w, QStringLiteral("CmdBackcolor"), 0xFFFFFF, QStringLiteral("Colore sfondo"));
    CmdClearBack = button(w, QStringLiteral("CmdClearBack"), QStringLiteral("Rimuovi immagine"),
                          QStringLiteral("Togli l'immagine di sfondo"));
    cmdBackgroundButton = button(w, QStringLiteral("cmdBackground"), QStringLiteral("Immagine..."),
                                 QStringLiteral("Carica un'immagine di sfondo"));
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(QStringLiteral("Colore:"), w));
    row->addWidget(CmdBackcolor);
    row->addSpacing(16);
    row->addWidget(cmdBackgroundButton);
    row->addWidget(CmdClearBack);
    row->addStretch();
    g->addLayout(row, 0, 0, 1, 3);

    ChkGrad[2] = check(w, QStringLiteral("ChkGrad(2)"), QStringLiteral("Gradiente"));
    CmdGrCol[4] = colourButton(w, QStringLiteral("CmdGrCol(4)"), 0xFFFFFF, QStringLiteral("Primo colore"));
    CmdGrCol[5] = colourButton(w, QStringLiteral("CmdGrCol(5)"), 0xC08040, QStringLiteral("Secondo colore"));
    CmdSwapColors[2] = button(w, QStringLiteral("CmdSwapColors(2)"), QStringLiteral("Inverti Colori"));
    CboGrStyle[2] = combo(w, QStringLiteral("CboGrStyle(2)"),
                          {QStringLiteral("Circolare"), QStringLiteral("Orizziontale"), QStringLiteral("Verticale")},
                          QStringLiteral("Stile gradiente"));
    CboGrStyle[2]->setCurrentIndex(2);
    auto* grad = new QHBoxLayout;
    grad->addWidget(ChkGrad[2]);
    grad->addWidget(CmdGrCol[4]);
    grad->addWidget(CmdGrCol[5]);
    grad->addWidget(CmdSwapColors[2]);
    grad->addWidget(CboGrStyle[2]);
    grad->addStretch();
    g->addLayout(grad, 1, 0, 1, 3);

    ChkTile = check(w, QStringLiteral("ChkTile"), QStringLiteral("Ripeti"),
                    QStringLiteral("Ripeti l'immagine fino a coprire l'intera superficie"));
    ChkShrink = check(w, QStringLiteral("ChkShrink"), QStringLiteral("Adatta restringendo"),
                      QStringLiteral("Adatta immagine alle dimensioni restringendola"));
    ChkStretch = check(w, QStringLiteral("ChkStretch"), QStringLiteral("Adatta ingrandendo"),
                       QStringLiteral("Adatta immagine alle dimensioni ingrandendola"));
    auto* mode = new QHBoxLayout;
    mode->addWidget(ChkTile);
    mode->addWidget(ChkShrink);
    mode->addWidget(ChkStretch);
    mode->addStretch();
    g->addLayout(mode, 2, 0, 1, 3);

    HScrMoveBack = new QScrollBar(Qt::Horizontal, w);
    HScrMoveBack->setObjectName(QStringLiteral("HScrMoveBack"));
    HScrMoveBack->setToolTip(QStringLiteral("Sposta l'immagine di sfondo in orizzontale"));
    VScrMoveBack = new QScrollBar(Qt::Horizontal, w);
    VScrMoveBack->setObjectName(QStringLiteral("VScrMoveBack"));
    VScrMoveBack->setToolTip(QStringLiteral("Sposta l'immagine di sfondo in verticale"));
    g->addWidget(new QLabel(QStringLiteral("Sposta orizzontale:"), w), 3, 0);
    g->addWidget(HScrMoveBack, 3, 1);
    g->addWidget(new QLabel(QStringLiteral("Sposta verticale:"), w), 4, 0);
    g->addWidget(VScrMoveBack, 4, 1);
    g->setColumnStretch(1, 1);
    g->setColumnStretch(2, 1);
    g->setRowStretch(5, 1);

    connect(CmdClearBack, &QPushButton::clicked, this, [this] {
        engine_->clearBackground();
        updateBackScroll();
        renderPicture();
    });
    connect(cmdBackgroundButton, &QPushButton::clicked, this, &Form2::cmdBackground);
    connect(CmdSwapColors[2], &QPushButton::clicked, this, [this] {
        const std::uint32_t a = buttonColour(CmdGrCol[4]);
        setButtonColour(CmdGrCol[4], buttonColour(CmdGrCol[5]));
        setButtonColour(CmdGrCol[5], a);
        changed();
    });
    for (QCheckBox* c : {ChkGrad[2], ChkTile, ChkShrink, ChkStretch})
        connect(c, &QCheckBox::toggled, this, [this] {
            updateBackScroll();
            changed();
        });
    connect(CboGrStyle[2], &QComboBox::currentIndexChanged, this, &Form2::changed);
    connect(HScrMoveBack, &QScrollBar::valueChanged, this, &Form2::changed);
    connect(VScrMoveBack, &QScrollBar::valueChanged, this, &Form2::changed);
    return w;
}

QWidget* Form2::buildEffectsTab()
{
    auto* w = new QWidget;
    auto* h = new QHBoxLayout(w);
    auto* left = new QVBoxLayout;

    LblWarning = new QLabel(QStringLiteral("Attenzione! Tutte le modifiche apportate verranno perse. Continuare?"), w);
    LblWarning->setObjectName(QStringLiteral("LblWarning"));
    LblWarning->hide();

    auto* fx = new QHBoxLayout;
    fx->addWidget(new QLabel(QStringLiteral("Filtri"), w));
    CboFX = combo(w, QStringLiteral("CboFX"),
                  {QStringLiteral("Monocromatico"), QStringLiteral("Blur"), QStringLiteral("DePixel"),
                   QStringLiteral("Negativo")});
    CboFX->setCurrentIndex(-1);
    CboFX->setPlaceholderText(QStringLiteral("Scegli un filtro"));
    fx->addWidget(CboFX);
    cmdRedrawButton = button(w, QStringLiteral("cmdRedraw"), QStringLiteral("Ridisegna"),
                             QStringLiteral("Togli gli effetti e ridisegna il testo"));
    cmdBendButton = button(w, QStringLiteral("cmdBend"), QStringLiteral("Solo sfondo"),
                           QStringLiteral("Togli il testo e lascia lo sfondo"));
    fx->addWidget(cmdRedrawButton);
    fx->addWidget(cmdBendButton);
    fx->addStretch();
    left->addLayout(fx);

    auto* light = new QGroupBox(QStringLiteral("Luce"), w);
    auto* lg = new QGridLayout(light);
    ChkLight = check(light, QStringLiteral("ChkLight"), QStringLiteral("Luce"),
                     QStringLiteral("Fai clic sull'immagine per accendere la luce in quel punto"));
    ChkReal = check(light, QStringLiteral("ChkReal"), QStringLiteral("Reale"),
                    QStringLiteral("Impostando reale verrà illuminato anche il testo, che può diventare meno leggibile"));
    CmdLightCol = colourButton(light, QStringLiteral("CmdLightCol"), 0x80FFFF, QStringLiteral("Colore luce"));
    HScrStrnght = new QScrollBar(Qt::Horizontal, light);
    HScrStrnght->setObjectName(QStringLiteral("HScrStrnght"));
    HScrStrnght->setRange(10, 400);
    HScrStrnght->setValue(150);
    HScrDist = new QScrollBar(Qt::Horizontal, light);
    HScrDist->setObjectName(QStringLiteral("HScrDist"));
    HScrDist->setRange(1, 100);
    HScrDist->setValue(30);
    lg->addWidget(ChkLight, 0, 0);
    lg->addWidget(ChkReal, 0, 1);
    lg->addWidget(CmdLightCol, 0, 2);
    lg->addWidget(new QLabel(QStringLiteral("Lunghezza"), light), 1, 0);
    lg->addWidget(HScrStrnght, 1, 1, 1, 2);
    lg->addWidget(new QLabel(QStringLiteral("Distanza"), light), 2, 0);
    lg->addWidget(HScrDist, 2, 1, 1, 2);
    left->addWidget(light);

    auto* draw = new QGroupBox(QStringLiteral("Disegno"), w);
    auto* dh = new QHBoxLayout(draw);
    cmdPoint = button(draw, QStringLiteral("cmdPoint"), QStringLiteral("Punto"), QStringLiteral("Disegna un punto"));
    cmdLine = button(draw, QStringLiteral("cmdLine"), QStringLiteral("Linea"),
                     QStringLiteral("Disegna una linea: fai clic sul punto di partenza e su quello di arrivo"));
    cmdBox = button(draw, QStringLiteral("cmdBox"), QStringLiteral("Rettangolo"),
                    QStringLiteral("Disegna un rettangolo: fai clic su due angoli opposti"));
    cmdpip = button(draw, QStringLiteral("cmdpip"), QStringLiteral("Contagocce"),
                    QStringLiteral("Prendi il colore da un punto dell'immagine"));
    CmdDrawColor = colourButton(draw, QStringLiteral("CmdDrawColor"), 0x000000, QStringLiteral("Colore del disegno"));
    for (QPushButton* b : {cmdPoint, cmdLine, cmdBox, cmdpip}) {
        b->setCheckable(true);
        dh->addWidget(b);
    }
    dh->addWidget(CmdDrawColor);
    dh->addStretch();
    left->addWidget(draw);
    left->addStretch();
    h->addLayout(left, 1);

    auto* pad = new QGroupBox(QStringLiteral("Ombra"), w);
    auto* pv = new QVBoxLayout(pad);
    PicMagnify = new MagnifyPad(pad);
    PicMagnify->setToolTip(QStringLiteral("Muovi il sole e fai clic per fissare l'ombra"));
    auto* pb = new QHBoxLayout;
    cmdShadow = button(pad, QStringLiteral("cmdShadow"), QStringLiteral("Ombra"), QStringLiteral("Ombra del testo"));
    cmdHover = button(pad, QStringLiteral("cmdHover"), QStringLiteral("Sospeso"),
                      QStringLiteral("Testo sospeso sopra la sua ombra"));
    pb->addWidget(cmdShadow);
    pb->addWidget(cmdHover);
    pv->addWidget(PicMagnify, 0, Qt::AlignHCenter);
    pv->addLayout(pb);
    h->addWidget(pad);

    connect(CboFX, &QComboBox::activated, this, &Form2::runFilter);
    connect(cmdRedrawButton, &QPushButton::clicked, this, &Form2::cmdRedraw);
    connect(cmdBendButton, &QPushButton::clicked, this, &Form2::cmdBend);
    connect(cmdShadow, &QPushButton::clicked, this, [this] { startSunEffect(false); });
    connect(cmdHover, &QPushButton::clicked, this, [this] { startSunEffect(true); });
    const QPushButton* tools[] = {cmdPoint, cmdLine, cmdBox, cmdpip};
    for (int i = 0; i < 4; ++i)
        connect(tools[i], &QPushButton::clicked, this, [this, i](bool on) { setDrawTool(on ? i + 1 : 0); });
    return w;
}

// --- reading the controls ---------------------------------------------------

DesignerSettings Form2::settings() const
{
    DesignerSettings s;
    s.text = Text1->text();
    s.fontFamily = CboName->currentText();
    s.style = std::max(0, CboStyle->currentIndex());
    bool ok = false;
    const double size = CboSize->currentText().trimmed().replace(u',', u'.').toDouble(&ok);
    if (ok && size > 0)
        s.size = std::min(size, 1000.0);
    else
        s.size = lastSize_;
    s.align = std::max(0, CboAlign->currentIndex());
    s.antiAlias = ChkAlias->isChecked();
    s.alpha = ChkAlpha->isChecked();
    s.alphaPercent = TxtAlpha->value();
    s.border = ChkBorder->isChecked();
    s.borderSize = TxtBordersize->value();
    s.mirror = ChkMirror->isChecked();
    s.invert = ChkInvert->isChecked();
    s.sizeX = TxtSizeX->value();
    s.sizeY = TxtSizeY->value();
    for (int i = 0; i < 2; ++i) {
        s.chkCol[i] = ChkCol[i]->isChecked();
        s.solidColour[i] = buttonColour(CmdSolCol[i]);
    }
    for (int i = 0; i < 3; ++i) {
        s.chkGrad[i] = ChkGrad[i]->isChecked();
        s.grStyle[i] = std::max(0, CboGrStyle[i]->currentIndex());
    }
    for (int i = 0; i < 6; ++i)
        s.gradColour[i] = buttonColour(CmdGrCol[i]);
    s.transparent = ChkTransparent->isChecked();
    s.glow = ChkGlow->isChecked();
    s.fade = ChkFade->isChecked();
    s.left = ChkLeft->isChecked();
    s.right = ChkRight->isChecked();
    s.top = ChkTop->isChecked();
    s.bottom = ChkBottom->isChecked();
    s.tile = ChkTile->isChecked();
    s.shrink = ChkShrink->isChecked();
    s.stretch = ChkStretch->isChecked();
    s.moveBackX = HScrMoveBack->value();
    s.moveBackY = VScrMoveBack->value();
    s.backColour = buttonColour(CmdBackcolor);
    s.textX = manualX_;
    s.textY = manualY_;
    return s;
}

QImage Form2::picture() const
{
    return engine_->picture();
}

void Form2::changed()
{
    if (!loading_)
        renderPicture();
}

void Form2::renderPicture()
{
    if (busy_)
        return;
    const DesignerSettings s = settings();
    lastSize_ = s.size;
    engine_->renderPicture(s);
    // A transparency left unconfirmed is dropped by the render: the bar goes
    // back and the preview shows the texture as it is.
    for (int i = 0; i < 2; ++i) {
        const bool shownPending = !CmdDLOK[i]->isHidden() || HScrDL[i]->value() != 0;
        if (engine_->texturePreviewPending(i) || !shownPending)
            continue;
        const QSignalBlocker block(HScrDL[i]);
        HScrDL[i]->setValue(0);
        CmdDLOK[i]->hide();
        ImgPrev[i]->setPixmap(QPixmap::fromImage(engine_->texturePreviewImage(i)));
    }
    showPicture();
}

void Form2::showPicture()
{
    Pic->setImage(engine_->picture());
    frame->setFixedSize(Pic->width() + 2 * kMargin, Pic->height() + 2 * kMargin);
}

void Form2::resizeCanvas(int width, int height)
{
    {
        const QSignalBlocker bx(TxtSizeX);
        const QSignalBlocker by(TxtSizeY);
        TxtSizeX->setValue(width);
        TxtSizeY->setValue(height);
    }
    {
        const QSignalBlocker bx(VscrX);
        const QSignalBlocker by(VscrY);
        VscrX->setValue(-TxtSizeX->value());
        VscrY->setValue(-TxtSizeY->value());
    }
    if (loading_)
        return;
    renderPicture();
    updateBackScroll();
}

void Form2::updateBackScroll()
{
    const BackScroll b = engine_->backScroll(settings());
    const QSignalBlocker bh(HScrMoveBack);
    const QSignalBlocker bv(VScrMoveBack);
    HScrMoveBack->setEnabled(b.enabledX);
    HScrMoveBack->setRange(0, b.enabledX ? b.maxX : 0);
    HScrMoveBack->setValue(0);
    VScrMoveBack->setEnabled(b.enabledY);
    VScrMoveBack->setRange(0, b.enabledY ? b.maxY : 0);
    VScrMoveBack->setValue(0);
}

bool Form2::eventFilter(QObject* watched, QEvent* event)
{
    // An empty text draws nothing; leaving the box says so in the picture.
    if (watched == Text1 && event->type() == QEvent::FocusOut && Text1->text().isEmpty())
        Text1->setText(QStringLiteral("No Text"));
    return QWidget::eventFilter(watched, event);
}

void Form2::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    FrmBlock->setGeometry(rect());
}

void Form2::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    // The text is what the user comes to change first.
    if (!event->spontaneous()) {
        Text1->setFocus();
        Text1->selectAll();
    }
}

void Form2::closeEvent(QCloseEvent* event)
{
    // A filter still running works on this window's picture.
    if (busy_) {
        event->ignore();
        return;
    }
    QWidget::closeEvent(event);
}

// --- textures and background ------------------------------------------------

void Form2::refreshFileLists()
{
    const QStringList files = sfondiFiles(host_.shippedSfondiFolder, host_.userSfondiFolder);
    for (int i = 0; i < 2; ++i) {
        const QString current = File[i]->currentItem() ? File[i]->currentItem()->data(Qt::UserRole).toString() : QString();
        const QSignalBlocker block(File[i]);
        File[i]->clear();
        for (const QString& path : files) {
            auto* item = new QListWidgetItem(QFileInfo(path).completeBaseName(), File[i]);
            item->setData(Qt::UserRole, path);
            item->setIcon(QIcon(QPixmap(path).scaled(20, 20)));
            if (path == current)
                File[i]->setCurrentItem(item);
        }
    }
}

void Form2::loadTexture(int index, const QString& path)
{
    const QImage image(path);
    if (image.isNull()) {
        host_.messages.mostraMsg(QStringLiteral("Carica trama"),
                                 QStringLiteral("Impossibile leggere l'immagine \"%1\".").arg(path), 0, 3);
        return;
    }
    engine_->setTexture(index, image);
    ImgPrev[index]->setPixmap(QPixmap::fromImage(image));
    const bool onTexture = !ChkCol[index]->isChecked() && !ChkGrad[index]->isChecked();
    if (onTexture && !(index == 1 && ChkFade->isChecked()))
        changed();
}

void Form2::previewTransparency(int index, bool confirm)
{
    const int value = HScrDL[index]->value();
    if (confirm) {
        engine_->confirmTexture(index, value);
        ImgPrev[index]->setPixmap(QPixmap::fromImage(engine_->texture(index)));
        CmdDLOK[index]->hide();
        {
            const QSignalBlocker block(HScrDL[index]);
            HScrDL[index]->setValue(0);
        }
        changed();
        return;
    }
    CmdDLOK[index]->show();
    ImgPrev[index]->setPixmap(QPixmap::fromImage(engine_->texturePreview(index, value)));
}

void Form2::cmdload(int index)
{
    const auto path = host_.dialogs.openFile(QStringLiteral("Carica trama"),
                                             {filterLabel(kGfxFilter), QStringLiteral("Tutti i file (*.*)")});
    if (path)
        loadTexture(index, *path);
}

void Form2::cmdBackground()
{
    const auto path = host_.dialogs.openFile(QStringLiteral("Immagine di sfondo"),
                                             {filterLabel(kGfxFilter), QStringLiteral("Tutti i file (*.*)")});
    if (!path)
        return;
    const QImage image(*path);
    if (image.isNull()) {
        // The background in use stays.
        host_.messages.mostraMsg(QStringLiteral("Immagine di sfondo"),
                                 QStringLiteral("Impossibile leggere l'immagine \"%1\".").arg(*path), 0, 3);
        return;
    }
    engine_->setBackground(image);
    updateBackScroll();
    renderPicture();
}

void Form2::CmdToTex()
{
    const auto path = host_.dialogs.openFile(QStringLiteral("Aggiungi agli sfondi"),
                                             {filterLabel(kGfxFilter), QStringLiteral("Tutti i file (*.*)")});
    if (!path)
        return;
    if (QImage(*path).isNull()) {
        host_.messages.mostraMsg(QStringLiteral("Aggiungi agli sfondi"),
                                 QStringLiteral("Il file \"%1\" non è un'immagine.").arg(*path), 0, 3);
        return;
    }
    // The shipped folder belongs to the installation and is often read-only,
    // so the user's own textures go to the per-user folder, listed beside the
    // shipped ones.
    const QString name = CutBefore(QDir::fromNativeSeparators(*path), QStringLiteral("/"));
    QDir().mkpath(host_.userSfondiFolder);
    const QString target = QDir(host_.userSfondiFolder).filePath(name.isEmpty() ? *path : name);
    if (QFileInfo(target).absoluteFilePath() != QFileInfo(*path).absoluteFilePath()) {
        QFile::remove(target);
        if (!QFile::copy(*path, target)) {
            host_.messages.mostraMsg(QStringLiteral("Aggiungi agli sfondi"),
                                     QStringLiteral("Impossibile copiare il file in \"%1\".").arg(target), 0, 3);
            return;
        }
    }
    refreshFileLists();
}

// --- the last tab -------------------------------------------------------------

bool Form2::warn(QPushButton* clicked)
{
    const QString title = clicked->text().remove(u'&');
    lastAnswer_ = host_.messages.mostraMsg(title, LblWarning->text(), 1, 2);
    return lastAnswer_ == QLatin1String("ok");
}

void Form2::runFilter(int index)
{
    if (busy_ || index < 0)
        return;
    busy_ = true;
    FrmBlock->setGeometry(rect());
    FrmBlock->show();
    FrmBlock->raise();
    // The keys go to the cover too, so no control changes under the filter.
    QWidget* hadFocus = focusWidget();
    FrmBlock->setFocus();
    const int width = engine_->picture().width();
    PBar->setRange(0, std::max(0, width - 1));
    PBar->setValue(0);
    PBar->show();
    // The picture is not redrawn until the filter is through; the bar moves
    // and the window stays alive in between.
    engine_->applyFilter(index, [this](int column) {
        PBar->setValue(column);
        emit filterColumn(column);
        QCoreApplication::processEvents();
    });
    showPicture();
    FrmBlock->hide();
    {
        const QSignalBlocker block(CboFX);
        CboFX->setCurrentIndex(-1);
    }
    busy_ = false;
    PBar->hide();
    if (hadFocus)
        hadFocus->setFocus();
}

void Form2::lightAt(QPoint at)
{
    const DesignerSettings s = settings();
    renderPicture();
    engine_->light(at.x(), at.y(), buttonColour(CmdLightCol), ChkReal->isChecked(), HScrStrnght->value(),
                   HScrDist->value(), s);
    showPicture();
}

void Form2::cmdRedraw()
{
    // Kept as it has always been: this one redraws on the answer that is
    // not "ok", where the shadow and "Solo sfondo" go on with "ok".
    if (!warn(cmdRedrawButton))
        renderPicture();
}

void Form2::cmdBend()
{
    if (!warn(cmdBendButton))
        return;
    engine_->bend(settings());
    showPicture();
}

void Form2::startSunEffect(bool hover)
{
    QPushButton* clicked = hover ? cmdHover : cmdShadow;
    if (!warn(clicked))
        return;
    sunHover_ = hover;
    QWidget* sun = PicMagnify->sun();
    sun->setProperty("tag", hover ? QStringLiteral("Hover") : QString());
    sun->move(kPad / 2 - sun->width() / 2, kPad / 2 - sun->height() / 2);
    sun->show();
    engine_->clearMagnify();
    PicMagnify->clear();
}

void Form2::previewSun(QPoint centre)
{
    const DesignerSettings s = settings();
    if (sunHover_)
        engine_->hoverPreview(centre.x(), centre.y(), s);
    else
        engine_->shadowPreview(centre.x(), centre.y(), s);
    PicMagnify->setPreview(engine_->magnify());
}

void Form2::fixSun(QPoint centre)
{
    const DesignerSettings s = settings();
    if (sunHover_)
        engine_->hover(centre.x(), centre.y(), s);
    else
        engine_->shadow(centre.x(), centre.y(), s);
    PicMagnify->sun()->hide();
    showPicture();
}

void Form2::setDrawTool(int tool)
{
    drawTool_ = tool;
    waitingStart_ = tool == 2 || tool == 3;
    QPushButton* all[] = {cmdPoint, cmdLine, cmdBox, cmdpip};
    for (int k = 0; k < 4; ++k)
        all[k]->setChecked(k + 1 == tool);
}

void Form2::pictureMouse(QPoint at, bool press)
{
    if (busy_)
        return;
    const Colour ink = buttonColour(CmdDrawColor);
    if (drawTool_ != 0) {
        if (!press)
            return;
        switch (drawTool_) {
        case 1:
            engine_->drawPoint(at.x(), at.y(), ink);
            break;
        case 2:
        case 3:
            if (waitingStart_) {
                start_ = at;
                waitingStart_ = false;
                return;
            }
            if (drawTool_ == 2)
                engine_->drawLine(start_.x(), start_.y(), at.x(), at.y(), ink);
            else
                engine_->drawBox(start_.x(), start_.y(), at.x(), at.y(), ink);
            waitingStart_ = true;
            break;
        case 4:
            setButtonColour(CmdDrawColor, engine_->pickColour(at.x(), at.y()));
            setDrawTool(0);
            return;
        default:
            break;
        }
        showPicture();
        return;
    }
    if (ChkLight->isChecked()) {
        if (press)
            lightAt(at);
        return;
    }
    // No tool: the text follows the pointer, placed by hand.
    const DesignerSettings s = settings();
    engine_->moveTextTo(at.x(), at.y(), s);
    manualX_ = engine_->textX();
    manualY_ = engine_->textY();
    if (CboAlign->currentIndex() != 3) {
        const QSignalBlocker block(CboAlign);
        CboAlign->setCurrentIndex(3);
    }
    renderPicture();
}

// --- output -------------------------------------------------------------------

bool Form2::saveBitmap(const QString& path)
{
    // Written aside and put in place at the end, so a failed save leaves
    // the old file as it was.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !engine_->picture().save(&file, "BMP") || !file.commit()) {
        host_.messages.mostraMsg(QStringLiteral("Salva immagine"),
                                 QStringLiteral("Impossibile salvare l'immagine in \"%1\".").arg(path), 0, 3);
        return false;
    }
    return true;
}

void Form2::cmdsave()
{
    const auto path = host_.dialogs.saveFile(QStringLiteral("Salva immagine"), {QStringLiteral("Bitmap (*.bmp)")}, {});
    if (path && !path->isEmpty())
        saveBitmap(*path);
}

void Form2::cmdclipboard()
{
    const QImage image = engine_->picture();
    if (image.isNull())
        return;
    QGuiApplication::clipboard()->clear();
    QGuiApplication::clipboard()->setImage(image);
    // Every picture the program makes passes through this one file, which
    // is taken into the document at once and may then be overwritten.
    QDir().mkpath(host_.tempFolder);
    const QString path = QDir(host_.tempFolder).filePath(QStringLiteral("temp1.bmp"));
    if (QFileInfo::exists(path))
        QFile::remove(path);
    if (!image.save(path, "BMP")) {
        host_.messages.mostraMsg(QStringLiteral("Testo speciale"),
                                 QStringLiteral("Impossibile creare il file temporaneo \"%1\".").arg(path), 0, 3);
        return;
    }
    // The insertion borrows the clipboard and gives back what it found,
    // which is this picture: it stays there for other programs.
    pictures::pastePicture(host_.testo, host_.undo, pictures::pictureGroupForFile(path), QImage(path));
}

}  // namespace tornelia::designer

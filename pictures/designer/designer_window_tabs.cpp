#include "pictures/designer/designer_window.h"

#include "core/ports.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QVBoxLayout>

// The controls of form2's tabs and how each one reaches the picture.

namespace tornelia::designer {

namespace {

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

QLayout* Form2::buildOutputRow()
{
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
    connect(cmdsaveButton, &QPushButton::clicked, this, &Form2::cmdsave);
    connect(cmdclipboardButton, &QPushButton::clicked, this, &Form2::cmdclipboard);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    return out;
}

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

}  // namespace tornelia::designer

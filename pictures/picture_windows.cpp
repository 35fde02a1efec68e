#include "pictures/picture_windows.h"

#include "core/picture.h"
#include "core/ports.h"
#include "core/rich_text_surface.h"
#include "core/undo_store.h"

#include <QApplication>
#include <QBuffer>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QImageReader>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTextDocument>
#include <QTextImageFormat>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace tornelia::pictures {

namespace {

// Twips on the screen: 15 to a pixel at 96 dots per inch, the same scale the
// document view uses for a picture's goal size.
constexpr int kTwipsPerPixel = 15;

QPixmap swatch(Colour c)
{
    QPixmap p(40, 18);
    p.fill(QColor(c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF));
    return p;
}

// Digits and backspace only, and no context menu on the size boxes.
class DigitsFilter : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress) {
            auto* key = static_cast<QKeyEvent*>(event);
            const QString text = key->text();
            if (key->key() == Qt::Key_Backspace || key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab ||
                key->key() == Qt::Key_Left || key->key() == Qt::Key_Right || key->key() == Qt::Key_Home ||
                key->key() == Qt::Key_End)
                return false;
            if (text.size() == 1 && text.at(0) >= u'0' && text.at(0) <= u'9')
                return false;
            // Shortcuts (select all, copy, paste) type nothing themselves;
            // what a paste brings in is checked by the size's own test.
            if (key->modifiers() & Qt::ControlModifier)
                return false;
            return true;
        }
        if (event->type() == QEvent::ContextMenu)
            return true;
        return QObject::eventFilter(watched, event);
    }
};

}  // namespace

// --- shipped pictures ---------------------------------------------------

QString shippedFolder(const QString& kind)
{
    const QString app = QCoreApplication::applicationDirPath();
    QStringList candidates = {
        app + QStringLiteral("/pictures/") + kind,
        app + QStringLiteral("/../share/tornelia/pictures/") + kind,
    };
#ifdef TORNELIA_PICTURES_SOURCE_DIR
    candidates.insert(1, QStringLiteral(TORNELIA_PICTURES_SOURCE_DIR "/") + kind);
#endif
#ifdef TORNELIA_INSTALL_DATADIR
    candidates.append(QStringLiteral(TORNELIA_INSTALL_DATADIR "/tornelia/pictures/") + kind);
#endif
    for (const QString& c : candidates) {
        if (QFileInfo(c).isDir())
            return QDir(c).absolutePath();
    }
    return {};
}

QStringList shippedPictures(const QString& kind)
{
    const QString folder = shippedFolder(kind);
    if (folder.isEmpty())
        return {};
    QStringList out;
    const QDir dir(folder);
    for (const QString& name : dir.entryList({QStringLiteral("*.png")}, QDir::Files, QDir::Name))
        out << dir.filePath(name);
    return out;
}

// --- putting pictures into the document ---------------------------------

QByteArray pictureGroupForFile(const QString& path, QSize goalTwips)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray data = file.readAll();
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    const QByteArray format = reader.format().toLower();
    const QImage image = reader.read();
    if (image.isNull())
        return {};
    if (format != "png" && format != "jpeg" && format != "jpg")
        return pngPictureGroup(image, goalTwips);
    // PNG and JPEG go in as they are: no loss, and the file's own bytes.
    if (goalTwips.isEmpty())
        goalTwips = image.size() * kTwipsPerPixel;
    QByteArray out = QByteArray(format == "png" ? "{\\pict\\pngblip" : "{\\pict\\jpegblip") + "\\picw" +
                     QByteArray::number(image.width()) + "\\pich" + QByteArray::number(image.height()) + "\\picwgoal" +
                     QByteArray::number(goalTwips.width()) + "\\pichgoal" + QByteArray::number(goalTwips.height()) +
                     "\r\n";
    const QByteArray hex = data.toHex();
    for (qsizetype i = 0; i < hex.size(); i += 128)
        out += hex.mid(i, 128) + "\r\n";
    out += "}";
    return out;
}

void pastePicture(RichTextSurface& testo, UndoStore& undo, const QByteArray& rtfGroup, const QImage& image)
{
    if (rtfGroup.isEmpty())
        return;
    undo.unDO();
    // The picture takes the font of the text where it goes, so that what is
    // typed after it goes on in that font.
    const QTextCharFormat around = textFormatAt(testo.cursor());
    ClipboardGuard guard;
    guard.saveClipboard();
    // The picture goes on the clipboard both as rich text (its group, which
    // the paste prefers) and as an image for any other reader.
    auto* mime = new QMimeData;
    mime->setData(QStringLiteral("text/rtf"), "{\\rtf1\\ansi " + rtfGroup + "}");
    if (!image.isNull())
        mime->setImageData(image);
    QGuiApplication::clipboard()->setMimeData(mime);
    testo.Paste();
    QTextCursor picture = testo.cursor();
    const int end = picture.position();
    picture.setPosition(std::max(0, end - 1));
    picture.setPosition(end, QTextCursor::KeepAnchor);
    if (picture.charFormat().isImageFormat())
        picture.mergeCharFormat(around);
    undo.unDO();
    guard.restoreClipboard();
}

QImage selectedPicture(const RichTextSurface& testo)
{
    const QTextCursor& cur = testo.cursor();
    if (cur.selectionEnd() - cur.selectionStart() != 1)
        return {};
    QTextCursor at(testo.document());
    at.setPosition(cur.selectionEnd());
    const QTextCharFormat f = at.charFormat();
    if (!f.isImageFormat())
        return {};
    const QVariant res = testo.document()->resource(QTextDocument::ImageResource, QUrl(f.toImageFormat().name()));
    if (res.canConvert<QImage>())
        return qvariant_cast<QImage>(res);
    if (res.canConvert<QPixmap>())
        return qvariant_cast<QPixmap>(res).toImage();
    return {};
}

bool isPictureSelected(const RichTextSurface& testo)
{
    if (testo.SelLength() != 1)
        return false;
    const QString rtf = testo.SelRTF();
    return rtf.contains(QLatin1String("\\pict\\")) || rtf.contains(QLatin1String("Paint.Picture}"));
}

// --- frmAIm -------------------------------------------------------------

FrmAIm::FrmAIm(QWidget* owner)
    : QDialog(owner)
{
    setObjectName(QStringLiteral("frmAIm"));
    setWindowTitle(QStringLiteral("Creazione nuova immagine in corso..."));
    setWindowFlag(Qt::WindowStaysOnTopHint);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Creazione nuova immagine in corso..."), this));
    bar_ = new QProgressBar(this);
    bar_->setRange(0, 4);
    bar_->setValue(0);
    layout->addWidget(bar_);
    resize(320, 80);
    if (QScreen* screen = QGuiApplication::primaryScreen()) {
        const QRect r = screen->availableGeometry();
        move(r.center() - QPoint(width() / 2, height() / 2));
    }
}

void FrmAIm::setStep(int step)
{
    bar_->setValue(step);
    Aggion();
}

void FrmAIm::Aggion()
{
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    update();
}

// --- frmFull ------------------------------------------------------------

FrmFull::FrmFull(const QImage& picture, int widthTwips, int heightTwips, QWidget* owner)
    : QDialog(owner)
{
    setObjectName(QStringLiteral("frmFull"));
    setWindowTitle(QStringLiteral("Visualizza immagine"));
    // The designed size; only a picture larger than 2500 twips makes it grow.
    int w = 4000, h = 3500;
    if (widthTwips > 2500)
        w = widthTwips + 1000;
    if (heightTwips > 2500)
        h = heightTwips + 1000;
    resize(std::min(w / kTwipsPerPixel, 9000), std::min(h / kTwipsPerPixel, 9000));
    // A size typed far beyond any screen is shown at the most a screen can
    // hold, rather than asking for an image of gigabytes.
    const QSize shown(std::clamp(widthTwips / kTwipsPerPixel, 1, 8000), std::clamp(heightTwips / kTwipsPerPixel, 1, 8000));
    auto* i = new QLabel(this);
    i->setObjectName(QStringLiteral("i"));
    if (!picture.isNull())
        i->setPixmap(QPixmap::fromImage(picture.scaled(shown, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)));
    i->resize(shown);
    i->move((width() - shown.width()) / 2, (height() - shown.height()) / 2);
}

// --- frmIm --------------------------------------------------------------

FrmIm::FrmIm(RichTextSurface& testo, UndoStore& undo, DialogPort& dialogs, QWidget* owner)
    : QDialog(owner), testo_(testo), undo_(undo), dialogs_(dialogs)
{
    setObjectName(QStringLiteral("frmIm"));
    setWindowTitle(QStringLiteral("Immagine"));
    auto* layout = new QVBoxLayout(this);
    auto* title = new QLabel(QStringLiteral("Inserisci immagine"), this);
    QFont big = title->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.3);
    title->setFont(big);
    layout->addWidget(title);

    auto* row = new QHBoxLayout;
    text1_ = new QLineEdit(this);
    text1_->setObjectName(QStringLiteral("Text1"));
    auto* u1 = new QPushButton(QStringLiteral("..."), this);
    u1->setObjectName(QStringLiteral("u1"));
    u1->setToolTip(QStringLiteral("Sfoglia"));
    row->addWidget(text1_, 1);
    row->addWidget(u1);
    layout->addLayout(row);

    asPicture_ = new QRadioButton(QStringLiteral("Inserisci come immagine"), this);
    asLink_ = new QRadioButton(QStringLiteral("Inserisci come collegamento"), this);
    asPicture_->setChecked(true);
    layout->addWidget(asPicture_);
    layout->addWidget(asLink_);

    layout->addWidget(new QLabel(QStringLiteral("Anteprima immagine:"), this));
    image1_ = new QLabel(this);
    image1_->setObjectName(QStringLiteral("Image1"));
    image1_->setMinimumSize(120, 90);
    image1_->setAlignment(Qt::AlignCenter);
    image1_->setFrameShape(QFrame::StyledPanel);
    layout->addWidget(image1_, 1);

    auto* buttons = new QHBoxLayout;
    auto* preview = new QPushButton(QStringLiteral("&Anteprima"), this);
    auto* insert = new QPushButton(QStringLiteral("&Inserisci"), this);
    auto* close = new QPushButton(QStringLiteral("&Chiudi"), this);
    // Return in the path box shows the preview; inserting is a choice of
    // its own.
    for (QPushButton* b : {u1, preview, insert, close})
        b->setAutoDefault(false);
    buttons->addStretch();
    buttons->addWidget(preview);
    buttons->addWidget(insert);
    buttons->addWidget(close);
    layout->addLayout(buttons);

    connect(u1, &QPushButton::clicked, this, [this] {
        if (const auto path = dialogs_.chooseFile(FileChoice::OpenPicture))
            immm(*path);
    });
    connect(preview, &QPushButton::clicked, this, &FrmIm::command2);
    connect(text1_, &QLineEdit::returnPressed, this, &FrmIm::command2);
    connect(insert, &QPushButton::clicked, this, [this] {
        command3();
        accept();
    });
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    resize(420, 320);
}

QString FrmIm::path() const
{
    return text1_->text();
}

void FrmIm::setAsLink(bool on)
{
    (on ? asLink_ : asPicture_)->setChecked(true);
}

void FrmIm::immm(const QString& path)
{
    text1_->setText(path);
    command2();
}

void FrmIm::command2()
{
    picture_ = QImage(text1_->text());
    if (picture_.isNull()) {
        image1_->clear();
        return;
    }
    // An icon's transparent pixels show the page's colour, as in the document.
    if (picture_.hasAlphaChannel()) {
        const Colour bg = testo_.BackColor();
        QImage flat(picture_.size(), QImage::Format_RGB32);
        flat.fill(QColor(bg & 0xFF, (bg >> 8) & 0xFF, (bg >> 16) & 0xFF));
        QPainter(&flat).drawImage(0, 0, picture_);
        image1_->setPixmap(QPixmap::fromImage(flat));
    } else {
        image1_->setPixmap(QPixmap::fromImage(picture_));
    }
    // The dialog grows with the picture, however large, and stays centred.
    const int wTwips = picture_.width() * kTwipsPerPixel;
    const int hTwips = picture_.height() * kTwipsPerPixel;
    int w = width();
    if (wTwips > 6000)
        w = (wTwips + 400) / kTwipsPerPixel;
    const int h = (hTwips + 2300) / kTwipsPerPixel;
    image1_->setMinimumSize(picture_.size());
    resize(w, h);
    if (QScreen* screen = QGuiApplication::primaryScreen()) {
        const QRect r = screen->geometry();
        move((r.width() - width()) / 2, (r.height() - height()) / 2);
    }
}

void FrmIm::command3()
{
    const QString path = text1_->text();
    if (path.isEmpty() || !QFileInfo(path).isFile())
        return;
    if (asPicture_->isChecked()) {
        pastePicture(testo_, undo_, pictureGroupForFile(path), QImage(path));
        return;
    }
    // A link: the document names the file in an INCLUDEPICTURE field, so
    // that other programs load the file itself; the copy of the picture is
    // the field's result, for the readers that do not follow links and for
    // the day the file is gone.
    const QByteArray group = pictureGroupForFile(path);
    if (group.isEmpty())
        return;
    const QString url = QString::fromLatin1(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()).toEncoded());
    pastePicture(testo_, undo_, linkedPictureField(QStringLiteral("INCLUDEPICTURE \"%1\" \\d").arg(url), group),
                 QImage(path));
}

// --- frmImProp ----------------------------------------------------------

FrmImProp::FrmImProp(RichTextSurface& testo, MessagePort& messages, DialogPort& dialogs, const QImage& picture,
                     QWidget* owner)
    : QDialog(owner), testo_(testo), messages_(messages), dialogs_(dialogs), picture_(picture)
{
    setObjectName(QStringLiteral("frmImProp"));
    setWindowTitle(QStringLiteral("Proprietà immagine"));
    auto* layout = new QHBoxLayout(this);

    auto* left = new QVBoxLayout;
    auto* sizes = new QGroupBox(QStringLiteral("Dimensioni"), this);
    auto* grid = new QVBoxLayout(sizes);
    auto* digits = new DigitsFilter(this);
    const QString names[2] = {QStringLiteral("Larghezza (twips):"), QStringLiteral("Altezza (twips):")};
    for (int i = 0; i < 2; ++i) {
        auto* r = new QHBoxLayout;
        r->addWidget(new QLabel(names[i], sizes));
        t_[i] = new QLineEdit(sizes);
        t_[i]->setObjectName(QStringLiteral("t%1").arg(i));
        t_[i]->installEventFilter(digits);
        r->addWidget(t_[i]);
        lc_[i] = new QLabel(sizes);
        lc_[i]->setObjectName(QStringLiteral("lc%1").arg(i));
        lc_[i]->setMinimumWidth(70);
        r->addWidget(lc_[i]);
        grid->addLayout(r);
    }
    c_ = new QCheckBox(QStringLiteral("&Mantieni proporzionalità"), sizes);
    c_->setToolTip(QStringLiteral("Mantiene il rapporto tra altezza e larghezza dell'immagine"));
    c_->setChecked(true);
    grid->addWidget(c_);
    left->addWidget(sizes);

    auto* view = new QGroupBox(QStringLiteral("Visualizza in"), this);
    auto* vl = new QHBoxLayout(view);
    auto* cm = new QRadioButton(QStringLiteral("Centimetri"), view);
    cm->setChecked(true);
    vl->addWidget(cm);
    vl->addWidget(new QRadioButton(QStringLiteral("Twips"), view));
    left->addWidget(view);

    left->addWidget(new QLabel(QStringLiteral("Dimensioni originali"), this));
    lblDim_ = new QLabel(QStringLiteral("180 x 120 pixel"), this);
    left->addWidget(lblDim_);
    auto* note = new QLabel(QStringLiteral("Per vedere il cambiamento di dimensioni premere il pulsante "
                                           "\"Dimensioni reali\"."),
                            this);
    note->setWordWrap(true);
    left->addWidget(note);
    left->addStretch();
    layout->addLayout(left);

    auto* right = new QVBoxLayout;
    pi_ = new QWidget(this);
    pi_->setObjectName(QStringLiteral("pi"));
    pi_->setFixedSize(200, 160);
    pi_->setAutoFillBackground(true);
    preview_ = new QLabel(pi_);
    preview_->setObjectName(QStringLiteral("p"));
    la_ = new QLabel(QStringLiteral("Creazione anteprima..."), pi_);
    la_->move(10, 70);
    right->addWidget(pi_);
    auto* u2 = new QPushButton(QStringLiteral("Dimensioni &reali"), this);
    u2->setObjectName(QStringLiteral("u2"));
    u2->setToolTip(QStringLiteral("Visualizza l'immagine in una finestra separata a dimensioni reali"));
    auto* u3 = new QPushButton(QStringLiteral("&Salva immagine..."), this);
    u3->setObjectName(QStringLiteral("u3"));
    right->addWidget(u2);
    right->addWidget(u3);
    right->addStretch();
    auto* buttons = new QHBoxLayout;
    auto* u0 = new QPushButton(QStringLiteral("&Applica"), this);
    auto* u1 = new QPushButton(QStringLiteral("&Chiudi"), this);
    auto* uOk = new QPushButton(QStringLiteral("&OK"), this);
    uOk->setDefault(true);
    buttons->addWidget(u0);
    buttons->addWidget(u1);
    buttons->addWidget(uOk);
    right->addLayout(buttons);
    layout->addLayout(right);

    connect(u0, &QPushButton::clicked, this, &FrmImProp::apply);
    connect(u1, &QPushButton::clicked, this, &QDialog::reject);
    connect(uOk, &QPushButton::clicked, this, [this] {
        apply();
        accept();
    });
    connect(u2, &QPushButton::clicked, this, &FrmImProp::showFull);
    connect(u3, &QPushButton::clicked, this, &FrmImProp::savePicture);
    for (int i = 0; i < 2; ++i)
        connect(t_[i], &QLineEdit::textChanged, this, [this, i] { sideChanged(i); });

    // The size as the picture's RTF gives it, made valid.
    busy_ = true;
    starting_ = readPictureSize(testo_.SelRTF());
    t_[0]->setText(validSide(starting_.width));
    t_[1]->setText(validSide(starting_.height));
    const double w = t_[0]->text().toDouble();
    ratio_ = w > 0 ? t_[1]->text().toDouble() / w : 1;
    busy_ = false;
    if (!picture_.isNull())
        lblDim_->setText(QStringLiteral("%1 x %2 pixel").arg(picture_.width()).arg(picture_.height()));
    layoutPreview();
    writeLabels();
}

QString FrmImProp::centimetres(int i) const
{
    return lc_[i]->text();
}

bool FrmImProp::keepsProportion() const
{
    return c_->isChecked();
}

void FrmImProp::setKeepsProportion(bool on)
{
    c_->setChecked(on);
}

void FrmImProp::layoutPreview()
{
    if (picture_.isNull())
        return;
    const int W = pi_->width(), H = pi_->height();
    const int w = picture_.width(), h = picture_.height();
    if (w <= W && h <= H) {
        preview_->setPixmap(QPixmap::fromImage(picture_));
        preview_->setGeometry((W - w) / 2, (H - h) / 2, w, h);
    } else if (w <= h) {
        const int sw = static_cast<int>(double(w) / h * H);
        preview_->setPixmap(QPixmap::fromImage(picture_.scaled(sw, H, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)));
        preview_->setGeometry((W - sw) / 2, 0, sw, H);
    } else {
        const int sh = static_cast<int>(double(h) / w * W);
        preview_->setPixmap(QPixmap::fromImage(picture_.scaled(W, sh, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)));
        preview_->setGeometry(0, (H - sh) / 2, W, sh);
    }
    la_->hide();
    preview_->show();
}

void FrmImProp::writeLabels()
{
    for (int i = 0; i < 2; ++i)
        lc_[i]->setText(centimetreLabel(t_[i]->text()));
}

void FrmImProp::sideChanged(int i)
{
    if (busy_)
        return;
    if (!c_->isChecked()) {
        writeLabels();
        return;
    }
    const ProportionResult r = proportionalUpdate(i, t_[0]->text(), t_[1]->text(), ratio_);
    if (r.error == ProportionError::NotNumeric) {
        messages_.mostraMsg(QStringLiteral("Errore dati"), QStringLiteral("Contenuti non numerici!"), 0, 48);
        return;
    }
    if (r.other) {
        busy_ = true;
        t_[1 - i]->setText(*r.other);
        busy_ = false;
    }
    writeLabels();
}

void FrmImProp::apply()
{
    FrmAIm progress(parentWidget());
    progress.show();
    progress.Aggion();
    // The RTF of the picture is edited as plain text: its size tags get the
    // typed numbers, and the control makes the picture again from it.
    const QString source = testo_.SelRTF();
    progress.setStep(1);
    const std::optional<QString> changed = applyPictureSize(source, t_[0]->text(), t_[1]->text());
    progress.setStep(2);
    if (changed) {
        testo_.setSelRTF(*changed);
        progress.setStep(3);
        testo_.setSelStart(testo_.SelStart() - 1);
        testo_.setSelLength(1);
    }
    progress.setStep(4);
}

void FrmImProp::savePicture()
{
    if (picture_.isNull())
        return;
    const auto path = dialogs_.chooseFile(FileChoice::SavePicture, QStringLiteral("immagine.png"));
    if (!path)
        return;
    if (!picture_.save(*path))
        messages_.mostraMsg(QStringLiteral("Salva immagine"),
                            QStringLiteral("Impossibile salvare l'immagine in \"%1\".").arg(*path), 0, 16);
}

void FrmImProp::showFull()
{
    FrmFull full(picture_, t_[0]->text().toInt(), t_[1]->text().toInt(), this);
    full.exec();
}

// --- frmPar -------------------------------------------------------------

FrmPar::FrmPar(QWidget* owner)
    : QDialog(owner)
{
    setObjectName(QStringLiteral("frmPar"));
    setWindowTitle(QStringLiteral("Elenco puntato con immagini"));
    auto* layout = new QHBoxLayout(this);
    l_ = new QListWidget(this);
    l_->setObjectName(QStringLiteral("l"));
    l_->setViewMode(QListView::IconMode);
    l_->setIconSize(QSize(24, 24));
    l_->setGridSize(QSize(40, 40));
    l_->setMovement(QListView::Static);
    l_->setResizeMode(QListView::Adjust);
    for (const QString& path : shippedPictures(QStringLiteral("bullets"))) {
        auto* item = new QListWidgetItem(QIcon(path), QString(), l_);
        item->setData(Qt::UserRole, path);
        item->setToolTip(QFileInfo(path).baseName());
    }
    layout->addWidget(l_, 1);
    auto* right = new QVBoxLayout;
    right->addWidget(new QLabel(QStringLiteral("Punto scelto:"), this));
    p_ = new QLabel(this);
    p_->setObjectName(QStringLiteral("p"));
    p_->setFixedSize(48, 48);
    p_->setAlignment(Qt::AlignCenter);
    p_->setFrameShape(QFrame::StyledPanel);
    right->addWidget(p_);
    right->addStretch();
    auto* ok = new QPushButton(QStringLiteral("&OK"), this);
    auto* cancel = new QPushButton(QStringLiteral("&Annulla"), this);
    ok->setDefault(true);
    right->addWidget(ok);
    right->addWidget(cancel);
    layout->addLayout(right);

    connect(l_, &QListWidget::currentRowChanged, this, &FrmPar::choose);
    connect(l_, &QListWidget::itemDoubleClicked, this, [this] {
        if (!chosen_.isNull())
            accept();
    });
    connect(ok, &QPushButton::clicked, this, [this] {
        if (!chosen_.isNull())
            accept();
    });
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    if (l_->count() > 0)
        l_->setCurrentRow(0);
    resize(380, 260);
}

int FrmPar::count() const
{
    return l_->count();
}

void FrmPar::choose(int row)
{
    QListWidgetItem* item = l_->item(row);
    if (!item)
        return;
    if (l_->currentRow() != row)
        l_->setCurrentRow(row);
    chosen_ = QImage(item->data(Qt::UserRole).toString());
    p_->setPixmap(QPixmap::fromImage(chosen_));
}

// --- Form1 --------------------------------------------------------------

Form1::Form1(RichTextSurface& testo, UndoStore& undo, MessagePort& messages, QString tempFolder,
             std::function<std::optional<Colour>(Colour)> chooseColour, QWidget* owner)
    : QDialog(owner),
      testo_(testo),
      undo_(undo),
      messages_(messages),
      tempFolder_(std::move(tempFolder)),
      chooseColour_(std::move(chooseColour))
{
    setObjectName(QStringLiteral("Form1"));
    setWindowTitle(QStringLiteral("Inserisci linea"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Forma della linea:"), this));
    l_ = new QComboBox(this);
    l_->setObjectName(QStringLiteral("l"));
    l_->setIconSize(QSize(240, 16));
    for (const QString& path : shippedPictures(QStringLiteral("lines"))) {
        QImage shape(path);
        // The combo shows the shape in grey; the colours come from the gradient.
        l_->addItem(QIcon(QPixmap::fromImage(shape)), QString(), path);
    }
    layout->addWidget(l_);

    auto* colours = new QHBoxLayout;
    for (int i = 0; i < 2; ++i) {
        colours->addWidget(new QLabel(QStringLiteral("Colore %1").arg(i + 1), this));
        swatch_[i] = new QLabel(this);
        swatch_[i]->setObjectName(QStringLiteral("clr%1").arg(i));
        colours->addWidget(swatch_[i]);
        auto* change = new QPushButton(QStringLiteral("Modifica Colore %1").arg(i + 1), this);
        colours->addWidget(change);
        connect(change, &QPushButton::clicked, this, [this, i] {
            if (const auto c = chooseColour_(clr_[i]))
                setColour(i, *c);
        });
    }
    layout->addLayout(colours);

    layout->addWidget(new QLabel(QStringLiteral("Anteprima:"), this));
    image1_ = new QLabel(this);
    image1_->setObjectName(QStringLiteral("Image1"));
    image1_->setMinimumHeight(40);
    image1_->setAlignment(Qt::AlignCenter);
    layout->addWidget(image1_);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    auto* ok = new QPushButton(QStringLiteral("&OK"), this);
    auto* cancel = new QPushButton(QStringLiteral("&Annulla"), this);
    ok->setDefault(true);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);
    connect(ok, &QPushButton::clicked, this, [this] {
        insert();
        accept();
    });
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(l_, &QComboBox::currentIndexChanged, this, [this] { refresh(); });
    for (int i = 0; i < 2; ++i)
        swatch_[i]->setPixmap(swatch(clr_[i]));
    refresh();
}

void Form1::setColour(int i, Colour c)
{
    clr_[i] = c & 0xFFFFFF;
    swatch_[i]->setPixmap(swatch(clr_[i]));
    refresh();
}

void Form1::setShape(int index)
{
    l_->setCurrentIndex(index);
    refresh();
}

QImage Form1::Gradiente() const
{
    const QImage shape(l_->currentData().toString());
    if (shape.isNull())
        return {};
    // The shape is a mask: where it is drawn, each column takes its colour
    // of the gradient, with the shape's own shading kept.
    const QImage mask = shape.convertToFormat(QImage::Format_ARGB32);
    const std::vector<Colour> columns = gradientColumns(clr_[0], clr_[1], mask.width());
    QImage out(mask.size(), QImage::Format_RGB32);
    out.fill(Qt::white);
    for (int y = 0; y < mask.height(); ++y) {
        const QRgb* in = reinterpret_cast<const QRgb*>(mask.constScanLine(y));
        QRgb* line = reinterpret_cast<QRgb*>(out.scanLine(y));
        for (int x = 0; x < mask.width(); ++x) {
            const int a = qAlpha(in[x]);
            const Colour c = columns[static_cast<size_t>(x)];
            const int r = c & 0xFF, g = (c >> 8) & 0xFF, b = (c >> 16) & 0xFF;
            line[x] = qRgb(255 + (r - 255) * a / 255, 255 + (g - 255) * a / 255, 255 + (b - 255) * a / 255);
        }
    }
    return out;
}

void Form1::refresh()
{
    const QImage line = Gradiente();
    if (line.isNull())
        image1_->clear();
    else
        image1_->setPixmap(QPixmap::fromImage(line));
}

void Form1::insert()
{
    const QImage line = Gradiente();
    if (line.isNull())
        return;
    // Every picture the program makes passes through this one file, which
    // is taken into the document at once and may then be overwritten.
    QDir().mkpath(tempFolder_);
    const QString path = QDir(tempFolder_).filePath(QStringLiteral("temp1.bmp"));
    if (QFileInfo::exists(path))
        QFile::remove(path);
    if (!line.save(path, "BMP")) {
        messages_.mostraMsg(QStringLiteral("Inserisci linea"),
                            QStringLiteral("Impossibile creare il file temporaneo \"%1\".").arg(path), 0, 16);
        return;
    }
    pastePicture(testo_, undo_, pictureGroupForFile(path), QImage(path));
}

}  // namespace tornelia::pictures

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
#include <QFrame>
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

    outer->addLayout(buildOutputRow());

    // The cover that takes every press while a filter runs.
    FrmBlock = new QWidget(this);
    FrmBlock->setObjectName(QStringLiteral("FrmBlock"));
    FrmBlock->setAttribute(Qt::WA_NoSystemBackground);
    FrmBlock->setFocusPolicy(Qt::StrongFocus);
    FrmBlock->hide();

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

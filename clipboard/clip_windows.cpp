#include "clipboard/clip_windows.h"

#include "core/procedures.h"
#include "core/rich_text_surface.h"
#include "core/rtf_reader.h"

#include <QClipboard>
#include <QEvent>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QTextEdit>
#include <QVBoxLayout>

namespace tornelia {

namespace {

struct ClipboardLook {
    bool text = false;
    bool rtf = false;
    bool image = false;
    QByteArray rtfData;
};

ClipboardLook lookAtClipboard()
{
    ClipboardLook look;
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    if (!mime)
        return look;
    look.text = mime->hasText() && !mime->text().isEmpty();
    for (const char* type : {"text/rtf", "application/rtf"}) {
        if (mime->hasFormat(QLatin1String(type))) {
            look.rtf = true;
            look.rtfData = mime->data(QLatin1String(type));
            break;
        }
    }
    look.image = mime->hasImage();
    return look;
}

}  // namespace

QString clipboardFormatName(bool hasText, bool hasRtf, bool hasImage)
{
    QString name;
    if (hasText)
        name = QStringLiteral("Testo normale");
    if (hasRtf)
        name = QStringLiteral("Testo RTF");
    if (hasImage)
        name = QStringLiteral("Immagine");
    return name;
}

// ------------------------------------------------------------------ frmApp

FrmApp::FrmApp(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmApp"));
    setWindowTitle(QStringLiteral("Visualizzatore appunti"));
    auto* column = new QVBoxLayout(this);
    label_ = new QLabel(this);
    label_->setObjectName(QStringLiteral("lbl"));
    column->addWidget(label_);
    text1_ = new QTextEdit(this);
    text1_->setObjectName(QStringLiteral("Text1"));
    text1_->setReadOnly(true);
    text1_->viewport()->installEventFilter(this);
    column->addWidget(text1_, 1);
    pictureArea_ = new QScrollArea(this);
    picture_ = new QLabel(pictureArea_);
    picture_->setObjectName(QStringLiteral("Picture1"));
    picture_->setAlignment(Qt::AlignCenter);
    pictureArea_->setWidget(picture_);
    pictureArea_->setWidgetResizable(true);
    column->addWidget(pictureArea_, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    auto* u2 = new QPushButton(QStringLiteral("Aggiorna"), this);
    u2->setObjectName(QStringLiteral("u2"));
    connect(u2, &QPushButton::clicked, this, &FrmApp::guarda);
    buttons->addWidget(u2);
    auto* u1 = new QPushButton(QStringLiteral("Chiudi"), this);
    u1->setObjectName(QStringLiteral("u1"));
    connect(u1, &QPushButton::clicked, this, &QDialog::close);
    buttons->addWidget(u1);
    column->addLayout(buttons);
    resize(520, 380);
    guarda();
}

QString FrmApp::formato() const
{
    return label_->text();
}

void FrmApp::guarda()
{
    const ClipboardLook look = lookAtClipboard();
    const QString name = clipboardFormatName(look.text, look.rtf, look.image);
    label_->setText(QStringLiteral("Formato appunti: ") +
                    (name.isEmpty() ? QStringLiteral("Non definito") : name));
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    if (look.image && mime) {
        const QImage image = qvariant_cast<QImage>(mime->imageData());
        picture_->setPixmap(QPixmap::fromImage(image));
        text1_->hide();
        pictureArea_->show();
        return;
    }
    picture_->setPixmap(QPixmap());
    pictureArea_->hide();
    text1_->show();
    text1_->clear();
    if (look.rtf) {
        QTextCursor cursor(text1_->document());
        readRtf(QString::fromLatin1(look.rtfData), cursor, RtfReadOptions{});
    } else if (look.text && mime) {
        text1_->setPlainText(mime->text());
    }
}

bool FrmApp::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == text1_->viewport() && event->type() == QEvent::MouseButtonPress)
        guarda();
    return QDialog::eventFilter(watched, event);
}

// ------------------------------------------------------------------ frmInc

PasteChoices PasteChoices::forClipboard(bool hasText, bool hasRtf, bool hasImage)
{
    PasteChoices c;
    // Keeping the source's formatting means something for rich text and
    // pictures; taking the destination's needs text to take it.
    c.keep = hasRtf || hasImage;
    c.apply = hasRtf || hasText;
    c.textOnly = hasText;
    return c;
}

FrmInc::FrmInc(RichTextSurface& testo, MainProcedures& procedures, QWidget* parent)
    : QDialog(parent), testo_(testo), procedures_(procedures)
{
    setObjectName(QStringLiteral("frmInc"));
    setWindowTitle(QStringLiteral("Incolla speciale"));
    auto* column = new QVBoxLayout(this);
    auto* heading = new QLabel(QStringLiteral("Copia / incolla speciale"), this);
    QFont big = heading->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.3);
    heading->setFont(big);
    column->addWidget(heading);

    auto* copyBox = new QGroupBox(QStringLiteral("Copia"), this);
    auto* copyColumn = new QVBoxLayout(copyBox);
    const QString copyCaptions[] = {QStringLiteral("Copia testo e formattazione"), QStringLiteral("Copia solo testo")};
    for (int k = 0; k < 2; ++k) {
        o_[k] = new QRadioButton(copyCaptions[k], copyBox);
        o_[k]->setObjectName(QStringLiteral("o%1").arg(k));
        copyColumn->addWidget(o_[k]);
    }
    o_[0]->setChecked(true);
    copy_ = new QPushButton(QStringLiteral("Copia"), copyBox);
    copy_->setObjectName(QStringLiteral("u3"));
    copyColumn->addWidget(copy_, 0, Qt::AlignRight);
    column->addWidget(copyBox);

    auto* pasteBox = new QGroupBox(QStringLiteral("Incolla"), this);
    auto* pasteColumn = new QVBoxLayout(pasteBox);
    const QString pasteCaptions[] = {QStringLiteral("Mantieni formattazione originale"),
                                     QStringLiteral("Applica formattazione di destinazione"),
                                     QStringLiteral("Incolla solo il testo")};
    for (int k = 0; k < 3; ++k) {
        op_[k] = new QRadioButton(pasteCaptions[k], pasteBox);
        op_[k]->setObjectName(QStringLiteral("op%1").arg(k));
        pasteColumn->addWidget(op_[k]);
    }
    paste_ = new QPushButton(QStringLiteral("Incolla"), pasteBox);
    paste_->setObjectName(QStringLiteral("u1"));
    pasteColumn->addWidget(paste_, 0, Qt::AlignRight);
    column->addWidget(pasteBox);

    auto* close = new QPushButton(QStringLiteral("Chiudi"), this);
    close->setObjectName(QStringLiteral("u2"));
    column->addWidget(close, 0, Qt::AlignRight);

    connect(paste_, &QPushButton::clicked, this, &FrmInc::u1);
    connect(copy_, &QPushButton::clicked, this, &FrmInc::u3);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);

    // What cannot apply is disabled from the start: a copy needs a
    // selection, each paste option content it can work on.
    const bool selection = testo_.SelLength() > 0;
    for (QRadioButton* b : o_)
        b->setEnabled(selection);
    copy_->setEnabled(selection);
    const ClipboardLook look = lookAtClipboard();
    const PasteChoices choices = PasteChoices::forClipboard(look.text, look.rtf, look.image);
    const bool enabled[] = {choices.keep, choices.apply, choices.textOnly};
    QRadioButton* first = nullptr;
    for (int k = 0; k < 3; ++k) {
        op_[k]->setEnabled(enabled[k]);
        if (enabled[k] && !first)
            first = op_[k];
    }
    if (first)
        first->setChecked(true);
    paste_->setEnabled(first != nullptr);
}

void FrmInc::u1()
{
    int mode = 0;
    for (int k = 0; k < 3; ++k)
        if (op_[k]->isChecked())
            mode = k;
    procedures_.INco(QString::number(mode));
    accept();
}

void FrmInc::u3()
{
    if (o_[1]->isChecked()) {
        QGuiApplication::clipboard()->setText(testo_.SelText());
    } else {
        procedures_.CopYa();
        procedures_.CmeN();
    }
    if (refreshPanel)
        refreshPanel();
    accept();
}

}  // namespace tornelia

#include "core/clipboard_guard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace tornelia {

ClipboardGuard::~ClipboardGuard()
{
    endLoan();
}

void ClipboardGuard::endLoan()
{
    if (lent_) {
        lent_ = false;
        --loans_;
    }
}

void ClipboardGuard::saveClipboard()
{
    if (!lent_) {
        lent_ = true;
        ++loans_;
    }
    kind_ = u'e';
    rtf_.clear();
    text_.clear();
    image_ = QImage();
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    if (!mime)
        return;
    for (const char* type : {"text/rtf", "application/rtf"}) {
        if (mime->hasFormat(QLatin1String(type))) {
            rtf_ = mime->data(QLatin1String(type));
            text_ = mime->text();
            kind_ = u'r';
            return;
        }
    }
    if (mime->hasImage()) {
        image_ = qvariant_cast<QImage>(mime->imageData());
        if (!image_.isNull()) {
            kind_ = u'b';
            return;
        }
    }
    if (mime->hasText()) {
        text_ = mime->text();
        kind_ = u't';
    }
}

void ClipboardGuard::restoreClipboard()
{
    QClipboard* clipboard = QGuiApplication::clipboard();
    switch (kind_.unicode()) {
    case u'r': {
        auto* mime = new QMimeData;
        mime->setData(QStringLiteral("text/rtf"), rtf_);
        mime->setData(QStringLiteral("application/rtf"), rtf_);
        if (!text_.isEmpty())
            mime->setText(text_);
        clipboard->setMimeData(mime);
        break;
    }
    case u'b':
        clipboard->setImage(image_);
        break;
    case u't':
        clipboard->setText(text_);
        break;
    default:
        clipboard->clear();
        break;
    }
    // The clipboard says it changed as it is put back; the loan ends only
    // after, so what comes back is not taken for a new copy either.
    endLoan();
}

}  // namespace tornelia

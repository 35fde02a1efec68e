// The user's clipboard kept aside and put back, for each kind it can hold.

#include "core/clipboard_guard.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

using tornelia::ClipboardGuard;

namespace {

// What the clipboard holds, as one comparable line.
QString describe()
{
    const QMimeData* m = QGuiApplication::clipboard()->mimeData();
    if (!m)
        return "||";
    QString out = QString::fromLatin1(m->data("text/rtf")) + "|" + m->text() + "|";
    if (m->hasImage()) {
        const QImage i = qvariant_cast<QImage>(m->imageData());
        out += QStringLiteral("%1x%2 %3").arg(i.width()).arg(i.height()).arg(i.pixelColor(0, 0).name());
    }
    return out;
}

}  // namespace

TEST(ClipboardGuard, PutsBackEachKind)
{
    QClipboard* cb = QGuiApplication::clipboard();
    QImage picture(3, 2, QImage::Format_RGB32);
    picture.fill(Qt::green);
    const std::function<void()> fills[] = {
        [&] {
            auto* m = new QMimeData;
            m->setData("application/rtf", "{\\rtf1 {\\b x}}");
            m->setText("x");
            cb->setMimeData(m);
        },
        [&] { cb->setImage(picture); },
        [&] { cb->setText("solo"); },
        [&] { cb->clear(); },
    };
    const QChar kinds[] = {u'r', u'b', u't', u'e'};
    const QString expected[] = {"{\\rtf1 {\\b x}}|x|", "||3x2 #00ff00", "|solo|", "||"};
    for (int k = 0; k < 4; ++k) {
        fills[k]();
        ClipboardGuard guard;
        EXPECT_FALSE(ClipboardGuard::onLoan());
        guard.saveClipboard();
        EXPECT_TRUE(ClipboardGuard::onLoan());
        EXPECT_EQ(guard.kind(), kinds[k]) << k;
        // The program borrows the clipboard for something else.
        QImage other(5, 5, QImage::Format_RGB32);
        other.fill(Qt::red);
        cb->setImage(other);
        guard.restoreClipboard();
        EXPECT_FALSE(ClipboardGuard::onLoan());
        EXPECT_EQ(describe(), expected[k]) << k;
    }
    // A guard that goes away without putting the clipboard back still ends
    // its loan.
    {
        ClipboardGuard forgotten;
        forgotten.saveClipboard();
        forgotten.saveClipboard();
    }
    EXPECT_FALSE(ClipboardGuard::onLoan());
}

#include "app/frm_splash.h"

#include <QApplication>
#include <QFrame>
#include <QIcon>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>

namespace tornelia {

FrmSplash::FrmSplash(QWidget* parent) : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("frmSplash"));
    setWindowTitle(QStringLiteral("Tornelia"));
    auto* frame = new QFrame(this);
    frame->setFrameShape(QFrame::StyledPanel);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(frame);

    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(28, 24, 28, 18);
    layout->setSpacing(10);
    auto* icon = new QLabel(frame);
    icon->setPixmap(QIcon::fromTheme(QStringLiteral("accessories-text-editor")).pixmap(64, 64));
    icon->setAlignment(Qt::AlignCenter);
    icon->setVisible(!icon->pixmap().isNull());
    auto* name = new QLabel(QStringLiteral("Tornelia"), frame);
    QFont big = name->font();
    big.setPointSizeF(big.pointSizeF() * 2.2);
    big.setBold(true);
    name->setFont(big);
    name->setAlignment(Qt::AlignCenter);
    auto* version = new QLabel(QStringLiteral("Versione ") + QApplication::applicationVersion(), frame);
    version->setAlignment(Qt::AlignCenter);
    line_ = new QLabel(frame);
    line_->setObjectName(QStringLiteral("lblProgresso"));
    line_->setAlignment(Qt::AlignCenter);
    line_->setMinimumWidth(320);
    layout->addWidget(icon);
    layout->addWidget(name);
    layout->addWidget(version);
    layout->addSpacing(8);
    layout->addWidget(line_);
    adjustSize();
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}

void FrmSplash::progress(const QString& text)
{
    line_->setText(text);
    // The start runs without the event loop: paint now.
    if (isVisible())
        repaint();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

QString FrmSplash::progressText() const
{
    return line_->text();
}

}  // namespace tornelia

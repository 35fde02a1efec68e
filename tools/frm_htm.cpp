#include "tools/frm_htm.h"

#include "core/document.h"

#include <QApplication>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tornelia {

frmHTM::frmHTM(RichTextSurface& testo, Document& document, DialogPort& dialogs, MessagePort& messages,
               QWidget* owner)
    : QDialog(owner), logic_(testo, dialogs, messages), document_(document)
{
    setWindowTitle(QStringLiteral("Converti in HTML"));
    setModal(false);
    setAttribute(Qt::WA_DeleteOnClose);

    t_ = new QPlainTextEdit;
    t_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    t_->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    u1_ = new QPushButton(QStringLiteral("&Converti"));
    u2_ = new QPushButton(QStringLiteral("&Salva..."));
    u3_ = new QPushButton(QStringLiteral("C&hiudi"));
    u2_->setEnabled(false);
    u1_->setDefault(true);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(u1_);
    buttons->addWidget(u2_);
    buttons->addStretch();
    buttons->addWidget(u3_);
    auto* main = new QVBoxLayout(this);
    main->addWidget(t_, 1);
    main->addLayout(buttons);
    resize(560, 400);

    connect(u1_, &QPushButton::clicked, this, [this] {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        logic_.u1(document_.nomeFile);
        QApplication::restoreOverrideCursor();
        loading_ = true;
        t_->setPlainText(logic_.t());
        loading_ = false;
        u2_->setEnabled(logic_.converted());
    });
    // What is saved is the text as the box holds it, edits included.
    connect(t_, &QPlainTextEdit::textChanged, this, [this] {
        if (!loading_)
            logic_.setT(t_->toPlainText());
    });
    connect(u2_, &QPushButton::clicked, this, [this] { logic_.u2(); });
    connect(u3_, &QPushButton::clicked, this, &QDialog::close);
}

frmHTM* showFrmHTM(RichTextSurface& testo, Document& document, DialogPort& dialogs, MessagePort& messages,
                   QWidget* owner)
{
    frmHTM* window = owner ? owner->findChild<frmHTM*>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
    if (!window)
        window = new frmHTM(testo, document, dialogs, messages, owner);
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}

}  // namespace tornelia

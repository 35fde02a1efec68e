#include "tools/frm_ffile.h"

#include "tools/frm_tools_common.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tornelia {

FFile::FFile(RichTextSurface& testo, UndoStore* undo, MessagePort& messages, DialogPort& dialogs, QWidget* parent)
    : QDialog(parent), testo_(testo), undo_(undo), messages_(messages), dialogs_(dialogs)
{
    setWindowTitle(QStringLiteral("Inserisci file"));

    label_ = new QLabel(this);
    label_->setObjectName(QStringLiteral("lblFile"));
    label_->setMinimumWidth(360);
    label_->setTextFormat(Qt::PlainText);
    c_ = new QCheckBox(QStringLiteral("Separa il file dal testo con una linea"), this);
    c_->setObjectName(QStringLiteral("c"));
    c_->setChecked(true);

    u2_ = new QPushButton(QStringLiteral("&Sfoglia..."), this);
    u2_->setObjectName(QStringLiteral("u2"));
    u1_ = new QPushButton(QStringLiteral("&Inserisci"), this);
    u1_->setObjectName(QStringLiteral("u1"));
    auto* chiudi = new QPushButton(QStringLiteral("&Chiudi"), this);
    connect(u2_, &QPushButton::clicked, this, &FFile::scegli);
    connect(u1_, &QPushButton::clicked, this, &FFile::inserisci);
    connect(chiudi, &QPushButton::clicked, this, &QDialog::close);

    auto* fileRow = new QHBoxLayout;
    fileRow->addWidget(label_, 1);
    fileRow->addWidget(u2_);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(u1_);
    buttons->addWidget(chiudi);
    auto* column = new QVBoxLayout(this);
    column->addLayout(fileRow);
    column->addWidget(c_);
    column->addStretch(1);
    column->addLayout(buttons);
    refresh();
}

void FFile::refresh()
{
    // The whole path is the tooltip; the label shows the name, which fits.
    const QString path = inserter_.path();
    label_->setText(path.isEmpty() ? inserter_.label() : QStringLiteral("File: ") + QFileInfo(path).fileName());
    label_->setToolTip(path);
    u1_->setEnabled(!path.isEmpty());
    (path.isEmpty() ? u2_ : u1_)->setDefault(true);
}

void FFile::scegli()
{
    inserter_.choose(dialogs_, messages_);
    refresh();
}

void FFile::inserisci()
{
    if (inserter_.insertInto(testo_, undo_, messages_, c_->isChecked())) {
        testo_.SetFocus();
        close();
    }
}

void InSFilE(RichTextSurface& testo, UndoStore* undo, MessagePort& messages, DialogPort& dialogs, QWidget* owner)
{
    showSingleWindow<FFile>(owner, QStringLiteral("FFile"),
                            [&] { return new FFile(testo, undo, messages, dialogs, owner); });
}

}  // namespace tornelia

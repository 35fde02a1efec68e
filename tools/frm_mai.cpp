#include "tools/frm_mai.h"

#include "core/rich_text_surface.h"
#include "tools/frm_tools_common.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace tornelia {

FrmMai::FrmMai(RichTextSurface& testo, UndoStore* undo, QWidget* parent)
    : QDialog(parent), convert_(testo, undo)
{
    setWindowTitle(QStringLiteral("Maiuscolo - minuscolo"));

    auto* kind = new QGroupBox(QStringLiteral("Converti in"), this);
    auto* kindColumn = new QVBoxLayout(kind);
    const char* opCaptions[] = {"&Normale", "&MAIUSCOLO", "m&inuscolo"};
    for (int i = 0; i < 3; ++i) {
        op_[i] = new QRadioButton(QString::fromUtf8(opCaptions[i]), kind);
        op_[i]->setObjectName(QStringLiteral("op%1").arg(i));
        kindColumn->addWidget(op_[i]);
    }
    op_[0]->setToolTip(QStringLiteral("La prima lettera di ogni parola in maiuscolo"));
    op_[0]->setChecked(true);

    auto* scope = new QGroupBox(QStringLiteral("Applica a"), this);
    auto* scopeColumn = new QVBoxLayout(scope);
    const char* oCaptions[] = {"Tutto il documento", "Testo selezionato"};
    for (int i = 0; i < 2; ++i) {
        o_[i] = new QRadioButton(QString::fromUtf8(oCaptions[i]), scope);
        o_[i]->setObjectName(QStringLiteral("o%1").arg(i));
        scopeColumn->addWidget(o_[i]);
    }
    // Starting on the selection, the safe choice: the whole document loses
    // its pictures and formats.
    o_[1]->setChecked(true);
    scopeColumn->addStretch(1);

    warning_ = new QLabel(QStringLiteral("Attenzione: Selezionare \"Tutto il documento\" solo se il documento non "
                                         "contiene immagini, altrimenti queste verranno perse!"),
                          this);
    warning_->setWordWrap(true);
    warning_->setStyleSheet(QStringLiteral("color: #a00000;"));

    u1_ = new QPushButton(QStringLiteral("&Applica"), this);
    u1_->setObjectName(QStringLiteral("u1"));
    u1_->setDefault(true);
    auto* u2 = new QPushButton(QStringLiteral("&Chiudi"), this);
    u2->setObjectName(QStringLiteral("u2"));
    connect(u1_, &QPushButton::clicked, this, &FrmMai::apply);
    connect(u2, &QPushButton::clicked, this, &QDialog::close);

    auto* groups = new QHBoxLayout;
    groups->addWidget(kind);
    groups->addWidget(scope);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(u1_);
    buttons->addWidget(u2);
    auto* column = new QVBoxLayout(this);
    column->addLayout(groups);
    column->addWidget(warning_);
    column->addLayout(buttons);
    setFixedWidth(sizeHint().width() + 40);
}

void FrmMai::apply()
{
    const CaseScope scope = o_[0]->isChecked() ? CaseScope::TuttoDocumento : CaseScope::TestoSelezionato;
    if (op_[1]->isChecked())
        convert_.Maiu(scope);
    else if (op_[2]->isChecked())
        convert_.minu(scope);
    else
        convert_.cap(scope);
}

void showFrmMai(RichTextSurface& testo, UndoStore* undo, QWidget* owner)
{
    showSingleWindow<FrmMai>(owner, QStringLiteral("frmMai"), [&] { return new FrmMai(testo, undo, owner); });
}

}  // namespace tornelia

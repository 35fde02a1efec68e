#include "app/frm_cor.h"

#include "core/typing_assist.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace tornelia {

QStringList correctionTexts()
{
    return {
        QStringLiteral("Maiuscola automatica dopo il punto"),
        QStringLiteral("Spazio automatico dopo la virgola"),
        QStringLiteral("Spazio automatico dopo il punto e virgola"),
        QStringLiteral("Spazio automatico dopo i due punti"),
        QStringLiteral("Sostituisci (c) con ©"),
        QStringLiteral("Sostituisci (r) con ®"),
        QStringLiteral("Sostituisci  (tm) con ™"),
        QStringLiteral("Sostituisci £ con €"),
        QStringLiteral("Sostituisci -> <- con frecce"),
    };
}

FrmCor::FrmCor(SettingsStore& settings, QWidget* parent) : QDialog(parent), settings_(settings)
{
    setObjectName(QStringLiteral("frmCor"));
    setWindowTitle(QStringLiteral("Correzioni automatiche"));

    label_ = new QLabel(QStringLiteral("Seleziona le correzioni da applicare:"), this);
    label_->setObjectName(QStringLiteral("Label1"));

    l_ = new QListWidget(this);
    l_->setObjectName(QStringLiteral("l"));
    const QStringList texts = correctionTexts();
    const std::array<bool, 9> on = readCorrections(settings_);
    for (int i = 0; i < texts.size(); ++i) {
        auto* item = new QListWidgetItem(texts.at(i), l_);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(on[i] ? Qt::Checked : Qt::Unchecked);
    }
    l_->setCurrentRow(0);

    u1_ = new QPushButton(QStringLiteral("OK"), this);
    u1_->setObjectName(QStringLiteral("u1"));
    u1_->setDefault(true);
    u2_ = new QPushButton(QStringLiteral("Annulla"), this);
    u2_->setObjectName(QStringLiteral("u2"));
    connect(u1_, &QPushButton::clicked, this, &FrmCor::confirm);
    connect(u2_, &QPushButton::clicked, this, &QDialog::reject);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(u1_);
    buttons->addWidget(u2_);
    auto* column = new QVBoxLayout(this);
    column->addWidget(label_);
    column->addWidget(l_, 1);
    column->addLayout(buttons);
    resize(360, 300);
}

std::array<bool, 9> FrmCor::checks() const
{
    std::array<bool, 9> on{};
    for (int i = 0; i < int(on.size()) && i < l_->count(); ++i)
        on[i] = l_->item(i)->checkState() == Qt::Checked;
    return on;
}

void FrmCor::confirm()
{
    writeCorrections(settings_, checks());
    accept();
}

}  // namespace tornelia

#include "rtf/frm_api_ped.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <cmath>
#include <limits>

namespace tornelia {

RaiseLower::RaiseLower(RichTextSurface& testo, MessagePort& messages, std::function<void()> beforeChange)
    : testo_(testo), messages_(messages), beforeChange_(std::move(beforeChange))
{
}

QStringList RaiseLower::heights()
{
    return {QStringLiteral("20"), QStringLiteral("40"), QStringLiteral("60"), QStringLiteral("80"),
            QStringLiteral("100"), QStringLiteral("120"), QStringLiteral("160"), QStringLiteral("200")};
}

QString RaiseLower::currentText() const
{
    const std::optional<int> offset = testo_.SelCharOffset();
    if (!offset)
        return QStringLiteral("Altezza attuale: non determinabile");
    return QStringLiteral("Altezza attuale: ") + QString::number(*offset);
}

bool RaiseLower::apply(bool apice, const QString& text)
{
    // Either decimal sign is a number to the person typing it.
    const QString t = text.trimmed();
    bool ok = false;
    double v = QLocale(QLocale::Italian).toDouble(t, &ok);
    if (!ok)
        v = QLocale::c().toDouble(t, &ok);
    // The offset is a 16-bit count of twips in the file.
    if (!ok || !std::isfinite(v) || std::fabs(v) > std::numeric_limits<short>::max()) {
        messages_.mostraMsg(QStringLiteral("Errore valore"), QStringLiteral("Inserire un valore valido!"), 0, 3);
        return false;
    }
    const int twips = int(std::lround(v));
    if (beforeChange_)
        beforeChange_();
    testo_.setSelCharOffset(0);
    testo_.setSelCharOffset(apice ? twips : -twips);
    return true;
}

FrmApiPed::FrmApiPed(RichTextSurface& testo, MessagePort& messages, std::function<void()> beforeChange,
                     QWidget* parent)
    : QDialog(parent), logic_(testo, messages, std::move(beforeChange))
{
    setObjectName(QStringLiteral("FrmApiPed"));
    setWindowTitle(QStringLiteral("Impostazione apice-pedice"));

    auto* group = new QGroupBox(QStringLiteral("Posizione"), this);
    op_[0] = new QRadioButton(QStringLiteral("&Apice"), group);
    op_[1] = new QRadioButton(QStringLiteral("&Pedice"), group);
    op_[0]->setChecked(true);
    auto* groupRow = new QHBoxLayout(group);
    groupRow->addWidget(op_[0]);
    groupRow->addWidget(op_[1]);
    groupRow->addStretch(1);

    c_ = new QComboBox(this);
    c_->setObjectName(QStringLiteral("c"));
    c_->setEditable(true);
    c_->addItems(RaiseLower::heights());
    c_->setCurrentIndex(2);
    c_->setToolTip(QStringLiteral("In twip: 20 twip fanno un punto"));
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Nuova altezza:"), c_);

    current_ = new QLabel(this);
    refresh();
    connect(&testo, &RichTextSurface::SelChange, this, &FrmApiPed::refresh);

    auto* apply = new QPushButton(QStringLiteral("&Applica"), this);
    apply->setDefault(true);
    auto* close = new QPushButton(QStringLiteral("&Chiudi"), this);
    connect(apply, &QPushButton::clicked, this, [this] {
        if (logic_.apply(op_[0]->isChecked(), c_->currentText()))
            refresh();
    });
    connect(close, &QPushButton::clicked, this, &QDialog::close);

    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(apply);
    row->addWidget(close);
    auto* column = new QVBoxLayout(this);
    column->addWidget(group);
    column->addLayout(form);
    column->addWidget(current_);
    column->addStretch(1);
    column->addLayout(row);
    resize(320, 200);
}

void FrmApiPed::refresh()
{
    current_->setText(logic_.currentText());
}

}  // namespace tornelia

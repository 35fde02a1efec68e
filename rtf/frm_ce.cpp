#include "rtf/frm_ce.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace tornelia {

namespace {

const QStringList& spectrumDetails()
{
    static const QStringList d = {
        QStringLiteral("RossoGiallo"), QStringLiteral("GialloVerde"), QStringLiteral("VerdeAzzurro"),
        QStringLiteral("AzzurroBlu"),  QStringLiteral("BluMagenta"),  QStringLiteral("MagentaRosso"),
    };
    return d;
}

// The materials behind the Italian names of the list, in its order.
const QStringList& materialNames()
{
    static const QStringList m = {
        QStringLiteral("blue steel"), QStringLiteral("ice"),        QStringLiteral("gold"), QStringLiteral("oldgold"),
        QStringLiteral("silver"),     QStringLiteral("yellowrose"), QStringLiteral("x1"),   QStringLiteral("x2"),
    };
    return m;
}

}  // namespace

SpecialColours::SpecialColours(RichTextSurface& testo, MessagePort& messages, DialogPort* dialog,
                               std::function<void()> beforeChange)
    : looks_(messages), beforeChange_(std::move(beforeChange))
{
    looks_.AssignControls(&testo, dialog);
}

QStringList SpecialColours::methods()
{
    return {QStringLiteral("Candy"), QStringLiteral("Material"), QStringLiteral("Arcobaleno"),
            QStringLiteral("Casuale"), QStringLiteral("Spettro")};
}

QStringList SpecialColours::details(const QString& method)
{
    if (method == QLatin1String("Candy") || method == QLatin1String("Spettro"))
        return spectrumDetails();
    if (method == QLatin1String("Material"))
        return {QStringLiteral("Blu"),    QStringLiteral("Ghiaccio"),   QStringLiteral("Oro"),
                QStringLiteral("Oro1"),   QStringLiteral("Argento"),    QStringLiteral("GialloRosa"),
                QStringLiteral("GialloArancio"), QStringLiteral("Verde")};
    if (method == QLatin1String("Arcobaleno"))
        return {QStringLiteral("RossoMagenta"), QStringLiteral("MagentaRosso")};
    if (method == QLatin1String("Casuale"))
        return QStringList{QStringLiteral("Tutti i colori"), QStringLiteral("Arcobaleno")} + spectrumDetails() +
               QStringList{QStringLiteral("Grigio")};
    return {};
}

QStringList SpecialColours::chooseMethod(const QString& method)
{
    method_ = method;
    return details(method);
}

void SpecialColours::chooseDetail(int k)
{
    if (k < 0 || k >= details(method_).size())
        return;
    long first, last;
    // Without a selection of two characters the effects do nothing, and no
    // undo step is worth taking.
    if (!looks_.SelEdges(first, last))
        return;
    if (beforeChange_)
        beforeChange_();
    if (method_ == QLatin1String("Candy"))
        looks_.Candy(k, 0, toTextFlag_);
    else if (method_ == QLatin1String("Material"))
        looks_.Materials(materialNames().at(k), false, true, toTextFlag_);
    else if (method_ == QLatin1String("Arcobaleno"))
        looks_.RainBow(k == 0, toTextFlag_);
    else if (method_ == QLatin1String("Casuale"))
        looks_.RandomColour(k, toTextFlag_);
    else if (method_ == QLatin1String("Spettro"))
        looks_.SpectrumSector(k, false, true, toTextFlag_);
}

FrmCE::FrmCE(RichTextSurface& testo, MessagePort& messages, DialogPort* dialog, std::function<void()> beforeChange,
             QWidget* parent)
    : QDialog(parent), logic_(testo, messages, dialog, std::move(beforeChange))
{
    setObjectName(QStringLiteral("frmCE"));
    setWindowTitle(QStringLiteral("Colori ed evidenziazioni speciali"));

    label_ = new QLabel(QStringLiteral("Seleziona un metodo e il colore che vuoi. Il programma applicherà "
                                       "automaticamente la formattazione al testo selezionato."),
                        this);
    label_->setWordWrap(true);

    lstFil_ = new QListWidget(this);
    lstFil_->setObjectName(QStringLiteral("lstFil"));
    lstFil_->addItems(SpecialColours::methods());
    lstDet_ = new QListWidget(this);
    lstDet_->setObjectName(QStringLiteral("lstDet"));
    for (QListWidget* l : {lstFil_, lstDet_})
        l->setMinimumHeight(180);

    auto* group = new QGroupBox(QStringLiteral("Applica come"), this);
    op_[0] = new QRadioButton(QStringLiteral("Colore testo"), group);
    op_[1] = new QRadioButton(QStringLiteral("Colore sfondo"), group);
    op_[0]->setChecked(true);
    auto* groupRow = new QHBoxLayout(group);
    groupRow->addWidget(op_[0]);
    groupRow->addWidget(op_[1]);
    groupRow->addStretch(1);
    connect(op_[0], &QRadioButton::toggled, this, [this](bool on) { logic_.setToTextFlag(on); });

    connect(lstFil_, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        lstDet_->clear();
        lstDet_->addItems(logic_.chooseMethod(item->text()));
    });
    connect(lstDet_, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { logic_.chooseDetail(lstDet_->row(item)); });

    auto* close = new QPushButton(QStringLiteral("&Chiudi"), this);
    connect(close, &QPushButton::clicked, this, &QDialog::close);

    auto* lists = new QHBoxLayout;
    auto* left = new QVBoxLayout;
    left->addWidget(new QLabel(QStringLiteral("Metodo:"), this));
    left->addWidget(lstFil_);
    auto* right = new QVBoxLayout;
    right->addWidget(new QLabel(QStringLiteral("Colore:"), this));
    right->addWidget(lstDet_);
    lists->addLayout(left);
    lists->addLayout(right);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(close);
    auto* column = new QVBoxLayout(this);
    column->addWidget(label_);
    column->addLayout(lists, 1);
    column->addWidget(group);
    column->addLayout(buttons);
    resize(440, 400);
}

}  // namespace tornelia

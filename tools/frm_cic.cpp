#include "tools/frm_cic.h"

#include "tools/frm_tools_common.h"

#include <QApplication>
#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTabBar>
#include <QVBoxLayout>

namespace tornelia {

FrmCic::FrmCic(RichTextSurface& testo, UndoStore* undo, MessagePort& messages, QWidget* parent)
    : QDialog(parent), document_(testo), undo_(undo), messages_(messages)
{
    setWindowTitle(QStringLiteral("Testo ciclico"));

    tabs_ = new QTabBar(this);
    tabs_->addTab(QStringLiteral("Solo testo"));
    tabs_->addTab(QStringLiteral("Testo e numerazione"));
    tabs_->setExpanding(false);

    t1_ = new QLineEdit(this);
    t1_->setObjectName(QStringLiteral("t1"));
    t3_ = new QLineEdit(QStringLiteral("10"), this);
    t3_->setObjectName(QStringLiteral("t3"));
    t3_->setMaximumWidth(80);
    prefisso_ = new QLineEdit(this);
    prefisso_->setObjectName(QStringLiteral("t4"));
    suffisso_ = new QLineEdit(this);
    suffisso_->setObjectName(QStringLiteral("t5"));
    ch_ = new QCheckBox(QStringLiteral("Vai a capo"), this);
    ch_->setObjectName(QStringLiteral("Ch"));
    ch_->setChecked(true);

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Testo:"), t1_);
    form->addRow(QStringLiteral("Ripetizioni:"), t3_);
    prefissoLabel_ = new QLabel(QStringLiteral("Prefisso:"), this);
    suffissoLabel_ = new QLabel(QStringLiteral("Suffisso:"), this);
    form->addRow(prefissoLabel_, prefisso_);
    form->addRow(suffissoLabel_, suffisso_);
    form->addRow(QString(), ch_);

    auto* preview = new QGroupBox(QStringLiteral("Anteprima"), this);
    lblP_ = new QLabel(preview);
    lblP_->setObjectName(QStringLiteral("lblP"));
    lblP_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    // Room for the longer pattern, so switching tabs does not resize the window.
    lblP_->setMinimumHeight(fontMetrics().lineSpacing() * 4);
    lblP_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("Prefisso 2 suffisso")) + 8);
    (new QVBoxLayout(preview))->addWidget(lblP_);

    pb_ = new QProgressBar(this);
    pb_->setObjectName(QStringLiteral("pb"));
    pb_->setValue(0);
    pb_->setTextVisible(true);

    c1_ = new QPushButton(QStringLiteral("&Inserisci"), this);
    c1_->setObjectName(QStringLiteral("c1"));
    c2_ = new QPushButton(QStringLiteral("&Inserisci"), this);
    c2_->setObjectName(QStringLiteral("c2"));
    auto* chiudi = new QPushButton(QStringLiteral("&Chiudi"), this);
    connect(c1_, &QPushButton::clicked, this, [this] { run(CyclicMode::SoloTesto); });
    connect(c2_, &QPushButton::clicked, this, [this] { run(CyclicMode::TestoENumerazione); });
    connect(chiudi, &QPushButton::clicked, this, &QDialog::close);
    connect(tabs_, &QTabBar::currentChanged, this, &FrmCic::showTab);

    auto* top = new QHBoxLayout;
    top->addLayout(form, 1);
    top->addWidget(preview);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(pb_, 1);
    buttons->addWidget(c1_);
    buttons->addWidget(c2_);
    buttons->addWidget(chiudi);
    auto* column = new QVBoxLayout(this);
    column->addWidget(tabs_);
    column->addLayout(top);
    column->addLayout(buttons);
    showTab(0);
    resize(540, sizeHint().height());
}

void FrmCic::showTab(int index)
{
    const bool numbered = index == 1;
    prefissoLabel_->setEnabled(numbered);
    prefisso_->setEnabled(numbered);
    suffissoLabel_->setEnabled(numbered);
    suffisso_->setEnabled(numbered);
    c1_->setVisible(!numbered);
    c2_->setVisible(numbered);
    (numbered ? c2_ : c1_)->setDefault(true);
    lblP_->setText(numbered ? QStringLiteral("Prefisso 1 suffisso\nPrefisso 2 suffisso\ne così via...")
                            : QStringLiteral("Prova\nProva\nProva\ne così via..."));
}

void FrmCic::run(CyclicMode mode)
{
    CyclicRequest req{mode, t1_->text(), t3_->text(), prefisso_->text(), suffisso_->text(), ch_->isChecked()};
    pb_->setValue(0);
    const bool done = testoCiclico(document_, undo_, messages_, req, [this](long i, long n) {
        // A step of the bar at most every percent: the loop is quick, the repaint is not.
        const int percent = int(i * 100 / n);
        if (percent != pb_->value()) {
            pb_->setMaximum(100);
            pb_->setValue(percent);
            QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        }
    });
    if (!done)
        t3_->setFocus();
}

void showFrmCic(RichTextSurface& testo, UndoStore* undo, MessagePort& messages, QWidget* owner)
{
    showSingleWindow<FrmCic>(owner, QStringLiteral("frmcic"),
                             [&] { return new FrmCic(testo, undo, messages, owner); });
}

}  // namespace tornelia

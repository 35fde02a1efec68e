#include "tools/frm_go_to.h"

#include "core/rich_text_surface.h"
#include "tools/frm_tools_common.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace tornelia {

FrmGoTo::FrmGoTo(RichTextSurface& testo, MessagePort& messages, QWidget* parent)
    : QDialog(parent), goTo_(testo, messages)
{
    setWindowTitle(QStringLiteral("Vai a..."));

    auto* group = new QGroupBox(QStringLiteral("Vai a"), this);
    auto* radios = new QVBoxLayout(group);
    auto* buttons = new QButtonGroup(this);
    const struct {
        GoTo::Option option;
        const char* name;
        const char* caption;
    } entries[] = {
        {GoTo::GotoLine, "GotoLine", "&Linea"},
        {GoTo::GotoStart, "GotoStart", "&Inizio"},
        {GoTo::GoToEnd, "GoToEnd", "&Fine"},
        {GoTo::GotoPer, "GotoPer", "&Percentuale"},
    };
    for (const auto& entry : entries) {
        auto* r = new QRadioButton(QString::fromLatin1(entry.caption), group);
        r->setObjectName(QString::fromLatin1(entry.name));
        radios->addWidget(r);
        buttons->addButton(r, entry.option);
        options_[entry.option] = r;
    }
    options_[GoTo::GotoLine]->setChecked(true);

    prompt_ = new QLabel(this);
    txtGo_ = new QLineEdit(this);
    txtGo_->setObjectName(QStringLiteral("txtGo"));
    txtGo_->installEventFilter(this);
    cmbP_ = new QComboBox(this);
    cmbP_->setObjectName(QStringLiteral("CmbP"));
    cmbP_->addItems(GoTo::percentuali());
    cmbP_->setCurrentIndex(4);

    cmdGo_ = new QPushButton(QStringLiteral("&Vai"), this);
    cmdGo_->setObjectName(QStringLiteral("cmdGo"));
    auto* chiudi = new QPushButton(QStringLiteral("&Chiudi"), this);
    connect(cmdGo_, &QPushButton::clicked, this, &FrmGoTo::go);
    connect(chiudi, &QPushButton::clicked, this, &QDialog::close);
    connect(buttons, &QButtonGroup::idToggled, this, [this](int, bool on) {
        if (on)
            showInputs();
    });

    auto* inputs = new QVBoxLayout;
    inputs->addWidget(prompt_);
    inputs->addWidget(txtGo_);
    inputs->addWidget(cmbP_);
    inputs->addStretch(1);
    auto* side = new QVBoxLayout;
    side->addWidget(cmdGo_);
    side->addWidget(chiudi);
    side->addStretch(1);
    auto* row = new QHBoxLayout(this);
    row->addWidget(group);
    row->addLayout(inputs, 1);
    row->addLayout(side);

    // Room for the longer of the two prompts, so the window keeps its size.
    prompt_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("Inserire il numero della linea:")) + 8);
    showInputs();
    txtGo_->setFocus();
}

GoTo::Option FrmGoTo::current() const
{
    for (int o = GoTo::GotoLine; o <= GoTo::GotoPer; ++o)
        if (options_[o]->isChecked())
            return GoTo::Option(o);
    return GoTo::GotoLine;
}

void FrmGoTo::showInputs()
{
    const GoTo::Option o = current();
    txtGo_->setVisible(o == GoTo::GotoLine);
    cmbP_->setVisible(o == GoTo::GotoPer);
    prompt_->setText(o == GoTo::GotoLine  ? QStringLiteral("Inserire il numero della linea:")
                     : o == GoTo::GotoPer ? QStringLiteral("Selezionare la percentuale:")
                                          : QString());
    if (o == GoTo::GotoLine)
        txtGo_->setFocus();
}

void FrmGoTo::go()
{
    const GoTo::Outcome out = goTo_.cmdGo(current(), txtGo_->text(), cmbP_->currentText());
    if (out.clearField)
        txtGo_->clear();
}

bool FrmGoTo::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == txtGo_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            if (!txtGo_->text().isEmpty())
                go();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void showFrmGoTo(RichTextSurface& testo, MessagePort& messages, QWidget* owner)
{
    showSingleWindow<FrmGoTo>(owner, QStringLiteral("frmGoTo"),
                              [&] { return new FrmGoTo(testo, messages, owner); });
}

}  // namespace tornelia

#include "tools/frm_fin.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace tornelia {

fin::fin(RichTextSurface& testo, UndoStore& undo, MessagePort& messages, QWidget* owner)
    : QDialog(owner), logic_(testo, undo, messages), owner_(owner)
{
    setWindowTitle(QStringLiteral("Trova"));
    setModal(false);
    setAttribute(Qt::WA_DeleteOnClose);

    cboFind_ = new QComboBox;
    cboReplace_ = new QComboBox;
    for (QComboBox* c : {cboFind_, cboReplace_}) {
        c->setEditable(true);
        c->setInsertPolicy(QComboBox::NoInsert);
        c->setMinimumWidth(260);
        c->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }
    auto* useFind = new QPushButton(QStringLiteral("Usa testo selezionato"));
    auto* useReplace = new QPushButton(QStringLiteral("Usa testo selezionato"));
    ChCase_ = new QCheckBox(QStringLiteral("Maiuscole/minuscole"));
    ChWord_ = new QCheckBox(QStringLiteral("Parola esatta"));

    auto* fields = new QGridLayout;
    auto* findLabel = new QLabel(QStringLiteral("&Trova:"));
    findLabel->setBuddy(cboFind_);
    auto* replaceLabel = new QLabel(QStringLiteral("&Sostituisci con:"));
    replaceLabel->setBuddy(cboReplace_);
    fields->addWidget(findLabel, 0, 0);
    fields->addWidget(cboFind_, 0, 1);
    fields->addWidget(useFind, 0, 2);
    fields->addWidget(replaceLabel, 1, 0);
    fields->addWidget(cboReplace_, 1, 1);
    fields->addWidget(useReplace, 1, 2);
    auto* checks = new QHBoxLayout;
    checks->addWidget(ChCase_);
    checks->addWidget(ChWord_);
    checks->addStretch();
    fields->addLayout(checks, 2, 1, 1, 2);

    cmdFindNext_ = new QPushButton(QStringLiteral("Trova &successivo"));
    cmdReplace_ = new QPushButton(QStringLiteral("Sostitu&isci"));
    cmdReplaceAll_ = new QPushButton(QStringLiteral("Sostituisci t&utto"));
    cmdCancel_ = new QPushButton(QStringLiteral("Annulla"));
    cmdFindNext_->setDefault(true);
    auto* buttons = new QVBoxLayout;
    for (QPushButton* b : {cmdFindNext_, cmdReplace_, cmdReplaceAll_, cmdCancel_})
        buttons->addWidget(b);
    buttons->addStretch();

    auto* main = new QHBoxLayout(this);
    auto* left = new QVBoxLayout;
    left->addLayout(fields);
    left->addStretch();
    main->addLayout(left, 1);
    main->addSpacing(8);
    main->addLayout(buttons);

    connect(cboFind_, &QComboBox::editTextChanged, this, [this](const QString& t) {
        if (refreshing_)
            return;
        logic_.findText = t;
        refresh();
    });
    connect(cboReplace_, &QComboBox::editTextChanged, this, [this](const QString& t) {
        if (!refreshing_)
            logic_.replaceText = t;
    });
    connect(ChCase_, &QCheckBox::toggled, this, [this](bool on) { logic_.matchCase = on; });
    connect(ChWord_, &QCheckBox::toggled, this, [this](bool on) { logic_.wholeWord = on; });
    connect(useFind, &QPushButton::clicked, this, [this] { logic_.useSelection(0); });
    connect(useReplace, &QPushButton::clicked, this, [this] { logic_.useSelection(1); });
    connect(cmdFindNext_, &QPushButton::clicked, this, [this] { logic_.findNext(); });
    connect(cmdReplace_, &QPushButton::clicked, this, [this] { logic_.replace(); });
    connect(cmdReplaceAll_, &QPushButton::clicked, this, [this] { logic_.replaceAll(); });
    connect(cmdCancel_, &QPushButton::clicked, this, [this] {
        if (logic_.cancel())
            close();
    });

    logic_.onStateChanged = [this] { refresh(); };
    logic_.processEvents = [] { QCoreApplication::processEvents(); };
    logic_.setBusy = [this](bool busy) {
        QWidget* w = owner_ ? owner_ : this;
        if (busy)
            w->setCursor(Qt::WaitCursor);
        else
            w->unsetCursor();
    };
    refresh();
    adjustSize();
}

void fin::fillList(QComboBox* combo, const QStringList& items)
{
    QStringList now;
    for (int i = 0; i < combo->count(); ++i)
        now.append(combo->itemText(i));
    if (now == items)
        return;
    const QString text = combo->currentText();
    combo->clear();
    combo->addItems(items);
    combo->setEditText(text);
}

void fin::refresh()
{
    refreshing_ = true;
    fillList(cboFind_, logic_.findList());
    fillList(cboReplace_, logic_.replaceList());
    if (cboFind_->currentText() != logic_.findText)
        cboFind_->setEditText(logic_.findText);
    if (cboReplace_->currentText() != logic_.replaceText)
        cboReplace_->setEditText(logic_.replaceText);
    refreshing_ = false;
    cmdFindNext_->setEnabled(logic_.findEnabled());
    cmdReplaceAll_->setEnabled(logic_.findEnabled());
    cmdReplace_->setEnabled(logic_.replaceEnabled());
}

void fin::closeEvent(QCloseEvent* event)
{
    // A replace all under way stops first; the window closes at the next press.
    if (!logic_.cancel()) {
        event->ignore();
        return;
    }
    QDialog::closeEvent(event);
}

fin* FindA(RichTextSurface& testo, UndoStore& undo, MessagePort& messages, QWidget* owner)
{
    fin* window = owner ? owner->findChild<fin*>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
    if (!window)
        window = new fin(testo, undo, messages, owner);
    window->logic().takeSelection();
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}

}  // namespace tornelia

#include "tools/frm_st.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <map>

namespace tornelia {

FrmSt::FrmSt(StyleStore& store, QWidget* owner) : QDialog(owner), store_(store)
{
    setWindowTitle(QStringLiteral("Stili"));
    setModal(false);

    List1_ = new QListWidget;
    List1_->setMinimumWidth(170);
    n_ = new QLineEdit;
    list_ = new QComboBox;
    for (const QString& family : QFontDatabase::families()) {
        if (!family.isEmpty())
            list_->addItem(family);
    }
    dime_ = new QComboBox;
    for (int size = 2; size <= 72; size += 2)
        dime_->addItem(QString::number(size));
    Check1_ = new QCheckBox(QStringLiteral("Grassetto"));
    Check2_ = new QCheckBox(QStringLiteral("Corsivo"));
    Check3_ = new QCheckBox(QStringLiteral("Sottolineato"));
    chh_ = new QCheckBox(QStringLiteral("Mostra le proprietà"));
    chh_->setChecked(true);

    properties_ = new QGroupBox(QStringLiteral("Proprietà"));
    auto* form = new QFormLayout(properties_);
    form->addRow(QStringLiteral("Nome stile:"), n_);
    form->addRow(QStringLiteral("Carattere:"), list_);
    form->addRow(QStringLiteral("Dimensione:"), dime_);
    auto* flags = new QVBoxLayout;
    flags->addWidget(Check1_);
    flags->addWidget(Check2_);
    flags->addWidget(Check3_);
    form->addRow(QString(), flags);

    static const char* const captions[] = {"&Applica", "&Nuovo elenco", "A&pri...", "&Salva con nome...",
                                           "&Memorizza", "&Chiudi"};
    auto* buttons = new QVBoxLayout;
    for (int i = 0; i < 6; ++i) {
        auto* b = new QPushButton(QString::fromUtf8(captions[i]));
        if (i == 5)
            buttons->addStretch();
        buttons->addWidget(b);
        connect(b, &QPushButton::clicked, this, [this, i] {
            readControls();
            store_.bU(i);
        });
    }

    auto* left = new QVBoxLayout;
    left->addWidget(List1_, 1);
    left->addWidget(chh_);
    auto* main = new QHBoxLayout(this);
    main->addLayout(left, 1);
    main->addWidget(properties_, 2);
    main->addLayout(buttons);

    connect(List1_, &QListWidget::currentRowChanged, this, [this](int row) {
        if (!refreshing_ && row >= 0)
            store_.select(row);
    });
    connect(List1_, &QListWidget::itemDoubleClicked, this, [this] { store_.bU(0); });
    connect(n_, &QLineEdit::textEdited, this, [this] { readControls(); });
    for (QComboBox* c : {list_, dime_})
        connect(c, &QComboBox::currentTextChanged, this, [this] { readControls(); });
    for (QCheckBox* c : {Check1_, Check2_, Check3_})
        connect(c, &QCheckBox::toggled, this, [this] { readControls(); });
    // The extended view: the properties beside the list, or the list alone.
    connect(chh_, &QCheckBox::toggled, this, [this](bool on) {
        properties_->setVisible(on);
        adjustSize();
    });
    refresh();
    adjustSize();
}

void FrmSt::readControls()
{
    if (refreshing_)
        return;
    StyleControls& c = store_.controls;
    c.name = n_->text();
    c.font = list_->currentText();
    c.size = dime_->currentText();
    c.bold = Check1_->isChecked() ? 1 : 0;
    c.italic = Check2_->isChecked() ? 1 : 0;
    c.underline = Check3_->isChecked() ? 1 : 0;
}

void FrmSt::refresh()
{
    refreshing_ = true;
    const QStringList& names = store_.list1();
    if (List1_->count() != names.size()) {
        List1_->clear();
        List1_->addItems(names);
    } else {
        for (int i = 0; i < names.size(); ++i)
            List1_->item(i)->setText(names.at(i));
    }
    List1_->setCurrentRow(store_.selected());
    const StyleControls& c = store_.controls;
    n_->setText(c.name);
    // A font this system lacks still shows, as the style has it.
    if (list_->findText(c.font) < 0 && !c.font.isEmpty())
        list_->addItem(c.font);
    list_->setCurrentText(c.font);
    if (dime_->findText(c.size) < 0 && !c.size.isEmpty())
        dime_->addItem(c.size);
    dime_->setCurrentText(c.size);
    Check1_->setChecked(c.bold);
    Check2_->setChecked(c.italic);
    Check3_->setChecked(c.underline);
    refreshing_ = false;
}

void FrmSt::NascO()
{
    hide();
}

void FrmSt::closeEvent(QCloseEvent* event)
{
    // The window is the program's style store: closing hides it.
    event->ignore();
    if (store_.queryClose())
        NascO();
}

namespace {

std::map<RichTextSurface*, StyleService*>& services()
{
    static std::map<RichTextSurface*, StyleService*> all;
    return all;
}

}  // namespace

StyleService::StyleService(RichTextSurface& testo, SettingsStore& settings, MessagePort& messages,
                           DialogPort& dialogs, UndoStore& undo)
    : QObject(&testo), testo_(testo), store_(testo, settings, messages, dialogs, &undo)
{
    store_.onChanged = [this] { tableChanged(); };
    store_.load();
}

StyleService::~StyleService()
{
    delete window_.data();
    services().erase(&testo_);
}

StyleService& StyleService::instance(RichTextSurface& testo, SettingsStore& settings, MessagePort& messages,
                                     DialogPort& dialogs, UndoStore& undo)
{
    auto& all = services();
    auto it = all.find(&testo);
    if (it == all.end())
        it = all.emplace(&testo, new StyleService(testo, settings, messages, dialogs, undo)).first;
    return *it->second;
}

FrmSt* StyleService::show(QWidget* owner)
{
    if (!window_) {
        window_ = new FrmSt(store_, owner);
        store_.onHide = [w = window_] {
            if (w)
                w->NascO();
        };
    }
    window_->show();
    window_->raise();
    window_->activateWindow();
    return window_;
}

void StyleService::tableChanged()
{
    if (window_)
        window_->refresh();
    const QStringList names = store_.comboNames();
    for (const QPointer<QComboBox>& combo : combos_) {
        if (!combo)
            continue;
        QStringList now;
        for (int i = 0; i < combo->count(); ++i)
            now.append(combo->itemText(i));
        if (now == names)
            continue;
        const QString shown = combo->currentText();
        const QSignalBlocker block(combo.data());
        combo->clear();
        combo->addItems(names);
        if (combo->isEditable())
            combo->setEditText(shown);
        else
            combo->setCurrentIndex(std::max(0, int(combo->findText(shown))));
    }
}

void StyleService::bindCombo(QComboBox* cbSti, bool followPicks)
{
    combos_.append(cbSti);
    tableChanged();
    shown_.insert(cbSti, cbSti->currentText());
    if (followPicks)
        connect(cbSti, &QComboBox::activated, this, [this, cbSti](int index) { comboPicked(cbSti, index); });
}

void StyleService::comboPicked(QComboBox* cbSti, int index)
{
    const QString text = cbSti->itemText(index);
    if (!text.isEmpty())
        store_.appliC(text, true);
    testo_.SetFocus();
    // The combo offers styles; it does not show the current one.
    const QString shown = shown_.value(cbSti);
    const QSignalBlocker block(cbSti);
    if (cbSti->isEditable())
        cbSti->setEditText(shown);
    else
        cbSti->setCurrentIndex(std::max(0, int(cbSti->findText(shown))));
}

}  // namespace tornelia

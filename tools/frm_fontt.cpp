#include "tools/frm_fontt.h"

#include "tools/frm_tools_common.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace tornelia {

namespace {

QColor toQColor(Colour c) { return QColor(int(c & 0xFF), int((c >> 8) & 0xFF), int((c >> 16) & 0xFF)); }

// The sixteen colours of the palette box, as 0x00BBGGRR.
constexpr Colour kPalette[] = {
    0x000000, 0x808080, 0x000080, 0x0000FF, 0x008080, 0x00FFFF, 0x008000, 0x00FF00,
    0x808000, 0xFFFF00, 0x800000, 0xFF0000, 0x800080, 0xFF00FF, 0xC0C0C0, 0xFFFFFF,
};

}  // namespace

Fontt::Fontt(RichTextSurface& testo, QWidget* parent) : QDialog(parent), testo_(testo)
{
    setWindowTitle(QStringLiteral("Visualizzatore Fonts"));

    list_ = new QListWidget(this);
    list_->setObjectName(QStringLiteral("lstFonts"));
    list_->addItems(QFontDatabase::families());
    list_->setMinimumWidth(200);

    text1_ = new QLineEdit(QStringLiteral("Testo di prova"), this);
    text1_->setObjectName(QStringLiteral("Text1"));
    text1_->setMinimumHeight(90);
    text1_->setAlignment(Qt::AlignCenter);

    const char* captions[] = {"&Grassetto", "C&orsivo", "&Sottolineato"};
    for (int i = 0; i < 3; ++i) {
        checks_[i] = new QCheckBox(QString::fromLatin1(captions[i]), this);
        checks_[i]->setObjectName(QStringLiteral("Check%1").arg(i + 1));
        connect(checks_[i], &QCheckBox::toggled, this, &Fontt::updateSample);
    }
    dime_ = new QComboBox(this);
    dime_->setObjectName(QStringLiteral("dime"));
    dime_->setEditable(true);
    dime_->addItems(fontSizes());
    dime_->setCurrentText(QStringLiteral("20"));
    auto* dimeLabel = new QLabel(QStringLiteral("&Dimensione:"), this);
    dimeLabel->setBuddy(dime_);

    picColors_ = new QWidget(this);
    picColors_->setObjectName(QStringLiteral("picColors"));
    auto* swatches = new QGridLayout(picColors_);
    swatches->setSpacing(2);
    swatches->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < 16; ++i) {
        auto* b = new QToolButton(picColors_);
        b->setFixedSize(20, 20);
        b->setAutoRaise(false);
        b->setStyleSheet(QStringLiteral("background-color: %1; border: 1px solid #808080;")
                             .arg(toQColor(kPalette[i]).name()));
        const Colour c = kPalette[i];
        connect(b, &QToolButton::clicked, this, [this, c] { setColour(c); });
        swatches->addWidget(b, i / 8, i % 8);
    }

    picColors_->setFixedSize(picColors_->sizeHint());

    u1_ = new QPushButton(QStringLiteral("&Applica al testo"), this);
    u1_->setObjectName(QStringLiteral("u1"));
    u1_->setToolTip(QStringLiteral("Dà al testo selezionato il carattere, la dimensione, lo stile e il colore scelti"));
    auto* u2 = new QPushButton(QStringLiteral("&Chiudi"), this);
    u2->setObjectName(QStringLiteral("u2"));
    connect(u1_, &QPushButton::clicked, this, [this] { applyFontLook(testo_, look()); });
    connect(u2, &QPushButton::clicked, this, &QDialog::close);
    connect(list_, &QListWidget::currentTextChanged, this, &Fontt::updateSample);
    connect(dime_, &QComboBox::currentTextChanged, this, &Fontt::updateSample);

    auto* styles = new QHBoxLayout;
    for (QCheckBox* c : checks_)
        styles->addWidget(c);
    styles->addStretch(1);
    auto* sizeAndColour = new QHBoxLayout;
    sizeAndColour->addWidget(dimeLabel);
    sizeAndColour->addWidget(dime_);
    sizeAndColour->addSpacing(16);
    sizeAndColour->addWidget(new QLabel(QStringLiteral("Colore:"), this));
    sizeAndColour->addWidget(picColors_);
    sizeAndColour->addStretch(1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(u1_);
    buttons->addWidget(u2);
    auto* right = new QVBoxLayout;
    right->addWidget(text1_, 1);
    right->addLayout(styles);
    right->addLayout(sizeAndColour);
    right->addStretch(1);
    right->addLayout(buttons);
    auto* row = new QHBoxLayout(this);
    row->addWidget(list_);
    row->addLayout(right, 1);

    const auto found = list_->findItems(font().family(), Qt::MatchExactly);
    list_->setCurrentRow(found.isEmpty() ? 0 : list_->row(found.first()));
    list_->scrollToItem(list_->currentItem(), QAbstractItemView::PositionAtCenter);
    updateSample();
    resize(680, 340);
}

FontLook Fontt::look() const
{
    FontLook l;
    if (const QListWidgetItem* item = list_->currentItem())
        l.family = item->text();
    bool ok = false;
    const float size = dime_->currentText().trimmed().replace(QLatin1Char(','), QLatin1Char('.')).toFloat(&ok);
    // A size that is not a number, or out of range, shows the sample at 10.
    l.size = ok && size >= 1 && size <= 1638 ? size : 10;
    l.bold = checks_[0]->isChecked();
    l.italic = checks_[1]->isChecked();
    l.underline = checks_[2]->isChecked();
    l.colour = colour_;
    return l;
}

void Fontt::setColour(Colour c)
{
    colour_ = c;
    updateSample();
}

void Fontt::updateSample()
{
    const FontLook l = look();
    QFont f(l.family);
    f.setPointSizeF(l.size);
    f.setBold(l.bold);
    f.setItalic(l.italic);
    f.setUnderline(l.underline);
    text1_->setFont(f);
    QPalette p = text1_->palette();
    p.setColor(QPalette::Text, toQColor(l.colour));
    text1_->setPalette(p);
    u1_->setEnabled(!l.family.isEmpty());
}

void showFontt(RichTextSurface& testo, QWidget* owner)
{
    showSingleWindow<Fontt>(owner, QStringLiteral("Fontt"), [&] { return new Fontt(testo, owner); });
}

}  // namespace tornelia

#include "tools/frm_form3.h"

#include "core/rich_text_surface.h"
#include "tools/frm_tools_common.h"
#include "tools/inserters.h"

#include <QFontComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace tornelia {

namespace {
constexpr int kColumns = 16;
constexpr int kRows = (kLastGridCode - kFirstGridCode + 1) / kColumns;
constexpr int kCell = 26;
}  // namespace

CharGrid::CharGrid(QWidget* parent) : QWidget(parent)
{
    setMouseTracking(true);
    setFixedSize(sizeHint());
    setCursor(Qt::PointingHandCursor);
}

QSize CharGrid::sizeHint() const { return {kColumns * kCell + 1, kRows * kCell + 1}; }

void CharGrid::setGridFont(const QFont& font, bool symbol)
{
    font_ = font;
    font_.setPointSize(12);
    symbol_ = symbol;
    update();
}

QString CharGrid::characterAt(int code) const { return gridCharacter(code, symbol_); }

int CharGrid::codeAt(const QPoint& p) const
{
    if (p.x() < 0 || p.y() < 0)
        return -1;
    const int col = p.x() / kCell;
    const int row = p.y() / kCell;
    if (col >= kColumns || row >= kRows)
        return -1;
    return kFirstGridCode + row * kColumns + col;
}

QRect CharGrid::cellRect(int code) const
{
    const int i = code - kFirstGridCode;
    return {(i % kColumns) * kCell, (i / kColumns) * kCell, kCell, kCell};
}

void CharGrid::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.fillRect(rect(), palette().base());
    p.setFont(font_);
    for (int code = kFirstGridCode; code <= kLastGridCode; ++code) {
        const QRect r = cellRect(code);
        if (code == hot_)
            p.fillRect(r, palette().highlight());
        p.setPen(code == hot_ ? palette().highlightedText().color() : palette().text().color());
        p.drawText(r, Qt::AlignCenter, characterAt(code));
    }
    p.setPen(palette().mid().color());
    for (int c = 0; c <= kColumns; ++c)
        p.drawLine(c * kCell, 0, c * kCell, kRows * kCell);
    for (int r = 0; r <= kRows; ++r)
        p.drawLine(0, r * kCell, kColumns * kCell, r * kCell);
}

void CharGrid::mouseMoveEvent(QMouseEvent* event)
{
    const int code = codeAt(event->position().toPoint());
    if (code == hot_)
        return;
    hot_ = code;
    update();
    if (code >= 0)
        emit hovered(characterAt(code));
}

void CharGrid::mousePressEvent(QMouseEvent* event)
{
    const int code = codeAt(event->position().toPoint());
    if (code >= 0 && event->button() == Qt::LeftButton)
        if (const QString c = characterAt(code); !c.isEmpty())
            emit clicked(c);
}

Form3::Form3(RichTextSurface& testo, QWidget* parent) : QDialog(parent), testo_(testo)
{
    setWindowTitle(QStringLiteral("Inserisci caratteri speciali - Visualizzatore caratteri"));

    combo1_ = new QFontComboBox(this);
    combo1_->setObjectName(QStringLiteral("Combo1"));
    grid_ = new CharGrid(this);
    grid_->setObjectName(QStringLiteral("l"));

    zoom_ = new QLabel(this);
    zoom_->setObjectName(QStringLiteral("zoom"));
    zoom_->setFixedSize(110, 110);
    zoom_->setAlignment(Qt::AlignCenter);
    zoom_->setFrameShape(QFrame::StyledPanel);
    zoom_->setAutoFillBackground(true);
    zoom_->setBackgroundRole(QPalette::Base);
    lbl_ = new QLabel(QStringLiteral("Ascii= ALT + 0"), this);
    lbl_->setObjectName(QStringLiteral("lbl"));

    auto* tLabel = new QLabel(QStringLiteral("Caratteri da inserire:"), this);
    t_ = new QLineEdit(this);
    t_->setObjectName(QStringLiteral("t"));
    tLabel->setBuddy(t_);
    u1_ = new QPushButton(QStringLiteral("&Inserisci"), this);
    u1_->setObjectName(QStringLiteral("u1"));
    u1_->setDefault(true);
    auto* cancella = new QPushButton(QStringLiteral("C&ancella"), this);
    auto* u2 = new QPushButton(QStringLiteral("&Chiudi"), this);
    u2->setObjectName(QStringLiteral("u2"));

    connect(combo1_, &QFontComboBox::currentFontChanged, this, [this](const QFont& f) { chooseFont(f.family()); });
    connect(grid_, &CharGrid::hovered, this, &Form3::showCharacter);
    connect(grid_, &CharGrid::clicked, this, [this](const QString& c) {
        showCharacter(c);
        t_->insert(c);
    });
    connect(cancella, &QPushButton::clicked, t_, &QLineEdit::clear);
    connect(u1_, &QPushButton::clicked, this, [this] {
        insertCharacters(testo_, family_, t_->text(), grid_->isSymbolFont());
        t_->clear();
    });
    connect(u2, &QPushButton::clicked, this, &QDialog::close);

    auto* fontRow = new QHBoxLayout;
    fontRow->addWidget(new QLabel(QStringLiteral("Carattere:"), this));
    fontRow->addWidget(combo1_, 1);
    auto* side = new QVBoxLayout;
    side->addWidget(zoom_, 0, Qt::AlignHCenter);
    side->addWidget(lbl_);
    side->addStretch(1);
    auto* middle = new QHBoxLayout;
    middle->addWidget(grid_);
    middle->addLayout(side);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(tLabel);
    bottom->addWidget(t_, 1);
    bottom->addWidget(cancella);
    bottom->addWidget(u1_);
    bottom->addWidget(u2);
    auto* column = new QVBoxLayout(this);
    column->addLayout(fontRow);
    column->addLayout(middle);
    column->addLayout(bottom);
    lbl_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("Ascii= ALT + 00000")));

    chooseFont(QStringLiteral("Tahoma"));
    layout()->setSizeConstraint(QLayout::SetFixedSize);
}

void Form3::chooseFont(const QString& family)
{
    QFont f(family);
    {
        const QSignalBlocker block(combo1_);
        combo1_->setCurrentFont(f);
    }
    // A font this system lacks is shown and inserted as the one the list
    // fell back to, so what goes into the text is what the grid shows.
    family_ = QFontDatabase::hasFamily(family) ? family : combo1_->currentFont().family();
    const bool symbol = QFontDatabase::writingSystems(family_).contains(QFontDatabase::Symbol);
    grid_->setGridFont(QFont(family_), symbol);
    QFont big(family_);
    big.setPointSize(48);
    zoom_->setFont(big);
    t_->setFont(QFont(family_, t_->font().pointSize()));
    zoom_->clear();
}

void Form3::showCharacter(const QString& character)
{
    zoom_->setText(character);
    lbl_->setText(character.isEmpty() ? QStringLiteral("Ascii= ALT + 0") : asciiReadout(character.at(0)));
}

void showForm3(RichTextSurface& testo, QWidget* owner)
{
    showSingleWindow<Form3>(owner, QStringLiteral("form3"), [&] { return new Form3(testo, owner); });
}

}  // namespace tornelia

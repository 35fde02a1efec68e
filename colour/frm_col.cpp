#include "colour/frm_col.h"

#include "core/ports.h"

#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>

namespace tornelia::colour {

namespace {

constexpr int kSliderMargin = 7;  // room for the marks on either side

QString swatchStyle(std::uint32_t c)
{
    int r, g, b;
    splitColour(c, r, g, b);
    return QStringLiteral("background-color: rgb(%1,%2,%3); border: 1px solid #606060;").arg(r).arg(g).arg(b);
}

int gridColumns(int preset) { return preset == 0 ? kPaletteColumns : kCustomColumns; }
int gridRows(int preset) { return preset == 0 ? kPaletteRows : kCustomRows; }

}  // namespace

class FieldView : public QWidget {
public:
    explicit FieldView(FrmCol* owner) : QWidget(owner), owner_(owner)
    {
        setObjectName(QStringLiteral("picField"));
        setFixedSize(kFieldSide, kFieldSide);
        setCursor(Qt::CrossCursor);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter p(this);
        if (owner_->presets_) {
            if (owner_->cmbPreset_->currentIndex() == 0)
                drawPaletteGrid(p, rect());
            else
                drawCustomGrid(p, rect(), owner_->picker_.custom());
            owner_->DrawSelFrame(p);
        } else {
            blitRgb(p, owner_->fieldBuffer_.data(), 0, 0, kFieldSide, kFieldSide, false);
            owner_->DrawMainFrame(p);
        }
    }
    void mousePressEvent(QMouseEvent* e) override { owner_->clickField(e->position().toPoint()); }
    void mouseMoveEvent(QMouseEvent* e) override
    {
        if ((e->buttons() & Qt::LeftButton) && !owner_->presets_)
            owner_->clickField(e->position().toPoint());
    }

private:
    FrmCol* owner_;
};

class SliderView : public QWidget {
public:
    explicit SliderView(FrmCol* owner) : QWidget(owner), owner_(owner)
    {
        setObjectName(QStringLiteral("picSlider"));
        setFixedSize(kSliderDrawnWidth + 2 * kSliderMargin, kSliderRows);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter p(this);
        // Top-down: the buffer's first row is the slider's top.
        blitRgb(p, owner_->sliderBuffer_.data(), kSliderMargin, 0, kSliderDrawnWidth, -kSliderRows, false);
        // Over the ready-made colours the slider chooses nothing.
        if (!isEnabled())
            return;
        const int row = owner_->picker_.sliderRow();
        p.setRenderHint(QPainter::Antialiasing);
        p.setBrush(palette().windowText());
        p.setPen(Qt::NoPen);
        const int l = 0, r = width();
        p.drawPolygon(QPolygon({QPoint(l, row - 5), QPoint(l + kSliderMargin - 1, row), QPoint(l, row + 5)}));
        p.drawPolygon(QPolygon({QPoint(r, row - 5), QPoint(r - kSliderMargin + 1, row), QPoint(r, row + 5)}));
    }
    void mousePressEvent(QMouseEvent* e) override { owner_->clickSlider(int(e->position().y())); }
    void mouseMoveEvent(QMouseEvent* e) override
    {
        if (e->buttons() & Qt::LeftButton)
            owner_->clickSlider(int(e->position().y()));
    }

private:
    FrmCol* owner_;
};

FrmCol::FrmCol(std::uint32_t initial, FieldMode mode, const QString& folder, MessagePort* messages,
               QWidget* parent)
    : QDialog(parent), folder_(folder), messages_(messages)
{
    setObjectName(QStringLiteral("frmcol"));
    setWindowTitle(QStringLiteral("Colore"));
    setModal(true);
    picker_.setColour(initial);
    picker_.setMode(mode);
    picker_.custom() = loadCustomColours(folder_);

    field_ = new FieldView(this);
    slider_ = new SliderView(this);
    slider_->setVisible(true);

    const auto box = [this](const QString& name, const QString& tip, int top) {
        auto* e = new QLineEdit(this);
        e->setObjectName(name);
        e->setToolTip(tip);
        e->setMaxLength(top > 99 ? 3 : 2);
        e->setFixedWidth(48);
        return e;
    };
    optH_ = new QRadioButton(QStringLiteral("Tonalità"), this);
    optS_ = new QRadioButton(QStringLiteral("Saturazione"), this);
    optB_ = new QRadioButton(QStringLiteral("Luminosità"), this);
    optH_->setObjectName(QStringLiteral("optH"));
    optS_->setObjectName(QStringLiteral("optS"));
    optB_->setObjectName(QStringLiteral("optB"));
    txtH_ = box(QStringLiteral("txtH"), QStringLiteral("Hue"), 360);
    txtS_ = box(QStringLiteral("txtS"), QStringLiteral("Saturation"), 100);
    txtB_ = box(QStringLiteral("txtB"), QStringLiteral("Brightness"), 100);
    text1_ = box(QStringLiteral("Text1"), QStringLiteral("Red"), 255);
    text2_ = box(QStringLiteral("Text2"), QStringLiteral("Green"), 255);
    text3_ = box(QStringLiteral("Text3"), QStringLiteral("Blue"), 255);

    auto* values = new QGridLayout;
    values->addWidget(optH_, 0, 0);
    values->addWidget(txtH_, 0, 1);
    values->addWidget(new QLabel(QStringLiteral("°"), this), 0, 2);
    values->addWidget(optS_, 1, 0);
    values->addWidget(txtS_, 1, 1);
    values->addWidget(new QLabel(QStringLiteral("%"), this), 1, 2);
    values->addWidget(optB_, 2, 0);
    values->addWidget(txtB_, 2, 1);
    values->addWidget(new QLabel(QStringLiteral("%"), this), 2, 2);
    const QString rgbNames[3] = {QStringLiteral("Rosso"), QStringLiteral("Verde"), QStringLiteral("Blu")};
    QLineEdit* rgbBoxes[3] = {text1_, text2_, text3_};
    for (int i = 0; i < 3; ++i) {
        auto* l = new QLabel(rgbNames[i], this);
        l->setObjectName(QStringLiteral("Label%1").arg(i + 1));
        l->setBuddy(rgbBoxes[i]);
        values->addWidget(l, 3 + i, 0);
        values->addWidget(rgbBoxes[i], 3 + i, 1);
    }
    values->setRowMinimumHeight(3, 28);

    lblSelColor_ = new QLabel(this);
    lblSelColor_->setObjectName(QStringLiteral("lblSelColor"));
    lblSelColor_->setFixedSize(96, 44);

    cmbPreset_ = new QComboBox(this);
    cmbPreset_->setObjectName(QStringLiteral("cmbPreset"));
    cmbPreset_->addItems({QStringLiteral("Palette (216)"), QStringLiteral("Personalizzati...")});

    cmdADD_ = new QPushButton(QStringLiteral("&Aggiungi"), this);
    cmdADD_->setObjectName(QStringLiteral("cmdADD"));
    cmdADD_->setToolTip(QStringLiteral("Aggiungi il colore ai personalizzati"));
    lblADDColor_ = new QLabel(this);
    lblADDColor_->setObjectName(QStringLiteral("lblADDColor"));
    lblADDColor_->setFixedSize(24, 24);

    command1_ = new QPushButton(QStringLiteral("OK"), this);
    command1_->setObjectName(QStringLiteral("command1"));
    command1_->setDefault(true);
    command2_ = new QPushButton(QStringLiteral("Annulla"), this);
    command2_->setObjectName(QStringLiteral("command2"));
    command3_ = new QPushButton(QStringLiteral("&Pronti"), this);
    command3_->setObjectName(QStringLiteral("command3"));

    auto* right = new QVBoxLayout;
    right->addWidget(lblSelColor_, 0, Qt::AlignHCenter);
    right->addLayout(values);
    auto* add = new QHBoxLayout;
    add->addWidget(cmdADD_);
    add->addWidget(lblADDColor_);
    right->addLayout(add);
    right->addStretch(1);
    right->addWidget(command1_);
    right->addWidget(command2_);

    auto* under = new QHBoxLayout;
    under->addWidget(cmbPreset_, 1);
    under->addWidget(command3_);

    auto* left = new QGridLayout;
    left->addWidget(field_, 0, 0);
    left->addWidget(slider_, 0, 1);
    left->addLayout(under, 1, 0, 1, 2);

    auto* top = new QHBoxLayout;
    top->addLayout(left);
    top->addSpacing(8);
    top->addLayout(right);

    auto* bar = new QHBoxLayout;
    bar->setSpacing(2);
    for (int i = 0; i < 4; ++i) {
        status_[i] = new QLabel(this);
        status_[i]->setObjectName(QStringLiteral("StatusBar1_%1").arg(i + 1));
        status_[i]->setFrameShape(QFrame::Panel);
        status_[i]->setFrameShadow(QFrame::Sunken);
        bar->addWidget(status_[i], i == 3 ? 2 : 1);
    }

    auto* outer = new QVBoxLayout(this);
    outer->addLayout(top);
    outer->addLayout(bar);
    layout()->setSizeConstraint(QLayout::SetFixedSize);

    (mode == FieldMode::Hue ? optH_ : mode == FieldMode::Saturation ? optS_ : optB_)->setChecked(true);
    const auto setMode = [this](FieldMode m, bool on) {
        if (!on)
            return;
        picker_.setMode(m);
        if (presets_)
            Command3_Click();
        refresh();
    };
    connect(optH_, &QRadioButton::toggled, this, [setMode](bool on) { setMode(FieldMode::Hue, on); });
    connect(optS_, &QRadioButton::toggled, this, [setMode](bool on) { setMode(FieldMode::Saturation, on); });
    connect(optB_, &QRadioButton::toggled, this, [setMode](bool on) { setMode(FieldMode::Brightness, on); });

    const std::pair<Box, QLineEdit*> boxes[] = {{Box::H, txtH_},     {Box::S, txtS_},     {Box::B, txtB_},
                                                {Box::Red, text1_}, {Box::Green, text2_}, {Box::Blue, text3_}};
    for (const auto& [which, edit] : boxes) {
        connect(edit, &QLineEdit::textEdited, this, [this, which, edit] { boxEdited(which, edit, false); });
        connect(edit, &QLineEdit::editingFinished, this, [this, which, edit] { boxEdited(which, edit, true); });
    }

    connect(cmbPreset_, &QComboBox::currentIndexChanged, this, [this] {
        selectedCell_ = -1;
        if (!presets_)
            Command3_Click();
        else
            DrawSafePicker();
    });
    connect(command3_, &QPushButton::clicked, this, &FrmCol::Command3_Click);
    connect(cmdADD_, &QPushButton::clicked, this, &FrmCol::addCustom);
    connect(command1_, &QPushButton::clicked, this, &QDialog::accept);
    connect(command2_, &QPushButton::clicked, this, &QDialog::reject);

    // The pointer changes between dark and light, so it shows on any colour.
    timer1_ = new QTimer(this);
    timer1_->setObjectName(QStringLiteral("Timer1"));
    timer1_->setInterval(400);
    connect(timer1_, &QTimer::timeout, this, [this] {
        frameDark_ = !frameDark_;
        field_->update();
    });
    timer1_->start();

    refresh();
}

QWidget* FrmCol::field() const { return field_; }
QWidget* FrmCol::slider() const { return slider_; }

void FrmCol::Command3_Click()
{
    presets_ = !presets_;
    command3_->setText(presets_ ? QStringLiteral("&Selez.") : QStringLiteral("&Pronti"));
    slider_->setEnabled(!presets_);
    selectedCell_ = -1;
    if (presets_)
        DrawSafePicker();
    else
        DrawPicker();
}

void FrmCol::DrawPicker()
{
    picker_.drawField(fieldBuffer_);
    picker_.drawSlider(sliderBuffer_);
    field_->update();
    slider_->update();
}

void FrmCol::DrawSafePicker()
{
    field_->update();
}

void FrmCol::DrawSelFrame(QPainter& p)
{
    if (selectedCell_ < 0)
        return;
    const int preset = cmbPreset_->currentIndex();
    const QRect cell = gridCell(field_->rect(), gridColumns(preset), gridRows(preset), selectedCell_);
    p.save();
    p.setPen(QPen(frameDark_ ? Qt::black : Qt::white, 2));
    p.setBrush(Qt::NoBrush);
    p.drawRect(cell.adjusted(1, 1, -1, -1));
    p.restore();
}

void FrmCol::DrawMainFrame(QPainter& p)
{
    const QPoint at = picker_.fieldPosition();
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(frameDark_ ? Qt::black : Qt::white, 1.5));
    p.drawEllipse(QPointF(at), 5, 5);
    p.setPen(QPen(frameDark_ ? Qt::white : Qt::black, 1));
    p.drawEllipse(QPointF(at), 6.5, 6.5);
    p.restore();
}

void FrmCol::clickField(QPoint p)
{
    if (!presets_) {
        picker_.pickField(p);
        refresh();
        return;
    }
    if (!field_->rect().contains(p))
        return;
    const int preset = cmbPreset_->currentIndex();
    const int columns = gridColumns(preset), rows = gridRows(preset);
    for (int i = 0; i < columns * rows; ++i) {
        if (!gridCell(field_->rect(), columns, rows, i).contains(p))
            continue;
        selectedCell_ = i;
        if (preset == 0) {
            int r = 0, g = 0, b = 0;
            QString hex;
            long c = 0;
            GetSafeColor(i + 1, r, g, b, hex, c);
            picker_.setColour(std::uint32_t(c));
        } else if (picker_.custom()[std::size_t(i)] != kEmptyCustom) {
            picker_.setColour(picker_.custom()[std::size_t(i)]);
        }
        refresh();
        return;
    }
}

void FrmCol::clickSlider(int row)
{
    if (presets_)
        return;
    picker_.pickSlider(row);
    refresh();
}

void FrmCol::addCustom()
{
    selectedCell_ = addCustomColour(picker_.custom(), picker_.colour());
    if (!saveCustomColours(folder_, picker_.custom()))
        showMessage(QStringLiteral("Impossibile salvare i colori personalizzati in \"%1\".")
                        .arg(customColoursPath(folder_)));
    // The colour just added is shown where it went.
    if (cmbPreset_->currentIndex() != 1) {
        const QSignalBlocker block(cmbPreset_);
        cmbPreset_->setCurrentIndex(1);
    }
    if (!presets_) {
        const int cell = selectedCell_;
        Command3_Click();
        selectedCell_ = cell;
    }
    field_->update();
}

void FrmCol::refresh(QLineEdit* skip)
{
    const std::pair<QLineEdit*, int> values[] = {
        {txtH_, picker_.hueBox()},  {txtS_, picker_.saturationBox()}, {txtB_, picker_.brightnessBox()},
        {text1_, picker_.red()},    {text2_, picker_.green()},         {text3_, picker_.blue()}};
    for (const auto& [edit, v] : values) {
        // The box being typed into keeps what the user typed.
        if (edit == skip)
            continue;
        const QSignalBlocker block(edit);
        edit->setText(QString::number(v));
    }
    QString hex;
    GetHexVal(picker_.red(), picker_.green(), picker_.blue(), hex);
    status_[0]->setText(QStringLiteral("R: ") + QString::number(picker_.red()));
    status_[1]->setText(QStringLiteral("G: ") + QString::number(picker_.green()));
    status_[2]->setText(QStringLiteral("B: ") + QString::number(picker_.blue()));
    status_[3]->setText(QStringLiteral("Hex: #") + hex);
    lblSelColor_->setStyleSheet(swatchStyle(picker_.colour()));
    lblADDColor_->setStyleSheet(swatchStyle(picker_.colour()));
    if (presets_)
        DrawSafePicker();
    else
        DrawPicker();
}

void FrmCol::boxEdited(Box box, QLineEdit* edit, bool final)
{
    if (checking_)
        return;
    checking_ = true;
    const auto message = picker_.enterBox(box, edit->text(), final);
    if (message) {
        showMessage(*message);
        // The box goes back to the value it stood for.
        const int back[] = {picker_.hueBox(), picker_.saturationBox(), picker_.brightnessBox(),
                            picker_.red(),    picker_.green(),         picker_.blue()};
        const QSignalBlocker block(edit);
        edit->setText(QString::number(back[int(box)]));
        edit->setFocus();
        edit->selectAll();
        refused_ = edit;
    } else if (final) {
        refused_ = nullptr;
    }
    checking_ = false;
    if (!message)
        refresh(final ? nullptr : edit);
}

void FrmCol::accept()
{
    if (refused_ && refused_->hasFocus()) {
        refused_ = nullptr;
        return;
    }
    QDialog::accept();
}

void FrmCol::showMessage(const QString& text)
{
    if (messages_)
        messages_->mostraMsg(QStringLiteral("Errore"), text, 0, 3);
    else
        QMessageBox::warning(this, QStringLiteral("Errore"), text);
}

}  // namespace tornelia::colour

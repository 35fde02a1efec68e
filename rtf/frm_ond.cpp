#include "rtf/frm_ond.h"

#include "controls/editor_view.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QVBoxLayout>

#include <limits>

namespace tornelia {

namespace {

// The leading number of a text, as a 16-bit integer: "12 px" reads 12, a
// text without a number reads 0. Out of range is no number at all.
std::optional<int> leadingNumber(const QString& text)
{
    static const QRegularExpression number(QStringLiteral("^\\s*([-+]?\\d+(?:[.,]\\d*)?)"));
    const QRegularExpressionMatch m = number.match(text);
    if (!m.hasMatch())
        return 0;
    QString digits = m.captured(1);
    digits.replace(u',', u'.');
    bool ok = false;
    const double v = digits.toDouble(&ok);
    if (!ok || v < std::numeric_limits<short>::min() || v > std::numeric_limits<short>::max())
        return std::nullopt;
    return int(v);
}

}  // namespace

RippleWaves::RippleWaves(RichTextSurface& testo, RichTextSurface& preview, MessagePort& messages,
                         std::function<void()> beforeChange)
    : preview_(preview), messages_(messages), main_(messages), sample_(messages),
      beforeChange_(std::move(beforeChange))
{
    main_.AssignControls(&testo, nullptr);
    sample_.AssignControls(&preview_, nullptr);
    for (int i = 0; i < 3; ++i)
        tx_.at(size_t(i)) = QString::number(start(i));
    preview_.setTextRTF(sampleRtf());
}

QString RippleWaves::sampleRtf()
{
    return QStringLiteral("{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1040{\\fonttbl{\\f0\\fswiss\\fcharset0 "
                          "Tahoma;}}\r\n\\viewkind4\\uc1\\pard\\lang1040\\f0\\fs24 Testo normale\\par\r\n}\r\n");
}

QString RippleWaves::previewText()
{
    return QStringLiteral("Niente\r\nGuarda l'effetto su questo testo\r\nNiente");
}

int RippleWaves::minimum(int field)
{
    return field == ValPartenza ? -20 : field == LunghOnde ? 1 : 0;
}

int RippleWaves::maximum(int field)
{
    return field == LunghOnde ? 10 : 20;
}

int RippleWaves::start(int field)
{
    return field == Ampiezza ? 6 : field == LunghOnde ? 2 : 0;
}

bool RippleWaves::readFields()
{
    // The amplitude must be a whole number; the others read what number
    // they start with.
    bool ok = false;
    const int amplitude = tx_[Ampiezza].trimmed().toInt(&ok);
    const std::optional<int> value = leadingNumber(tx_[ValPartenza]);
    const std::optional<int> step = leadingNumber(tx_[LunghOnde]);
    if (!ok || amplitude < std::numeric_limits<short>::min() || amplitude > std::numeric_limits<short>::max() ||
        !value || !step) {
        messages_.mostraMsg(QStringLiteral("Errore valore"), QStringLiteral("Inserire un valore valido!"), 0, 3);
        return false;
    }
    amplitude_ = amplitude;
    value_ = *value;
    step_ = *step;
    return true;
}

void RippleWaves::run(ClsRTFFontLooks& looks, int option)
{
    // The wave's end value is the engine's to keep; each run starts from
    // the number that was read.
    int value = value_;
    switch (option) {
    case Caos: looks.Ransom(0); break;
    case OndePosizione: looks.RippleEngine(0, amplitude_, true, value, step_); break;
    case OndeDimensioni: looks.RippleEngine(1, amplitude_, true, value, step_); break;
    default: break;
    }
}

bool RippleWaves::chooseOption(int option)
{
    if (option < 0 || option > 2)
        return false;
    option_ = option;
    if (!readFields())
        return false;
    preview_.setText(previewText());
    preview_.setSelStart(0);
    preview_.setSelLength(preview_.length());
    preview_.setSelFontName(QStringLiteral("Tahoma"));
    preview_.setSelFontSize(14);
    preview_.Find(QStringLiteral("Guarda l'effetto su questo testo"));
    run(sample_, option);
    // The selection's colour would hide the very effect being shown.
    preview_.setSelLength(0);
    return true;
}

void RippleWaves::scroll(int field, int value)
{
    if (field < 0 || field > 2)
        return;
    tx_.at(size_t(field)) = QString::number(value);
    if (option_ >= 0)
        chooseOption(option_);
}

void RippleWaves::apply()
{
    long first, last;
    if (option_ < 0 || !main_.SelEdges(first, last))
        return;
    if (beforeChange_)
        beforeChange_();
    run(main_, option_);
}

FrmOnd::FrmOnd(RichTextSurface& testo, MessagePort& messages, std::function<void()> beforeChange, QWidget* parent)
    : QDialog(parent), preview_(std::make_unique<RichTextSurface>())
{
    setObjectName(QStringLiteral("frmOnd"));
    setWindowTitle(QStringLiteral("Moto ondoso"));
    logic_ = std::make_unique<RippleWaves>(testo, *preview_, messages, std::move(beforeChange));

    auto* options = new QGroupBox(QStringLiteral("Effetto"), this);
    auto* optionColumn = new QVBoxLayout(options);
    auto* group = new QButtonGroup(this);
    const QStringList captions = {QStringLiteral("Caos"), QStringLiteral("Onde posizione"),
                                  QStringLiteral("Onde dimensioni")};
    for (int i = 0; i < 3; ++i) {
        op_[i] = new QRadioButton(captions.at(i), options);
        op_[i]->setObjectName(QStringLiteral("op%1").arg(i));
        group->addButton(op_[i], i);
        optionColumn->addWidget(op_[i]);
    }
    optionColumn->addStretch(1);
    connect(group, &QButtonGroup::idClicked, this, &FrmOnd::chooseOption);

    auto* values = new QGroupBox(QStringLiteral("Valori"), this);
    auto* grid = new QGridLayout(values);
    const QStringList labels = {QStringLiteral("Ampiezza:"), QStringLiteral("Lungh. onde:"),
                                QStringLiteral("Val. partenza:")};
    for (int i = 0; i < 3; ++i) {
        tx_[i] = new QLineEdit(logic_->field(i), values);
        tx_[i]->setObjectName(QStringLiteral("tx%1").arg(i));
        tx_[i]->setMaximumWidth(60);
        tx_[i]->setAlignment(Qt::AlignRight);
        vs_[i] = new QScrollBar(Qt::Vertical, values);
        vs_[i]->setObjectName(QStringLiteral("vs%1").arg(i));
        vs_[i]->setRange(RippleWaves::minimum(i), RippleWaves::maximum(i));
        vs_[i]->setValue(RippleWaves::start(i));
        // Up raises the number, as on a spin button.
        vs_[i]->setInvertedAppearance(true);
        vs_[i]->setInvertedControls(true);
        vs_[i]->setFixedHeight(tx_[i]->sizeHint().height());
        grid->addWidget(new QLabel(labels.at(i), values), i, 0);
        grid->addWidget(tx_[i], i, 1);
        grid->addWidget(vs_[i], i, 2);
        connect(tx_[i], &QLineEdit::textEdited, this, [this, i](const QString& t) { logic_->setField(i, t); });
        connect(vs_[i], &QScrollBar::valueChanged, this, [this, i](int v) {
            logic_->scroll(i, v);
            tx_[i]->setText(logic_->field(i));
        });
    }
    grid->setColumnStretch(3, 1);

    auto* warning = new QLabel(QStringLiteral("ATTENZIONE: non applicare insieme effetti onde e caos!"), this);
    warning->setStyleSheet(QStringLiteral("color: #a00000;"));

    t_ = new EditorView(*preview_, this);
    t_->setObjectName(QStringLiteral("t"));
    t_->setMinimumHeight(110);
    t_->setFocusPolicy(Qt::NoFocus);

    u_[0] = new QPushButton(QStringLiteral("&Applica"), this);
    u_[1] = new QPushButton(QStringLiteral("&Chiudi"), this);
    u_[0]->setDefault(true);
    connect(u_[0], &QPushButton::clicked, this, [this] {
        logic_->apply();
        close();
    });
    connect(u_[1], &QPushButton::clicked, this, &QDialog::close);

    auto* top = new QHBoxLayout;
    top->addWidget(options);
    top->addWidget(values, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(u_[0]);
    buttons->addWidget(u_[1]);
    auto* column = new QVBoxLayout(this);
    column->addLayout(top);
    column->addWidget(warning);
    column->addWidget(new QLabel(QStringLiteral("Anteprima:"), this));
    column->addWidget(t_, 1);
    column->addLayout(buttons);
    resize(460, 380);
}

FrmOnd::~FrmOnd()
{
    // The view shows the sample: it goes before the sample does.
    delete t_;
}

void FrmOnd::chooseOption(int option)
{
    logic_->chooseOption(option);
}

}  // namespace tornelia

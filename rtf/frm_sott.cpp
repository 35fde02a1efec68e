#include "rtf/frm_sott.h"

#include "controls/editor_view.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace tornelia {

SpecialUnderline::SpecialUnderline(RichTextSurface& testo, RichTextSurface& preview, MessagePort& messages,
                                   std::function<void()> beforeChange)
    : preview_(preview), main_(messages), previewEngine_(messages), beforeChange_(std::move(beforeChange))
{
    main_.AssignControls(&testo, nullptr);
    previewEngine_.AssignControls(&preview_, nullptr);
    resetPreview();
}

QStringList SpecialUnderline::captions()
{
    return {QStringLiteral("&Normale"),      QStringLiteral("&Punti"),   QStringLiteral("&Trattino"),
            QStringLiteral("Tratto punto"),  QStringLiteral("Tratto punto punto"),
            QStringLiteral("&Grossa"),       QStringLiteral("&Ondine"),  QStringLiteral("&Doppia"),
            QStringLiteral("Nessuna")};
}

void SpecialUnderline::runSetter(ClsExtendedRTF& engine, int index)
{
    switch (index) {
    // "&Normale" is the underline of words only, blanks left bare.
    case 0: engine.setSelUlWord(true); break;
    case 1: engine.setSelDot(true); break;
    case 2: engine.setSelDash(true); break;
    case 3: engine.setSelDashd(true); break;
    case 4: engine.setSelDashdd(true); break;
    case 5: engine.setSelThick(true); break;
    case 6: engine.setSelWave(true); break;
    case 7: engine.setSelUlDouble(true); break;
    default: break;
    }
}

void SpecialUnderline::resetPreview()
{
    preview_.setText(sample());
    preview_.setSelStart(0);
    preview_.setSelLength(0);
}

void SpecialUnderline::choose(int index)
{
    if (index < 0 || index > kNone)
        return;
    chosen_ = index;
    // Each style is shown on its own: the setters toggle, and the sample
    // would otherwise pile one style on the other.
    resetPreview();
    runSetter(previewEngine_, index);
}

void SpecialUnderline::apply()
{
    if (chosen_ == kNone)
        return;
    if (beforeChange_)
        beforeChange_();
    runSetter(main_, chosen_);
}

FrmSott::FrmSott(RichTextSurface& testo, MessagePort& messages, std::function<void()> beforeChange,
                 QWidget* parent)
    : QDialog(parent), preview_(std::make_unique<RichTextSurface>())
{
    setObjectName(QStringLiteral("frmSott"));
    setWindowTitle(QStringLiteral("Sottolineatura speciale"));
    preview_->setDefaultFormat(QStringLiteral("Tahoma"), 14);
    logic_ = std::make_unique<SpecialUnderline>(testo, *preview_, messages, std::move(beforeChange));

    auto* group = new QGroupBox(QStringLiteral("Tipo di sottolineatura"), this);
    auto* grid = new QGridLayout(group);
    auto* buttons = new QButtonGroup(this);
    const QStringList captions = SpecialUnderline::captions();
    for (int i = 0; i < 9; ++i) {
        o_[i] = new QRadioButton(captions.at(i), group);
        o_[i]->setObjectName(QStringLiteral("o%1").arg(i));
        buttons->addButton(o_[i], i);
        grid->addWidget(o_[i], i % 5, i / 5);
    }
    o_[SpecialUnderline::kNone]->setChecked(true);
    connect(buttons, &QButtonGroup::idClicked, this, [this](int id) { logic_->choose(id); });

    t_ = new EditorView(*preview_, this);
    t_->setObjectName(QStringLiteral("t"));
    t_->setFixedHeight(60);
    t_->setFocusPolicy(Qt::NoFocus);

    auto* note = new QLabel(QStringLiteral("N.B. Alcuni tipi di sottolineatura potrebbero non essere compatibili "
                                           "con alcuni sistemi operativi."),
                            this);
    note->setWordWrap(true);

    command1_ = new QPushButton(QStringLiteral("&Applica"), this);
    command1_->setObjectName(QStringLiteral("Command1"));
    command1_->setDefault(true);
    auto* close = new QPushButton(QStringLiteral("&Chiudi"), this);
    connect(command1_, &QPushButton::clicked, this, [this] { logic_->apply(); });
    connect(close, &QPushButton::clicked, this, &QDialog::close);

    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(command1_);
    row->addWidget(close);
    auto* column = new QVBoxLayout(this);
    column->addWidget(group);
    column->addWidget(new QLabel(QStringLiteral("Anteprima:"), this));
    column->addWidget(t_);
    column->addWidget(note);
    column->addLayout(row);
    resize(420, 340);
}

FrmSott::~FrmSott()
{
    // The view shows the sample: it goes before the sample does.
    delete t_;
}

}  // namespace tornelia

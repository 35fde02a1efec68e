#include "print/frm_imp.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace tornelia {

// The sheet drawn to scale, with the text frame and its label.
class SheetPreview : public QWidget {
public:
    explicit SheetPreview(const PageSetupModel& model, QWidget* parent = nullptr)
        : QWidget(parent), model_(model)
    {
        setMinimumSize(250, 250);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter p(this);
        p.fillRect(rect(), palette().window());
        const PageSetupModel::Preview pv = model_.preview();
        // Both orientations at one scale, so that turning the sheet shows.
        const double longSide = std::max(pv.sheet.width(), pv.sheet.height());
        const double scale = (std::min(width(), height()) - 24) / longSide;
        const QPointF origin((width() - pv.sheet.width() * scale) / 2, (height() - pv.sheet.height() * scale) / 2);
        auto toWidget = [&](const QRectF& r) {
            return QRectF(origin.x() + r.x() * scale, origin.y() + r.y() * scale, r.width() * scale,
                          r.height() * scale);
        };
        const QRectF sheet = toWidget(pv.sheet);
        p.fillRect(sheet.translated(3, 3), QColor(128, 128, 128));
        p.fillRect(sheet, Qt::white);
        p.setPen(Qt::black);
        p.drawRect(sheet);
        const QRectF frame = toWidget(pv.frame).intersected(sheet);
        if (frame.isEmpty())
            return;
        p.setPen(QPen(QColor(0, 0, 160), 1, Qt::DashLine));
        p.drawRect(frame);
        const QString label = QStringLiteral(" Testo ");
        const QFontMetrics fm(font());
        const double lw = fm.horizontalAdvance(label);
        const QRectF l(frame.left() + (frame.width() - lw) / 2, frame.center().y() - fm.height() / 2.0, lw,
                       fm.height());
        p.fillRect(l, QColor(0, 0, 160));
        p.setPen(Qt::white);
        p.drawText(l, Qt::AlignCenter, label);
    }

private:
    const PageSetupModel& model_;
};

FrmImp::FrmImp(SettingsStore& settings, MessagePort& messages, QWidget* parent)
    : QDialog(parent), model_(settings, messages)
{
    setObjectName(QStringLiteral("frmImp"));
    setWindowTitle(QStringLiteral("Imposta pagina"));
    setAttribute(Qt::WA_DeleteOnClose);

    auto* margins = new QGroupBox(QStringLiteral("Margini (cm.)"));
    auto* grid = new QGridLayout(margins);
    const QString captions[] = {QStringLiteral("Superiore:"), QStringLiteral("Inferiore:"),
                                QStringLiteral("Sinistro:"), QStringLiteral("Destro:")};
    const QString names[] = {QStringLiteral("Sup"), QStringLiteral("inf"), QStringLiteral("sin"),
                             QStringLiteral("des")};
    for (int k = 0; k < 4; ++k) {
        auto* field = new QLineEdit;
        field->setObjectName(names[k]);
        field->setMaximumWidth(70);
        field->setAlignment(Qt::AlignRight);
        auto* p = new QToolButton;
        p->setObjectName(QStringLiteral("p%1").arg(k));
        p->setText(QStringLiteral("+"));
        p->setAutoRepeat(true);
        auto* m = new QToolButton;
        m->setObjectName(QStringLiteral("m%1").arg(k));
        m->setText(QStringLiteral("-"));
        m->setAutoRepeat(true);
        auto* label = new QLabel(captions[k]);
        label->setBuddy(field);
        grid->addWidget(label, k, 0);
        grid->addWidget(field, k, 1);
        grid->addWidget(p, k, 2);
        grid->addWidget(m, k, 3);
        fields_[k] = field;
        connect(field, &QLineEdit::textChanged, this, [this, k] { fieldEdited(k); });
        connect(field, &QLineEdit::editingFinished, this, [this] {
            model_.FormattaMargini();
            showModel();
        });
        connect(p, &QToolButton::clicked, this, [this, k] {
            model_.plus(k);
            showModel();
        });
        connect(m, &QToolButton::clicked, this, [this, k] {
            model_.minus(k);
            showModel();
        });
    }

    auto* orientation = new QGroupBox(QStringLiteral("Orientamento"));
    auto* ol = new QVBoxLayout(orientation);
    option1_ = new QRadioButton(QStringLiteral("Verticale"));
    option1_->setObjectName(QStringLiteral("Option1"));
    option2_ = new QRadioButton(QStringLiteral("Orizzontale"));
    option2_->setObjectName(QStringLiteral("Option2"));
    ol->addWidget(option1_);
    ol->addWidget(option2_);
    connect(option1_, &QRadioButton::toggled, this, [this](bool on) {
        if (on && !showing_) {
            model_.setOrie(1);
            showModel();
        }
    });
    connect(option2_, &QRadioButton::toggled, this, [this](bool on) {
        if (on && !showing_) {
            model_.setOrie(2);
            showModel();
        }
    });

    pS_ = new SheetPreview(model_);
    pS_->setObjectName(QStringLiteral("pS"));

    auto* left = new QVBoxLayout;
    left->addWidget(margins);
    left->addWidget(orientation);
    left->addStretch(1);

    auto* buttons = new QDialogButtonBox;
    QPushButton* u1 = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
    u1->setObjectName(QStringLiteral("u1"));
    u1->setDefault(true);
    QPushButton* u2 = buttons->addButton(QStringLiteral("Annulla"), QDialogButtonBox::RejectRole);
    u2->setObjectName(QStringLiteral("u2"));
    connect(u1, &QPushButton::clicked, this, &FrmImp::confirm);
    connect(u2, &QPushButton::clicked, this, &FrmImp::cancel);

    auto* top = new QHBoxLayout;
    top->addLayout(left);
    top->addWidget(pS_, 1);
    auto* all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addWidget(buttons);

    model_.Carica();
    showModel();
}

FrmImp::~FrmImp()
{
    // A field that loses the focus as the window goes would still reach the
    // model, which is gone by then.
    for (QLineEdit* f : fields_)
        f->disconnect(this);
}

void FrmImp::showModel()
{
    showing_ = true;
    for (int k = 0; k < 4; ++k) {
        if (fields_[k]->text() != model_.field(k))
            fields_[k]->setText(model_.field(k));
    }
    option1_->setChecked(model_.Orie() == 1);
    option2_->setChecked(model_.Orie() == 2);
    showing_ = false;
    pS_->update();
}

void FrmImp::fieldEdited(int k)
{
    // Typing is free; the text is normalised when the field is left.
    model_.setField(k, fields_[k]->text());
    pS_->update();
}

void FrmImp::confirm()
{
    for (int k = 0; k < 4; ++k)
        model_.setField(k, fields_[k]->text());
    PageSettings page;
    if (!model_.confirm(page))
        return;
    emit confirmed(page);
    accept();
}

}  // namespace tornelia

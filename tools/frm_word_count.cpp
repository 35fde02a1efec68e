#include "tools/frm_word_count.h"

#include "core/rich_text_surface.h"
#include "tools/frm_tools_common.h"

#include <QContextMenuEvent>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace tornelia {

namespace {
// Often enough to follow typing, rarely enough that a long document is not
// split and measured all the time.
constexpr int kRefreshMs = 1000;
}

St::St(RichTextSurface& testo, QWidget* parent) : QDialog(parent), testo_(testo)
{
    setWindowTitle(QStringLiteral("Statistiche documento"));

    auto* caption = new QLabel(QStringLiteral("Conteggio parole"), this);
    QFont bold = caption->font();
    bold.setBold(true);
    caption->setFont(bold);

    auto* frame = new QFrame(this);
    frame->setFrameShape(QFrame::StyledPanel);
    auto* grid = new QGridLayout(frame);
    auto value = [this](const char* name) {
        auto* l = new QLabel(QStringLiteral("0"), this);
        l->setObjectName(QString::fromLatin1(name));
        l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        l->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("0.000.000.000")));
        return l;
    };
    parole_ = value("lblParole");
    caratteri_ = value("lblCaratteri");
    linee_ = value("lblLinee");
    grid->addWidget(new QLabel(QStringLiteral("Parole:"), this), 0, 0);
    grid->addWidget(parole_, 0, 1);
    grid->addWidget(new QLabel(QStringLiteral("Caratteri totali:"), this), 1, 0);
    grid->addWidget(caratteri_, 1, 1);
    grid->addWidget(new QLabel(QStringLiteral("Linee:"), this), 2, 0);
    grid->addWidget(linee_, 2, 1);

    auto* chiudi = new QPushButton(QStringLiteral("&Chiudi"), this);
    connect(chiudi, &QPushButton::clicked, this, &QDialog::close);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(chiudi);

    auto* column = new QVBoxLayout(this);
    column->addWidget(caption);
    column->addWidget(frame);
    column->addLayout(buttons);
    layout()->setSizeConstraint(QLayout::SetFixedSize);

    timer1_ = new QTimer(this);
    timer1_->setObjectName(QStringLiteral("Timer1"));
    timer1_->setInterval(kRefreshMs);
    // Hidden by "Nascondi", the window stays alive but does not count.
    connect(timer1_, &QTimer::timeout, this, [this] {
        if (isVisible())
            aggiorna();
    });
    timer1_->start();
    aggiorna();
}

void St::aggiorna()
{
    const DocStats stats = contaStatistiche(testo_);
    parole_->setText(formatFigure(stats.parole));
    caratteri_->setText(formatFigure(stats.caratteri));
    linee_->setText(formatFigure(stats.linee));
}

void St::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu mnuNasc(this);
    QAction* mnuu = mnuNasc.addAction(QStringLiteral("&Nascondi"));
    if (mnuNasc.exec(event->globalPos()) == mnuu)
        hide();
}

void CpAr(RichTextSurface& testo, QWidget* owner)
{
    St* st = showSingleWindow<St>(owner, QStringLiteral("st"), [&] { return new St(testo, owner); });
    st->aggiorna();
}

}  // namespace tornelia

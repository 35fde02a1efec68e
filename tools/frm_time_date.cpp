#include "tools/frm_time_date.h"

#include "tools/frm_tools_common.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace tornelia {

FrmTimeDate::FrmTimeDate(RichTextSurface& testo, UndoStore* undo, std::function<QDateTime()> now, QWidget* parent)
    : QDialog(parent), testo_(testo), undo_(undo), now_(std::move(now))
{
    setWindowTitle(QStringLiteral("Data e ora"));

    lstDates_ = new QListWidget(this);
    lstDates_->setObjectName(QStringLiteral("lstDates"));
    const QStringList entries = dateTimeEntries(now_());
    lstDates_->addItems(entries);
    // The empty line only parts the dates from the times.
    const int blank = int(dateTimeFormats().indexOf(QStringLiteral(" ")));
    if (QListWidgetItem* item = lstDates_->item(blank))
        item->setFlags(Qt::NoItemFlags);

    auto* sampleBox = new QGroupBox(QStringLiteral("Esempio"), this);
    lblSample_ = new QLabel(sampleBox);
    lblSample_->setObjectName(QStringLiteral("lblSample"));
    lblSample_->setMinimumWidth(220);
    lblSample_->setTextInteractionFlags(Qt::NoTextInteraction);
    (new QVBoxLayout(sampleBox))->addWidget(lblSample_);

    cmdInsert_ = new QPushButton(QStringLiteral("&Inserisci"), this);
    cmdInsert_->setObjectName(QStringLiteral("cmdInsert"));
    cmdInsert_->setDefault(true);

    auto* customLabel = new QLabel(QStringLiteral("Inserire formato personalizzato:"), this);
    txtCustom_ = new QLineEdit(this);
    txtCustom_->setObjectName(QStringLiteral("txtCustom"));
    customLabel->setBuddy(txtCustom_);
    auto* example = new QLabel(QStringLiteral("Es: hh.nn.ss"), this);
    example->setEnabled(false);
    cmdinsCusFor_ = new QPushButton(QStringLiteral("Inserisci &personalizzato"), this);
    cmdinsCusFor_->setObjectName(QStringLiteral("cmdinsCusFor"));
    auto* chiudi = new QPushButton(QStringLiteral("&Chiudi"), this);

    connect(lstDates_, &QListWidget::currentTextChanged, lblSample_, &QLabel::setText);
    connect(lstDates_, &QListWidget::itemDoubleClicked, this, &FrmTimeDate::insertEntry);
    connect(txtCustom_, &QLineEdit::textEdited, this,
            [this](const QString& f) { lblSample_->setText(formatDateTime(now_(), f)); });
    connect(cmdInsert_, &QPushButton::clicked, this, &FrmTimeDate::insertEntry);
    connect(cmdinsCusFor_, &QPushButton::clicked, this, &FrmTimeDate::insertCustom);
    connect(chiudi, &QPushButton::clicked, this, &QDialog::close);

    auto* side = new QVBoxLayout;
    side->addWidget(sampleBox);
    side->addWidget(cmdInsert_);
    side->addSpacing(12);
    side->addWidget(customLabel);
    side->addWidget(txtCustom_);
    side->addWidget(example);
    side->addWidget(cmdinsCusFor_);
    side->addStretch(1);
    side->addWidget(chiudi);
    auto* row = new QHBoxLayout(this);
    row->addWidget(lstDates_, 1);
    row->addLayout(side);
    lstDates_->setMinimumWidth(200);
    lstDates_->setCurrentRow(0);
    resize(480, 300);
}

void FrmTimeDate::insertEntry()
{
    const QListWidgetItem* item = lstDates_->currentItem();
    const int row = lstDates_->currentRow();
    if (!item || row < 0)
        return;
    // The entry is formatted again, so a window left open inserts the time
    // of the click, not the time it was opened.
    const QString format = dateTimeFormats().value(row);
    if (format.trimmed().isEmpty())
        return;
    const QString text = formatDateTime(now_(), format);
    lblSample_->setText(text);
    inserisciTesto(testo_, undo_, text);
}

void FrmTimeDate::insertCustom()
{
    const QString text = formatDateTime(now_(), txtCustom_->text());
    lblSample_->setText(text);
    inserisciTesto(testo_, undo_, text);
}

void showFrmTimeDate(RichTextSurface& testo, UndoStore* undo, QWidget* owner)
{
    showSingleWindow<FrmTimeDate>(owner, QStringLiteral("frmTimeDate"), [&] {
        return new FrmTimeDate(testo, undo, [] { return QDateTime::currentDateTime(); }, owner);
    });
}

}  // namespace tornelia

#include "tools/frm_spell.h"

#include "core/ports.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTextBlock>
#include <QTextBoundaryFinder>
#include <QTextDocument>
#include <QTextEdit>
#include <QVBoxLayout>

namespace tornelia {

namespace {
const QString kTitle = QStringLiteral("Correzione testo");
// Around a word in a very long sentence only this much is shown each side.
constexpr int kContextChars = 150;
}  // namespace

SpellWalk::SpellWalk(QTextDocument* doc, SpellChecker& checker, int start)
    : doc_(doc), checker_(checker), pos_(std::max(0, start)), origin_(pos_)
{
}

std::optional<WordSpan> SpellWalk::next()
{
    for (;;) {
        const int limit = wrapped_ ? origin_ : doc_->characterCount();
        for (QTextBlock b = doc_->findBlock(pos_); b.isValid() && b.position() < limit; b = b.next()) {
            const QString text = b.text();
            for (const WordSpan& w : wordsOf(text)) {
                const int at = b.position() + w.start;
                if (at < pos_)
                    continue;
                if (wrapped_ && at >= origin_)
                    return std::nullopt;
                if (!checker_.isCorrect(text.mid(w.start, w.length))) {
                    pos_ = at;
                    return WordSpan{at, w.length};
                }
            }
        }
        if (wrapped_ || origin_ == 0)
            return std::nullopt;
        wrapped_ = true;
        pos_ = 0;
    }
}

void SpellWalk::replaced(int at, int oldLength, int newLength)
{
    if (at < origin_)
        origin_ += newLength - oldLength;
    pos_ = at + newLength;
}

void SpellWalk::replacedAll(const std::vector<int>& positions, const WordSpan& current, int newLength)
{
    const int delta = newLength - current.length;
    int before = 0;
    int beforeOrigin = 0;
    for (int p : positions) {
        before += p < current.start ? 1 : 0;
        beforeOrigin += p < origin_ ? 1 : 0;
    }
    origin_ += beforeOrigin * delta;
    pos_ = current.start + before * delta + newLength;
}

WordInSentence sentenceAround(const QString& paragraph, const WordSpan& word)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Sentence, paragraph);
    finder.setPosition(word.start);
    qsizetype from = finder.isAtBoundary() ? word.start : finder.toPreviousBoundary();
    finder.setPosition(word.start + word.length);
    qsizetype to = finder.isAtBoundary() ? word.start + word.length : finder.toNextBoundary();
    if (from < 0)
        from = 0;
    if (to < 0)
        to = paragraph.size();
    from = std::max<qsizetype>(from, word.start - kContextChars);
    to = std::min<qsizetype>(to, word.start + word.length + kContextChars);
    WordInSentence out;
    out.sentence = paragraph.mid(from, to - from).trimmed();
    // Leading blanks went with trimmed(): count them to keep the word in place.
    qsizetype skipped = 0;
    while (from + skipped < to && paragraph.at(from + skipped).isSpace())
        ++skipped;
    out.start = int(word.start - from - skipped);
    out.length = word.length;
    return out;
}

FrmSpell::FrmSpell(SpellingSession& session, QWidget* parent)
    : QDialog(parent),
      session_(session),
      walk_(session.testo().document(), session.checker(), session.testo().cursor().selectionStart())
{
    setObjectName(QStringLiteral("frmSpell"));
    setWindowTitle(kTitle);

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(QStringLiteral("Non nel dizionario:")), 0, 0, 1, 2);
    context_ = new QTextEdit;
    context_->setObjectName(QStringLiteral("txtContesto"));
    context_->setReadOnly(true);
    context_->setFixedHeight(70);
    grid->addWidget(context_, 1, 0);

    auto* cambiaIn = new QLabel(QStringLiteral("Cambia in:"));
    changeTo_ = new QLineEdit;
    changeTo_->setObjectName(QStringLiteral("txtCambia"));
    cambiaIn->setBuddy(changeTo_);
    grid->addWidget(cambiaIn, 2, 0, 1, 2);
    grid->addWidget(changeTo_, 3, 0);

    grid->addWidget(new QLabel(QStringLiteral("Suggerimenti:")), 4, 0);
    suggestions_ = new QListWidget;
    suggestions_->setObjectName(QStringLiteral("lstSuggerimenti"));
    grid->addWidget(suggestions_, 5, 0);
    connect(suggestions_, &QListWidget::currentTextChanged, this, [this](const QString& s) {
        if (!s.isEmpty())
            changeTo_->setText(s);
    });
    connect(suggestions_, &QListWidget::itemDoubleClicked, this, [this] { cambia(); });

    auto* side = new QVBoxLayout;
    auto addButton = [&](const QString& caption, void (FrmSpell::*slot)()) {
        auto* b = new QPushButton(caption);
        connect(b, &QPushButton::clicked, this, slot);
        side->addWidget(b);
        buttons_.push_back(b);
        return b;
    };
    addButton(QStringLiteral("Ignora"), &FrmSpell::ignora);
    addButton(QStringLiteral("Ignora tutto"), &FrmSpell::ignoraTutto);
    addButton(QStringLiteral("Aggiungi al dizionario"), &FrmSpell::aggiungi);
    side->addSpacing(8);
    addButton(QStringLiteral("Cambia"), &FrmSpell::cambia)->setDefault(true);
    addButton(QStringLiteral("Cambia tutto"), &FrmSpell::cambiaTutto);
    side->addStretch();
    auto* chiudi = new QPushButton(QStringLiteral("Chiudi"));
    connect(chiudi, &QPushButton::clicked, this, &QDialog::reject);
    side->addWidget(chiudi);
    buttons_.push_back(chiudi);
    grid->addLayout(side, 1, 1, 5, 1);

    auto* languageRow = new QHBoxLayout;
    auto* languageLabel = new QLabel(QStringLiteral("Lingua del dizionario:"));
    language_ = new QComboBox;
    language_->setObjectName(QStringLiteral("cmbLingua"));
    languageLabel->setBuddy(language_);
    for (const QString& code : session_.checker().languages()) {
        language_->addItem(SpellChecker::languageName(code), code);
        if (code == session_.checker().language())
            language_->setCurrentIndex(language_->count() - 1);
    }
    connect(language_, &QComboBox::activated, this, &FrmSpell::lingua);
    languageRow->addWidget(languageLabel);
    languageRow->addWidget(language_, 1);
    grid->addLayout(languageRow, 6, 0, 1, 2);
    setLayout(grid);
    resize(520, 340);
}

QPushButton* FrmSpell::button(const QString& caption) const
{
    for (QPushButton* b : buttons_)
        if (b->text() == caption)
            return b;
    return nullptr;
}

bool FrmSpell::start()
{
    if (!session_.checker().ready()) {
        session_.messages().mostraMsg(kTitle,
                                      QStringLiteral("Nessun dizionario installato in %1.").arg(kDictionaryFolder), 0, 3);
        return false;
    }
    const std::optional<WordSpan> w = walk_.next();
    if (!w) {
        session_.messages().mostraMsg(kTitle, kSpellDone, 0, 1);
        return false;
    }
    showWord(*w);
    return true;
}

void FrmSpell::advance()
{
    const std::optional<WordSpan> w = walk_.next();
    if (!w) {
        complete();
        return;
    }
    showWord(*w);
}

void FrmSpell::complete()
{
    session_.messages().mostraMsg(kTitle, kSpellDone, 0, 1);
    accept();
}

void FrmSpell::showWord(const WordSpan& w)
{
    current_ = w;
    RichTextSurface& testo = session_.testo();
    const QTextBlock block = testo.document()->findBlock(w.start);
    const QString paragraph = block.text();
    const WordSpan inBlock{w.start - block.position(), w.length};
    word_ = paragraph.mid(inBlock.start, inBlock.length);

    const long from = testo.fromDocPos(w.start);
    testo.setSelStart(from);
    testo.setSelLength(testo.fromDocPos(w.start + w.length) - from);

    const WordInSentence s = sentenceAround(paragraph, inBlock);
    context_->setHtml(s.sentence.left(s.start).toHtmlEscaped() + QStringLiteral("<b><font color=\"#c00000\">")
                      + s.sentence.mid(s.start, s.length).toHtmlEscaped() + QStringLiteral("</font></b>")
                      + s.sentence.mid(s.start + s.length).toHtmlEscaped());

    suggestions_->clear();
    const QStringList list = session_.checker().suggestions(word_);
    if (list.isEmpty()) {
        suggestions_->addItem(QStringLiteral("(nessun suggerimento)"));
        suggestions_->item(0)->setFlags(Qt::NoItemFlags);
        changeTo_->setText(word_);
    } else {
        suggestions_->addItems(list);
        suggestions_->setCurrentRow(0);
        changeTo_->setText(list.first());
    }
    changeTo_->setFocus();
    changeTo_->selectAll();
}

void FrmSpell::cambia()
{
    const QString to = changeTo_->text();
    if (to == word_) {
        ignora();
        return;
    }
    session_.replace(current_.start, current_.length, to);
    walk_.replaced(current_.start, current_.length, int(to.size()));
    advance();
}

void FrmSpell::cambiaTutto()
{
    const QString to = changeTo_->text();
    if (to == word_) {
        ignoraTutto();
        return;
    }
    const std::vector<int> at = session_.replaceAll(word_, to);
    if (at.empty())
        walk_.replaced(current_.start, current_.length, int(to.size()));
    else
        walk_.replacedAll(at, current_, int(to.size()));
    advance();
}

void FrmSpell::ignora()
{
    walk_.skip(current_);
    advance();
}

void FrmSpell::ignoraTutto()
{
    session_.ignoreAll(word_);
    walk_.skip(current_);
    advance();
}

void FrmSpell::aggiungi()
{
    session_.addToDictionary(word_);
    walk_.skip(current_);
    advance();
}

void FrmSpell::lingua(int index)
{
    const QString code = language_->itemData(index).toString();
    if (!session_.chooseLanguage(code)) {
        session_.messages().mostraMsg(kTitle, QStringLiteral("Il dizionario \"%1\" non si può aprire.").arg(code), 0, 3);
        return;
    }
    // The word shown may be right in the new language: look again from it.
    walk_.skip(WordSpan{current_.start, 0});
    advance();
}

void showFrmSpell(SpellingSession& session, QWidget* owner)
{
    FrmSpell dialog(session, owner);
    if (dialog.start())
        dialog.exec();
}

}  // namespace tornelia

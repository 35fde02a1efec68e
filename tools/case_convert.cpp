#include "tools/case_convert.h"

#include "core/rich_text_surface.h"
#include "core/undo_store.h"

namespace tornelia {

QString capitalizeWords(const QString& text)
{
    QString out = text;
    bool inWord = false;
    for (qsizetype i = 0; i < out.size(); ++i) {
        const QChar c = out.at(i);
        if (c.isLetter()) {
            out[i] = inWord ? c.toLower() : c.toUpper();
            inWord = true;
        } else {
            inWord = c.isDigit() || c == QLatin1Char('\'') || c == QChar(0x2019);
        }
    }
    return out;
}

template <typename Convert>
void CaseConvert::convert(CaseScope scope, Convert conv)
{
    if (scope == CaseScope::TuttoDocumento) {
        testo_.setSelStart(0);
        testo_.setSelLength(testo_.length());
    }
    if (testo_.SelLength() == 0)
        return;
    const QString before = testo_.SelText();
    const QString after = conv(before);
    if (undo_)
        undo_->unDO();
    // Written even when nothing changes: the range becomes plain text
    // either way, and the person asked for it knowing that.
    const long start = testo_.SelStart();
    testo_.setSelText(after);
    testo_.setSelStart(start);
    testo_.setSelLength(after.size());
}

void CaseConvert::Maiu(CaseScope scope)
{
    convert(scope, [](const QString& s) { return s.toUpper(); });
}

void CaseConvert::minu(CaseScope scope)
{
    convert(scope, [](const QString& s) { return s.toLower(); });
}

void CaseConvert::cap(CaseScope scope)
{
    convert(scope, [](const QString& s) { return capitalizeWords(s); });
}

}  // namespace tornelia

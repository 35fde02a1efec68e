#pragma once

// "Maiuscolo - minuscolo": upper case, lower case and capitalised words,
// over the selection or the whole document. The text is replaced as plain
// text, so formats and pictures in the range are lost; the window warns.

#include <QString>

namespace tornelia {

class RichTextSurface;
class UndoStore;

enum class CaseScope { TuttoDocumento, TestoSelezionato };

// Each word's first letter upper case and the rest lower case. A word
// starts after anything that is not a letter, a digit or an apostrophe, so
// "l'albero" stays one word.
QString capitalizeWords(const QString& text);

class CaseConvert {
public:
    // undo may be null where there is no undo (a scratch surface).
    CaseConvert(RichTextSurface& testo, UndoStore* undo) : testo_(testo), undo_(undo) {}

    void Maiu(CaseScope scope);
    void minu(CaseScope scope);
    void cap(CaseScope scope);

private:
    template <typename Convert>
    void convert(CaseScope scope, Convert conv);

    RichTextSurface& testo_;
    UndoStore* undo_;
};

}  // namespace tornelia

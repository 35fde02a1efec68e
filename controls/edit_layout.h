#pragma once

class QTextBlock;
class QTextDocument;

// The layout of a document shown in an editor.
//
// Qt's layout places every paragraph again, down to the end of the
// document, after each edit, and in the page view lays out again every
// paragraph that crosses a sheet: a key costs more the longer the document.
// Most keys change one paragraph without changing its lines' number or
// height, and then nothing else moves: the editor's layout lays out only
// that paragraph, on the lines it had. When the paragraph gains or loses a
// line in the page view, the paragraphs below are moved down the sheets
// as Qt's pass would move them, without laying them out again. Qt's own
// pass runs when the person stops typing, before any other edit, and
// before drawing or finding a place where what it kept from its last pass
// would no longer lead to the right paragraph.
namespace edit_layout {

// Gives `doc` the editor's layout (once; later calls keep it). Call it
// before anything connects to the document's layout.
void install(QTextDocument* doc);

// Runs the pass over the document that the paragraphs laid out in place are
// waiting for, so what follows sees the layout exact. Without the editor's
// layout, or with nothing waiting, it does nothing.
void settle(QTextDocument* doc);

// Lays `block` of `doc` out again after the looks its layout adds were changed
// (the spelling marks): in place when its lines keep their heights, else
// as an edit of the paragraph.
void restyle(QTextDocument* doc, const QTextBlock& block);

// How many edits of `doc` were laid out in place, and how many went
// through the whole pass: what the tests look at.
struct Counts {
    int inPlace = 0;
    int whole = 0;
};
Counts counts(const QTextDocument* doc);

}  // namespace edit_layout

#pragma once

class QTextDocument;

// The layout of a document shown in an editor.
//
// Qt's layout places every paragraph again, down to the end of the
// document, after each edit, and in the page view lays out again every
// paragraph that crosses a page: a key costs more the longer the document.
// Most keys change one paragraph without changing its lines' number or
// height, and then nothing else moves. The editor's layout lays out only
// that paragraph, on the lines it had, and leaves the rest of the document
// where it is; Qt's own pass over the document runs when the person stops
// typing, or at once before any edit that may move other paragraphs.
namespace edit_layout {

// Gives `doc` the editor's layout (once; later calls keep it). Call it
// before anything connects to the document's layout.
void install(QTextDocument* doc);

// Runs the pass over the document that the paragraphs laid out in place are
// waiting for, so what follows sees the layout exact. Without the editor's
// layout, or with nothing waiting, it does nothing.
void settle(QTextDocument* doc);

// How many edits of `doc` were laid out in place, and how many went
// through the whole pass: what the tests look at.
struct Counts {
    int inPlace = 0;
    int whole = 0;
};
Counts counts(const QTextDocument* doc);

}  // namespace edit_layout

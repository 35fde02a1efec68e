#pragma once

// "Vai a...": moves the caret of the document to a line, to the start, to
// the end, or to a percentage of the text.

#include <QString>
#include <QStringList>

namespace tornelia {

class MessagePort;
class RichTextSurface;

class GoTo {
public:
    enum Option { GotoLine, GotoStart, GoToEnd, GotoPer };

    GoTo(RichTextSurface& testo, MessagePort& messages) : testo_(testo), messages_(messages) {}

    // The percentages offered: "10%" to "100%".
    static QStringList percentuali();
    // The caret at percent of the text, rounded as the conversion to a long
    // integer rounds (a half to the even neighbour).
    static void DocPercent(RichTextSurface& testo, double percent);

    // Runs the chosen option. txtGo is the line number typed, percent the
    // entry of the percentages ("40%"). False when the line number was
    // refused; the caller then empties the field when the message says so.
    struct Outcome {
        bool moved = false;
        bool clearField = false;
    };
    Outcome cmdGo(Option option, const QString& txtGo, const QString& percent);

private:
    RichTextSurface& testo_;
    MessagePort& messages_;
};

}  // namespace tornelia

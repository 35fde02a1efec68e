// Tab and Shift+Tab typed on the real window: in a table they go from cell
// to cell and select the cell reached, so what is typed next replaces it;
// from the last cell Tab opens a new row; outside a table Tab is a
// character of the text.
#include "app/main_window.h"
#include "controls/editor_view.h"
#include "test_ports.h"

#include <gtest/gtest.h>

#include <QApplication>

namespace tornelia {
namespace {

class TableKeysTest : public testing::ShownWindowTest {
protected:
    void press(int key, Qt::KeyboardModifiers mods = Qt::NoModifier, const QString& text = {})
    {
        testing::key(window.editor(), key, mods, text);
        QApplication::processEvents();
    }
    // The text with the selection in brackets or the caret as "|".
    std::string shown()
    {
        QString s = testo().Text();
        const long at = testo().SelStart();
        const long n = testo().SelLength();
        return (n == 0 ? s.insert(at, u'|') : s.insert(at + n, u']').insert(at, u'[')).toStdString();
    }
};

}  // namespace

TEST_F(TableKeysTest, TabGoesFromCellToCellAndIsATabElsewhere)
{
    testo().setTextRTF(QStringLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\pard top\\par"
                                      "\\trowd\\cellx1500\\cellx3000\\pard\\intbl one\\cell two\\cell\\row\\pard end\\par}"));
    testo().setSelStart(8);  // after "on"
    std::vector<std::string> seen;
    press(Qt::Key_Tab, Qt::NoModifier, QStringLiteral("\t"));
    seen.push_back(shown());
    testing::typeKeys(window.editor(), QStringLiteral("due"));
    QApplication::processEvents();
    seen.push_back(shown());
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    seen.push_back(shown());
    press(Qt::Key_Tab, Qt::NoModifier, QStringLiteral("\t"));
    press(Qt::Key_Tab, Qt::NoModifier, QStringLiteral("\t"));
    seen.push_back(shown());
    testo().setSelStart(1);
    press(Qt::Key_Tab, Qt::NoModifier, QStringLiteral("\t"));
    seen.push_back(shown());
    EXPECT_EQ(seen, (std::vector<std::string>{"top\r\none\t[two]\r\nend", "top\r\none\tdue|\r\nend",
                                              "top\r\n[one]\tdue\r\nend", "top\r\none\tdue\r\n|\t\r\nend",
                                              "t\t|op\r\none\tdue\r\n\t\r\nend"}));
}

}  // namespace tornelia

// The macro editor's actions, driven through its ports as a person would.

#include "macro_fixture.h"

#include "macro/frm_mac.h"
#include "macro/macro_editor.h"

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QKeyEvent>
#include <QListWidget>
#include <QMimeData>
#include <QTextEdit>

namespace tornelia {

namespace {

class AnsweringPort final : public MessagePort {
public:
    QString mostraMsg(const QString& title, const QString& text, int, int) override
    {
        asked << title + u'|' + text;
        return answers.isEmpty() ? QStringLiteral("an") : answers.takeFirst();
    }
    QString inputBox(const QString&, const QString&) override { return {}; }
    QStringList answers;
    QStringList asked;
};

// Gives the queued names to the open and save dialogs; none left is a cancel.
class ChoosingDialogs final : public DialogPort {
public:
    std::optional<QString> openFile(const QString&, const QStringList& f) override { return next(f); }
    std::optional<QString> saveFile(const QString&, const QStringList& f, const QString&) override { return next(f); }
    std::optional<QString> chooseFolder(const QString&) override { return std::nullopt; }
    std::optional<FontChoice> chooseFont(const FontChoice&) override { return std::nullopt; }
    std::optional<std::uint32_t> chooseColour(std::uint32_t) override { return std::nullopt; }
    QStringList names;
    QStringList filters;

private:
    std::optional<QString> next(const QStringList& f)
    {
        filters = f;
        if (names.isEmpty())
            return std::nullopt;
        return names.takeFirst();
    }
};

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

struct EditorState {
    QString text;
    QString fileName;
    QString status;
    bool dirty;
    bool operator==(const EditorState&) const = default;
};

std::ostream& operator<<(std::ostream& os, const EditorState& s)
{
    return os << '"' << s.text.toStdString() << "\" [" << s.fileName.toStdString() << "] "
              << s.status.toStdString() << (s.dirty ? " dirty" : " clean");
}

}  // namespace

class MacroEditorTest : public MacroTest {
protected:
    MacroEditorTest() : editor(MacroHost{testo, answers, procedures, &document, &undo}, chooser) {}
    EditorState state() { return {editor.t().Text(), editor.fileName(), editor.status(), editor.dirty()}; }
    void write(const QString& text)
    {
        editor.t().setText(QString());
        editor.t().setSelText(text);
    }
    AnsweringPort answers;
    ChoosingDialogs chooser;
    MacroEditor editor;
};

TEST_F(MacroEditorTest, TheCommandListAndItsLabels)
{
    const auto& list = macroCommandList();
    ASSERT_EQ(list.size(), 40u);
    QStringList names;
    for (const auto& h : list)
        names << h.name;
    EXPECT_EQ(names.join(u' '),
              "msgbox inputbox type sst sel seltxt clear new open save delete prop pag ant stampa undo redo cut copy "
              "paste font dime gras cors sott barr par imm txt lin mai conta vai mail ins tast dim acapo asc chr");
    const int stampa = int(names.indexOf("stampa"));
    EXPECT_EQ(MacroEditor::syntaxLabel(stampa), " sta()  ");
    EXPECT_EQ(MacroEditor::descriptionLabel(stampa), "Stampa - Mostra la finetra di dialogo Stampa");
    EXPECT_EQ(MacroEditor::descriptionLabel(int(names.indexOf("dim"))), "Dichiara variabile - Dichiara una variabile");
    EXPECT_EQ(MacroEditor::syntaxLabel(40), "");

    write("type(\"x\")");
    editor.t().setSelStart(0);
    editor.t().setSelLength(4);
    editor.insertCommand(int(names.indexOf("chr")));
    EXPECT_EQ(editor.t().Text(), "chr()(\"x\")");
}

TEST_F(MacroEditorTest, NewAsksAboutAChangedMacro)
{
    const QString aside = dir.filePath("aside.mac");
    write("type(\"a\")");
    answers.answers = {"si"};
    chooser.names = {aside};
    editor.nuovo();
    // Saved aside, and the macro stays as it was.
    EXPECT_EQ(state(), (EditorState{"type(\"a\")", "", "Macro non salvata", true}));
    EXPECT_EQ(readAll(aside), "type(\"a\")");
    answers.answers = {"an"};
    editor.nuovo();
    EXPECT_EQ(state(), (EditorState{"type(\"a\")", "", "Macro non salvata", true}));
    answers.answers = {"no"};
    editor.nuovo();
    EXPECT_EQ(state(), (EditorState{"", "", "Macro non salvata", false}));
    EXPECT_EQ(answers.asked, QStringList(3, "Nuovo|Il file è stato modificato. Salvare?"));
    editor.nuovo();
    EXPECT_EQ(answers.asked.size(), 3);
    EXPECT_EQ(chooser.filters, (QStringList{"Macro Tornelia (*.mac)", "Tutti i file (*)"}));
}

TEST_F(MacroEditorTest, SaveAndOpen)
{
    const QString first = dir.filePath("first.mac");
    const QString unix = dir.filePath("unix.mac");
    write("dim a\ra = \"1\"");
    editor.salva();  // the dialog is cancelled: the flag goes all the same
    EXPECT_EQ(state(), (EditorState{"dim a\r\na = \"1\"", "", "Macro non salvata", false}));

    chooser.names = {first};
    editor.salva();
    EXPECT_EQ(state(), (EditorState{"dim a\r\na = \"1\"", first, first, false}));
    EXPECT_EQ(readAll(first), "dim a\r\na = \"1\"");

    QFile f(unix);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("type(\"u\")\nacapo()\n");
    f.close();
    write("changed");
    answers.answers = {"si"};
    chooser.names = {unix};
    editor.apri();
    EXPECT_EQ(readAll(first), "changed");
    EXPECT_EQ(state(), (EditorState{"type(\"u\")\r\nacapo()\r\n", unix, unix, false}));

    // A file that cannot be read leaves everything as it was.
    chooser.names = {dir.filePath("missing.mac")};
    editor.apri();
    EXPECT_EQ(state(), (EditorState{"type(\"u\")\r\nacapo()\r\n", unix, unix, false}));

    editor.esegui();
    EXPECT_EQ(testo.Text(), "u\r\n");
    EXPECT_EQ(state(), (EditorState{"type(\"u\")\r\nacapo()\r\n", unix, unix, false}));
}

TEST_F(MacroEditorTest, RunTakesTheWholeTextWhateverIsSelected)
{
    const QString file = dir.filePath("part.txt");
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("inserted");
    f.close();
    write("type(\"1\")\rins(\"" + file + "\")\rtype(\"2\")");
    editor.t().setSelStart(0);
    editor.t().setSelLength(3);
    editor.esegui();
    editor.esegui();
    EXPECT_EQ(testo.Text(), "1inserted21inserted2");
    EXPECT_EQ(editor.r().Text(), "inserted");
    EXPECT_TRUE(editor.dirty());
}

TEST_F(MacroEditorTest, TheWindowPassesPlainTextOnly)
{
    frmMac window(MacroHost{testo, answers, procedures, &document, &undo}, chooser);
    MacroEditor& e = window.editor();
    QTextEdit* area = window.textArea();
    auto* mime = new QMimeData;
    mime->setText(QStringLiteral("type(\"p\")"));
    mime->setHtml(QStringLiteral("<b>type(\"p\")</b>"));
    QGuiApplication::clipboard()->setMimeData(mime);

    QKeyEvent paste(QEvent::KeyPress, Qt::Key_V, Qt::ControlModifier);
    QApplication::sendEvent(area, &paste);
    EXPECT_EQ(e.t().Text(), "type(\"p\")");
    EXPECT_EQ(e.t().TextRTF().contains("\\b"), false);
    EXPECT_TRUE(e.dirty());

    QTextCursor cursor = area->textCursor();
    cursor.setPosition(0);
    cursor.setPosition(4, QTextCursor::KeepAnchor);
    area->setTextCursor(cursor);
    QKeyEvent cut(QEvent::KeyPress, Qt::Key_X, Qt::ControlModifier);
    QApplication::sendEvent(area, &cut);
    EXPECT_EQ(e.t().Text(), "(\"p\")");
    EXPECT_EQ(QGuiApplication::clipboard()->mimeData()->formats(), QStringList{"text/plain"});
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "type");

    window.commandList()->setCurrentRow(0);
    emit window.commandList()->itemDoubleClicked(window.commandList()->item(0));
    EXPECT_EQ(e.t().Text(), "msgbox()(\"p\")");
    EXPECT_EQ(window.windowTitle(), "Macro");
}

}  // namespace tornelia

// Every row of the command table, run on the real main window: each enabled
// row must leave a mark the person could see (a window, a change of the
// text or the selection, a question, a program or address handed on, a
// change of the view), and each row waiting for its feature must be greyed.
// Menu entries and buttons are triggered, a combo gets a pick, a key is
// pressed on the text. The table's keys and macro names are held against
// the typing handlers and the macro language.
#include "app/command_table.h"
#include "app/main_layout.h"
#include "controls/cmb.h"
#include "controls/editor_view.h"
#include "controls/form_tast.h"
#include "core/autosave.h"
#include "core/undo_store.h"
#include "macro/interpreter.h"
#include "services/doc_services.h"
#include "test_ports.h"

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QMenu>
#include <QMimeData>
#include <QTimer>
#include <QToolBar>

#include <gtest/gtest.h>

#include <functional>
#include <map>

namespace tornelia {
namespace {

// All a command can change that the person sees.
struct Mark {
    QString rtf;
    long selStart = 0;
    long selLength = 0;
    QString clipboard;
    qsizetype messages = 0;
    qsizetype shell = 0;
    qsizetype fontAsked = 0;
    qsizetype colourAsked = 0;
    QString caption;
    QStringList shown;  // visible top-level widgets and open popups
    // Toolbars, ruler, page view, the view's scale and the zoom level shown,
    // keyboard, autosave, undo switch.
    QString view;
    bool operator==(const Mark&) const = default;
};

QString clipboardText()
{
    const QMimeData* m = QGuiApplication::clipboard()->mimeData();
    if (!m)
        return {};
    return m->text() + u'|' + QString::fromLatin1(m->data(QStringLiteral("text/rtf")));
}

// The zoom combo's text counts, except when the walk itself picks in it.
Mark markOf(testing::TestContext& t, MainWindow& w, bool zoomText = true)
{
    Mark m;
    RichTextSurface& testo = t.context->testo();
    m.rtf = testo.TextRTF();
    m.selStart = testo.SelStart();
    m.selLength = testo.SelLength();
    m.clipboard = clipboardText();
    m.messages = t.messages->said.size();
    m.shell = static_cast<ScriptedShellPort&>(t.context->shell()).requests.size();
    m.fontAsked = t.dialogs->fontSeeds.size();
    m.colourAsked = t.dialogs->colourSeeds.size();
    m.caption = w.windowTitle();
    for (QWidget* top : QApplication::topLevelWidgets())
        if (top->isVisible())
            m.shown << top->objectName();
    // Panels inside the window count as shown too.
    for (QWidget* inside : w.findChildren<QWidget*>())
        if (!inside->objectName().isEmpty() && inside->isVisible())
            m.shown << inside->objectName();
    m.shown.sort();
    m.view = QStringList{QString::number(w.toolbar(0)->isVisible()), QString::number(w.toolbar(1)->isVisible()),
                         QString::number(w.layout().rulerWanted()), QString::number(w.layout().vistaPagina()),
                         QString::number(w.editor()->zoomFactor()), zoomText ? w.cbZoom()->currentText() : QString(),
                         QString::number(w.keyboard()->isVisible()),
                         QString::number(w.autosave().attivo()), QString::number(t.context->undo().annullaOff())}
                 .join(u',');
    return m;
}

// Closes whatever modal window a command opens, keeping its name.
class ModalCloser {
public:
    ModalCloser()
    {
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            if (QWidget* modal = QApplication::activeModalWidget()) {
                seen << modal->objectName();
                modal->close();
            }
        });
        timer_.start(20);
    }
    QStringList seen;

private:
    QTimer timer_;
};

// Some rows only show their effect from a given state: what comes before
// each of them, on top of the common start.
const std::map<QString, std::function<void(MainWindow&, RichTextSurface&)>>& preparations()
{
    static const std::map<QString, std::function<void(MainWindow&, RichTextSurface&)>> steps{
        {"mnuRipristina", [](MainWindow& w, RichTextSurface&) { w.UnDoo(); }},
        {"t0_14", [](MainWindow& w, RichTextSurface&) { w.UnDoo(); }},
        {"mnuNormale", [](MainWindow& w, RichTextSurface&) { w.setCharOffset(50); }},
        {"mnuSinistra", [](MainWindow& w, RichTextSurface&) { w.setAlignment(2); }},
        {"t1_13", [](MainWindow& w, RichTextSurface&) { w.setAlignment(2); }},
        {"mnuParNessuno", [](MainWindow& w, RichTextSurface&) { w.paragrafoPuntato(); }},
        {"mnuVisNormale", [](MainWindow& w, RichTextSurface&) { w.setViewKind(true); }},
        {"mnuZoom4", [](MainWindow& w, RichTextSurface&) { w.zoom(QStringLiteral("50%")); }},
        {"mnuClipNascondi", [](MainWindow& w, RichTextSurface&) { w.appunti(); }},
        {"mnuRighello", [](MainWindow& w, RichTextSurface&) { w.setViewKind(true); }},
        {"mnuMostraNascosto", [](MainWindow& w, RichTextSurface&) { w.SelVisible(); }},
        {"keyEnterPictureBullet",
         [](MainWindow& w, RichTextSurface&) {
             QImage bullet(8, 8, QImage::Format_RGB32);
             bullet.fill(Qt::red);
             w.setBulletPicture(bullet);
         }},
    };
    return steps;
}

// Rows that may do nothing: the hidden upper-case entry, and the programs
// of our own that are not installed next to this one.
bool mayDoNothing(MainWindow& w, const QString& id)
{
    if (id == QLatin1String("mnuSarbena"))
        return w.logic().findProgram(QStringLiteral("sarbena.exe")).isEmpty();
    if (id == QLatin1String("mnuExCr1"))
        return findTool(QStringLiteral("encrypt"), toolFolders(w.context().dataFolder())).isEmpty();
    return id == QLatin1String("mnuMaiuscoleF2");
}

struct Row {
    QString id;
    const CommandRow* row;
};

QList<Row> commandRows()
{
    QList<Row> rows;
    for (const CommandRow& r : commandTable())
        if (r.kind == RowKind::Command || r.kind == RowKind::Combo || r.kind == RowKind::Key)
            rows.append({rowName(r), &r});
    return rows;
}

QAction* findAction(MainWindow& w, const Row& r)
{
    if (r.row->button >= 0)
        return w.toolButton(r.row->parent[1] - '0', r.row->button);
    return w.action(r.id);
}

// What the person does with a row: a click, a pick in a combo of another
// item than the one shown, a key pressed on the text.
void use(MainWindow& w, const Row& r, QAction* a)
{
    if (r.row->kind == RowKind::Key) {
        const QKeyCombination k = r.row->shortcut;
        const QString text = k.key() == Qt::Key_Tab ? QStringLiteral("\t")
                             : k.key() == Qt::Key_Return ? QStringLiteral("\r")
                                                         : QString();
        testing::key(w.editor(), k.key(), k.keyboardModifiers(), text);
        return;
    }
    if (r.row->kind == RowKind::Combo) {
        auto* box = w.findChild<QComboBox*>(QString::fromLatin1(r.row->id));
        if (!box || box->count() == 0)
            return;
        // Near the end of the list: a large size, a zoom that scales the
        // view, a colour other than the automatic one.
        int i = std::max(0, box->count() - 2);
        if (i == box->currentIndex() || box->itemText(i) == box->currentText())
            i = (i + 1) % box->count();
        box->setCurrentIndex(i);
        if (auto* font = qobject_cast<FontCmb*>(box))
            emit font->click();
        else
            emit box->activated(i);
        return;
    }
    a->trigger();
}

// The outcome of one row on a fresh window: "greyed", "effect" or what it left unchanged.
QString walk(const Row& r)
{
    testing::TestContext t;
    MainWindow w(*t.context);
    t.context->document().Novo(0);
    w.resize(900, 650);
    w.show();
    QApplication::processEvents();

    const bool isKey = r.row->kind == RowKind::Key;
    if (isKey) {
        w.activateWindow();
        w.editor()->setFocus();
    }
    QAction* a = isKey ? nullptr : findAction(w, r);
    if (!a && !isKey)
        return QStringLiteral("missing");
    if (!isKey && !r.row->need.metBy(w.registry()))
        return !a->isEnabled() && a->toolTip() == kNotYetAvailable ? QStringLiteral("greyed")
                                                                    : QStringLiteral("enabled while waiting");

    // A document with something to undo, a selection, a clipboard, and
    // answers ready for the dialogs.
    RichTextSurface& testo = t.context->testo();
    for (const char* piece : {"Prima riga", " di prova\r\n", "Seconda riga"}) {
        t.context->undo().unDO();
        testo.setSelText(QString::fromLatin1(piece));
    }
    testo.setSelStart(6);
    testo.setSelLength(4);
    QGuiApplication::clipboard()->setText(QStringLiteral("dagli appunti"));
    const QString file = t.folder.filePath(QStringLiteral("altro.txt"));
    QFile out(file);
    out.open(QIODevice::WriteOnly);
    out.write("un altro file");
    out.close();
    t.dialogs->openPath = file;
    t.dialogs->savePath = t.folder.filePath(QStringLiteral("salvato.rtf"));
    t.dialogs->font = FontChoice{QStringLiteral("Serif"), 20, true, false, false, false, 0};
    t.dialogs->colour = 0x0000FF;
    if (auto it = preparations().find(r.id); it != preparations().end())
        it->second(w, testo);
    w.CmeN();
    QApplication::processEvents();
    if (a && !a->isEnabled())
        return QStringLiteral("disabled");

    const bool zoomText = r.row->kind != RowKind::Combo || qstrcmp(r.row->id, "cbZoom") != 0;
    const Mark before = markOf(t, w, zoomText);
    ModalCloser closer;
    use(w, r, a);
    QApplication::processEvents();
    const Mark after = markOf(t, w, zoomText);
    // The windows a command left open go before the main window does.
    for (QWidget* top : QApplication::topLevelWidgets())
        if (top != &w && top->isVisible())
            top->hide();
    QApplication::processEvents();
    if (!closer.seen.isEmpty() || !(after == before))
        return QStringLiteral("effect");
    return QStringLiteral("nothing");
}

TEST(CommandWalkTest, EveryRowShowsAnEffectOrIsGreyed)
{
    QStringList wrong;
    int run = 0;
    const auto rows = commandRows();
    ASSERT_GT(rows.size(), 140);
    for (const Row& r : rows) {
        testing::TestContext probe;
        MainWindow reference(*probe.context);
        const bool registered = r.row->need.metBy(reference.registry());
        // A key cannot be greyed: while its feature waits, it is not walked.
        if (!registered && r.row->kind == RowKind::Key)
            continue;
        const QString outcome = walk(r);
        const QString expected = !registered ? QStringLiteral("greyed") : QStringLiteral("effect");
        if (registered && mayDoNothing(reference, r.id))
            continue;
        if (r.id == QLatin1String("mnuGuida") || r.id == QLatin1String("mnuAggiornamento")) {
            // Greyed while the help file or the updater is missing.
            if (outcome != QLatin1String("effect") && outcome != QLatin1String("disabled"))
                wrong << r.id + QStringLiteral(": ") + outcome;
            continue;
        }
        ++run;
        if (outcome != expected)
            wrong << r.id + QStringLiteral(": ") + outcome + QStringLiteral(" instead of ") + expected;
    }
    EXPECT_EQ(wrong, QStringList{});
    EXPECT_GT(run, 100);
}

// The keys of the table are the keys the typing handlers take, no more and
// no fewer, each once.
TEST(CommandTableTest, KeyRowsAreTheKeysTheTypingHandlersTake)
{
    QList<QPair<int, int>> rows;
    for (const CommandRow& r : commandTable()) {
        if (r.kind != RowKind::Key)
            continue;
        const Qt::KeyboardModifiers mods = r.shortcut.keyboardModifiers();
        rows.append({EditorView::virtualKey(r.shortcut.key(), mods), mods ? EditorView::shiftState(mods) : -1});
    }
    QList<QPair<int, int>> taken;
    for (const TakenKey& k : keysTaken())
        taken.append({k.code, k.shift});
    EXPECT_EQ(rows, taken);
}

// Every command of the macro language is a row of the table or one of the
// language's own statements on the text; a row names a command the language
// has, and no two rows name the same one.
TEST(CommandTableTest, MacroNamesAreTheLanguagesCommands)
{
    QStringList named;
    for (const CommandRow& r : commandTable())
        if (*r.macro)
            named << QString::fromLatin1(r.macro);
    const QStringList statements = {"msgbox", "seltxt", "clear", "type", "sst", "sel", "acapo", "asc", "chr"};
    QStringList all = named + statements;
    all.sort();
    QStringList language = c::commandNames();
    language.sort();
    EXPECT_EQ(all, language);
    EXPECT_EQ(QSet<QString>(named.begin(), named.end()).size(), named.size());
}

}  // namespace
}  // namespace tornelia

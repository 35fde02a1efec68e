// Every row of the command table, run on the real main window: each enabled
// row must leave a mark the person could see (a window, a change of the
// text or the selection, a question, a program or address handed on, a
// change of the view), and each row waiting for its feature must be greyed.
#include "app/command_table.h"
#include "app/main_layout.h"
#include "controls/form_tast.h"
#include "core/autosave.h"
#include "core/undo_store.h"
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
    QString view;       // toolbars, ruler, page view, zoom, keyboard, autosave, undo switch
    bool operator==(const Mark&) const = default;
};

QString clipboardText()
{
    const QMimeData* m = QGuiApplication::clipboard()->mimeData();
    if (!m)
        return {};
    return m->text() + u'|' + QString::fromLatin1(m->data(QStringLiteral("text/rtf")));
}

Mark markOf(testing::TestContext& t, MainWindow& w)
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
                         w.cbZoom()->currentText(), QString::number(w.keyboard()->isVisible()),
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
    for (const CommandRow& r : commandTable()) {
        if (r.kind != RowKind::Command)
            continue;
        const QString id = r.button >= 0 ? toolButtonName(r.parent[1] - '0', r.button) : QString::fromLatin1(r.id);
        rows.append({id, &r});
    }
    return rows;
}

QAction* findAction(MainWindow& w, const Row& r)
{
    if (r.row->button >= 0)
        return w.toolButton(r.row->parent[1] - '0', r.row->button);
    return w.action(r.id);
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

    QAction* a = findAction(w, r);
    if (!a)
        return QStringLiteral("missing");
    if (!r.row->need.metBy(w.registry()))
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
    if (!a->isEnabled())
        return QStringLiteral("disabled");

    const Mark before = markOf(t, w);
    ModalCloser closer;
    a->trigger();
    QApplication::processEvents();
    const Mark after = markOf(t, w);
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

}  // namespace
}  // namespace tornelia

// The pages of a long document: the pagination that printing and the
// preview share, the preview opening on a 300-page document (time and the
// process's resident memory after it), and a key typed in the page view of
// the same document with the sheets on screen.
//
//   tornelia_bench_print [benchmark options]

#include "bench/widgets_main.h"
#include "controls/editor_view.h"
#include "core/ports.h"
#include "core/rich_text_surface.h"
#include "print/frm_preview.h"
#include "print/page_settings.h"
#include "print/print_layout.h"

#include <benchmark/benchmark.h>

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QFile>
#include <QStandardPaths>
#include <QTextCursor>
#include <QTextDocument>

#include <unistd.h>

using namespace tornelia;

namespace {

class SilentMessages final : public MessagePort {
public:
    QString mostraMsg(const QString&, const QString&, int, int) override { return QStringLiteral("no"); }
    QString inputBox(const QString&, const QString&) override { return {}; }
};

// About 300 pages at the default page: paragraphs of two to four lines,
// a change of size now and then.
void fillPages(QTextDocument& doc)
{
    QTextCursor c(&doc);
    const QString words = QStringLiteral("la pagina stampata rompe le righe dove le rompe la vista ");
    for (int i = 0; i < 7800; ++i) {
        if (i)
            c.insertBlock();
        QTextCharFormat f;
        f.setFontPointSize(i % 25 == 0 ? 16 : 10);
        c.insertText(QStringLiteral("%1 ").arg(i) + words.repeated(2 + i % 3), f);
    }
}

double residentMegabytes()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> v = statm.readAll().split(' ');
    return v.size() > 1 ? v[1].toDouble() * double(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0) : 0;
}

void BM_Paginate300Pages(benchmark::State& state)
{
    QTextDocument doc;
    fillPages(doc);
    int pages = 0;
    for (auto _ : state) {
        const PrintLayout layout(doc, marginsForPrint(PageSettings{}), 1);
        pages = layout.pageCount();
        benchmark::DoNotOptimize(layout.firstChar(pages - 1));
    }
    state.counters["pages"] = pages;
}
BENCHMARK(BM_Paginate300Pages)->Unit(benchmark::kMillisecond);

void BM_PreviewOpen300Pages(benchmark::State& state)
{
    QTextDocument doc;
    fillPages(doc);
    SilentMessages messages;
    int pages = 0;
    double rss = 0;
    for (auto _ : state) {
        FrmPreview preview(doc, PageSettings{}, messages);
        preview.show();
        // The first page drawn, as the person sees it.
        QCoreApplication::processEvents();
        preview.picChild()->repaint();
        pages = preview.pageCount();
        rss = std::max(rss, residentMegabytes());
    }
    state.counters["pages"] = pages;
    state.counters["rss_MB"] = rss;
}
BENCHMARK(BM_PreviewOpen300Pages)->Unit(benchmark::kMillisecond)->Iterations(5);

// One key in the middle of the 300 pages in page view: the edit, the
// layout that follows and the repaint of what is on screen.
void BM_PageViewTyping300Pages(benchmark::State& state)
{
    RichTextSurface surface;
    fillPages(*surface.document());
    EditorView view(surface);
    view.resize(1000, 800);
    PageLayout page;
    page.left = page.right = 1134;
    page.top = page.bottom = 567;
    page.sheetHeight = kSheetLongTwips;
    page.textWidth = kSheetShortTwips - page.left - page.right;
    if (state.range(0))
        view.setPageLayout(page);
    view.show();
    surface.document()->documentLayout()->documentSize();
    surface.setSelStart(surface.length() / 2);
    QCoreApplication::processEvents();
    for (auto _ : state) {
        surface.typeText(QStringLiteral("x"));
        QCoreApplication::processEvents();
        view.viewport()->repaint();
    }
    state.counters["sheets"] = view.sheetCount();
}
// The argument: 1 page view, 0 the normal view of the same document, for comparison.
BENCHMARK(BM_PageViewTyping300Pages)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv)
{
    return tornelia::bench::runWithWidgets(argc, argv);
}

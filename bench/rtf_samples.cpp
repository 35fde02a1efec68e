#include "bench/rtf_samples.h"

#include "bench/bench_main.h"

#include <QGuiApplication>

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace tornelia::bench {
namespace {

// Words as they stand in the RTF: accented letters already as \'hh, a few
// characters outside code page 1252 as \uN?.
constexpr std::array<std::string_view, 40> kWords = {
    "il", "della", "che", "documento", "testo", "pagina", "perch\\'e9", "citt\\'e0",
    "scrivere", "una", "lettera", "agli", "amici", "di", "sempre", "quando", "pi\\'f9",
    "pu\\'f2", "caff\\'e8", "nel", "mattino", "finestra", "carattere", "colore", "grassetto",
    "corsivo", "sottolineato", "\\u8730?x", "\\u945?\\u946?", "paragrafo", "margine", "e",
    "la", "per", "con", "\\'abcitazione\\'bb", "\\u1046?ar", "stampa", "anteprima", "riga",
};

constexpr std::string_view kPlainWords[] = {
    "il", "della", "che", "documento", "testo", "pagina", "scrivere", "una", "lettera",
    "agli", "amici", "di", "sempre", "quando", "nel", "mattino", "finestra", "carattere",
    "colore", "paragrafo", "margine", "e", "la", "per", "con", "stampa", "riga",
};

}  // namespace

QByteArray realisticRtf(qsizetype bytes)
{
    std::mt19937 rng(20240611);
    auto pick = [&rng](int n) { return int(std::uniform_int_distribution<int>(0, n - 1)(rng)); };

    std::string out;
    out.reserve(size_t(bytes) + 4096);
    out += "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1040{\\fonttbl{\\f0\\fswiss\\fcharset0 Tahoma;}"
           "{\\f1\\froman\\fprq2\\fcharset0 Times New Roman;}{\\f2\\fmodern\\fcharset0 Courier New;}"
           "{\\f3\\fnil\\fcharset2 Wingdings;}}\r\n"
           "{\\colortbl ;\\red255\\green0\\blue0;\\red0\\green128\\blue0;\\red0\\green0\\blue255;"
           "\\red128\\green0\\blue128;\\red255\\green128\\blue0;\\red64\\green64\\blue64;"
           "\\red0\\green128\\blue128;\\red255\\green255\\blue0;}\r\n"
           "{\\*\\generator Tornelia bench;}\\viewkind4\\uc1\\pard\\f0\\fs20 ";

    bool bold = false, italic = false, underline = false;
    int colour = 0, size = 20, font = 0;
    int paraKind = 0;
    while (qsizetype(out.size()) < bytes) {
        // A paragraph of 40 to 160 words.
        const int words = 40 + pick(120);
        for (int w = 0; w < words; ++w) {
            if (pick(9) == 0) {
                switch (pick(7)) {
                case 0: out += (bold = !bold) ? "\\b " : "\\b0 "; break;
                case 1: out += (italic = !italic) ? "\\i " : "\\i0 "; break;
                case 2: out += (underline = !underline) ? "\\ul " : "\\ulnone "; break;
                case 3: colour = (colour + 1 + pick(7)) % 9; out += "\\cf" + std::to_string(colour) + ' '; break;
                case 4: size = 16 + 2 * pick(10); out += "\\fs" + std::to_string(size) + ' '; break;
                case 5: font = pick(3); out += "\\f" + std::to_string(font) + ' '; break;
                default:
                    // A Wingdings arrow in a group of its own, as the program writes them.
                    out += "{\\f3\\'e0}";
                    break;
                }
            }
            out += kWords[size_t(pick(int(kWords.size())))];
            if (pick(60) == 0)
                out += "\\tab ";
            else if (pick(200) == 0)
                out += "\\line ";
            else if (w + 1 < words)
                out += pick(12) == 0 ? ", " : " ";
        }
        out += ".\\par\r\n";
        // Paragraph formats change now and then.
        const int next = pick(10) < 7 ? 0 : 1 + pick(3);
        if (next != paraKind) {
            paraKind = next;
            static constexpr std::string_view kPara[] = {"\\pard ", "\\pard\\qc ", "\\pard\\li567\\ri567 ",
                                                         "\\pard\\qj\\fi-283\\li283 "};
            out += kPara[paraKind];
        }
    }
    out += "}\r\n";
    return QByteArray(out.data(), qsizetype(out.size()));
}

QByteArray colourPerCharacterRtf(int chars)
{
    std::string out;
    out.reserve(size_t(chars) * 48 + 256);
    out += "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1040{\\fonttbl{\\f0\\fswiss\\fcharset0 Tahoma;}}\r\n"
           "{\\colortbl ;";
    // An odd multiplier permutes the 24-bit colours, so every entry differs
    // and the writer cannot fold any two into one.
    auto rgb = [](int i) {
        const std::uint32_t c = (std::uint32_t(i + 1) * 2654435761u) & 0xFFFFFFu;
        return std::array<int, 3>{int(c >> 16), int((c >> 8) & 0xFF), int(c & 0xFF)};
    };
    for (int i = 0; i < chars; ++i) {
        const auto c = rgb(i);
        out += "\\red" + std::to_string(c[0]) + "\\green" + std::to_string(c[1]) + "\\blue" +
               std::to_string(c[2]) + ';';
    }
    out += "}\r\n\\viewkind4\\uc1\\pard\\f0\\fs20";
    const std::string_view text = "Arcobaleno di colori sul testo scelto. ";
    for (int i = 0; i < chars; ++i) {
        out += "\\cf" + std::to_string(i + 1) + ' ';
        const char ch = text[size_t(i) % text.size()];
        out += ch;
    }
    out += "\\cf0\\par\r\n}\r\n";
    return QByteArray(out.data(), qsizetype(out.size()));
}

QString prose(int chars)
{
    std::mt19937 rng(7);
    QString out;
    out.reserve(chars + 64);
    int sinceBreak = 0;
    while (out.size() < chars) {
        const auto& w = kPlainWords[std::uniform_int_distribution<size_t>(0, std::size(kPlainWords) - 1)(rng)];
        out += QLatin1String(w.data(), qsizetype(w.size()));
        sinceBreak += int(w.size()) + 1;
        if (sinceBreak > 400) {
            out += QLatin1String(".\r\n");
            sinceBreak = 0;
        } else {
            out += QLatin1Char(' ');
        }
    }
    out.truncate(chars);
    // A cut between CR and LF would leave half a break.
    if (out.endsWith(QLatin1Char('\r')))
        out.back() = QLatin1Char('.');
    return out;
}

std::unique_ptr<RichTextSurface> formattedDocument(int chars)
{
    auto s = std::make_unique<RichTextSurface>();
    s->setDefaultFormat(QStringLiteral("Tahoma"), 10);
    s->setText(bench::prose(chars));
    const long len = s->length();
    static const Colour kColours[] = {0x0000FF, 0x008000, 0xFF0000, 0x800080, 0x0080FF};
    for (long at = 0, n = 0; at < len; at += 40, ++n) {
        s->setSelStart(at);
        s->setSelLength(std::min(40L, len - at));
        switch (n % 6) {
        case 0: s->setSelBold(true); break;
        case 1: s->setSelItalic(true); break;
        case 2: s->setSelColor(kColours[(n / 6) % 5]); break;
        case 3: s->setSelFontSize(n % 4 == 1 ? 14 : 8); break;
        case 4: s->setSelUnderline(true); break;
        default: s->setSelFontName((n / 6) % 2 ? QStringLiteral("Courier New") : QStringLiteral("Times New Roman")); break;
        }
    }
    s->setSelStart(0);
    return s;
}

int runBenchmarks(int argc, char** argv) { return runWith<QGuiApplication>(argc, argv); }

}  // namespace tornelia::bench

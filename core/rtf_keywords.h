#pragma once

// The control words the reader knows: one sorted table of name, kind, id and
// default parameter, looked up by binary search.

#include <cstdint>
#include <string_view>

namespace tornelia::rtf {

enum class Kind : std::uint8_t { Flag, Toggle, Value, Destination, Symbol };

enum class Id : std::uint16_t {
    Af, SkipDest, Ansi, Ansicpg, B, Bin, Blue, Bullet, Caps, Cb, Cell, Cf, Colortbl, Cpg, Cs, Dbch,
    Deff, Dibitmap, Dn, Ds, Emdash, Emfblip, Emspace, Endash, Enspace, F, FontFamily, Fcharset, Fi,
    Field, FieldInst, FieldResult, Fonttbl, Fprq, Fs, Green, Hich, Highlight, I, Ilvl, Jpegblip,
    Ldblquote, LevelNfc, LevelNumbers, LevelStartAt, LevelText, Li, Line, List, ListId, ListLevel,
    ListName, ListOverride, ListOverrideTable, ListTable, Loch, Lquote, Ls, Ltrmark, Mac, Macpict,
    Row, NonShpPict, Nosupersub, Object, Page, Par, Pard, Pc, Pca, Pich, Pichgoal, Picscalex,
    Picscaley, Pict, Picw, Picwgoal, Plain, Pn, PnStyle, PnFont, Pngblip, PnLevel, PnBullet, PnBody,
    PnCont, PnStart, PnTextAfter, PnTextBefore, Qc, Qj, Ql, Qmspace, Qr, Rdblquote, Red, Ri, Rquote,
    Rtlmark, S, Scaps, Shape, ShapeInst, ShpPict, ShapeResult, ShapeName, ShapeProperty, Strike,
    Striked, StshfDbch, StshfHich, StshfLoch, Stylesheet, Sub, Super, ShapeValue, Tab, Tb, Tldot,
    Tleq, Tlhyph, Tlth, Tlul, Tqc, Tqdec, Tqr, Ts, Tx, U, Uc, Ud, Ul, Uld, Uldash, Uldashd,
    Uldashdd, Uldb, Uldbl, Ulhair, Ulwave, Ulnone, Ulth, Ulw, Up, Upr, V, Wbitmap, Wmetafile, Zwj,
    Zwnj,
};

struct Keyword {
    std::string_view name;
    Kind kind;
    Id id;
    int defaultParam;
};

// nullptr for a word the reader does not know.
const Keyword* findKeyword(std::string_view name);

}  // namespace tornelia::rtf

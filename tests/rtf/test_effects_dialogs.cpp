// The logic behind the special formatting windows: which effect each choice
// runs, on which text, and what a bad entry does.

#include "rtf/frm_api_ped.h"
#include "rtf/frm_ce.h"
#include "rtf/frm_ond.h"
#include "rtf/frm_sott.h"
#include "tests/rtf/effects_support.h"

using namespace tornelia;

namespace {

struct Documents {
    Documents()
    {
        testo.setText(QStringLiteral("Mare calmo"));
        twin.setText(QStringLiteral("Mare calmo"));
        direct.AssignControls(&twin, &colours);
    }
    std::function<void()> undoStep()
    {
        return [this] { ++undos; };
    }
    void selectBoth(long start, long length)
    {
        test::select(testo, start, length);
        test::select(twin, start, length);
    }
    test::RecordingMessages messages;
    test::ScriptedColours colours;
    RichTextSurface testo;
    RichTextSurface twin;
    ClsRTFFontLooks direct{messages};
    int undos = 0;
};

}  // namespace

TEST(EffectsDialogs, SpecialColoursRunTheVariantOfTheList)
{
    Documents d;
    SpecialColours ce(d.testo, d.messages, &d.colours, d.undoStep());
    EXPECT_EQ(SpecialColours::methods(), (QStringList{"Candy", "Material", "Arcobaleno", "Casuale", "Spettro"}));
    EXPECT_EQ(ce.chooseMethod("Casuale"),
              (QStringList{"Tutti i colori", "Arcobaleno", "RossoGiallo", "GialloVerde", "VerdeAzzurro",
                           "AzzurroBlu", "BluMagenta", "MagentaRosso", "Grigio"}));

    // One character is no selection: nothing runs, nothing is kept for undo.
    const QString before = d.testo.TextRTF();
    ce.chooseMethod("Material");
    test::select(d.testo, 2, 1);
    ce.chooseDetail(2);
    EXPECT_EQ(d.testo.TextRTF(), before);
    EXPECT_EQ(d.undos, 0);

    // Each list entry is its effect, on text or on background as chosen.
    d.selectBoth(0, 10);
    ce.setToTextFlag(false);
    ce.chooseDetail(2);
    d.direct.Materials("gold", false, true, false);
    EXPECT_EQ(d.testo.TextRTF(), d.twin.TextRTF());
    ce.setToTextFlag(true);
    ce.chooseMethod("Arcobaleno");
    ce.chooseDetail(1);
    d.direct.RainBow(false, true);
    EXPECT_EQ(d.testo.TextRTF(), d.twin.TextRTF());
    ce.chooseMethod("Spettro");
    ce.chooseDetail(3);
    d.direct.SpectrumSector(3, false, true, true);
    EXPECT_EQ(d.testo.TextRTF(), d.twin.TextRTF());
    ce.chooseMethod("Candy");
    ce.chooseDetail(5);
    d.direct.Candy(5, 0, true);
    EXPECT_EQ(d.testo.TextRTF(), d.twin.TextRTF());
    // An entry past the list does nothing.
    ce.chooseDetail(6);
    EXPECT_EQ(d.testo.TextRTF(), d.twin.TextRTF());
    EXPECT_EQ(d.undos, 4);
    EXPECT_TRUE(d.messages.shown.isEmpty());
}

TEST(EffectsDialogs, SpecialUnderlineShowsOneStyleAndToggles)
{
    Documents d;
    RichTextSurface preview;
    SpecialUnderline sott(d.testo, preview, d.messages, d.undoStep());
    const QString plain = preview.TextRTF();
    EXPECT_EQ(preview.Text(), "Testo di prova");
    // The sample shows the chosen style alone.
    sott.choose(1);
    sott.choose(2);
    EXPECT_EQ(preview.TextRTF(), test::kSurfaceHead + "\\viewkind4\\uc1\\pard\\uldash\\f0\\fs20 Testo di prova\\par\r\n}\r\n");
    sott.choose(SpecialUnderline::kNone);
    EXPECT_EQ(preview.TextRTF(), plain);

    // "Nessuna" applies nothing.
    const QString before = d.testo.TextRTF();
    test::select(d.testo, 0, 4);
    sott.apply();
    EXPECT_EQ(d.testo.TextRTF(), before);
    EXPECT_EQ(d.undos, 0);
    // "&Normale" underlines words only; a second press takes it off again.
    sott.choose(0);
    sott.apply();
    EXPECT_EQ(d.testo.TextRTF(), test::kSurfaceHead + "\\viewkind4\\uc1\\pard\\ulw\\f0\\fs20 Mare\\ulnone  calmo\\par\r\n}\r\n");
    sott.apply();
    EXPECT_EQ(d.testo.TextRTF(), before);
    EXPECT_EQ(d.undos, 2);
}

TEST(EffectsDialogs, RaiseLowerTakesNumbersOnly)
{
    Documents d;
    d.testo.setText(QStringLiteral("H2O"));
    RaiseLower r(d.testo, d.messages, d.undoStep());
    test::select(d.testo, 1, 1);
    EXPECT_EQ(r.currentText(), "Altezza attuale: 0");
    EXPECT_TRUE(r.apply(false, " 60 "));
    EXPECT_EQ(r.currentText(), "Altezza attuale: -60");
    // The old offset goes first: raising a lowered character raises it.
    EXPECT_TRUE(r.apply(true, "40,4"));
    EXPECT_EQ(r.currentText(), "Altezza attuale: 40");
    test::select(d.testo, 0, 3);
    EXPECT_EQ(r.currentText(), "Altezza attuale: non determinabile");

    const QString before = d.testo.TextRTF();
    for (const char* bad : {"", "alto", "12px", "99999"})
        EXPECT_FALSE(r.apply(true, bad)) << bad;
    EXPECT_EQ(d.testo.TextRTF(), before);
    EXPECT_EQ(d.messages.shown, QStringList(4, "Errore valore|Inserire un valore valido!|0|3"));
    EXPECT_EQ(d.undos, 2);
}

TEST(EffectsDialogs, RippleWindowShowsThenApplies)
{
    Documents d;
    RichTextSurface preview;
    RippleWaves w(d.testo, preview, d.messages, d.undoStep());
    EXPECT_EQ(preview.Text(), "Testo normale");
    EXPECT_EQ(QStringList({w.field(0), w.field(1), w.field(2)}), (QStringList{"6", "2", "0"}));

    // The sample's middle line rides the wave; the lines around it do not.
    w.setField(RippleWaves::Ampiezza, "2");
    w.setField(RippleWaves::LunghOnde, "1 passo");
    ASSERT_TRUE(w.chooseOption(RippleWaves::OndePosizione));
    EXPECT_EQ(preview.Text(), RippleWaves::previewText());
    EXPECT_EQ(preview.TextRTF(),
              test::kSurfaceHead +
                  "\\viewkind4\\uc1\\pard\\f0\\fs28 Niente\\par\r\n\\dn1 G\\dn2 u\\dn1 a\\up0 r\\up1 d\\up2 a "
                  "\\up1 l\\up0 '\\dn1 e\\dn2 f\\dn1 f\\up0 e\\up1 t\\up2 t\\up1 o \\up0 s\\dn1 u \\dn2 q\\dn1 u"
                  "\\up0 e\\up1 s\\up2 t\\up1 o \\up0 t\\dn1 e\\dn2 s\\dn1 t\\up0 o\\par\r\nNiente\\par\r\n}\r\n");

    // A scroll bar moves its field and remakes the sample.
    w.scroll(RippleWaves::ValPartenza, 1);
    EXPECT_EQ(std::make_tuple(w.field(2), w.amplitude(), w.value(), w.step()), std::make_tuple(QString("1"), 2, 1, 1));

    // A field that is no number: a message, and the sample stays.
    const QString sample = preview.TextRTF();
    w.setField(RippleWaves::Ampiezza, "molto");
    EXPECT_FALSE(w.chooseOption(RippleWaves::OndeDimensioni));
    EXPECT_EQ(preview.TextRTF(), sample);
    EXPECT_EQ(d.messages.shown, QStringList{"Errore valore|Inserire un valore valido!|0|3"});

    // Applying runs the option now chosen with the numbers the sample was
    // last made with: sizes around the text's own, from 20 + 1.
    test::select(d.testo, 0, 10);
    w.apply();
    EXPECT_EQ(d.testo.TextRTF(), test::kSurfaceHead +
                                     "\\viewkind4\\uc1\\pard\\f0\\fs18 M\\fs15 a\\fs18 r\\fs21 e \\fs24 c\\fs27 a"
                                     "\\fs24 l\\fs21 m\\fs18 o\\par\r\n}\r\n");
    EXPECT_EQ(d.undos, 1);
}

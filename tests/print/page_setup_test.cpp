// The page: what is stored under "Margini", the printable line, and the
// page setup window's fields, buttons, preview and confirmation.
#include "core/ports.h"
#include "core/settings.h"
#include "print/frm_imp.h"
#include "print/page_setup.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QToolButton>

namespace tornelia {
namespace {

class RecordingMessages final : public MessagePort {
public:
    QString mostraMsg(const QString& title, const QString& text, int buttons, int icon) override
    {
        said << QStringList{title, text, QString::number(buttons), QString::number(icon)}.join(" | ");
        return QStringLiteral("ok");
    }
    QString inputBox(const QString&, const QString&) override { return {}; }
    QStringList said;
};

struct Store {
    QTemporaryDir dir;
    SettingsStore settings{dir.path()};
    QStringList margini() const
    {
        QStringList v;
        for (const char* k : {"0", "1", "2", "3", "4"})
            v << settings.leggiReg("Tornelia", "Margini", k, "(none)");
        return v;
    }
};

TEST(PageSettings, DefaultsRoundTripAndUnreadableValues)
{
    Store s;
    PageSettings page{9, 9, 9, 9, 2};
    CaricaMargini(s.settings, page);
    EXPECT_EQ(page, (PageSettings{1, 1, 2, 2, 1}));

    SalvaMargini(s.settings, PageSettings{2.25, 0.9, 12, 1.7637, 2});
    EXPECT_EQ(s.margini(), (QStringList{"2.25", "0.9", "12", "1.7637", "2"}));
    PageSettings back;
    CaricaMargini(s.settings, back);
    EXPECT_EQ(back, (PageSettings{2.25, 0.9, 12, 1.7637, 2}));

    // A value edited by hand into nonsense falls back to its default alone;
    // a comma is read as the decimal point.
    s.settings.scriviReg("Tornelia", "Margini", "0", "abc");
    s.settings.scriviReg("Tornelia", "Margini", "2", "3,5");
    s.settings.scriviReg("Tornelia", "Margini", "4", "x");
    CaricaMargini(s.settings, back);
    EXPECT_EQ(back, (PageSettings{1, 0.9, 3.5, 1.7637, 1}));
}

TEST(PageSettings, PrintableLineOfBothOrientations)
{
    EXPECT_DOUBLE_EQ(larghezzaTesto(PageSettings{}), 11907 - 4 * 567);
    EXPECT_DOUBLE_EQ(larghezzaTesto(PageSettings{1, 1, 2, 2, 2}), 16839.9 - 4 * 567);
    EXPECT_DOUBLE_EQ(larghezzaTesto(PageSettings{1, 1, 0.5, 3.25, 1}), 11907 - 3.75 * 567);
    EXPECT_DOUBLE_EQ(sheetHeightTwips(1), 16839.9);
    EXPECT_DOUBLE_EQ(sheetHeightTwips(2), 11907);
}

TEST(PageSetup, HashDotZeroFormat)
{
    const std::pair<double, QString> cases[] = {{0, ".0"},     {0.9, ".9"},      {2, "2.0"},   {2.25, "2.3"},
                                                {12, "12.0"}, {10.04, "10.0"}, {9.96, "10.0"}, {-1.5, "-1.5"}};
    for (const auto& [value, text] : cases)
        EXPECT_EQ(formatHashDot0(value), text) << value;
}

// The page setup's logic as the window opens it, over empty settings.
struct PageSetupModelTest : ::testing::Test {
    PageSetupModelTest() { f.Carica(); }
    Store s;
    RecordingMessages m;
    PageSetupModel f{s.settings, m};
};

TEST_F(PageSetupModelTest, PlusAndMinusStopAtTheirLimitsButTypingIsFree)
{
    EXPECT_EQ((QStringList{f.field(Sup), f.field(Inf), f.field(Sin), f.field(Des)}),
              (QStringList{"1.0", "1.0", "2.0", "2.0"}));
    EXPECT_EQ(f.Orie(), 1);

    // Down from 1.0: one step to .9, then no more.
    f.minus(Sup);
    f.minus(Sup);
    EXPECT_EQ(f.field(Sup), ".9");
    // Up to 10.0 and no further.
    f.setField(Inf, "9.8");
    for (int i = 0; i < 5; ++i)
        f.plus(Inf);
    EXPECT_EQ(f.field(Inf), "10.0");
    // Twelve typed stands; the minus button brings it down a tenth.
    f.setField(Sin, "12");
    f.minus(Sin);
    EXPECT_EQ(f.field(Sin), "11.9");
    // A field that holds no number is left to the person.
    f.setField(Des, "due");
    f.plus(Des);
    f.minus(Des);
    EXPECT_EQ(f.field(Des), "due");
    f.setField(Des, "2,45");
    f.FormattaMargini();
    EXPECT_EQ(f.field(Des), "2.5");
}

TEST_F(PageSetupModelTest, ConfirmStoresOrRefusesWithAMessage)
{
    f.setField(Sin, "x1");
    PageSettings page;
    EXPECT_FALSE(f.confirm(page));
    EXPECT_EQ(m.said, QStringList{"Imposta pagina | Il margine sinistro non è un numero: correggilo e riprova. | 0 | 2"});
    EXPECT_EQ(s.margini(), (QStringList{"(none)", "(none)", "(none)", "(none)", "(none)"}));

    f.setField(Sin, "12");
    f.setField(Sup, ".9");
    f.setOrie(2);
    EXPECT_TRUE(f.confirm(page));
    EXPECT_EQ(page, (PageSettings{0.9, 1, 12, 2, 2}));
    EXPECT_EQ(s.margini(), (QStringList{"0.9", "1", "12", "2", "2"}));
}

TEST_F(PageSetupModelTest, PreviewIsTheSheetToScaleWithTheTextFrame)
{
    PageSetupModel::Preview p = f.preview();
    EXPECT_EQ(p.sheet, QRectF(0, 0, 21 * 57.0, 29.7 * 57));
    EXPECT_EQ(p.frame, QRectF(2 * 57.0, 57, 21 * 57.0 - 4 * 57 - 30, 29.7 * 57 - 2 * 57 - 30));

    f.setOrie(2);
    f.setField(Sup, "3");
    p = f.preview();
    EXPECT_EQ(p.sheet, QRectF(0, 0, 29.7 * 57, 21 * 57.0));
    EXPECT_EQ(p.frame, QRectF(2 * 57.0, 3 * 57, 29.7 * 57 - 4 * 57 - 30, 21 * 57.0 - 4 * 57 - 30));

    // Margins wider than the sheet leave an empty frame, not a negative one.
    f.setField(Sin, "15");
    f.setField(Des, "15");
    EXPECT_EQ(f.preview().frame.width(), 0);
}

TEST(PageSetup, WindowButtonsOrientationAndConfirm)
{
    Store s;
    RecordingMessages m;
    FrmImp w(s.settings, m);
    w.setAttribute(Qt::WA_DeleteOnClose, false);
    std::optional<PageSettings> confirmed;
    QObject::connect(&w, &FrmImp::confirmed, [&](const PageSettings& p) { confirmed = p; });
    EXPECT_EQ(w.windowTitle(), "Imposta pagina");
    EXPECT_TRUE(w.Option1()->isChecked());

    w.findChild<QToolButton*>("p2")->click();
    w.findChild<QToolButton*>("m0")->click();
    w.Option2()->click();
    EXPECT_EQ(w.marginField(Sin)->text(), "2.1");
    EXPECT_EQ(w.marginField(Sup)->text(), ".9");
    EXPECT_EQ(w.model().Orie(), 2);

    w.marginField(Des)->setText("3,25");
    w.confirm();
    ASSERT_TRUE(confirmed);
    EXPECT_EQ(*confirmed, (PageSettings{0.9, 1, 2.1, 3.25, 2}));
    EXPECT_EQ(s.margini(), (QStringList{"0.9", "1", "2.1", "3.25", "2"}));
    EXPECT_TRUE(m.said.isEmpty());
}

}  // namespace
}  // namespace tornelia

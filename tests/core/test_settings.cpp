#include "core/settings.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

using tornelia::SettingsStore;

namespace {

class SettingsTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString folder() const { return dir.path() + "/Tornelia"; }

    QString fileText(const QString& path) const
    {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QStringLiteral("<missing>");
    }
    void writeFileText(const QString& path, const QByteArray& text) const
    {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(text);
    }
};

TEST_F(SettingsTest, EmptyValueReadsAsTheDefault)
{
    SettingsStore store(folder());
    EXPECT_EQ(store.leggiReg("", "Font", "1", "Tahoma"), "Tahoma");
    EXPECT_EQ(store.leggiReg("", "Font", "1"), "");

    store.scriviReg("", "Font", "1", "Verdana");
    EXPECT_EQ(store.leggiReg("", "Font", "1", "Tahoma"), "Verdana");

    // No key can be set to "" over a non-empty default.
    store.scriviReg("", "Font", "1", "");
    EXPECT_EQ(store.leggiReg("", "Font", "1", "Tahoma"), "Tahoma");
    EXPECT_EQ(store.leggiReg("", "Font", "1"), "");
}

TEST_F(SettingsTest, NamesAsTheyStandAndValuesAsStrings)
{
    {
        SettingsStore store(folder());
        store.scriviReg("", "Toolbar 1", "1", "True");
        store.scriviReg("", "Toolbar 1", "2", "120");
        store.scriviReg("", "FileRecenti", "1", "/home/anna/lettere, varie/zia.tnl");
        store.scriviReg("", "FileRecenti", "Descrizione", "EFR");
        store.scriviReg("", "DefaultExt", "Apri", "Tutti i file (*.*)");
        store.scriviReg("", "General", "1", "@ciao; a=b \"c\"");
        store.scriviReg("", "Varie", "1", "  città  ");
    }
    // A second store, as a second session would, reads every value back.
    SettingsStore again(folder());
    EXPECT_EQ(again.leggiReg("Tornelia", "Toolbar 1", "1"), "True");
    EXPECT_EQ(again.leggiReg("", "Toolbar 1", "2"), "120");
    EXPECT_EQ(again.leggiReg("", "Toolbar 2", "1"), "");
    EXPECT_EQ(again.leggiReg("", "FileRecenti", "1"), "/home/anna/lettere, varie/zia.tnl");
    EXPECT_EQ(again.leggiReg("", "FileRecenti", "Descrizione"), "EFR");
    EXPECT_EQ(again.leggiReg("", "DefaultExt", "Apri"), "Tutti i file (*.*)");
    EXPECT_EQ(again.leggiReg("", "General", "1"), "@ciao; a=b \"c\"");
    EXPECT_EQ(again.leggiReg("", "Varie", "1"), "  città  ");

    // One file for the application, every value a plain string in it.
    EXPECT_EQ(again.filePath(""), folder() + "/Tornelia.conf");
    EXPECT_EQ(fileText(folder() + "/Tornelia.conf"),
              "[DefaultExt]\n"
              "Apri=Tutti i file (*.*)\n"
              "\n"
              "[FileRecenti]\n"
              "1=\"/home/anna/lettere, varie/zia.tnl\"\n"
              "Descrizione=EFR\n"
              "\n"
              "[%General]\n"
              "1=\"@@ciao; a=b \\\"c\\\"\"\n"
              "\n"
              "[Toolbar%201]\n"
              "1=True\n"
              "2=120\n"
              "\n"
              "[Varie]\n"
              "1=\"  città  \"\n");
}

TEST_F(SettingsTest, EachApplicationHasItsOwnFile)
{
    SettingsStore store(folder());
    store.scriviReg("", "Font", "2", "12");
    store.scriviReg("Altro", "Font", "2", "14");
    EXPECT_EQ(store.leggiReg("Tornelia", "Font", "2"), "12");
    EXPECT_EQ(store.leggiReg("Altro", "Font", "2"), "14");
    EXPECT_EQ(store.filePath("Altro"), folder() + "/Altro.conf");
    EXPECT_EQ(fileText(folder() + "/Altro.conf"), "[Font]\n2=14\n");
}

TEST_F(SettingsTest, ReadsWhatAnotherSessionOrAHandEditLeft)
{
    SettingsStore store(folder());
    store.scriviReg("", "Salva", "0", "5");
    ASSERT_EQ(store.leggiReg("", "Salva", "0"), "5");

    // The file changed under us: the next read sees the change. An unquoted
    // comma is still one string; a value ends at a NUL; a value of another
    // kind counts as missing.
    writeFileText(store.filePath(""),
                  "[Salva]\n0=10\n1=\n"
                  "[Stili]\n1=a, b,c\n"
                  "[Help]\n1=@String(guida\\0resto)\n"
                  "[Righello]\n1=@Rect(0 0 1 1)\n");
    EXPECT_EQ(store.leggiReg("", "Salva", "0", "0"), "10");
    EXPECT_EQ(store.leggiReg("", "Salva", "1", "0"), "0");
    EXPECT_EQ(store.leggiReg("", "Stili", "1"), "a, b, c");
    EXPECT_EQ(store.leggiReg("", "Help", "1"), "guida");
    EXPECT_EQ(store.leggiReg("", "Righello", "1", "False"), "False");
}

TEST_F(SettingsTest, DefaultFolderIsTheUsersConfigurationFolder)
{
    // Only looked at, never written: the test mode points it away from the
    // real user's folder, but nothing here needs to write there.
    const SettingsStore store;
    EXPECT_EQ(store.folder(),
              QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/Tornelia");
    EXPECT_EQ(store.filePath(""), store.folder() + "/Tornelia.conf");
}

}  // namespace

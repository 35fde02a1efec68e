// The letter and the fax cover, compared whole with the same documents
// written by hand as RTF: fonts, bold runs, alignment, sizes and every
// line break must match.
#include "services/doc_services.h"
#include "services/service_windows.h"

#include "core/rich_text_surface.h"

#include <gtest/gtest.h>

namespace tornelia {
namespace {

std::string handMade(const QString& body, const QString& fonts = QStringLiteral("{\\f0 Tahoma;}"))
{
    RichTextSurface t;
    t.setTextRTF(QStringLiteral("{\\rtf1\\ansi\\deff0{\\fonttbl") + fonts + QStringLiteral("}\n") + body +
                 QStringLiteral("}"));
    return t.TextRTF().toStdString();
}

LetterFields filledLetter()
{
    LetterFields f;
    f.date = QStringLiteral("23/11/26");
    f.sender[0] = QStringLiteral("Mario Rossi");
    f.sender[1] = QStringLiteral("Via Roma 1");
    f.sender[2] = QStringLiteral("06 123");
    f.sender[3] = QStringLiteral("06 124");
    f.sender[4] = QStringLiteral("mario@example.it");
    f.recipient[0] = QStringLiteral("Ditta Bianchi");
    f.recipient[1] = QStringLiteral("Via Po 2");
    f.recipient[2] = QStringLiteral("02 555");
    f.recipient[3] = QStringLiteral("02 556");
    f.opening = QStringLiteral("Egregio signore");
    f.closing = QStringLiteral("Cordiali saluti");
    f.closingName = QStringLiteral("Mario Rossi");
    return f;
}

TEST(Letter, FilledFieldsReplaceTheDocument)
{
    RichTextSurface t;
    t.setText(QStringLiteral("quello che c'era prima"));
    composeLetter(t, filledLetter());
    EXPECT_EQ(t.TextRTF().toStdString(),
              handMade(QStringLiteral("\\pard\\f0\\fs20\\par 23/11/26\\par\\par"
                                      "\\b Mario Rossi\\par Via Roma 1\\par Tel. 06 123 Fax. 06 124\\par "
                                      "mario@example.it\\par"
                                      "\\pard\\qr Ditta Bianchi\\par Via Po 2\\par Tel. 02 555 Fax. 02 556\\par"
                                      "\\pard\\par\\b0\\par Egregio signore,\\par\\par "
                                      "Inserire qui il testo della lettera\\par\\par "
                                      "Cordiali saluti\\par\\par Mario Rossi")));
}

TEST(Letter, EmptyFieldsKeepLabelsAndLines)
{
    RichTextSurface t;
    LetterFields f;
    composeLetter(t, f);
    EXPECT_EQ(t.TextRTF().toStdString(), handMade(QStringLiteral("\\pard\\f0\\fs20\\par\\par\\par\\par"
                                                   "\\b\\par Tel.  Fax. \\par\\par"
                                                   "\\pard\\qr\\par\\par Tel.  Fax. \\par"
                                                   "\\pard\\par\\b0\\par ,\\par\\par "
                                                   "Inserire qui il testo della lettera\\par\\par\\par\\par\\par")));
    // The text alone, as the person reads it.
    EXPECT_EQ(t.Text(), QStringLiteral("\r\n\r\n\r\n\r\n\r\nTel.  Fax. \r\n\r\n\r\n\r\nTel.  Fax. \r\n\r\n\r\n,\r\n\r\n"
                                       "Inserire qui il testo della lettera\r\n\r\n\r\n\r\n"));
}

TEST(Fax, FilledFieldsGiveTheCover)
{
    RichTextSurface t;
    t.setText(QStringLiteral("vecchio testo"));
    FaxFields f;
    f.date = QStringLiteral("lunedì 23 novembre 2026");
    f.time = QStringLiteral("09:05");
    f.senderName = QStringLiteral("Mario Rossi");
    f.senderPhone = QStringLiteral("06 123");
    f.faxNumber = QStringLiteral("02 556");
    f.recipient = QStringLiteral("Ditta Bianchi");
    f.subject = QStringLiteral("Preventivo");
    composeFax(t, f);
    EXPECT_EQ(t.TextRTF().toStdString(),
              handMade(QStringLiteral("\\pard\\qc\\f0\\fs60 Fax\\par"
                                      "\\pard\\f1\\fs20\\b Per: \\b0 Ditta Bianchi\\par"
                                      "\\b Fax: \\b0 02 556\\par"
                                      "\\b Da: \\b0 Mario Rossi  06 123\\par"
                                      "\\b Data: \\b0 luned\\'ec 23 novembre 2026 09:05\\par"
                                      "\\b Oggetto: \\b0 Preventivo\\par"
                                      "\\b Per problemi o domande relativi a questo fax, chiamare il numero 06 123\\b0\\par"
                                      "___________Inizio fax___________\\par"
                                      "\\fs22 [Digitare qui il testo del fax]\\par"
                                      "\\fs20 ____________Fine fax____________\\par\\par"),
                       QStringLiteral("{\\f0 Times New Roman;}{\\f1 Tahoma;}")));
}

TEST(Fax, EmptyFieldsLeaveTheLabels)
{
    RichTextSurface t;
    composeFax(t, FaxFields{});
    EXPECT_EQ(t.Text(), QStringLiteral("Fax\r\nPer: \r\nFax: \r\nDa:   \r\nData:  \r\nOggetto: \r\n"
                                       "Per problemi o domande relativi a questo fax, chiamare il numero \r\n"
                                       "___________Inizio fax___________\r\n[Digitare qui il testo del fax]\r\n"
                                       "____________Fine fax____________\r\n"));
}

TEST(Composers, DateChoicesInTheirOrder)
{
    EXPECT_EQ(dateChoices(QDate(2026, 3, 2)),
              (QStringList{QStringLiteral("02 marzo 2026"), QStringLiteral("02/03/26"), QStringLiteral("02/03/2026"),
                           QStringLiteral("lunedì 02 marzo 2026")}));
}

}  // namespace
}  // namespace tornelia

namespace tornelia {
namespace {

// The window's fields reach the letter: the closing name follows the
// sender's, and the two-line address keeps its break.
TEST(Letter, WindowFieldsReachTheDocument)
{
    RichTextSurface t;
    FrmLett window(t);
    window.setField(QStringLiteral("txtM0"), QStringLiteral("Anna"));
    window.setField(QStringLiteral("txtM1"), QStringLiteral("Via Roma 1\n00100 Roma"));
    window.setField(QStringLiteral("cmbData"), QStringLiteral("domani"));
    window.setField(QStringLiteral("cmbD0"), QStringLiteral("Caro"));
    window.confirm();
    EXPECT_EQ(t.Text(), QStringLiteral("\r\ndomani\r\n\r\nAnna\r\nVia Roma 1\r\n00100 Roma\r\nTel.  Fax. \r\n\r\n\r\n\r\n"
                                       "Tel.  Fax. \r\n\r\n\r\nCaro,\r\n\r\nInserire qui il testo della lettera\r\n\r\n"
                                       "Cordiali saluti\r\n\r\nAnna"));
}

}  // namespace
}  // namespace tornelia

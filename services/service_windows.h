#pragma once

// The document services' windows: the encryption window, compression, the
// error report, the file association, the letter and fax composers and the
// program's own about window.

#include "services/doc_services.h"

#include <QDialog>

#include <functional>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QTextEdit;

namespace tornelia {

class DialogPort;
class MessagePort;
class RichTextSurface;
class ShellPort;
class UndoStore;

// "Cripta Documento": asks and confirms; the confirmation takes two undo
// snapshots of the document, so the step can be taken back.
class CR : public QDialog {
    Q_OBJECT
public:
    CR(UndoStore& undo, MessagePort& messages, QWidget* parent = nullptr);
    // Presses the state button k and releases the other.
    void pressBut(int k);
    int pressed() const;
    void u1();

private:
    UndoStore& undo_;
    MessagePort& messages_;
    QPushButton* but_[2];
};

// "Compressione documento": collects a source and a destination and hands
// them to the compression tool.
class FrmZip : public QDialog {
    Q_OBJECT
public:
    FrmZip(DialogPort& dialogs, MessagePort& messages, ShellPort& shell, QStringList toolFolders,
           QWidget* parent = nullptr);
    bool compressing() const { return compress_; }
    void setMode(bool compress);
    void setSource(const QString& path);
    void setDestination(const QString& path);
    QString destinationLabel() const;
    void browseSource();
    void browseDestination();
    // Validates and starts the tool; false when the data were refused.
    bool run();

private:
    DialogPort& dialogs_;
    MessagePort& messages_;
    ShellPort& shell_;
    QStringList toolFolders_;
    bool compress_ = true;
    QLineEdit* t_[2];
    QLabel* label1_;
    QRadioButton* u_[2];
};

// "Segnala errori": a report written as an unsent message and opened in the
// mail program.
class FrmDebuG : public QDialog {
    Q_OBJECT
public:
    FrmDebuG(MessagePort& messages, ShellPort& shell, QString dataFolder, QWidget* parent = nullptr);
    static QStringList systems();
    void setSystem(int index);
    void setSeverity(int index);
    void setReportText(const QString& text);
    // The send action; false when nothing was sent.
    bool MaIL();

private:
    MessagePort& messages_;
    ShellPort& shell_;
    QString dataFolder_;
    QComboBox* so_;
    QRadioButton* o_[3];
    QPlainTextEdit* text1_;
};

// "Associa": ties extensions to the program.
class FrmAsso : public QDialog {
    Q_OBJECT
public:
    FrmAsso(MessagePort& messages, QString programPath, QWidget* parent = nullptr);
    void setChecked(int index, bool on);
    void setOtherExtension(const QString& text);
    bool otherEnabled() const;
    void u1();
    void u3();
    // Where the association is written; tests point it elsewhere and leave
    // the system's databases alone.
    void setTarget(const QString& dataHome, bool runTools)
    {
        dataHome_ = dataHome;
        runTools_ = runTools;
    }

private:
    void associate(const QString& extension);

    MessagePort& messages_;
    QString programPath_;
    QString dataHome_;
    bool runTools_ = true;
    QCheckBox* c_[4];
    QFrame* frame1_;
    QLineEdit* t_;
};

// "Creazione veloce lettera".
class FrmLett : public QDialog {
    Q_OBJECT
public:
    FrmLett(RichTextSurface& testo, QWidget* parent = nullptr);
    LetterFields fields() const;
    void setField(const QString& name, const QString& text);  // "txtM0", "txtD2", "txtNC", ...
    void confirm();

private:
    RichTextSurface& testo_;
    QComboBox* cmbData_;
    QLineEdit* txtM_[5];  // the address, index 1, is the two-line field below
    QPlainTextEdit* address_;
    QLineEdit* txtD_[4];
    QComboBox* cmbD_[2];
    QLineEdit* txtNC_;
};

// "Creazione veloce Fax".
class FrmFax : public QDialog {
    Q_OBJECT
public:
    FrmFax(RichTextSurface& testo, QWidget* parent = nullptr);
    FaxFields fields() const;
    void setField(int index, const QString& text);
    void confirm();

private:
    RichTextSurface& testo_;
    QComboBox* cmbData_;
    QLineEdit* t_[5];
};

// The program's own about window, when no "about" tool is installed.
class FrmInfo : public QDialog {
    Q_OBJECT
public:
    FrmInfo(const QString& dataFolder, QWidget* parent = nullptr);
    static QString versionText(const QString& dataFolder);
};

inline const QString kLicenceText = QStringLiteral("GNU General Public License, versione 3 o successiva");

}  // namespace tornelia

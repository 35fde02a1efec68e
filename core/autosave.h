#pragma once

// What keeps work from being lost: the timed autosave TimAuTO, the exit save
// into the "temp" folder of the per-user data folder, and the listing of
// that folder for the recovery window.

#include "core/document.h"
#include "core/ports.h"
#include "core/settings.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

namespace tornelia {

class AutoSave : public QObject {
    Q_OBJECT
public:
    // dataFolder: the folder that holds "temp".
    AutoSave(Document& document, SettingsStore& settings, MessagePort& messages, QString dataFolder,
             QObject* parent = nullptr);

    QString tempFolder() const;

    // At start: the interval from key "0" of "Salva"; a non-zero one starts
    // TimAuTO. A value that is no number counts as off.
    void caricaIntervallo();
    int minuti() const { return minuti_; }
    QTimer& TimAuTO() { return timer_; }

    // The toolbar's "Attiva/disattiva salvataggio automatico" button.
    bool attivo() const { return attivo_; }
    void setAttivo(bool on) { attivo_ = on; }

    // One second of TimAuTO.
    void tick();
    long contatore() const { return contatore_; }

    // The save itself: over the document's own file, or into
    // "temp/documento 1.rtf" for a document without one. The saved length
    // stays, so the document still counts as changed. False on a failure,
    // which has been told.
    bool salvaAutomatico();

    // At closing, after the question: with key "1" of "Salva" at 1 and some
    // text, a copy goes into "temp". Gives the path written, or "".
    QString salvaUscita(const QDateTime& now = QDateTime::currentDateTime());
    // "Doc " + "dd mmm yyyy" + " - " + "hh.nn" + ".tnl"; a colon cannot stand
    // in a file name, hence the point.
    static QString nomeUscita(const QDateTime& now);

private:
    bool ensureTemp();
    bool save(const QString& path, int kind);

    Document& document_;
    SettingsStore& settings_;
    MessagePort& messages_;
    QString dataFolder_;
    QTimer timer_;
    int minuti_ = 0;
    long contatore_ = 0;
    bool attivo_ = true;
};

// The "temp" folder as the recovery window lists it.
struct RecoveryFile {
    QString name;
    QString path;
    qint64 bytes = 0;
    QDateTime modified;
    QDateTime created;
};

struct RecoveryListing {
    bool exists = false;
    QList<RecoveryFile> files;
    qint64 totalBytes = 0;
    // "La cartella Temp non esiste", "La cartella Temp è vuota", or "".
    QString message() const;
    // "Totale 3 files. Spazio occupato 1.234 bytes"
    QString foot() const;
};

RecoveryListing listRecovery(const QString& tempFolder);
// The dates of a row: the short date and the time "hh.mm.ss".
QString recoveryDate(const QDateTime& when);
// Deletes the files of the listing; gives the paths that could not go.
QStringList deleteRecovery(const RecoveryListing& listing);
// "Elimina i files temporanei": asks first, deletes on the answer, and
// names the files that could not go. True when something was deleted.
bool eliminaRecupero(const RecoveryListing& listing, MessagePort& messages);

}  // namespace tornelia

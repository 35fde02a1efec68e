#pragma once

// "Statistiche documento": words, characters and lines of the document,
// refreshed by a timer while the window is open.

#include "tools/statistics.h"

#include <QDialog>

class QLabel;
class QTimer;

namespace tornelia {

class RichTextSurface;

class St : public QDialog {
    Q_OBJECT
public:
    explicit St(RichTextSurface& testo, QWidget* parent = nullptr);

    // Counts again and shows the figures.
    void aggiorna();
    QLabel* valoreParole() const { return parole_; }
    QLabel* valoreCaratteri() const { return caratteri_; }
    QLabel* valoreLinee() const { return linee_; }
    QTimer* timer() const { return timer1_; }

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    RichTextSurface& testo_;
    QLabel* parole_ = nullptr;
    QLabel* caratteri_ = nullptr;
    QLabel* linee_ = nullptr;
    QTimer* timer1_ = nullptr;
};

// "Conteggio parole...": shows the word count window beside the document.
void CpAr(RichTextSurface& testo, QWidget* owner);

}  // namespace tornelia

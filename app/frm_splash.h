#pragma once

// The window on the screen while the main window gets ready: the program's
// name and a line that tells what is being done.

#include <QWidget>

class QLabel;

namespace tornelia {

class FrmSplash : public QWidget {
    Q_OBJECT
public:
    explicit FrmSplash(QWidget* parent = nullptr);
    // Shows text as the progress line and paints it at once.
    void progress(const QString& text);
    QString progressText() const;

private:
    QLabel* line_ = nullptr;
};

}  // namespace tornelia

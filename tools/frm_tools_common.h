#pragma once

// What the text tools' windows share: one window of a kind at a time,
// shown beside the document without stopping it.

#include <QWidget>

namespace tornelia {

// The window of that name owned by owner, brought to the front, or a new one
// from make. The window deletes itself when closed.
template <typename W, typename Make>
W* showSingleWindow(QWidget* owner, const QString& name, Make make)
{
    W* w = owner ? owner->findChild<W*>(name, Qt::FindDirectChildrenOnly) : nullptr;
    if (!w) {
        w = make();
        w->setObjectName(name);
        w->setAttribute(Qt::WA_DeleteOnClose);
    }
    w->show();
    w->raise();
    w->activateWindow();
    return w;
}

}  // namespace tornelia

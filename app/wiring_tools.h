#pragma once

// The spelling of the main window: its marks live as long as the window, and
// the context menu asks them about the word under the mouse.

class QMenu;
class QPoint;
class QWidget;

namespace tornelia {

class AppContext;
class SpellingSession;

// The window's spelling, made on first use over the window's editing view.
SpellingSession& spellingSession(AppContext& context, QWidget* owner);
// Before the document's context menu pops up at global: the spelling entries
// go at its top when a marked word is there.
void prepareSpellingMenu(AppContext& context, QWidget* owner, QMenu* menu, const QPoint& global);

}  // namespace tornelia

#pragma once

// How the main window arranges what it shows, and its two views of the
// document. The normal view lets the text fill the window; the page view
// gives the text the paper's width and stands it on a grey field with the
// ruler above. The zoom is a scale of the view, never of the document.
//
// The window hands over the widgets it owns; this object places them in the
// area they share and keeps the view, the zoom, the ruler and the menu
// entries of "Visualizza" in step.

#include "print/page_settings.h"

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QAction;
class QComboBox;
class QWidget;

namespace tornelia {

class ClsAPIZoom;
class EditorView;
class MessagePort;
class RichTextSurface;
class Rul;
class RulerController;
class SettingsStore;
struct PageLayout;

// --- the arithmetic, apart from any widget ---------------------------------

// The index of a zoom level in the list "50%" ... "250%"; the menu's
// "100% - dimensioni reali" counts as "100%". -1 for no level.
int TrovaIndZoom(const QString& livelloZoom);
// The level less its last character: "120%" gives "120".
QString percentoZoom(const QString& livelloZoom);

// What the page view shows for the page and the zoom level, in twips of the
// document. scale is the view's zoom fraction: the text gets the paper's
// line times the level's percent, as the view at that scale shows it.
PageLayout pageLayoutFor(const PageSettings& page, const QString& livelloZoom, double scale);

struct LayoutInput {
    QSize area;
    int toolbarHeight[2] = {0, 0};  // 0 for a hidden toolbar
    int rulerHeight = 0;            // 0 when the ruler is hidden
    int clipWidth = 0;              // 0 when the clipboard panel is hidden
};

struct LayoutPlan {
    QRect toolbar[2];
    QRect ruler;      // the ruler strip, over the view
    QRect editor;     // the view with its field and scroll bars
    QRect separator;  // the panel's splitter
    QRect clip;       // the clipboard panel
};

// Toolbars on top, one under the other; the clipboard panel on the right
// with its splitter; the ruler over the view, the view filling the rest.
LayoutPlan planLayout(const LayoutInput& in);

// --- the object the main window keeps ----------------------------------------

class MainLayout : public QObject {
    Q_OBJECT
public:
    struct Widgets {
        QWidget* area = nullptr;  // the parent of all below, whose size they share
        QWidget* toolbar[2] = {nullptr, nullptr};
        QWidget* clip = nullptr;       // the clipboard panel, may be null
        QWidget* separator = nullptr;  // its splitter, may be null
        EditorView* editor = nullptr;
    };

    MainLayout(SettingsStore& settings, RichTextSurface& testo, MessagePort& messages, QObject* parent = nullptr);
    ~MainLayout() override;

    // The widgets to place. The ruler and the guide line are made here, as
    // children of the area. Runs ImpostaVis and a layout pass.
    void setWidgets(const Widgets& widgets);
    // The entries "Visualizzazione Normale", "Visualizzazione pagina  (WYSIWYG)"
    // and "&Righello" of "Visualizza", kept checked and enabled by the view.
    void setViewActions(QAction* normale, QAction* pagina, QAction* righello);
    // The zoom combo: filled with the levels; picking one runs the zoom.
    // The zoom combo the layout keeps in step; with followPicks a level
    // picked in it zooms, otherwise its owner calls zoomToLevel.
    void setZoomCombo(QComboBox* cbZoom, bool followPicks = true);

    // --- what the menus call ---
    // 0 normal view, 1 page view: stores the choice, then ImpostaVis and RiDime.
    void mnuTipovis(int index);
    // "&Righello": the ruler shown or hidden, and the choice stored.
    void mnuRighello();
    // An item of "Zoom", by its caption, as if picked in the combo.
    void mnuZoom(const QString& caption);
    // Runs before the ruler changes the indent of the document, so that the
    // change can be undone (the undo store's unDO).
    void setBeforeChange(std::function<void()> unDO);
    // The page window confirmed a new page.
    void applyPage(const PageSettings& page);

    // --- the procedures of the layout ---
    void ImpostaVis();
    void RiDime();
    // Places every widget; a widget already in place is not touched.
    // Returns how many geometries it set.
    int layoutPass();
    // The clipboard panel after a toolbar or the ruler was shown or hidden.
    void moVCliP();
    // The clipboard panel and its splitter, made when first shown; both are
    // children of area().
    void setClipPanel(QWidget* clip, QWidget* separator);
    QWidget* area() const { return w_.area; }
    // Runs the zoom of the level shown: the view's scale, then the page width.
    void zoomToLevel(const QString& livelloZoom);

    bool vistaPagina() const { return vistaPagina_; }
    const QString& livelloZoom() const { return livelloZoom_; }
    PageSettings& page() { return page_; }
    Rul* ruler() const { return rul_; }
    QWidget* guideLine() const { return picLin_; }
    RulerController* rulerController() const { return rulerController_.get(); }
    bool rulerWanted() const;

signals:
    void viewChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void syncActions();
    void followPageOrigin();
    bool place(QWidget* w, const QRect& r, bool visible);
    double viewScale() const;

    SettingsStore& settings_;
    RichTextSurface& testo_;
    std::unique_ptr<ClsAPIZoom> zoom_;
    PageSettings page_;
    bool vistaPagina_ = false;
    QString livelloZoom_ = QStringLiteral("100%");
    Widgets w_;
    Rul* rul_ = nullptr;
    QWidget* picLin_ = nullptr;
    std::unique_ptr<RulerController> rulerController_;
    QPointer<QAction> normale_;
    QPointer<QAction> pagina_;
    QPointer<QAction> righello_;
    QPointer<QComboBox> cbZoom_;
    std::function<void()> beforeChange_;
    bool inPass_ = false;
};

}  // namespace tornelia

#pragma once

// "Anteprima di stampa": the pages of the document as they will print, one
// tab per page, at a zoom from 30% to 200%. A page is drawn at the zoom
// when it is shown, never beforehand, so a long document opens at once.

#include "print/page_settings.h"
#include "print/print_layout.h"

#include <QDialog>
#include <QImage>

#include <array>
#include <memory>

class QComboBox;
class QPushButton;
class QScrollArea;
class QTabBar;
class QTextDocument;
class QToolButton;

namespace tornelia {

class MessagePort;
class FrmPreview;

// picChild: the page at the zoom, drawn when it comes into view.
class PreviewPage : public QWidget {
    Q_OBJECT
public:
    explicit PreviewPage(FrmPreview& owner, QWidget* parent);
    // Drops the drawn page: the page, the zoom or the layout changed.
    void invalidate();
    const QImage& drawn() const { return image_; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    FrmPreview& owner_;
    QImage image_;
};

class FrmPreview : public QDialog, private PageSink {
    Q_OBJECT
public:
    // The zoom steps of cboPercent.
    static const std::array<int, 8> kPercents;

    FrmPreview(const QTextDocument& testo, const PageSettings& page, MessagePort& messages,
               QWidget* parent = nullptr);
    ~FrmPreview() override;

    // Lays the document out again on the page; the page shown stays when it still exists.
    void layOut(const PrintMargins& margins, int orientamento);
    void relayFromPageWindow(const PageSettings& page);

    // SizePreview: the page's picture takes the sheet's size at the zoom.
    void SizePreview();
    void PictureShow(int pageIndex);
    void PreviewPrints();

    int pageCount() const;
    int currentPage() const;
    int percent() const;
    void setPercent(int percent);
    // One step of the list up (+1) or down (-1), as the buttons and the wheel.
    void stepZoom(int direction);
    const PrintLayout* layout() const { return layout_.get(); }

    QTabBar* TabPreview() const { return tabs_; }
    QComboBox* cboPercent() const { return cboPercent_; }
    QToolButton* zoomOut() const { return btn_[0]; }
    QToolButton* zoomIn() const { return btn_[1]; }
    QToolButton* previousPage() const { return btn_[2]; }
    QToolButton* nextPage() const { return btn_[3]; }
    PreviewPage* picChild() const { return picChild_; }
    QScrollArea* picParent() const { return picParent_; }

private:
    friend class PreviewPage;
    // PageSink: the tabs are made while the document is laid out.
    void SizePreview(const PrintLayout& layout) override;
    bool AddPage(int pageNumber) override;
    void updateButtons();
    // The picture of a page could not be made.
    void outOfMemory();

    const QTextDocument& testo_;
    PageSettings page_;
    MessagePort& messages_;
    std::shared_ptr<const PrintLayout> layout_;
    QTabBar* tabs_ = nullptr;
    QComboBox* cboPercent_ = nullptr;
    std::array<QToolButton*, 4> btn_{};
    QScrollArea* picParent_ = nullptr;
    PreviewPage* picChild_ = nullptr;
    QPushButton* command1_ = nullptr;
    QPushButton* cmdClose_ = nullptr;
    QSizeF sheet_;
    bool memoryReported_ = false;
};

}  // namespace tornelia

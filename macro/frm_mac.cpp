#include "macro/frm_mac.h"

#include <QAction>
#include <QFont>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMouseEvent>
#include <QSplitter>
#include <QStatusBar>
#include <QTextEdit>
#include <QToolBar>
#include <QVBoxLayout>

namespace tornelia {

frmMac::frmMac(MacroHost host, DialogPort& dialogs, QWidget* owner)
    : QWidget(owner, Qt::Window), editor_(host, dialogs)
{
    setObjectName(QStringLiteral("frmMac"));
    setWindowTitle(QStringLiteral("Macro"));

    x_ = new QToolBar(this);
    x_->setIconSize(QSize(22, 22));
    x_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    auto button = [this](const char* icon, const QString& text, void (MacroEditor::*action)()) {
        QAction* a = x_->addAction(QIcon::fromTheme(QLatin1String(icon)), text);
        connect(a, &QAction::triggered, this, [this, action] {
            (editor_.*action)();
            showCaret();
            refresh();
        });
    };
    button("document-new", QStringLiteral("Nuovo"), &MacroEditor::nuovo);
    button("document-open", QStringLiteral("Apri"), &MacroEditor::apri);
    button("document-save", QStringLiteral("Salva"), &MacroEditor::salva);
    x_->addSeparator();
    button("media-playback-start", QStringLiteral("Esegui"), &MacroEditor::esegui);

    t_ = new QTextEdit(this);
    t_->setAcceptRichText(false);
    t_->setDocument(editor_.t().document());
    t_->setTextCursor(editor_.t().cursor());
    t_->setLineWrapMode(QTextEdit::NoWrap);
    t_->setTabStopDistance(4 * t_->fontMetrics().horizontalAdvance(u' '));
    t_->setContextMenuPolicy(Qt::NoContextMenu);
    t_->installEventFilter(this);
    t_->viewport()->installEventFilter(this);
    // The logic works on the surface's caret, so it follows the one the
    // person moves.
    connect(t_, &QTextEdit::cursorPositionChanged, this, [this] { editor_.t().adoptCursor(t_->textCursor()); });
    connect(t_, &QTextEdit::selectionChanged, this, [this] { editor_.t().adoptCursor(t_->textCursor()); });

    mnu_ = new QMenu(this);
    mnu_->addAction(QStringLiteral("&Taglia"), this, [this] { editor_.cutText(); showCaret(); });
    mnu_->addAction(QStringLiteral("&Copia"), this, [this] { editor_.copyText(); });
    mnu_->addAction(QStringLiteral("&Incolla"), this, [this] { editor_.pasteText(); showCaret(); });

    List1_ = new QListWidget(this);
    // The list shows the words a macro is written with; the title and the
    // description of the chosen one stand below it.
    for (const MacroCommandHelp& h : macroCommandList()) {
        auto* item = new QListWidgetItem(h.name, List1_);
        item->setToolTip(h.title);
    }
    List1_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(List1_, &QListWidget::currentRowChanged, this, &frmMac::selectEntry);
    connect(List1_, &QListWidget::itemDoubleClicked, this, [this](QListWidgetItem* item) {
        editor_.insertCommand(List1_->row(item));
        showCaret();
        t_->setFocus();
    });

    com_ = new QLabel(this);
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    com_->setFont(fixed);
    com_->setFrameShape(QFrame::StyledPanel);
    com_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    com_->hide();
    des_ = new QLabel(this);
    des_->setWordWrap(true);
    des_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    des_->setMinimumHeight(des_->fontMetrics().lineSpacing() * 4);

    auto* side = new QWidget(this);
    auto* sideLayout = new QVBoxLayout(side);
    sideLayout->setContentsMargins(0, 0, 0, 0);
    sideLayout->addWidget(new QLabel(QStringLiteral("Comandi:"), side));
    sideLayout->addWidget(List1_, 1);
    sideLayout->addWidget(com_);
    sideLayout->addWidget(des_);

    auto* split = new QSplitter(Qt::Horizontal, this);
    split->addWidget(t_);
    split->addWidget(side);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 2);
    split->setChildrenCollapsible(false);

    sb_ = new QStatusBar(this);
    sb_->setSizeGripEnabled(true);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(x_);
    auto* body = new QWidget(this);
    auto* bodyLayout = new QHBoxLayout(body);
    bodyLayout->setContentsMargins(6, 6, 6, 6);
    bodyLayout->addWidget(split);
    layout->addWidget(body, 1);
    layout->addWidget(sb_);

    editor_.onStateChanged = [this] { refresh(); };
    resize(760, 480);
    split->setSizes({500, 240});
    refresh();
}

frmMac::~frmMac() = default;

void frmMac::refresh()
{
    sb_->showMessage(editor_.status());
}

void frmMac::selectEntry(int row)
{
    if (row < 0)
        return;
    com_->setText(MacroEditor::syntaxLabel(row));
    com_->show();
    des_->setText(MacroEditor::descriptionLabel(row));
}

void frmMac::showCaret()
{
    t_->setTextCursor(editor_.t().cursor());
}

bool frmMac::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == t_ && event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        // Only with Ctrl alone: Ctrl+Shift+V and the like stay the widget's.
        if (key->modifiers() == Qt::ControlModifier) {
            switch (key->key()) {
            case Qt::Key_C:
                editor_.copyText();
                return true;
            case Qt::Key_V:
                editor_.pasteText();
                showCaret();
                return true;
            case Qt::Key_X:
                editor_.cutText();
                showCaret();
                return true;
            default:
                break;
            }
        }
    }
    if (watched == t_->viewport() && event->type() == QEvent::MouseButtonRelease) {
        auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::RightButton) {
            mnu_->popup(mouse->globalPosition().toPoint());
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace tornelia

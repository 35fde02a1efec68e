#include "app/gui_ports.h"

#include "app/app_context.h"
#include "colour/colore.h"
#include "filedialog/frm_cd.h"

#include <QApplication>
#include <QDateTime>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QInputDialog>
#include <QLineEdit>
#include <QFileInfo>
#include <QFontDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QProcess>
#include <QPushButton>
#include <QStyle>
#include <QUrl>
#include <QVBoxLayout>

namespace tornelia {

namespace {

QWidget* dialogParent()
{
    return QApplication::activeWindow();
}

QString iconName(int icon)
{
    switch (icon) {
    case 1: return QStringLiteral("dialog-information");
    case 2: return QStringLiteral("dialog-warning");
    case 3: return QStringLiteral("dialog-error");
    case 4: return QStringLiteral("dialog-question");
    default: return {};
    }
}

QStyle::StandardPixmap fallbackIcon(int icon)
{
    switch (icon) {
    case 2: return QStyle::SP_MessageBoxWarning;
    case 3: return QStyle::SP_MessageBoxCritical;
    case 4: return QStyle::SP_MessageBoxQuestion;
    default: return QStyle::SP_MessageBoxInformation;
    }
}

}  // namespace

MessageDialog::MessageDialog(const QString& title, const QString& text, int buttons, int icon,
                             QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(title);
    setModal(true);

    auto* outer = new QVBoxLayout(this);
    auto* body = new QHBoxLayout;
    body->setSpacing(16);
    const QString name = iconName(icon);
    if (!name.isEmpty()) {
        QIcon i = QIcon::fromTheme(name);
        if (i.isNull())
            i = style()->standardIcon(fallbackIcon(icon));
        auto* pic = new QLabel(this);
        pic->setObjectName(QStringLiteral("icon"));
        pic->setPixmap(i.pixmap(48, 48));
        pic->setAlignment(Qt::AlignTop);
        body->addWidget(pic);
    }
    auto* label = new QLabel(text, this);
    label->setObjectName(QStringLiteral("text"));
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    label->setMinimumWidth(260);
    label->setMaximumWidth(520);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    body->addWidget(label, 1);
    outer->addLayout(body);

    QList<QPair<QString, QString>> set;
    switch (buttons) {
    case 1:
        set = {{QStringLiteral("ok"), QStringLiteral("OK")}, {QStringLiteral("an"), QStringLiteral("Annulla")}};
        escapeAnswer_ = QStringLiteral("an");
        break;
    case 2:
        set = {{QStringLiteral("si"), QStringLiteral("Sì")}, {QStringLiteral("no"), QStringLiteral("No")}};
        escapeAnswer_ = QStringLiteral("no");
        break;
    case 3:
        set = {{QStringLiteral("si"), QStringLiteral("Sì")},
               {QStringLiteral("no"), QStringLiteral("No")},
               {QStringLiteral("an"), QStringLiteral("Annulla")}};
        escapeAnswer_ = QStringLiteral("an");
        break;
    default:
        set = {{QStringLiteral("ok"), QStringLiteral("OK")}};
        escapeAnswer_ = QStringLiteral("ok");
        break;
    }
    answer_ = escapeAnswer_;

    auto* row = new QHBoxLayout;
    row->addStretch(1);
    for (const auto& [answer, caption] : set) {
        auto* b = new QPushButton(caption, this);
        b->setObjectName(answer);
        b->setMinimumWidth(80);
        connect(b, &QPushButton::clicked, this, [this, a = answer] { choose(a); });
        row->addWidget(b);
        buttons_.append({answer, b});
    }
    row->addStretch(1);
    outer->addLayout(row);
    buttons_.first().second->setDefault(true);
    buttons_.first().second->setFocus();
    setSizeGripEnabled(false);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
}

QPushButton* MessageDialog::button(const QString& answer) const
{
    for (const auto& [a, b] : buttons_)
        if (a == answer)
            return b;
    return nullptr;
}

void MessageDialog::choose(const QString& answer)
{
    answer_ = answer;
    accept();
}

void MessageDialog::reject()
{
    answer_ = escapeAnswer_;
    QDialog::reject();
}

void MessageDialog::keyPressEvent(QKeyEvent* event)
{
    if (!(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))) {
        QString answer;
        switch (event->key()) {
        case Qt::Key_O: answer = QStringLiteral("ok"); break;
        case Qt::Key_S: answer = QStringLiteral("si"); break;
        case Qt::Key_N: answer = QStringLiteral("no"); break;
        case Qt::Key_A: answer = QStringLiteral("an"); break;
        default: break;
        }
        if (QPushButton* b = answer.isEmpty() ? nullptr : button(answer)) {
            b->click();
            event->accept();
            return;
        }
    }
    QDialog::keyPressEvent(event);
}

void MessageDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    QApplication::beep();
}

QString GuiMessagePort::mostraMsg(const QString& title, const QString& text, int buttons, int icon)
{
    MessageDialog dialog(title, text, buttons, icon, dialogParent());
    dialog.exec();
    return dialog.answer();
}

QString GuiMessagePort::inputBox(const QString& title, const QString& prompt)
{
    bool ok = false;
    const QString answer = QInputDialog::getText(dialogParent(), title, prompt, QLineEdit::Normal, QString(), &ok);
    return ok ? answer : QString();
}

std::optional<QString> GuiDialogPort::chooseFile(FileChoice choice, const QString& suggestedName)
{
    return Apriii(requestFor(choice, settings_, suggestedName), settings_, messages_, dialogParent());
}

std::optional<QString> GuiDialogPort::openFile(const QString& title, const QStringList& filters)
{
    CdRequest r;
    r.mode = CdMode::Apri;
    r.title = title;
    r.filters = filtersFromLabels(filters);
    return Apriii(r, settings_, messages_, dialogParent());
}

std::optional<QString> GuiDialogPort::saveFile(const QString& title, const QStringList& filters,
                                               const QString& suggestedName)
{
    CdRequest r;
    r.mode = CdMode::Salva;
    r.title = title;
    r.filters = filtersFromLabels(filters);
    r.suggestedName = suggestedName;
    return Apriii(r, settings_, messages_, dialogParent());
}

std::optional<QString> GuiDialogPort::chooseFolder(const QString& title)
{
    CdRequest r;
    r.mode = CdMode::Apri;
    r.folderMode = true;
    r.title = title;
    r.filters = filtersFromLabels({QStringLiteral("Tutti i file (*.*)")});
    return Apriii(r, settings_, messages_, dialogParent());
}

std::optional<FontChoice> GuiDialogPort::chooseFont(const FontChoice& initial)
{
    QFont f(initial.name);
    f.setPointSizeF(initial.size > 0 ? initial.size : 10);
    f.setBold(initial.bold);
    f.setItalic(initial.italic);
    f.setUnderline(initial.underline);
    f.setStrikeOut(initial.strike);
    bool ok = false;
    const QFont chosen = QFontDialog::getFont(&ok, f, dialogParent());
    if (!ok)
        return std::nullopt;
    FontChoice c = initial;
    c.name = chosen.family();
    c.size = float(chosen.pointSizeF());
    c.bold = chosen.bold();
    c.italic = chosen.italic();
    c.underline = chosen.underline();
    c.strike = chosen.strikeOut();
    return c;
}

std::optional<std::uint32_t> GuiDialogPort::chooseColour(std::uint32_t initial)
{
    // The program's own picker, with the custom colours kept beside the
    // user's other data.
    GuiMessagePort messages;
    colour::Colore picker(AppContext::ensureDataFolder(), &messages);
    picker.setColor(initial);
    if (!picker.Show(dialogParent()))
        return std::nullopt;
    return picker.Color();
}

bool GuiShellPort::openDocument(const QString& pathOrUrl)
{
    const QUrl url = QUrl::fromUserInput(pathOrUrl, QDir::currentPath(), QUrl::AssumeLocalFile);
    return url.isValid() && QDesktopServices::openUrl(url);
}

bool GuiShellPort::startDetached(const QString& program, const QStringList& arguments)
{
    return QProcess::startDetached(program, arguments);
}

void GuiShellPort::showProperties(const QString& path)
{
    auto* w = new PropertiesWindow(path, dialogParent());
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->show();
}

namespace {

QString dateText(const QDateTime& t)
{
    if (!t.isValid())
        return QStringLiteral("non disponibile");
    return QLocale(QLocale::Italian, QLocale::Italy).toString(t.toLocalTime(), QStringLiteral("dddd d MMMM yyyy, HH:mm:ss"));
}

QString permissionText(const QFileInfo& info)
{
    const QFile::Permissions p = info.permissions();
    QString rwx;
    const QFile::Permission bits[] = {QFile::ReadOwner, QFile::WriteOwner, QFile::ExeOwner,
                                      QFile::ReadGroup, QFile::WriteGroup, QFile::ExeGroup,
                                      QFile::ReadOther, QFile::WriteOther, QFile::ExeOther};
    const char marks[] = {'r', 'w', 'x', 'r', 'w', 'x', 'r', 'w', 'x'};
    for (int i = 0; i < 9; ++i)
        rwx += (p & bits[i]) ? QChar::fromLatin1(marks[i]) : u'-';
    const QString access = info.isWritable() ? QStringLiteral("Lettura e scrittura")
                                             : QStringLiteral("Sola lettura");
    return access + QStringLiteral(" (") + rwx + u')';
}

}  // namespace

PropertiesWindow::PropertiesWindow(const QString& path, QWidget* parent) : QDialog(parent)
{
    const QFileInfo info(path);
    const QLocale it(QLocale::Italian, QLocale::Italy);
    setWindowTitle(QStringLiteral("Proprietà - ") + info.fileName());
    setWindowIcon(QIcon::fromTheme(QStringLiteral("document-properties")));

    auto* outer = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    form->setLabelAlignment(Qt::AlignRight);
    auto add = [&](const QString& label, const QString& value, const char* name) {
        auto* v = new QLabel(value, this);
        v->setObjectName(QString::fromLatin1(name));
        v->setTextInteractionFlags(Qt::TextSelectableByMouse);
        form->addRow(label, v);
    };
    add(QStringLiteral("Nome:"), info.fileName(), "name");
    add(QStringLiteral("Cartella:"), QDir::toNativeSeparators(info.absolutePath()), "folder");
    QString size = it.toString(info.size()) + QStringLiteral(" byte");
    if (info.size() >= 1024)
        size += QStringLiteral(" (") + it.formattedDataSize(info.size(), 1, QLocale::DataSizeTraditionalFormat) + u')';
    add(QStringLiteral("Dimensione:"), size, "size");
    add(QStringLiteral("Creato:"), dateText(info.birthTime()), "created");
    add(QStringLiteral("Modificato:"), dateText(info.lastModified()), "modified");
    add(QStringLiteral("Ultimo accesso:"), dateText(info.lastRead()), "read");
    add(QStringLiteral("Proprietario:"), info.owner(), "owner");
    add(QStringLiteral("Permessi:"), permissionText(info), "permissions");
    outer->addLayout(form);

    auto* row = new QHBoxLayout;
    row->addStretch(1);
    auto* close = new QPushButton(QStringLiteral("Chiudi"), this);
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    row->addWidget(close);
    outer->addLayout(row);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
}

}  // namespace tornelia

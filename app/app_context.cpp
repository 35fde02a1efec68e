#include "app/app_context.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace tornelia {

void FrameRelay::setCaption(const QString& caption)
{
    if (frame_)
        frame_->setCaption(caption);
}

void FrameRelay::setStatusPanel(int index, const QString& text)
{
    if (frame_)
        frame_->setStatusPanel(index, text);
}

void FrameRelay::showProgress(const QString& text, int percent)
{
    if (frame_)
        frame_->showProgress(text, percent);
}

void FrameRelay::hideProgress()
{
    if (frame_)
        frame_->hideProgress();
}

void FrameRelay::processEvents()
{
    if (frame_)
        frame_->processEvents();
}

AppContext::AppContext(Ports ports, const QString& settingsFolder)
    : settings_(settingsFolder), ports_(std::move(ports)), testo_(std::make_unique<RichTextSurface>())
{
    Q_ASSERT(ports_.messages && ports_.dialogs && ports_.shell);
    const QString app = QStringLiteral("Tornelia");
    const QString font = settings_.leggiReg(app, QStringLiteral("Font"), QStringLiteral("1"), QStringLiteral("Tahoma"));
    bool ok = false;
    float size = settings_.leggiReg(app, QStringLiteral("Font"), QStringLiteral("2"), QStringLiteral("10")).toFloat(&ok);
    if (!ok || size <= 0)
        size = 10;
    testo_->setDefaultFormat(font, size);

    document_ = std::make_unique<Document>(*testo_, settings_, *ports_.messages, *ports_.dialogs,
                                           *ports_.shell, frame_);
    QObject::connect(testo_.get(), &RichTextSurface::SelChange, testo_.get(),
                     [doc = document_.get()] { doc->selChanged(); });

    undo_ = std::make_unique<UndoStore>(*testo_);
    undo_->setAnnullaOff(settings_.leggiReg(app, QStringLiteral("Ann"), QStringLiteral("1")) == QLatin1String("True"));
    document_->onUndoClear = [undo = undo_.get()] { undo->clear(); };
    document_->onUndoOpened = [undo = undo_.get()] { undo->keepOpened(); };

    // The typing handlers do not let events through: each is short, and a
    // paint in the middle of a key lays out and draws the text a second time
    // before the key is done.
    typing_ = std::make_unique<TypingAssist>(*testo_, settings_, *undo_);
}

AppContext::~AppContext()
{
    // Those who refer to the surface go first.
    typing_.reset();
    undo_.reset();
    document_.reset();
    testo_.reset();
}

QString AppContext::ensureDataFolder()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (!folder.isEmpty())
        QDir().mkpath(folder);
    return folder;
}

QString unquotePath(const QString& path)
{
    QString p = path.trimmed();
    if (p.startsWith(u'"'))
        p.remove(0, 1);
    if (p.endsWith(u'"'))
        p.chop(1);
    return p;
}

void AppContext::openAtStart(const QString& commandLine)
{
    Document& doc = document();
    RichTextSurface& t = testo();
    const QString path = unquotePath(commandLine);
    const QFileInfo info(path);
    if (!path.isEmpty() && info.isFile()) {
        const QString before = t.FileName();
        try {
            if (Document::kindOf(path) == 2) {
                // A text file is shown as it stands, RTF code included.
                if (info.size() > 0)
                    t.LoadFile(path, RichTextSurface::TextKind);
                t.recordFileName(path);
            } else {
                // Writing FileName loads the file by its contents, so a .tnl
                // holding plain text opens as text.
                t.setFileName(path);
            }
        } catch (const SurfaceError& e) {
            // An unreadable file opens nothing, as a missing one, and the
            // person is told why.
            t.recordFileName(before);
            doc.mostraMsg(QStringLiteral("Apri file"),
                          QStringLiteral("Impossibile leggere il file %1: %2").arg(path, QString::fromUtf8(e.what())), 0,
                          3);
        }
    }
    doc.nomeFile = t.FileName();
    if (doc.nomeFile.isEmpty()) {
        doc.nomeFile = kNoDocument;
        frame_.setCaption(Document::captionFor(kNoDocument));
    } else {
        frame_.setCaption(Document::captionFor(doc.nomeFile));
        if (doc.onUndoOpened)
            doc.onUndoOpened();
        if (doc.onRecentAdd)
            doc.onRecentAdd(doc.nomeFile);
    }
    doc.segnaSalvato();
}

}  // namespace tornelia

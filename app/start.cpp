#include "app/start.h"

#include "app/app_context.h"
#include "app/frm_splash.h"
#include "app/gui_ports.h"
#include "app/main_window.h"
#include "controls/editor_view.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace tornelia {

int startMainWindow(QApplication& app, const QString& commandLine)
{
    // Qt's own dialogs (files, fonts, colours) speak the program's language.
    auto* qt = new QTranslator(&app);
    if (qt->load(QLocale(QLocale::Italian, QLocale::Italy), QStringLiteral("qtbase"), QStringLiteral("_"),
                 QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(qt);
    else
        delete qt;
    // Outside a desktop that names an icon theme, the icons come from the
    // one the install script brings.
    if (QIcon::themeName().isEmpty() || QIcon::themeName() == QLatin1String("hicolor"))
        QIcon::setThemeName(QStringLiteral("Adwaita"));
    QIcon::setFallbackThemeName(QStringLiteral("Adwaita"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("accessories-text-editor")));

    auto splash = std::make_unique<FrmSplash>();
    splash->show();
    splash->progress(QString());

    Ports ports{std::make_unique<GuiMessagePort>(), std::make_unique<GuiDialogPort>(),
                std::make_unique<GuiShellPort>()};
    AppContext ctx(std::move(ports));
    MainWindow window(ctx);
    window.Form_Load(commandLine, [s = splash.get()](const QString& text) { s->progress(text); });
    splash.reset();
    window.show();
    window.editor()->setFocus();
    return app.exec();
}

}  // namespace tornelia

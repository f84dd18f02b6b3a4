// Process entry: globals, command line, configuration, the main window.
#include "app/Body.h"
#include "app/Globals.h"
#include "app/QtTranslation.h"
#include "app/StartupOptions.h"
#include "app/WindowPlaces.h"

#include <QApplication>
#include <QDebug>
#include <QFileInfo>
#include <QTranslator>

int main(int argc, char **argv)
{
    // 1. Globals first: everything after reads them.
    InitGlobals();

    // 2. The command line goes into the table before any window exists.
    const QStringList fileKeys{ StartupOptions::ConfigOption, StartupOptions::ConfigOption2 };
    gConfig.parseArgs(argc, argv, false, QString(), fileKeys);

    // 3.-4.
    auto *app = new QApplication(argc, argv);
    auto *translator = new QTranslator;
    QApplication::setStyle(QStringLiteral("Fusion"));

    // 5.-6. A configuration that cannot be read leaves every default in place.
    const QString defaultConfig =
        QFileInfo(QCoreApplication::applicationDirPath() + QStringLiteral("/config.cfg")).canonicalFilePath();
    const QString configFile = StartupOptions::configFileName(gConfig, defaultConfig);
    gConfig.load(configFile);

    // 7.-9.
    StartupOptions::applyRootsAndButton(gConfig);
    qDebug().noquote() << "Config file : " + configFile;
    qDebug().noquote() << "Data root : " + gDataRoot + ", batch root : " + gBatchRoot;

    // 10.
    const StartupOptions::Flags flags = StartupOptions::readFlags(gConfig);
    if (flags.debug)
        gDebugFlag = true;

    // 11. Japanese is the default; -e keeps the interface in English.
    if (!flags.english) {
        if (translator->load(QStringLiteral(":Tessarelle_ja_JP"), QCoreApplication::applicationDirPath()))
            QCoreApplication::installTranslator(translator);
        else
            qDebug().noquote() << "Can't load the translation :Tessarelle_ja_JP";
        // the file dialogs' own buttons and labels
        installQtJapanese(app);
    }

    // 12.-14.
    auto *body = new Body;
    // Places are taken before closeAllWindows hides the windows.
    QObject::connect(body, &Body::finishing, body->windowPlaces(), &WindowPlaces::saveOnce);
    QObject::connect(body, &Body::finishing, app, &QApplication::closeAllWindows);
    body->windowPlaces()->restoreAll();
    body->show();

    // 15.-16. The -b file goes into the batch editor (a file that cannot be
    // opened leaves the editor as it was), and -x executes the editor's text
    // as its execute button would.
    if (!flags.batchFile.isEmpty())
        body->loadBatchFile(flags.batchFile);
    if (flags.execBatch)
        body->execBatch();

    // 17.
    const int rc = QApplication::exec();

    // 18. The window goes first, then the translator and the application.
    delete body;
    delete translator;
    delete app;
    return rc;
}

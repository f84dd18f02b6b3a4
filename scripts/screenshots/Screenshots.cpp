// Runs a batch in the program's own main window and, when the batch says
// "quit", takes a picture of every window instead of closing them: the
// pictures of the user's guide. Run by scripts/make-screenshots under Xvfb.
//   tessarelle_shots <picture folder> <config file> <batch file> [-e]
#include "app/Body.h"
#include "app/Globals.h"
#include "app/QtTranslation.h"
#include "app/WindowPlaces.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QDebug>
#include <QDir>
#include <QTabWidget>
#include <QTimer>
#include <QTranslator>

namespace {

bool shoot(QWidget *w, const QString &file)
{
    w->show();
    w->raise();
    QApplication::processEvents();
    const bool ok = w->grab().save(file);
    if (!ok)
        qDebug().noquote() << "Can't write" << file;
    return ok;
}

} // namespace

int main(int argc, char **argv)
{
    InitGlobals();
    QApplication app(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    const QStringList args = QApplication::arguments();
    if (args.size() < 4) {
        qDebug().noquote() << "usage: tessarelle_shots <picture folder> <config file> <batch file> [-e]";
        return 2;
    }
    const QDir out(args[1]);
    QDir().mkpath(out.path());
    gConfig.load(args[2]);
    QTranslator japanese;
    if (!args.contains(QStringLiteral("-e")) && japanese.load(QStringLiteral(":Tessarelle_ja_JP"))) {
        QCoreApplication::installTranslator(&japanese);
        installQtJapanese(&app);
    }

    Body body;
    body.resize(1100, 800);
    body.show();
    int failed = 0;
    QObject::connect(&body, &Body::finishing, &app, [&] {
        // a moment for the last redraws of the run
        QTimer::singleShot(500, &app, [&] {
            // Two tools draw nothing until asked: the image processor the
            // edges of the frame on display, the feature-value view the maps
            // of the run's values.
            if (auto *edges = body.findChild<QCheckBox *>(QStringLiteral("EdgeDetect")))
                edges->setChecked(true);
            if (auto *redraw = body.findChild<QAbstractButton *>(QStringLiteral("reDraw_")))
                redraw->click();
            WindowPlaces *places = body.windowPlaces();
            failed += !shoot(&body, out.filePath(QStringLiteral("main-window-map.png")));
            for (const QString &name : places->names()) {
                QWidget *w = places->window(name);
                if (w == &body)
                    continue;
                if (auto *tabs = w->findChild<QTabWidget *>(QStringLiteral("Tabs"))) {
                    for (int i = 0; i < tabs->count(); ++i) {
                        tabs->setCurrentIndex(i);
                        failed += !shoot(w, out.filePath(name + QLatin1Char('-') + tabs->widget(i)->objectName()
                                                         + QStringLiteral(".png")));
                    }
                    tabs->setCurrentIndex(0);
                } else {
                    failed += !shoot(w, out.filePath(name + QStringLiteral(".png")));
                }
            }
            if (auto *data = body.findChild<QAbstractButton *>(QStringLiteral("ShowData")))
                data->click();
            failed += !shoot(&body, out.filePath(QStringLiteral("main-window.png")));
            QApplication::exit(failed ? 1 : 0);
        });
    });
    body.loadBatchFile(args[3]);
    body.execBatch();
    return QApplication::exec();
}

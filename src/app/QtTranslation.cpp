#include "app/QtTranslation.h"

#include <QCoreApplication>
#include <QDebug>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

bool installQtJapanese(QObject *parent)
{
    auto *t = new QTranslator(parent);
    const QString dir = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (!t->load(QLocale(QLocale::Japanese, QLocale::Japan), QStringLiteral("qtbase"), QStringLiteral("_"), dir)) {
        qDebug().noquote() << "Can't load Qt's Japanese translation from" << dir;
        delete t;
        return false;
    }
    QCoreApplication::installTranslator(t);
    return true;
}

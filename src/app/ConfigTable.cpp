#include "app/ConfigTable.h"

#include "app/LineItems.h"

#include <QDebug>
#include <QFile>
#include <QTextStream>

namespace {

bool isOption(const QString &arg)
{
    return arg.startsWith(QLatin1Char('-'));
}

} // namespace

QString ConfigTable::parseArgs(int argc, char **argv, bool readNow, QString configFile,
                               const QStringList &fileKeys)
{
    QStringList arguments;
    arguments.reserve(argc);
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    return parseArgs(arguments, readNow, configFile, fileKeys);
}

QString ConfigTable::parseArgs(const QStringList &arguments, bool readNow, QString configFile,
                               const QStringList &fileKeys)
{
    const qsizetype n = arguments.size();
    qsizetype i = 0;
    while (i < n) {
        const QString &arg = arguments.at(i);
        args << arg;
        ++i;
        if (!isOption(arg))
            continue;   // belongs to no option: only kept in args
        QStringList gathered;
        while (i < n && !isOption(arguments.at(i))) {
            gathered << arguments.at(i);
            args << arguments.at(i);
            ++i;
        }
        add(arg, gathered.isEmpty() ? QString() : gathered.first(),
            gathered.join(QLatin1Char(' ')), QString());
    }

    for (const QString &k : fileKeys)
        configFile = value(k, configFile);
    if (readNow && !configFile.isEmpty())
        load(configFile);
    return configFile;
}

bool ConfigTable::load(const QString &fname)
{
    includedFiles = 0;
    return load(fname, 0);
}

bool ConfigTable::load(const QString &fname, int depth)
{
    fileName = fname;
    QFile f(fname);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qDebug().noquote() << "Can't open config file : " + fname;
        fileName.clear();
        defaultFile.clear();
        return false;
    }

    QTextStream in(&f);
    QString line;
    while (in.readLineInto(&line)) {
        const QString text = stripComment(line);
        if (text.simplified().isEmpty())
            continue;
        lines << text;

        QString key, val;
        const QString rest = splitFirstItem(text, &key).trimmed();
        splitFirstItem(rest, &val);

        if (key.toUpper() == QLatin1String("INCLUDE")) {
            if (depth + 1 > MaxIncludeDepth) {
                qDebug().noquote() << QString("INCLUDE of [%1] in [%2] refused: more than %3 nested includes")
                                          .arg(val, fname).arg(MaxIncludeDepth);
                continue;
            }
            if (++includedFiles > MaxIncludedFiles) {
                qDebug().noquote() << QString("INCLUDE of [%1] in [%2] refused: more than %3 included files")
                                          .arg(val, fname).arg(MaxIncludedFiles);
                continue;
            }
            load(val, depth + 1);
        } else {
            add(key, val, rest, QString());
        }
    }
    return true;
}

void ConfigTable::add(const QString &key, const QString &value, const QString &rest,
                      const QString &comment)
{
    const qsizetype i = keys.indexOf(key);
    if (i < 0) {
        keys << key;
        values << value;
        rests << rest;
        comments << comment;
    } else {
        values[i] = value;
        rests[i] = rest;
    }

    const QString upKey = key.toUpper();
    const qsizetype u = upKeys.indexOf(upKey);
    if (u < 0) {
        upKeys << upKey;
        upValues << value;
        upRests << rest;
        upComments << comment;
    } else {
        upValues[u] = value;
        upRests[u] = rest;
    }

    allKeys << key;
    allUpKeys << upKey;
    allValues << value;
    allRests << rest;
    allComments << comment;
    allUsed << false;
}

QString ConfigTable::valueExact(const QString &key, const QString &fallback) const
{
    const qsizetype i = keys.indexOf(key);
    return i < 0 ? fallback : values.at(i);
}

QString ConfigTable::value(const QString &key, const QString &fallback)
{
    const QString upKey = key.toUpper();
    const qsizetype u = upKeys.indexOf(upKey);
    if (u < 0)
        return fallback;
    for (qsizetype i = 0; i < allUpKeys.size() && i < allUsed.size(); ++i) {
        if (allUpKeys.at(i) == upKey)
            allUsed[i] = true;
    }
    return upValues.at(u);
}

QStringList ConfigTable::allRestsOf(const QString &upperKey)
{
    QStringList found;
    const qsizetype n = qMin(allUpKeys.size(), qMin(allRests.size(), allUsed.size()));
    for (qsizetype i = 0; i < n; ++i) {
        if (allUpKeys.at(i) == upperKey) {
            found << allRests.at(i);
            allUsed[i] = true;
        }
    }
    return found;
}

bool ConfigTable::appendToFile(const QString &key, const QString &value, const QString &rest,
                               const QString &comment)
{
    add(key, value, rest, comment);
    if (fileName.isEmpty())
        return false;
    QFile f(fileName);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text)) {
        qDebug().noquote() << "Can't append to config file : " + fileName;
        return false;
    }
    QTextStream out(&f);
    out << QString("%1\t%2 %3\t # %4\n").arg(key, value, rest, comment);
    return true;
}

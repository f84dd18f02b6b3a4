#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// The key/value table of the configuration file and the command line; the
// batch interpreter uses the same class for its variables.
//
// It keeps three views of the same definitions:
//  - keys/values/rests/comments: one row per distinct key as spelled; a later
//    definition overwrites value and rest, the first comment stays;
//  - upKeys/...: the same with the key in upper case, for case-insensitive
//    look-up;
//  - allKeys/...: every definition ever made, in order, never overwritten, for
//    keys that collect lines (such as `batch`).
// A row's value is the first item after the key; its rest is all of the line
// after the key, the value included.
class ConfigTable
{
public:
    QStringList keys, values, rests, comments;
    QStringList upKeys, upValues, upRests, upComments;
    QStringList allKeys, allUpKeys, allValues, allRests, allComments;
    QList<bool> allUsed;      // parallel to the third view
    QStringList args;         // the command line as given, program name included
    QString fileName;         // file last loaded; empty when it could not be opened
    QString defaultFile;      // reserved for appendToFile; cleared when a load fails
    QStringList lines;        // every non-blank line read, comment removed

    // Includes deeper than this are refused: a file that includes itself
    // (directly or through others) would otherwise recurse until the stack
    // runs out.
    static constexpr int MaxIncludeDepth = 16;
    // Files one load may include in all. The depth alone does not bound the
    // work: a file that includes itself twice would be read 2^16 times.
    static constexpr int MaxIncludedFiles = 256;

    // Records the command line (each "-option" becomes a row under its own
    // spelling), then looks up each of fileKeys in turn, the current
    // configFile being the default, and loads the result when readNow.
    // Returns the configuration file name that the look-ups arrived at.
    QString parseArgs(int argc, char **argv, bool readNow, QString configFile,
                      const QStringList &fileKeys);
    QString parseArgs(const QStringList &arguments, bool readNow, QString configFile,
                      const QStringList &fileKeys);

    // Reads a configuration file into the table; INCLUDE lines read another
    // file at that point. Returns whether the file could be opened.
    bool load(const QString &fileName);

    void add(const QString &key, const QString &value, const QString &rest,
             const QString &comment);

    // Case-sensitive look-up in the first view; does not mark the key used.
    QString valueExact(const QString &key, const QString &fallback = QString()) const;
    // Case-insensitive look-up; a key that is found is marked used.
    QString value(const QString &key, const QString &fallback = QString());
    // The rests of every definition of the (upper-case) key, in file order,
    // marked used.
    QStringList allRestsOf(const QString &upperKey);

    // Adds the row and, when a file was loaded, appends it to that file as
    // "key<TAB>value rest<TAB> # comment". Returns whether the line was written.
    bool appendToFile(const QString &key, const QString &value, const QString &rest,
                      const QString &comment);

private:
    bool load(const QString &fileName, int depth);
    int includedFiles = 0; // by the load in progress
};

#pragma once

#include <QString>

// The record of the server hosts and ports typed into the settings, kept in
// SSVHistory.dat in the working folder as appended lines "A: <host>" and
// "P: <port>"; the last line of each kind wins. It is only a record: the
// fields are never filled from it.
struct SSVHistory {
    static constexpr const char *FileName = "SSVHistory.dat";

    QString host; // empty when the file names none
    QString port;

    // A missing file gives empty strings.
    static SSVHistory read(const QString &fileName);
    static SSVHistory fromText(const QString &text);
    // Appends "<kind> <value>" (kind "A:" or "P:"); false when the file
    // can't be written.
    static bool append(const QString &fileName, const QString &kind, const QString &value);
};

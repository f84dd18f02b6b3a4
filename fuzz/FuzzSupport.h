#pragma once

#include <QString>
#include <QVector>

#include <cstddef>
#include <cstdint>
#include <initializer_list>

// Helpers shared by the fuzz targets. Every target links FuzzSupport.cpp,
// whose LLVMFuzzerInitialize makes a QCoreApplication (some readers and the
// batch loop need one) and silences the log: the readers log every refusal,
// and printing them would cost more than the reading.

// Writes the input into a file of this process under /dev/shm (or the
// temporary folder) and returns its path. The name holds a blank and a
// non-ASCII letter on purpose.
QString fuzzFile(const uint8_t *data, size_t size, const QString &name = QStringLiteral("in put \u00e9.dat"));
// The folder fuzzFile writes into.
QString fuzzDir();

// Reads every byte of every row a reader claims to have filled, so that a row
// shorter than width x height says shows up under the address checker; also
// checks that there are as many rows as the height. Aborts on a mismatch.
void touchRows(const QVector<void *> &rows, quint32 width, quint32 height, int pixelType);

// Reads the input as an image file through TiffData::read, with a small
// bad-pixel mask in use so that mending runs too, then reads every pixel and
// renders the frame.
void fuzzFrame(const uint8_t *data, size_t size);

// The body of a frame reader's target: fuzzFrame on inputs that start with
// one of the magics, and -1 for the others, which keeps them out of the
// corpus, as the reader they would reach is another target's.
int fuzzFrameStartingWith(const uint8_t *data, size_t size, std::initializer_list<const char *> magics);

// Energy map files: header, size check against the body, body into a map.
#include "FuzzSupport.h"

#include "analysis/Analyzed2DRes.h"
#include "calibration/EmpFile.h"

#include <QBuffer>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    QBuffer in(&bytes);
    in.open(QIODevice::ReadOnly | QIODevice::Text);
    const EMPHeader h = EmpFile::readHeader(in);
    if (!h.valid || !EmpFile::bodyFits(h, in.size() - in.pos()))
        return 0;
    Analyzed2DRes map;
    EmpFile::readBody(in, h, h.stdEdgeE, map);
    map.genImg();
    return 0;
}

// Element tables: the edge table file and element name lists.
#include "FuzzSupport.h"

#include "analysis/ElemNames.h"
#include "spectrum/ElementTable.h"
#include "spectrum/ElmEdges.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString path = fuzzFile(data, size);
    loadElmEdges(path);
    if (elmEdgeRows < 0 || elmEdgeRows > ElmEdgesMax)
        __builtin_trap();
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    for (const ElemName &e : parseElemNames(text, true)) {
        if (e.z < 0 || e.z >= ElementRowCount || e.edge < 0 || e.edge >= EdgeNameCount)
            __builtin_trap();
    }
    return 0;
}

// Server lines: bytes cut into lines, each taken apart, plus the key file
// and the server history, all from the same input.
#include "FuzzSupport.h"

#include "network/AMsg.h"
#include "network/SSVHistory.h"
#include "network/StarsKeys.h"
#include "network/StarsLineBuffer.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    // A small limit so that over-long lines occur; the input arrives in
    // pieces as it would from a socket.
    StarsLineBuffer buf(64);
    qsizetype at = 0, piece = 1;
    while (at < bytes.size()) {
        for (const QByteArray &line : buf.feed(bytes.mid(at, piece))) {
            if (line.contains('\n') || line.size() > 64)
                __builtin_trap();
            const AMsg m = AMsg::parse(QString::fromUtf8(line));
            if (m.ok && m.fromTo.isEmpty())
                __builtin_trap();
        }
        at += piece;
        piece = piece % 7 + 3;
    }
    if (buf.pending() > 64)
        __builtin_trap();
    (void)AMsg::parse(QString::fromUtf8(bytes));

    const QStringList keys = StarsKeys::fromText(bytes);
    const int k = StarsKeys::indexFor(QString::fromLatin1(bytes.left(24)), int(keys.size()));
    if (k < -1 || k >= keys.size() || (keys.isEmpty() != (k == -1)))
        __builtin_trap();
    (void)SSVHistory::fromText(QString::fromUtf8(bytes));
    return 0;
}

#include "network/Utf8Text.h"
#include "support/FuzzTarget.h"

// The first byte is the size of the pieces in which the rest arrives: the text of what has come so
// far is that of one decoding, at every moment.
TESSALINE_FUZZ_TARGET(bytes)
{
    if (bytes.isEmpty())
        return;
    const int step = 1 + static_cast<uchar>(bytes.at(0));
    const QByteArray all = bytes.mid(1);
    Utf8Text text;
    for (int size = 0; size < all.size() + step; size += step) {
        const QByteArray sofar = all.left(size);
        const int zero = sofar.indexOf('\0');
        if (text.text(sofar) != QString::fromUtf8(zero < 0 ? sofar : sofar.left(zero)))
            qFatal("The pieces read differently from the whole");
    }
}

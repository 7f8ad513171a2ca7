#include "fuzz/Fuzz.h"
#include "platform/freedesktop/x11/XSettings.h"

void fuzz(const QByteArray &bytes)
{
    // The shortest setting takes twelve bytes.
    require(XSettings::numbersIn(bytes).size() <= bytes.size() / 12);
}

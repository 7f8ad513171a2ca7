// Whether a PNG picture is all there. The PNG library writes its errors to standard error, past
// every log filter; so a picture that is cut off or damaged had better not reach it.

#pragma once

#include <QByteArrayView>

// Whether the bytes begin as a PNG picture does.
bool isPng(QByteArrayView bytes);

// Whether every chunk up to the last one is there with the right checksum. What lies in the chunks
// is not looked at.
bool isWholePng(QByteArrayView bytes);

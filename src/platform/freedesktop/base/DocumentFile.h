// The file behind the URL of a local document.

#pragma once

#include <QByteArray>
#include <QUrl>

// Its path in the bytes of the file system, which need not be text in any encoding: QUrl's own
// function replaces those that are none. A computer's name in the URL does not count, for some
// programs put that of ours there.
inline QByteArray fileNameOf(const QUrl &document)
{
    return QByteArray::fromPercentEncoding(document.path(QUrl::FullyEncoded).toLatin1());
}

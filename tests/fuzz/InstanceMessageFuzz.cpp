#include "fuzz/Fuzz.h"
#include "platform/freedesktop/bus/InstanceMessage.h"

#include <QUrl>

// A line is a file to open, the whole is everything else.
void fuzz(const QByteArray &bytes)
{
    const QString text = QString::fromUtf8(bytes);
    InstanceMessage::verbOf(text);
    for (const QUrl &file : InstanceMessage::filesOf(text.split(u'\n'))) {
        require(file.isValid() && !file.isRelative());
    }
    // What an environment hands on arrives the same when it is sent on.
    InstanceRequest request;
    request.stamp = InstanceMessage::stampOf({ { QStringLiteral("desktop-startup-id"), text } });
    const QVariantList sent = InstanceMessage::callFor(request).arguments();
    const ActivationStamp stamp = InstanceMessage::stampOf(sent.constLast().toMap());
    require(stamp.time == request.stamp.time && stamp.startupId == request.stamp.startupId);
}

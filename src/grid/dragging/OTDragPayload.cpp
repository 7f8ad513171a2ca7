#include "grid/dragging/OTDragPayload.h"

#include "catalogue/OTApp.h"

#include <QDataStream>
#include <QIODevice>
#include <QMimeData>

const QString &OTDragPayload::mimeType()
{
    static const QString type = QStringLiteral("application/x-ortu-app");
    return type;
}

QByteArray OTDragPayload::encoded() const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << _app->encoded() << _group << _bunch << _index;
    return bytes;
}

std::optional<OTDragPayload> OTDragPayload::decoded(const QByteArray &bytes, Desktop &desktop)
{
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_6_4);
    OTDragPayload payload;
    QByteArray app;
    stream >> app >> payload._group >> payload._bunch >> payload._index;
    if (stream.status() != QDataStream::Ok || !stream.atEnd()) {
        return std::nullopt;
    }
    payload._app = OTApp::decoded(app, desktop);
    return payload._app ? std::optional(payload) : std::nullopt;
}

void OTDragPayload::writeTo(QMimeData &pasteboard) const
{
    pasteboard.setData(mimeType(), encoded());
}

bool OTDragPayload::isOn(const QMimeData &pasteboard)
{
    return pasteboard.hasFormat(mimeType());
}

std::optional<OTDragPayload> OTDragPayload::readFrom(const QMimeData &pasteboard, Desktop &desktop)
{
    return decoded(pasteboard.data(mimeType()), desktop);
}

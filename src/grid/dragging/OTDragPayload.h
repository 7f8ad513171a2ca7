// What the drag of an icon carries: the application, and where in the catalogue it lay.

#pragma once

#include "catalogue/AppList.h"
#include "grid/layout/Coords.h"

#include <QByteArray>
#include <QString>

#include <optional>

class Desktop;
class QMimeData;

class OTDragPayload final
{
public:
    // By which a drag says that it carries one.
    static const QString &mimeType();

    // Null until it is set.
    const AppRef &app() const { return _app; }
    void setApp(const AppRef &app) { _app = app; }
    // Coords::NotFound until they are set.
    quint64 group() const { return _group; }
    void setGroup(quint64 group) { _group = group; }
    quint64 bunch() const { return _bunch; }
    void setBunch(quint64 bunch) { _bunch = bunch; }
    quint64 index() const { return _index; }
    void setIndex(quint64 index) { _index = index; }

    // As bytes that another panel of this program understands; it needs an application. What is
    // read back has an entry of its own for the application, not the catalogue's. Nothing for bytes
    // that are no payload.
    QByteArray encoded() const;
    static std::optional<OTDragPayload> decoded(const QByteArray &bytes, Desktop &desktop);

    // As the data of a drag.
    void writeTo(QMimeData &pasteboard) const;
    static bool isOn(const QMimeData &pasteboard);
    static std::optional<OTDragPayload> readFrom(const QMimeData &pasteboard, Desktop &desktop);

private:
    AppRef _app;
    quint64 _group = Coords::NotFound;
    quint64 _bunch = Coords::NotFound;
    quint64 _index = Coords::NotFound;
};

#include "platform/freedesktop/input/XDragWatch.h"

XDragWatch::XDragWatch(XConnection &connection)
    : _connection(connection)
{ }

void XDragWatch::watch()
{
    stop();
    if (!_connection.isOpen()) {
        return;
    }
    _source = std::make_unique<XSelection>(_connection, XConnection::XdndSelection);
    // Queued, as the selection must not end within its own signal, nor the watch within watch().
    connect(
        _source.get(), &XSelection::ownerChanged, _source.get(), [this] { finish(); },
        Qt::QueuedConnection);
    if (_source->owner() == XCB_WINDOW_NONE) {
        // It has ended before its last messages were read.
        QMetaObject::invokeMethod(
            _source.get(), [this] { finish(); }, Qt::QueuedConnection);
    }
}

void XDragWatch::stop()
{
    _source.reset();
}

void XDragWatch::finish()
{
    stop();
    Q_EMIT sourceGone();
}

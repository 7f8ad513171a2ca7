#include "platform/freedesktop/x11/XSettings.h"

#include <QtEndian>

namespace {

// In units of four bytes; many times what daemons write.
constexpr quint32 longestSettings = 1 << 16;

// Reads numbers in the byte order of the one who wrote them.
class Reader
{
public:
    explicit Reader(const QByteArray &bytes)
        : _bytes(bytes)
        , _isBigEndian(bytes.startsWith(char(1)))
    { }

    bool isGood() const { return _isGood; }
    // Parts are filled up to units of four bytes.
    QByteArray take(qsizetype size)
    {
        const QByteArray part = _bytes.mid(_at, size);
        _isGood = _isGood && part.size() == size;
        _at += (size + 3) / 4 * 4;
        return part;
    }
    template <typename T> T number(const QByteArray &bytes) const
    {
        if (bytes.size() < qsizetype(sizeof(T))) {
            return 0;
        }
        return _isBigEndian ? qFromBigEndian<T>(bytes.constData())
                            : qFromLittleEndian<T>(bytes.constData());
    }
    quint32 takeNumber() { return number<quint32>(take(4)); }

private:
    const QByteArray _bytes;
    const bool _isBigEndian;
    qsizetype _at = 0;
    bool _isGood = true;
};

enum Type { Number, Text, Color };
constexpr qsizetype colorSize = 8;

} // namespace

XSettings::XSettings(XConnection &connection)
    : _connection(connection)
    , _manager(connection, XConnection::XsettingsManager)
{
    connect(&_connection, &XConnection::eventArrived, this, &XSettings::handleEvent);
    connect(&_manager, &XSelection::ownerChanged, this, &XSettings::watchOwner);
    watchOwner();
}

void XSettings::watchOwner()
{
    _isOutdated = true;
    if (_manager.owner() != XCB_WINDOW_NONE) {
        const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(_connection.get(), _manager.owner(), XCB_CW_EVENT_MASK, &mask);
        xcb_flush(_connection.get());
    }
}

void XSettings::handleEvent(const xcb_generic_event_t *event)
{
    if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY) {
        const auto *const change = reinterpret_cast<const xcb_property_notify_event_t *>(event);
        _isOutdated = _isOutdated || change->window == _manager.owner();
    }
}

std::optional<qint32> XSettings::number(const QByteArray &name)
{
    if (std::exchange(_isOutdated, false)) {
        _numbers = numbersIn(read());
    }
    const auto found = _numbers.constFind(name);
    return found != _numbers.cend() ? std::optional(*found) : std::nullopt;
}

QByteArray XSettings::read()
{
    if (!_connection.isOpen() || _manager.owner() == XCB_WINDOW_NONE) {
        return {};
    }
    const xcb_atom_t settings = _connection.atom(XConnection::XsettingsSettings);
    return bytesIn(XPropertyReply(xcb_get_property_reply(_connection.get(),
        xcb_get_property(
            _connection.get(), 0, _manager.owner(), settings, settings, 0, longestSettings),
        nullptr)));
}

QHash<QByteArray, qint32> XSettings::numbersIn(const QByteArray &settings)
{
    QHash<QByteArray, qint32> numbers;
    Reader reader(settings);
    reader.take(4); // The byte order.
    reader.takeNumber(); // How often they have changed.
    const quint32 count = reader.takeNumber();
    for (quint32 i = 0; i < count && reader.isGood(); ++i) {
        const QByteArray head = reader.take(4);
        const QByteArray name = reader.take(reader.number<quint16>(head.mid(2)));
        reader.takeNumber(); // When it changed last.
        if (head.startsWith(char(Number))) {
            const auto value = qint32(reader.takeNumber());
            if (reader.isGood()) {
                numbers.insert(name, value);
            }
        } else if (head.startsWith(char(Text))) {
            reader.take(reader.takeNumber());
        } else {
            reader.take(colorSize);
        }
    }
    return numbers;
}

#include "starter/BusMessage.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

constexpr char ownOrder = std::endian::native == std::endian::little ? 'l' : 'B';
constexpr std::uint8_t neverStartsOne = 2;
constexpr std::uint8_t protocolVersion = 1;
constexpr std::size_t headerStart = 16;
constexpr std::size_t mostBytes = 1 << 20;

std::size_t aligned(std::size_t place, std::size_t unit)
{
    return (place + unit - 1) / unit * unit;
}

// Reads values from a message; everything is 0 or empty past its end.
class Reader final
{
public:
    Reader(std::string_view bytes, std::size_t place)
        : _bytes(bytes)
        , _place(place)
    { }

    std::size_t place() const { return _place; }
    bool isBroken() const { return _isBroken; }

    void align(std::size_t unit) { _place = aligned(_place, unit); }
    std::string_view take(std::size_t size)
    {
        _isBroken = _isBroken || _place > _bytes.size() || size > _bytes.size() - _place;
        if (_isBroken) {
            return {};
        }
        const std::string_view taken = _bytes.substr(_place, size);
        _place += size;
        return taken;
    }
    std::uint8_t byte()
    {
        const std::string_view taken = take(1);
        return taken.empty() ? 0 : std::uint8_t(taken.front());
    }
    std::uint32_t number()
    {
        align(4);
        std::uint32_t value = 0;
        if (const std::string_view taken = take(sizeof value); !taken.empty()) {
            std::memcpy(&value, taken.data(), sizeof value);
        }
        return value;
    }
    // With the zero that ends it.
    std::string_view text(std::size_t size)
    {
        const std::string_view taken = take(size);
        take(1);
        return taken;
    }

private:
    std::string_view _bytes;
    std::size_t _place;
    bool _isBroken = false;
};

} // namespace

void BusWriter::beginCall(std::uint32_t serial)
{
    align(8);
    _start = _size;
    byte(std::uint8_t(ownOrder));
    byte(BusCode::MethodCall);
    byte(neverStartsOne);
    byte(protocolVersion);
    number(0);
    number(serial);
    number(0);
}

void BusWriter::field(std::uint8_t code, char type, std::string_view text)
{
    align(8);
    byte(code);
    signature({ &type, 1 });
    if (type == 'g') {
        signature(text);
    } else {
        string(text);
    }
}

void BusWriter::beginBody()
{
    numberAt(_start + 12, std::uint32_t(_size - _start - headerStart));
    align(8);
    _body = _size;
}

void BusWriter::endMessage()
{
    numberAt(_start + 4, std::uint32_t(_size - _body));
}

void BusWriter::string(std::string_view text)
{
    number(std::uint32_t(text.size()));
    for (const char character : text) {
        byte(std::uint8_t(character));
    }
    byte(0);
}

void BusWriter::signature(std::string_view text)
{
    byte(std::uint8_t(text.size()));
    for (const char character : text) {
        byte(std::uint8_t(character));
    }
    byte(0);
}

void BusWriter::number(std::uint32_t value)
{
    align(4);
    const std::size_t place = _size;
    for (std::size_t i = 0; i < sizeof value; ++i) {
        byte(0);
    }
    numberAt(place, value);
}

void BusWriter::byte(std::uint8_t value)
{
    _hasOverflown = _hasOverflown || _size == _bytes.size();
    if (!_hasOverflown) {
        _bytes[_size++] = char(value);
    }
}

// From the start of the message.
void BusWriter::align(std::size_t unit)
{
    while (!_hasOverflown && _size % unit != 0) {
        byte(0);
    }
}

void BusWriter::numberAt(std::size_t place, std::uint32_t value)
{
    if (place + sizeof value <= _size) {
        std::memcpy(_bytes.data() + place, &value, sizeof value);
    }
}

std::size_t lengthOfMessage(std::string_view start)
{
    Reader reader(start, 4);
    const std::size_t body = reader.number();
    reader.number();
    const std::size_t fields = reader.number();
    if (reader.isBroken() || start.front() != ownOrder || body > mostBytes || fields > mostBytes) {
        return 0;
    }
    return aligned(headerStart + fields, 8) + body;
}

BusHeader headerOf(std::string_view message)
{
    BusHeader header;
    Reader reader(message, 12);
    const std::size_t end = reader.number() + headerStart;
    header.type = message.size() < headerStart ? 0 : std::uint8_t(message[1]);
    while (!reader.isBroken() && reader.place() < end) {
        reader.align(8);
        const std::uint8_t code = reader.byte();
        const std::string_view type = reader.text(reader.byte());
        if (type == "u") {
            const std::uint32_t value = reader.number();
            header.replySerial = code == BusCode::ReplySerial ? value : header.replySerial;
            continue;
        }
        const bool isText = type == "s" || type == "o";
        if (!isText && type != "g") {
            return {};
        }
        const std::string_view text = reader.text(isText ? reader.number() : reader.byte());
        header.errorName = code == BusCode::ErrorName ? text : header.errorName;
        header.sender = code == BusCode::Sender ? text : header.sender;
    }
    return reader.isBroken() ? BusHeader() : header;
}

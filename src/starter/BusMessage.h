// Messages of the D-Bus protocol, as many as one question and its answer need.
// https://dbus.freedesktop.org/doc/dbus-specification.html#message-protocol

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

// The types of messages, and of the fields in their headers.
namespace BusCode {
constexpr std::uint8_t MethodCall = 1;
constexpr std::uint8_t MethodReturn = 2;
constexpr std::uint8_t Error = 3;

constexpr std::uint8_t Path = 1;
constexpr std::uint8_t Interface = 2;
constexpr std::uint8_t Member = 3;
constexpr std::uint8_t ErrorName = 4;
constexpr std::uint8_t ReplySerial = 5;
constexpr std::uint8_t Destination = 6;
constexpr std::uint8_t Sender = 7;
constexpr std::uint8_t Signature = 8;
} // namespace BusCode

// Writes one message after the other. What does not fit is left out and reported.
class BusWriter final
{
public:
    const char *data() const { return _bytes.data(); }
    std::size_t size() const { return _size; }
    bool hasOverflown() const { return _hasOverflown; }

    // Begins a message at a multiple of 8; endMessage() fills in how long it is.
    void beginCall(std::uint32_t serial);
    // `type` is that of a string, an object path or a signature: s, o or g.
    void field(std::uint8_t code, char type, std::string_view text);
    void beginBody();
    void endMessage();

    // Strings have a length of four bytes, signatures one of one byte.
    void string(std::string_view text);
    void signature(std::string_view text);
    void number(std::uint32_t value);
    void byte(std::uint8_t value);
    void align(std::size_t unit);
    void numberAt(std::size_t place, std::uint32_t value);

private:
    std::array<char, 4096> _bytes;
    std::size_t _size = 0;
    bool _hasOverflown = false;
    // Of the message that is being written.
    std::size_t _start = 0;
    std::size_t _body = 0;
};

// What is told by the header of a message that has arrived.
struct BusHeader
{
    std::uint8_t type = 0;
    std::uint32_t replySerial = 0;
    std::string_view errorName;
    std::string_view sender;
};

// How long a message is, read from its first 16 bytes; 0 for one that is no message of this
// machine's byte order.
std::size_t lengthOfMessage(std::string_view start);
// Of a whole message. Empty where it is malformed.
BusHeader headerOf(std::string_view message);

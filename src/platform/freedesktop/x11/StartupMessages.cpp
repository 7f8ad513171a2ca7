#include "platform/freedesktop/x11/StartupMessages.h"

#include <cstring>

namespace {

constexpr qsizetype longestMessage = 4096;
constexpr qsizetype mostBegun = 64;

} // namespace

QByteArray StartupMessages::take(const xcb_client_message_event_t &event, Part part)
{
    if (event.format != 8 || (part == Part::Next && !_begun.contains(event.window))) {
        return {};
    }
    if (part == Part::First && _begun.size() == mostBegun && !_begun.contains(event.window)) {
        _begun.clear();
    }
    const auto *const text = reinterpret_cast<const char *>(event.data.data8);
    const std::size_t size = ::strnlen(text, sizeof(event.data.data8));
    QByteArray message = part == Part::First ? QByteArray() : _begun.take(event.window);
    message += QByteArray(text, qsizetype(size));
    if (size < sizeof(event.data.data8)) {
        _begun.remove(event.window);
        return message;
    }
    if (message.size() < longestMessage) {
        _begun.insert(event.window, message);
    }
    return {};
}

// A value is a word, or stands in quotes; a backslash takes the meaning from what follows it.
QByteArray StartupMessages::endedStart(const QByteArray &message)
{
    const QByteArray kind = "remove:";
    const QByteArray key = "ID=";
    const qsizetype at = message.indexOf(key, kind.size());
    if (!message.startsWith(kind) || at < 0) {
        return {};
    }
    QByteArray value;
    bool isQuoted = false;
    for (qsizetype i = at + key.size(); i < message.size(); ++i) {
        const char c = message[i];
        if (c == '\\' && i + 1 < message.size()) {
            value += message[++i];
        } else if (c == '"') {
            isQuoted = !isQuoted;
        } else if (c == ' ' && !isQuoted) {
            break;
        } else {
            value += c;
        }
    }
    return value;
}

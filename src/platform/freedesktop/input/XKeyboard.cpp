#include "platform/freedesktop/input/XKeyboard.h"

#include <QByteArray>

#include <algorithm>
#include <initializer_list>
#include <utility>

// One of its structures has a field of that name.
#ifdef __clang__
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace {

constexpr xcb_xkb_device_spec_t coreKeyboard = XCB_XKB_ID_USE_CORE_KBD;

// https://www.x.org/releases/current/doc/xproto/x11protocol.html#keysym_encoding
enum KeySymbol : xcb_keysym_t {
    ModeSwitch = 0xff7e,
    NumLock = 0xff7f,
    ScrollLock = 0xff14,
    MetaLeft = 0xffe7,
    MetaRight = 0xffe8,
    AltLeft = 0xffe9,
    AltRight = 0xffea,
    SuperLeft = 0xffeb,
    SuperRight = 0xffec,
    HyperLeft = 0xffed,
    HyperRight = 0xffee,
    ThirdLevelShift = 0xfe03,
};

// The modifiers without a fixed meaning.
constexpr int firstFree = XCB_MAP_INDEX_1;
constexpr int modifierCount = XCB_MAP_INDEX_5 + 1;

// Which keys are modifiers, and what stands on them.
class ModifierMap final
{
public:
    explicit ModifierMap(xcb_connection_t *connection);

    bool isKnown() const { return _keys && _symbols; }
    QList<xcb_keycode_t> keys() const;
    // The lowest modifier that has one of the symbols on one of its keys; 0 for none.
    quint16 bitOf(std::initializer_list<xcb_keysym_t> wanted) const;

private:
    QList<xcb_keycode_t> keysOf(int modifier) const;
    bool hasAny(xcb_keycode_t key, std::initializer_list<xcb_keysym_t> wanted) const;

    XReply<xcb_get_modifier_mapping_reply_t> _keys;
    XReply<xcb_get_keyboard_mapping_reply_t> _symbols;
    xcb_keycode_t _firstKey = 0;
};

ModifierMap::ModifierMap(xcb_connection_t *connection)
{
    const xcb_setup_t *const setup = xcb_get_setup(connection);
    _firstKey = setup->min_keycode;
    const auto keys = xcb_get_modifier_mapping(connection);
    const auto symbols = xcb_get_keyboard_mapping(
        connection, _firstKey, quint8(setup->max_keycode - setup->min_keycode + 1));
    _keys.reset(xcb_get_modifier_mapping_reply(connection, keys, nullptr));
    _symbols.reset(xcb_get_keyboard_mapping_reply(connection, symbols, nullptr));
}

QList<xcb_keycode_t> ModifierMap::keysOf(int modifier) const
{
    const int width = _keys->keycodes_per_modifier;
    const xcb_keycode_t *const start =
        xcb_get_modifier_mapping_keycodes(_keys.get()) + qsizetype(modifier) * width;
    QList<xcb_keycode_t> keys(start, start + width);
    // Places that are not taken.
    keys.removeAll(0);
    return keys;
}

QList<xcb_keycode_t> ModifierMap::keys() const
{
    QList<xcb_keycode_t> keys;
    for (int modifier = 0; modifier < modifierCount; ++modifier) {
        keys += keysOf(modifier);
    }
    return keys;
}

bool ModifierMap::hasAny(xcb_keycode_t key, std::initializer_list<xcb_keysym_t> wanted) const
{
    const qsizetype width = _symbols->keysyms_per_keycode;
    const qsizetype count = xcb_get_keyboard_mapping_keysyms_length(_symbols.get());
    const qsizetype start = (key - _firstKey) * width;
    if (key < _firstKey || start + width > count) {
        return false;
    }
    const xcb_keysym_t *const symbols = xcb_get_keyboard_mapping_keysyms(_symbols.get()) + start;
    return std::find_first_of(symbols, symbols + width, wanted.begin(), wanted.end())
        != symbols + width;
}

quint16 ModifierMap::bitOf(std::initializer_list<xcb_keysym_t> wanted) const
{
    for (int modifier = firstFree; modifier < modifierCount; ++modifier) {
        const QList<xcb_keycode_t> keys = keysOf(modifier);
        if (std::any_of(
                keys.begin(), keys.end(), [&](xcb_keycode_t key) { return hasAny(key, wanted); })) {
            return quint16(1U << modifier);
        }
    }
    return 0;
}

// Shift on an Alt key often gives Meta: that does not make Alt's modifier another one.
quint16 commandBit(const ModifierMap &map, quint16 option)
{
    for (const quint16 bit : { map.bitOf({ SuperLeft, SuperRight }),
             map.bitOf({ MetaLeft, MetaRight }), map.bitOf({ HyperLeft, HyperRight }) }) {
        if (bit != 0 && bit != option) {
            return bit;
        }
    }
    return XCB_MOD_MASK_4;
}

// Shorter names are filled up with zeros.
QByteArray keyName(const char *stored)
{
    constexpr size_t length = sizeof(xcb_xkb_key_name_t::name);
    return QByteArray(stored, qsizetype(qstrnlen(stored, length)));
}

// What the keys of the keyboard are called at the moment.
class KeyNames final
{
public:
    explicit KeyNames(xcb_connection_t *connection);

    QList<xcb_keycode_t> keysNamed(const QByteArray &name) const;
    QStringList namesOf(quint32 key) const;

private:
    // The name that it stands for, or itself.
    QByteArray realName(const QByteArray &name) const;
    bool has(quint32 detail) const { return _reply && (_reply->which & detail) != 0; }
    int aliasCount() const
    {
        return has(XCB_XKB_NAME_DETAIL_KEY_ALIASES) ? _reply->nKeyAliases : 0;
    }
    int keyCount() const { return has(XCB_XKB_NAME_DETAIL_KEY_NAMES) ? _reply->nKeys : 0; }

    XReply<xcb_xkb_get_names_reply_t> _reply;
    xcb_xkb_get_names_value_list_t _names = {};
};

KeyNames::KeyNames(xcb_connection_t *connection)
{
    const quint32 which = XCB_XKB_NAME_DETAIL_KEY_NAMES | XCB_XKB_NAME_DETAIL_KEY_ALIASES;
    _reply.reset(xcb_xkb_get_names_reply(
        connection, xcb_xkb_get_names(connection, coreKeyboard, which), nullptr));
    if (_reply) {
        xcb_xkb_get_names_value_list_unpack(xcb_xkb_get_names_value_list(_reply.get()),
            _reply->nTypes, _reply->indicators, _reply->virtualMods, _reply->groupNames,
            _reply->nKeys, _reply->nKeyAliases, _reply->nRadioGroups, _reply->which, &_names);
    }
}

QByteArray KeyNames::realName(const QByteArray &name) const
{
    for (int i = 0; i < aliasCount(); ++i) {
        if (keyName(_names.keyAliases[i].alias) == name) {
            return keyName(_names.keyAliases[i].real);
        }
    }
    return name;
}

QList<xcb_keycode_t> KeyNames::keysNamed(const QByteArray &name) const
{
    const QByteArray real = realName(name);
    QList<xcb_keycode_t> keys;
    for (int i = 0; i < keyCount(); ++i) {
        if (keyName(_names.keyNames[i].name) == real) {
            keys.append(xcb_keycode_t(_reply->firstKey + i));
        }
    }
    return keys;
}

QStringList KeyNames::namesOf(quint32 key) const
{
    const int index = _reply ? int(key) - _reply->firstKey : -1;
    if (index < 0 || index >= keyCount()) {
        return {};
    }
    const QByteArray real = keyName(_names.keyNames[index].name);
    QStringList names { QString::fromLatin1(real) };
    for (int i = 0; i < aliasCount(); ++i) {
        if (keyName(_names.keyAliases[i].real) == real) {
            names.append(QString::fromLatin1(keyName(_names.keyAliases[i].alias)));
        }
    }
    return names;
}

} // namespace

XKeyboard::XKeyboard(XConnection &connection)
    : _connection(connection)
{
    if (!_connection.isOpen()) {
        return;
    }
    setUp();
    if (isUsable()) {
        connect(&_connection, &XConnection::eventArrived, this, &XKeyboard::handleEvent);
        connect(&_connection, &XConnection::eventsTaken, this, &XKeyboard::refreshMap);
        readModifiers();
    }
}

void XKeyboard::setUp()
{
    xcb_connection_t *const connection = _connection.get();
    const xcb_query_extension_reply_t *const extension =
        xcb_get_extension_data(connection, &xcb_xkb_id);
    if (extension == nullptr || extension->present == 0) {
        return;
    }
    const XReply<xcb_xkb_use_extension_reply_t> use(xcb_xkb_use_extension_reply(connection,
        xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION), nullptr));
    if (!use || use->supported == 0) {
        return;
    }
    _firstEvent = extension->first_event;
    // A key that is held is then pressed again and again without being released in between.
    const quint32 repeat = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    const XReply<xcb_xkb_per_client_flags_reply_t> flags(xcb_xkb_per_client_flags_reply(connection,
        xcb_xkb_per_client_flags(connection, coreKeyboard, repeat, repeat, 0, 0, 0), nullptr));
    const quint16 events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    const quint16 parts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    const xcb_xkb_select_events_details_t details = {};
    xcb_xkb_select_events_aux(connection, coreKeyboard, events, 0,
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY, parts, parts, &details);
}

QList<xcb_keycode_t> XKeyboard::keysNamed(const QString &name) const
{
    return isUsable() && !name.isEmpty() ? KeyNames(_connection.get()).keysNamed(name.toLatin1())
                                         : QList<xcb_keycode_t>();
}

QStringList XKeyboard::namesOf(quint32 key) const
{
    return isUsable() ? KeyNames(_connection.get()).namesOf(key) : QStringList();
}

bool XKeyboard::isDown(xcb_keycode_t key) const
{
    if (!isUsable()) {
        return false;
    }
    const XReply<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(_connection.get(), xcb_query_keymap(_connection.get()), nullptr));
    return reply && (reply->keys[key / 8] & (1U << (key % 8))) != 0;
}

quint16 XKeyboard::heldModifiers() const
{
    if (!isUsable()) {
        return 0;
    }
    const XReply<xcb_xkb_get_state_reply_t> reply(xcb_xkb_get_state_reply(
        _connection.get(), xcb_xkb_get_state(_connection.get(), coreKeyboard), nullptr));
    return reply ? quint16(reply->baseMods | reply->latchedMods) : quint16(0);
}

// The server does not wake us for what was not selected.
void XKeyboard::setModifiersWatched(bool areWatched)
{
    if (!isUsable()) {
        return;
    }
    xcb_xkb_select_events_details_t details = {};
    details.affectState = XCB_XKB_STATE_PART_MODIFIER_BASE | XCB_XKB_STATE_PART_MODIFIER_LATCH;
    details.stateDetails = areWatched ? details.affectState : 0;
    xcb_xkb_select_events_aux(
        _connection.get(), coreKeyboard, XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, 0, 0, 0, &details);
    xcb_flush(_connection.get());
}

void XKeyboard::takeNextKey(xcb_timestamp_t time)
{
    answerKey(XCB_ALLOW_SYNC_KEYBOARD, time);
}

void XKeyboard::replayKey(xcb_timestamp_t time)
{
    answerKey(XCB_ALLOW_REPLAY_KEYBOARD, time);
}

void XKeyboard::answerKey(quint8 mode, xcb_timestamp_t time)
{
    if (isUsable()) {
        xcb_allow_events(_connection.get(), mode, time);
        xcb_flush(_connection.get());
    }
}

void XKeyboard::endGrab()
{
    if (isUsable()) {
        xcb_connection_t *const connection = _connection.get();
        const XReply<xcb_generic_error_t> error(xcb_request_check(
            connection, xcb_ungrab_keyboard_checked(connection, XCB_CURRENT_TIME)));
    }
}

bool XKeyboard::isFocusAt(xcb_window_t window) const
{
    if (!isUsable()) {
        return false;
    }
    xcb_connection_t *const connection = _connection.get();
    const XReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    // What a program makes has its upper bits in common.
    const quint32 program = ~xcb_get_setup(connection)->resource_id_mask;
    return reply && (reply->focus & program) == (window & program);
}

void XKeyboard::setFocusWatched(xcb_window_t window, bool isWatched)
{
    if (isUsable()) {
        const quint32 mask = isWatched ? XCB_EVENT_MASK_FOCUS_CHANGE : XCB_EVENT_MASK_NO_EVENT;
        xcb_change_window_attributes(_connection.get(), window, XCB_CW_EVENT_MASK, &mask);
        xcb_flush(_connection.get());
    }
}

void XKeyboard::handleEvent(const xcb_generic_event_t *event)
{
    const int type = event->response_type & 0x7f;
    if (type == XCB_KEY_PRESS) {
        Q_EMIT keyPressed(reinterpret_cast<const xcb_key_press_event_t *>(event));
    } else if (type == XCB_KEY_RELEASE) {
        Q_EMIT keyReleased(reinterpret_cast<const xcb_key_release_event_t *>(event));
    } else if (type == XCB_FOCUS_IN) {
        Q_EMIT focusTaken(reinterpret_cast<const xcb_focus_in_event_t *>(event)->event);
    } else if (type == XCB_MAPPING_NOTIFY) {
        const auto *const change = reinterpret_cast<const xcb_mapping_notify_event_t *>(event);
        _isMapDue = _isMapDue || change->request != XCB_MAPPING_POINTER;
    } else if (type == _firstEvent) {
        handleKeyboardEvent(event);
    }
}

void XKeyboard::handleKeyboardEvent(const xcb_generic_event_t *event)
{
    // All events of the extension begin alike.
    const auto *const state = reinterpret_cast<const xcb_xkb_state_notify_event_t *>(event);
    switch (state->xkbType) {
    case XCB_XKB_NEW_KEYBOARD_NOTIFY:
    case XCB_XKB_MAP_NOTIFY:
        _isMapDue = true;
        break;
    case XCB_XKB_STATE_NOTIFY:
        Q_EMIT heldModifiersChanged(quint16(state->baseMods | state->latchedMods));
        break;
    default:
        break;
    }
}

// Once for all the events of a change, of which there are many.
void XKeyboard::refreshMap()
{
    if (std::exchange(_isMapDue, false) && isUsable()) {
        readModifiers();
        Q_EMIT mapChanged();
    }
}

void XKeyboard::readModifiers()
{
    const ModifierMap map(_connection.get());
    if (!map.isKnown()) {
        return;
    }
    Modifiers modifiers;
    const quint16 alt = map.bitOf({ AltLeft, AltRight });
    modifiers.option = alt != 0 ? alt : quint16(XCB_MOD_MASK_1);
    modifiers.command = commandBit(map, modifiers.option);
    modifiers.thirdLevel = map.bitOf({ ThirdLevelShift, ModeSwitch });
    modifiers.locks |= map.bitOf({ NumLock }) | map.bitOf({ ScrollLock });
    modifiers.locks &= quint16(~modifiers.hotKeyMask());
    modifiers.keys = map.keys();
    _modifiers = modifiers;
}

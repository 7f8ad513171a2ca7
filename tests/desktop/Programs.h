// Other programs: those that say what has become of the windows, those that stand in for the
// user's, and clients of the X server that are not ours.

#pragma once

#include "TestCase.h"

#include <QCoreApplication>
#include <QProcess>

#include <cstdlib>
#include <xcb/xcb.h>

// Milliseconds that a program may take to start or to end.
constexpr int patience = 20'000;

inline QString outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

inline QString xdotool(const QString &arguments)
{
    return outputOf(u"xdotool"_s, arguments.split(u' '));
}

inline QString propertyOf(const QString &window, const QString &name)
{
    return outputOf(u"xprop"_s, { u"-id"_s, window, name });
}

// The identifiers of the windows whose class begins so, as the window manager lists them.
inline QStringList windowsOf(const QString &className)
{
    QStringList ids;
    for (const QString &line : outputOf(u"wmctrl"_s, { u"-lx"_s }).split(u'\n')) {
        if (line.section(u' ', 2, -1, QString::SectionSkipEmpty).startsWith(className + u'.')) {
            ids.append(line.section(u' ', 0, 0));
        }
    }
    return ids;
}

// As the window manager names it, in the form of wmctrl.
inline QString activeWindow()
{
    const QString text = outputOf(u"xprop"_s, { u"-root"_s, u"_NET_ACTIVE_WINDOW"_s });
    // What other programs see by now, this program must see as well.
    QCoreApplication::processEvents();
    return u"0x"_s + text.section(u"0x"_s, -1).rightJustified(8, u'0');
}

inline QString idOf(quintptr window)
{
    return u"0x%1"_s.arg(window, 8, 16, QLatin1Char('0'));
}

// Runs for as long as this lasts; one that reads its input gets to the end of it first.
class OtherProcess : public QProcess
{
public:
    OtherProcess(const QString &program, const QStringList &arguments)
    {
        start(program, arguments);
        waitForStarted();
    }
    ~OtherProcess() override
    {
        closeWriteChannel();
        terminate();
        waitForFinished();
    }
    void tell(const QByteArray &line) { write(line + '\n'); }
};

// A client of the X server with a window of its own.
class XClient
{
public:
    XClient()
        : connection(xcb_connect(nullptr, nullptr))
        , root(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root)
        , window(xcb_generate_id(connection))
    {
        const uint32_t values[] { 1, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_KEY_PRESS };
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, root, 0, 0, 9, 9, 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
            XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        // Start-up messages come to those who look at the root window.
        xcb_change_window_attributes(connection, root, XCB_CW_EVENT_MASK, values + 1);
    }
    ~XClient() { xcb_disconnect(connection); }
    Q_DISABLE_COPY_MOVE(XClient)

    xcb_atom_t atom(const QByteArray &name)
    {
        return reply(xcb_intern_atom_reply(connection,
                         xcb_intern_atom(connection, 0, quint16(name.size()), name), nullptr))
            ->atom;
    }
    bool isDone(xcb_void_cookie_t cookie) { return !reply(xcb_request_check(connection, cookie)); }
    bool own(const QByteArray &selection)
    {
        return isDone(
            xcb_set_selection_owner_checked(connection, window, atom(selection), XCB_CURRENT_TIME));
    }
    bool grabKeyboard()
    {
        const auto answer = reply(xcb_grab_keyboard_reply(connection,
            xcb_grab_keyboard(
                connection, 0, root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
            nullptr));
        return answer && answer->status == XCB_GRAB_STATUS_SUCCESS;
    }
    // The time of the server.
    quint32 time()
    {
        xcb_change_property(connection, XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME,
            XCB_ATOM_STRING, 8, 0, nullptr);
        xcb_flush(connection);
        for (;;) {
            const auto event = reply(xcb_wait_for_event(connection));
            const auto *const change =
                reinterpret_cast<const xcb_property_notify_event_t *>(event.get());
            if (isOf(*event, XCB_PROPERTY_NOTIFY) && change->window == window) {
                return change->time;
            }
        }
    }
    template <typename Reply> static std::unique_ptr<Reply, decltype(&std::free)> reply(Reply *raw)
    {
        return { raw, &std::free };
    }
    static bool isOf(const xcb_generic_event_t &event, int type)
    {
        return (event.response_type & 0x7f) == type;
    }

    xcb_connection_t *const connection;
    const xcb_window_t root;
    const xcb_window_t window;
};

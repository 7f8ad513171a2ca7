// A connection to the X server of our own, beside the one of Qt: what is asked and
// selected here leaves Qt's events alone, and is simply not there where there is no X
// server.
//
// Lives on the thread that made it, as a rule the main thread; requests that need no answer may be
// made from any thread. Events that the library reads while it waits for a reply are noticed the
// next time that thread's event loop turns.

#pragma once

#include "platform/freedesktop/x11/XReply.h"

#include <QList>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <array>
#include <atomic>
#include <memory>
#include <xcb/xcb.h>

class XConnection final : public QObject
{
    Q_OBJECT

public:
    // The names that are used here, known to the server by numbers.
    enum Atom {
        NetActiveWindow,
        NetClientList,
        NetCloseWindow,
        NetCurrentDesktop,
        NetStartupId,
        NetStartupInfo,
        NetStartupInfoBegin,
        NetSupportingWmCheck,
        NetWmDesktop,
        NetWmName,
        NetWmPid,
        NetWmState,
        NetWmStateAbove,
        NetWmStateHidden,
        NetWmStateSkipPager,
        NetWmStateSkipTaskbar,
        NetWmStateSticky,
        NetWmWindowType,
        NetWmWindowTypeDesktop,
        NetWmWindowTypeDialog,
        NetWmWindowTypeDock,
        NetWmWindowTypeNormal,
        NetWmWindowTypeUtility,
        GtkApplicationId,
        KdeNetWmDesktopFile,
        Utf8String,
        WmChangeState,
        WmClass,
        WmClientMachine,
        WmDeleteWindow,
        WmProtocols,
        WmTransientFor,
        XdndSelection,
        XsettingsSettings,
        // Selections, one for each screen: these are the ones of ours.
        CompositingManager,
        XsettingsManager,
        AtomCount,
    };

    // Who wants something of the window manager: an application, or a program that acts for the
    // user, such as a task bar.
    static constexpr quint32 FromApplication = 1;
    static constexpr quint32 FromPager = 2;
    // In place of the number of a desktop.
    static constexpr quint32 EveryDesktop = 0xffffffff;

    // Connects to the display that the environment names.
    explicit XConnection(QObject *parent = nullptr);
    ~XConnection() override;

    // The root window of a screen; of the last one when there are not as many.
    static xcb_window_t rootOf(xcb_connection_t *connection, int screen);

    // False when there is no display, or none any more. Nothing else may then be called.
    bool isOpen() const { return _isOpen; }

    xcb_connection_t *get() const { return _connection; }
    xcb_window_t root() const { return _root; }
    // The number of the screen.
    int screen() const { return _screen; }
    xcb_atom_t atom(Atom name) const { return _atoms[name]; }

    // Tells the window manager of the display about a window, as the window-manager standards want
    // it. At most five words of data. Nothing without a display. May be called from any thread.
    void tellManager(xcb_window_t window, Atom message, const QList<quint32> &data);
    // The same over another connection to this display, and so after what was asked there before.
    void tellManagerOver(xcb_connection_t *connection, xcb_window_t window, Atom message,
        const QList<quint32> &data) const;
    // Asks for a window to be shown. The same holds.
    void map(xcb_window_t window);

    // Asks for the server's present time without waiting for it. On its own thread only.
    void askTime();

Q_SIGNALS:
    // An event or, with type 0, an error of a request without a cookie that is waited for.
    void eventArrived(const xcb_generic_event_t *event);
    // The answer, in the server's own milliseconds.
    void timeTold(quint32 time);
    // All that had come in has arrived.
    void eventsTaken();
    // The server has gone.
    void closed();

private:
    bool connectToDisplay();
    bool findAtoms();
    void noticeQueued();
    void flushFromAnyThread();
    void takeEvents();
    void takeTime(const xcb_generic_event_t *event);

    xcb_connection_t *_connection = nullptr;
    // Other threads look at it too; the connection itself is kept to the end, for their sake.
    std::atomic<bool> _isOpen = false;
    xcb_window_t _root = XCB_WINDOW_NONE;
    int _screen = 0;
    // Never shown: its property tells the time. Made when first needed.
    xcb_window_t _clock = XCB_WINDOW_NONE;
    std::array<xcb_atom_t, AtomCount> _atoms {};
    std::unique_ptr<QSocketNotifier> _notifier;
    // The first event that the library had read before the event loop turned.
    XReply<xcb_generic_event_t> _queued;
    // Comes after painting, which a posted event would not.
    QTimer _nextTurn;
};

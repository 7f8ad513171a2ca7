// The applications that run, as far as their windows tell: an application runs from its first
// ordinary window to its last one. Needs a window manager that keeps the list of windows of the
// freedesktop standard; without one nothing runs.
//
// A window manager that goes away leaves the windows where they are. Until another one comes, they
// count as before.

#pragma once

#include "platform/RunningApplications.h"
#include "platform/freedesktop/windows/NoneActive.h"
#include "platform/freedesktop/windows/WindowMatcher.h"
#include "platform/freedesktop/x11/StartupMessages.h"
#include "platform/freedesktop/x11/XConnection.h"

#include <QDeadlineTimer>
#include <QHash>
#include <QMutex>
#include <QSet>
#include <QTimer>

class RunningWindows final : public RunningApplications
{
    Q_OBJECT

public:
    // Connection and index outlive this. Looks at the display once, here.
    RunningWindows(XConnection &connection, DesktopEntryIndex &entries,
        const QStringList &dataFolders, const QStringList &desktops);

    QStringList launchedApplications() const override { return _launched; }
    QString activeApplication() const override { return _activeApplication; }
    QString ownApplication() const override { return _ownApplication; }
    void setApplications(const QStringList &paths) override;

    XConnection &connection() { return _connection; }

    // The ordinary windows of an application, in the order in which they appeared; none of our own.
    QList<WindowTraits> windowsOf(const QString &bundlePath) const;
    // How many applications were launched before this one and including it, counted from our own
    // start; 0 when it does not run.
    quint64 serialNumberOf(const QString &bundlePath) const;

    // Brings the window of the application to the front that was last used, of those never used the
    // newest. False when it has none. May be called from any thread.
    bool raise(const QString &bundlePath);

    // The window that the window manager names as the active one at this moment; none also where
    // none is named.
    xcb_window_t activeWindow() const;
    // Whether a window manager names the active window, be it none. As last heard.
    bool isActiveNamed() const { return _isActiveNamed; }
    // Asks for a window to become that. May be called from any thread.
    void activate(xcb_window_t window);
    // Asks for the window in front to be active again, once for each window of an application that
    // was shown and becomes active within the next moment: some window managers activate what is
    // shown.
    void handBack(xcb_window_t front, const QSet<xcb_window_t> &shown, const QString &bundlePath);

    // Brings a window that the application opens within the next moments to the front, if one of
    // ours is there: to ask whether to save a document, say. Window managers leave such a window
    // behind ours, where the user has acted later.
    void expectQuestion(const QString &bundlePath);

Q_SIGNALS:
    // What the window manager names as the active window, each time it does: known or not, listed
    // or not, and none for a moment between two windows.
    void activeWindowNamed(xcb_window_t window);

private:
    struct Known
    {
        WindowTraits traits;
        QString application;
        // The entry that its process was started for, which need not be that application.
        QString launchedEntry;
        // When it was last in front, counted in switches.
        quint64 lastUse = 0;
    };

    void handleEvent(const xcb_generic_event_t *event);
    void refresh();
    bool matchUnknown();
    void takeList();
    QList<xcb_window_t> readList() const;
    void forgetAll();
    void readWindows(const QList<xcb_window_t> &windows);
    void takeQuestions(const QList<xcb_window_t> &newWindows);
    void takeStartupMessage(const xcb_client_message_event_t &event);
    void announceStarts();
    void match(const QList<xcb_window_t> &windows);
    bool matchKnown(QList<xcb_window_t> windows);
    QString applicationBelow(xcb_window_t window) const;
    bool takeLaunched();
    void takeActive();
    void setActive(xcb_window_t window);
    void setRaised();

    XConnection &_connection;
    WindowMatcher _matcher;
    QString _ownApplication;

    QList<xcb_window_t> _list;
    QHash<xcb_window_t, Known> _known;
    QStringList _launched;
    QHash<QString, quint64> _serialNumbers;
    quint64 _lastSerialNumber = 0;
    // The window that was active last, and the one that the window manager names.
    xcb_window_t _activeWindow = XCB_WINDOW_NONE;
    xcb_window_t _namedWindow = XCB_WINDOW_NONE;
    bool _isActiveNamed = false;
    QString _activeApplication;
    quint64 _switches = 0;
    // Active before windows were shown, and those of them that have not been active since.
    xcb_window_t _frontBefore = XCB_WINDOW_NONE;
    QSet<xcb_window_t> _shown;
    QTimer _handingBack;
    // The applications that were asked to quit, and how long what they open counts as a question.
    QHash<QString, QDeadlineTimer> _expected;
    NoneActive _noneActive;
    StartupMessages _startupMessages;
    // Applications of which a start has ended, until all lists are up to date.
    QSet<QString> _started;

    bool _isListDue = true;
    bool _isActiveDue = true;
    QSet<xcb_window_t> _changed;

    // The window to raise of each application, for other threads too.
    mutable QMutex _mutex;
    QHash<QString, xcb_window_t> _raised;
};

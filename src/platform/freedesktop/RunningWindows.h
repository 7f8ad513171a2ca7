// The applications that run, as far as their windows tell: an application runs from its first
// ordinary window to its last one. Needs a window manager that keeps the list of windows of the
// freedesktop standard; without one nothing runs.
//
// A window manager that goes away leaves the windows where they are. Until another one comes, they
// count as before.

#pragma once

#include "platform/RunningApplications.h"
#include "platform/freedesktop/WindowMatcher.h"
#include "platform/freedesktop/XConnection.h"

#include <QHash>
#include <QMutex>
#include <QSet>
#include <QTimer>

class RunningWindows final : public RunningApplications
{
    Q_OBJECT

public:
    // The index outlives this. Looks at the display once, here.
    RunningWindows(
        DesktopEntryIndex &entries, const QStringList &dataFolders, const QStringList &desktops);

    QStringList launchedApplications() const override { return _launched; }
    QString activeApplication() const override { return _activeApplication; }
    QString ownApplication() const override { return _ownApplication; }

    const XConnection &connection() const { return _connection; }

    // The ordinary windows of an application, in the order in which they appeared.
    QList<WindowTraits> windowsOf(const QString &bundlePath) const;
    // How many applications were launched before this one and including it, counted from our own
    // start; 0 when it does not run.
    quint64 serialNumberOf(const QString &bundlePath) const;

    // Brings the window of the application to the front that was last used, of those never used the
    // newest. False when it has none. May be called from any thread.
    bool raise(const QString &bundlePath) const;

private:
    struct Known
    {
        WindowTraits traits;
        QString application;
        // When it was last in front, counted in switches.
        quint64 lastUse = 0;
    };

    void handleEvent(const xcb_generic_event_t *event);
    void refresh();
    void takeList();
    QList<xcb_window_t> readList() const;
    void readWindows(const QList<xcb_window_t> &windows);
    void match(const QList<xcb_window_t> &windows);
    bool matchKnown(QList<xcb_window_t> windows);
    QString applicationBelow(xcb_window_t window) const;
    bool takeLaunched();
    void takeActive();
    void setActive(xcb_window_t window);
    void setRaised();

    XConnection _connection;
    WindowMatcher _matcher;
    QString _ownApplication;

    QList<xcb_window_t> _list;
    QHash<xcb_window_t, Known> _known;
    QStringList _launched;
    QHash<QString, quint64> _serialNumbers;
    quint64 _lastSerialNumber = 0;
    xcb_window_t _activeWindow = XCB_WINDOW_NONE;
    QString _activeApplication;
    quint64 _switches = 0;
    // Runs while no window is active; between two windows that is for a moment only.
    QTimer _noneActive;

    bool _isListDue = true;
    bool _isActiveDue = true;
    QSet<xcb_window_t> _changed;

    // The window to raise of each application, for other threads too.
    mutable QMutex _mutex;
    QHash<QString, xcb_window_t> _raised;
};

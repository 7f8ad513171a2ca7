// Our windows on an X server, as its window manager sees them. What is asked goes over
// Qt's own connection, so that it comes in order with what Qt asks.
//
// The window that is in front is the one that the window manager names: Qt looks for the
// keyboard instead, which any program may grab for a moment, and waits before it tells. Where no
// window is named, Qt is believed.

#pragma once

#include "platform/OwnWindows.h"
#include "platform/freedesktop/windows/NoneActive.h"
#include "platform/freedesktop/windows/SingleStep.h"

#include <QElapsedTimer>
#include <QHash>
#include <QPointer>

#include <optional>
#include <xcb/xcb.h>

class RunningWindows;

class XOwnWindows final : public OwnWindows
{
    Q_OBJECT

public:
    // The connection is Qt's. Both outlive this.
    XOwnWindows(RunningWindows &windows, xcb_connection_t *connection);

    void setStanding(QWindow &window, TaskBar taskBar, Level level) override;
    void setLevel(QWindow &window, Level level) override;
    void activate(QWindow &window, const ActivationStamp &stamp) override;
    Former giveFrontBack() override;
    QWindow *activeWindow() const override;
    bool hasKeyboard(const QWindow &window) const override;
    bool isPointerPressed() const override;
    bool setNextContent(QWindow &window, const QImage &picture, const QRect &frame) override;
    void clearNextContent(QWindow &window) override;
    void flush() override;

private:
    struct Own
    {
        TaskBar taskBar = TaskBar::Listed;
        Level level = Level::Normal;
        bool isStanding = false;
        bool hasStartupId = false;
        // To be activated with, as soon as it is shown.
        std::optional<ActivationStamp> stamp;
    };

    Own &ownOf(QWindow &window);
    void handleShown(QWindow &window);
    bool isComposited() const;
    QRect areaOfChange(const QWindow &window, const QRect &frame) const;
    bool isManagedByAwesome();
    void askForNoFrame(QWindow &window);
    void writeStates(QWindow &window, const Own &own);
    void tellStates(QWindow &window, const Own &own);
    void tellLevel(QWindow &window, Level level);
    void takeStartupId(QWindow &window, const QString &startupId);
    void nameActive(QWindow &window, quint32 time);
    void takeTime(quint32 time);

    void takeNamed(xcb_window_t window);
    void takeToolkit();
    void setActive(QWindow *window);
    void rememberFormer(xcb_window_t named);

    RunningWindows &_windows;
    xcb_connection_t *const _connection;
    SingleStep _change;
    QHash<QWindow *, Own> _owns;
    // Waits for the time to be told.
    QPointer<QWindow> _waiting;
    // Asked to come to the front, and not there yet.
    QPointer<QWindow> _coming;
    // The window manager's name for itself; empty until one has told it.
    QString _managerName;
    // As announced last.
    xcb_window_t _active = XCB_WINDOW_NONE;
    NoneActive _noneActive;
    // Of another program: in front now, or last before ours. None when there was no such window.
    xcb_window_t _former = XCB_WINDOW_NONE;
    // Since when the window manager names no window at all; not valid while it names one.
    QElapsedTimer _namedNone;
};

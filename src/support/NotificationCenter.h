// Announcements that cross the program: one typed signal for each, named as the announcement
// itself.
//
// There is one default centre, used by everyone; a test may put another in its place. Signals are
// emitted on the main thread. A request that would have to point upwards in the modules is a signal
// here too.

#pragma once

#include <QBasicTimer>
#include <QList>
#include <QObject>
#include <QRectF>
#include <QString>

#include <memory>

class OTApp;

class NotificationCenter : public QObject
{
    Q_OBJECT

public:
    using Notification = void (NotificationCenter::*)();

    using QObject::QObject;
    ~NotificationCenter() override;

    static NotificationCenter &defaultCenter();
    // The caller keeps owning it, and it may go at any time. Null goes back to the centre of the
    // process.
    static void setDefaultCenter(NotificationCenter *center);

    // Emits a signal without arguments once the event loop has nothing else to do. Several calls
    // for the same signal before that make one announcement.
    void postWhenIdle(Notification notification);

Q_SIGNALS:
    // A launch failed because the bundle is gone.
    void N_AppIsMissing(const std::shared_ptr<OTApp> &app);
    // A folder scan has come to `step` of `count`; both are 0 when it has ended. `label` is the
    // folder.
    void N_ShowProgressStep(int step, int count, const QString &label);
    void N_ScanPathListChanged();
    // The user has started an application, or one of its actions, and that went well.
    void N_AppWasUsed(const std::shared_ptr<OTApp> &app);
    // The user wants nothing to be remembered of what was started.
    void N_ForgetUses();
    // The icon, or a colour derived from it, has changed.
    void N_AppIconChanged(const std::shared_ptr<OTApp> &app);
    // Keys or the wheel have touched the filter of a grid; it forgets itself `resetInterval`
    // seconds after the last key.
    void N_FilterStringChanged(QObject *view, const QString &filterString, double resetInterval);
    // Another cell of a grid is selected; the application in it, null for none, and its cell, in
    // the view with y growing upwards.
    void N_SelectedAppChanged(QObject *view, const std::shared_ptr<OTApp> &app, const QRectF &rect);
    // A swipe over a grid asks for another group.
    void N_SelectNextIconGroup(QObject *view);
    void N_SelectPrevIconGroup(QObject *view);
    // Modifier keys have changed anywhere in the session.
    void N_EventFlagsChanged(Qt::KeyboardModifiers modifiers);
    // The grid wants another size; `view` is the QWidget that asks.
    void N_SubviewNeedsResizing(QObject *view);
    // A window is about to take another frame because of that, and has done so.
    void N_WindowWillResize(QObject *window);
    void N_WindowDidResize(QObject *window);
    // Something that the user asked for has come to nothing, or will not last: one sentence that
    // says what and why. It appears on the panel, at once or when that is shown next. Where nothing
    // else does, the sender also writes a line into the log.
    void N_UserMessage(const QString &message);
    void applicationDidFinishLaunching();
    // Another program asks that the panel be shown, as if the program had been started again.
    void applicationOpenUntitledFile();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    QBasicTimer _idle;
    QList<Notification> _pending;
};

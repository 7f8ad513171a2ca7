// Everything that summons the panel from outside: the hot key, the hot spot in a corner of the
// screen and the status item, kept as the preferences want them; and the modifier keys of the
// session.

#pragma once

#include "platform/ActivationStamp.h"
#include "shell/triggers/OTHotSpotWindow.h"
#include "shell/triggers/OTStatusItemView.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <memory>

class Desktop;
class QMenu;
class QScreen;

class Triggers final : public QObject
{
    Q_OBJECT

public:
    // What is done when one of them is used, with the time stamp of that.
    using Action = std::function<void(const ActivationStamp &stamp)>;

    // Desktop and menu, which is the status item's, must outlive the triggers. `hotKeyAction` is
    // the hot key's action, since what is typed after it is meant for the panel.
    Triggers(Desktop &desktop, QMenu &statusItemMenu, Action action, Action hotKeyAction);
    ~Triggers() override;

    // Puts all of them up; before this there are none. Nothing happens the second time.
    void start();

    // Registers their preferences. To be called once, before anything reads them.
    static void registerDefaults();

    // Grabs the key that is chosen, or none. What stands in its way is logged, and told to the user
    // when it is news. Like updateStatusBar(), left to start() before that.
    void registerHotKey();
    // Chooses a key, by its code and the mask of its modifiers; registerHotKey() grabs it.
    void chooseHotKey(int hotKeyCode, int hotKeyModifiers);
    // The hot key as people read it.
    QString hotKeyString() const;
    // Why there is none; empty while there is one.
    const QString &hotKeyProblem() const { return _hotKeyProblem; }
    // What the user can do about that in the desktop's settings, as a sentence; empty for nothing.
    QString hotKeyAdvice() const;
    // Whether a key is chosen, and whether a corner is.
    static bool isHotKeyWanted();
    static bool isHotSpotWanted();

    // Puts the status item up, or takes it away.
    void updateStatusBar();
    static bool isStatusItemWanted();
    // An item that is wanted may have no place.
    bool isStatusItemShown() const;

Q_SIGNALS:
    void hotKeyStringChanged();
    // There is another problem, or none any more.
    void hotKeyProblemChanged();
    void statusItemShownChanged();

private:
    void preferenceDidChange(const QString &key);
    // Whether it is news.
    bool setHotKeyProblem(const QString &problem);
    void takeHotKeyProblem(const QString &whyNot);
    void applicationDidChangeScreenParameters();
    // Begins to report the modifier keys that are held, as N_EventFlagsChanged.
    void setupEventTap();
    void watchPrimaryScreen();
    void updateCursorHotSpot();

    Desktop &_desktop;
    QMenu &_statusItemMenu;
    Action _action;
    Action _hotKeyAction;
    bool _isStarted = false;
    QString _hotKeyProblem;
    bool _isSettingHotKey = false;
    QPointer<QScreen> _primaryScreen;
    std::unique_ptr<OTHotSpotWindow> _hotSpotWin;
    std::unique_ptr<OTStatusItemView> _appStatusItem;
};

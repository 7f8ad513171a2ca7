// What happens while the pointer, or something dragged, is in the hot spot: after the delay of the
// preference cursorHotSpotDelay, in seconds, the action is performed, unless it has left by then.
//
// Shown, as the preference highlightHotSpots wants it, it is a red mark over the spot that takes no
// clicks; otherwise its window is never made. Follows both preferences, and registers neither.

#pragma once

#include "platform/ActivationStamp.h"

#include <QColor>
#include <QTimer>
#include <QWidget>

#include <functional>

class UserDefaults;

class OTHotSpotView final : public QWidget
{
    Q_OBJECT

public:
    using Action = std::function<void(const ActivationStamp &stamp)>;

    // The rectangle is in the coordinates of windows. Reads the standard preferences, which must
    // outlive it.
    OTHotSpotView(const QRect &frame, Action action);

    // Also for what is dragged.
    void mouseEntered(const ActivationStamp &stamp);
    void mouseExited();

    // Whether the action waits for the delay to pass.
    bool isDelayed() const { return _delayTimer.isActive(); }
    // With the stamp of the last entrance.
    void performAction();
    // Both do nothing when hot spots are not to be seen.
    void showHotSpot();
    void hideHotSpot();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void delayTimerFire();
    void preferenceChanged(const QString &key);
    void readPreferences();

    const Action _action;
    UserDefaults &_userDefaults;
    QTimer _delayTimer;
    float _delay = 0;
    bool _displayHotSpots = false;
    QColor _currentColor = Qt::transparent;
    ActivationStamp _stamp;
};

#include "shell/triggers/OTHotSpotView.h"

#include "support/UserDefaults.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

const QString delayKey = QStringLiteral("cursorHotSpotDelay");
const QString highlightKey = QStringLiteral("highlightHotSpots");

// A window that no window manager sees to, and that takes neither keys nor clicks.
constexpr Qt::WindowFlags flags = Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint
    | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput;

// What lasts longer than a timer can count lasts as long as that.
int milliseconds(float seconds)
{
    constexpr double longest = std::numeric_limits<int>::max();
    return int(std::min(std::ceil(double(seconds) * 1000), longest));
}

} // namespace

OTHotSpotView::OTHotSpotView(const QRect &frame, Action action)
    : QWidget(nullptr, flags)
    , _action(std::move(action))
    , _userDefaults(UserDefaults::standard())
{
    setWindowTitle(QStringLiteral("Ortu Hot Spot"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_OpaquePaintEvent);
    // That it goes is no reason for the program to end.
    setAttribute(Qt::WA_QuitOnClose, false);
    setGeometry(frame);
    _delayTimer.setSingleShot(true);
    connect(&_delayTimer, &QTimer::timeout, this, &OTHotSpotView::delayTimerFire);
    connect(&_userDefaults, &UserDefaults::changed, this, &OTHotSpotView::preferenceChanged);
    readPreferences();
}

void OTHotSpotView::readPreferences()
{
    _delay = _userDefaults.floatForKey(delayKey);
    _displayHotSpots = _userDefaults.boolForKey(highlightKey);
}

void OTHotSpotView::preferenceChanged(const QString &key)
{
    if (key == highlightKey) {
        hideHotSpot();
    }
    if (key == highlightKey || key == delayKey) {
        readPreferences();
    }
}

// A delay that is not a number is none.
void OTHotSpotView::mouseEntered(const ActivationStamp &stamp)
{
    _delayTimer.stop();
    _stamp = stamp;
    if (_delay > 0) {
        _delayTimer.start(milliseconds(_delay));
    } else {
        performAction();
    }
    showHotSpot();
}

void OTHotSpotView::mouseExited()
{
    _delayTimer.stop();
    hideHotSpot();
}

void OTHotSpotView::delayTimerFire()
{
    _delayTimer.stop();
    performAction();
}

void OTHotSpotView::performAction()
{
    if (_action) {
        _action(_stamp);
    }
}

void OTHotSpotView::showHotSpot()
{
    if (_displayHotSpots) {
        _currentColor = Qt::red;
        show();
    }
}

void OTHotSpotView::hideHotSpot()
{
    if (_displayHotSpots) {
        _currentColor = Qt::transparent;
        hide();
    }
}

void OTHotSpotView::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect(), _currentColor);
}

#include "platform/freedesktop/bus/LauncherProgress.h"

#include <QDBusMessage>
#include <QVariantMap>

#include <algorithm>
#include <utility>

namespace {

// More often than this cannot be seen.
constexpr auto shortestInterval = std::chrono::milliseconds(100);

} // namespace

LauncherProgress::LauncherProgress(Clock clock)
    : _clock(std::move(clock))
{ }

LauncherProgress::~LauncherProgress()
{
    end();
}

void LauncherProgress::show(int step, int count)
{
    const Time now = _clock();
    if (_lastShown && now - *_lastShown < shortestInterval) {
        return;
    }
    _lastShown = now;
    send(std::clamp(double(step) / std::max(count, 1), 0.0, 1.0), true);
}

void LauncherProgress::end()
{
    if (std::exchange(_lastShown, {})) {
        send(0, false);
    }
}

LauncherProgress::Time LauncherProgress::steadyTime()
{
    return std::chrono::duration_cast<Time>(std::chrono::steady_clock::now().time_since_epoch());
}

// The desktop entry is how a dock knows whose progress it is.
void LauncherProgress::send(double progress, bool isVisible)
{
    const QDBusConnection bus = _bus.get();
    if (!bus.isConnected()) {
        return;
    }
    QDBusMessage update = QDBusMessage::createSignal(QStringLiteral("/org/ortu/Ortu"),
        QStringLiteral("com.canonical.Unity.LauncherEntry"), QStringLiteral("Update"));
    update << QStringLiteral("application://org.ortu.Ortu.desktop")
           << QVariantMap { { QStringLiteral("progress"), progress },
                  { QStringLiteral("progress-visible"), isVisible } };
    bus.send(update);
}

#include "platform/freedesktop/input/XHotKey.h"

#include "platform/freedesktop/input/TerminalStop.h"
#include "platform/freedesktop/input/XHotKeyGrab.h"

#include <QThread>
#include <QWindow>

#include <future>
#include <utility>

class XHotKey::Thread final : public QThread
{
public:
    explicit Thread(XHotKey &owner)
        : _owner(owner)
    {
        setObjectName(QStringLiteral("hot key"));
        start();
    }
    ~Thread() override
    {
        quit();
        wait();
    }
    Q_DISABLE_COPY_MOVE(Thread)

    // Lives on the thread.
    XHotKeyGrab *grab() const { return _grab.get(); }

protected:
    void run() override
    {
        XConnection connection;
        XKeyboard keyboard(connection);
        XHotKeyGrab grab(keyboard);
        const TerminalStop stop;
        connect(&grab, &XHotKeyGrab::pressed, &_owner, &XHotKey::handlePress);
        connect(&grab, &XHotKeyGrab::registrationChanged, &_owner, &HotKey::registrationChanged);
        connect(&stop, &TerminalStop::stopping, &grab, &XHotKeyGrab::leave);
        connect(&stop, &TerminalStop::continued, &grab, &XHotKeyGrab::takeAgain);
        _made.set_value(&grab);
        exec();
    }

private:
    XHotKey &_owner;
    std::promise<XHotKeyGrab *> _made;
    std::shared_future<XHotKeyGrab *> _grab { _made.get_future() };
};

XHotKey::XHotKey()
    : _thread(std::make_unique<Thread>(*this))
{ }

XHotKey::~XHotKey() = default;

QString XHotKey::registerKey(const HotKeyCombination &combination)
{
    XHotKeyGrab *const grab = _thread->grab();
    QString whyNot;
    QMetaObject::invokeMethod(
        grab, [grab, combination] { return grab->registerKey(combination); },
        Qt::BlockingQueuedConnection, &whyNot);
    return whyNot;
}

void XHotKey::unregisterKey()
{
    XHotKeyGrab *const grab = _thread->grab();
    QMetaObject::invokeMethod(
        grab, [grab] { grab->unregisterKey(); }, Qt::BlockingQueuedConnection);
}

QStringList XHotKey::namesOfKey(quint32 nativeScanCode) const
{
    XHotKeyGrab *const grab = _thread->grab();
    QStringList names;
    QMetaObject::invokeMethod(
        grab, [grab, nativeScanCode] { return grab->namesOfKey(nativeScanCode); },
        Qt::BlockingQueuedConnection, &names);
    return names;
}

void XHotKey::handKeysTo(const QWindow &window)
{
    _window = quint32(window.winId());
}

void XHotKey::handlePress(const ActivationStamp &stamp)
{
    _window = XCB_WINDOW_NONE;
    Q_EMIT pressed(stamp);
    XHotKeyGrab *const grab = _thread->grab();
    QMetaObject::invokeMethod(
        grab, [grab, window = _window] { grab->handKeysTo(window); }, Qt::QueuedConnection);
}

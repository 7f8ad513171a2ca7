#include "icons/IconLoader.h"

#include "TestCase.h"
#include "platform/IconProvider.h"

#include <QDeadlineTimer>
#include <QMutexLocker>
#include <QSemaphore>
#include <QThread>

#include <atomic>

namespace {

// Icons that are decoded when the test opens the gate, one for each release. A path that begins
// with "no" has no icon.
class GatedIcons final : public IconProvider
{
public:
    mutable QSemaphore gate;
    mutable QSemaphore decoded;

    QStringList started() const
    {
        const QMutexLocker lock(&_mutex);
        return _started;
    }
    IconSource resolve(const QString &bundlePath, int) const override
    {
        const QMutexLocker lock(&_mutex);
        _started.append(bundlePath);
        return { bundlePath.startsWith(u"no") ? QString() : bundlePath };
    }
    QImage decode(const IconSource &, int size) const override
    {
        count(1);
        gate.acquire();
        count(-1);
        decoded.release();
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::red);
        return image;
    }
    mutable std::atomic<int> mostAtOnce = 0;

private:
    void count(int change) const
    {
        const QMutexLocker lock(&_mutex);
        _atOnce += change;
        mostAtOnce = qMax(int(mostAtOnce), _atOnce);
    }

    mutable QMutex _mutex;
    mutable QStringList _started;
    mutable int _atOnce = 0;
};

constexpr int many = 40;

} // namespace

class IconLoaderTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestCase::init();
        _received.clear();
        _loader.reset();
        _icons = std::make_unique<GatedIcons>();
        _loader = std::make_unique<IconLoader>();
    }

    void eightAtOnce_inOrder_noneAhead_andHandedOverOnTheMainThread()
    {
        QSignalSpy finished(_loader.get(), &IconLoader::finished);
        bool isOnMainThread = true;
        qsizetype furthestAhead = 0;
        addMany([&] {
            isOnMainThread = isOnMainThread && QThread::currentThread() == thread();
            const qsizetype handedOver = _received.size() - 1;
            furthestAhead = qMax(furthestAhead, _icons->started().size() - handedOver);
            // Who takes long with the first leaves the others to the next turn.
            const QDeadlineTimer busy(20);
            while (_received.size() == 1 && !busy.hasExpired()) { }
        });
        QTRY_COMPARE(int(_icons->mostAtOnce), IconLoader::Width);
        QStringList first = _icons->started();
        first.sort();
        QCOMPARE(first.join(u' '), u"0 1 2 3 4 5 6 7"_s);
        QCOMPARE(_loader->pendingCount(), many);

        _icons->gate.release(many);
        // Every thread has decoded one, and none has been handed over.
        _icons->decoded.acquire(IconLoader::Width);
        QVERIFY(_received.isEmpty());
        QVERIFY(finished.wait());
        QCOMPARE(finished.count(), 1);
        QCOMPARE(_loader->pendingCount(), 0);
        QCOMPARE(_received.size(), many);
        QVERIFY(isOnMainThread);
        QCOMPARE(furthestAhead, qsizetype(IconLoader::Width));
        QCOMPARE(int(_icons->mostAtOnce), IconLoader::Width);
    }

    void failures_areHandedOverWithoutWaiting()
    {
        QSignalSpy finished(_loader.get(), &IconLoader::finished);
        // Said once.
        expectWarning(u"^IconLoader::run Error loading icon for path: no icon$"_s);
        for (int i = 0; i < 2 * IconLoader::Width; ++i) {
            add(u"no icon"_s);
        }
        _icons->gate.release();
        add(u"icon"_s);
        // No event has been handled: all that came before the last one made way for it.
        _icons->decoded.acquire();
        QVERIFY(_received.isEmpty());
        QVERIFY(finished.wait());
        QCOMPARE(_received.size(), 2 * IconLoader::Width + 1);
        QCOMPARE(_received.count(QImage()), 2 * IconLoader::Width);
    }

    // While so many are decoded (-1 when decoding hangs), and by destruction.
    void cancelAll_callsNoReceiver()
    {
        for (const auto &[decoded, isDestroyed] :
            { std::pair(0, false), std::pair(-1, false), std::pair(int(IconLoader::Width), false),
                std::pair(0, true), std::pair(int(IconLoader::Width), true) }) {
            init();
            addMany();
            QTRY_COMPARE(int(_icons->mostAtOnce), IconLoader::Width);
            const bool isHanging = decoded < 0;
            _icons->gate.release(isHanging ? 0 : many);
            _icons->decoded.acquire(qMax(decoded, 0));
            QSignalSpy finished(_loader.get(), &IconLoader::finished);
            if (isDestroyed) {
                _loader = std::make_unique<IconLoader>();
            } else {
                QCOMPARE(_loader->cancelAll(), !isHanging);
            }
            _icons->gate.release(isHanging ? many : 0);
            QTRY_VERIFY(!_loader->isBusy());
            QCoreApplication::processEvents();
            QVERIFY(_received.isEmpty() && finished.isEmpty());
            QCOMPARE(_icons->started().size(), IconLoader::Width);
            verifyThatItWorks();
        }
    }

private:
    void add(const QString &path, std::function<void()> receiver = {})
    {
        _loader->addOperation({ path, IconParameters(),
                                  [this, receiver](const LoadedIcon &icon) {
                                      _received.append(icon.image);
                                      if (receiver) {
                                          receiver();
                                      }
                                  } },
            *_icons);
    }
    void addMany(const std::function<void()> &receiver = {})
    {
        for (int i = 0; i < many; ++i) {
            add(QString::number(i), receiver);
        }
    }
    // The loader still does its work after whatever happened to it.
    void verifyThatItWorks()
    {
        QCOMPARE(_loader->pendingCount(), 0);
        _received.clear();
        _icons->gate.release(many);
        QSignalSpy finished(_loader.get(), &IconLoader::finished);
        addMany();
        QVERIFY(finished.wait());
        QCOMPARE(_received.size(), many);
    }

    std::unique_ptr<GatedIcons> _icons;
    std::unique_ptr<IconLoader> _loader;
    QList<QImage> _received;
};

QTEST_GUILESS_MAIN(IconLoaderTest)
#include "IconLoaderTest.moc"

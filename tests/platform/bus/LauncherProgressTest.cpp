// Progress as another program on a real bus gets to see it.

#include "platform/freedesktop/bus/LauncherProgress.h"

#include "TestCase.h"
#include "platform/bus/PrivateBus.h"

#include <QDBusAbstractInterface>
#include <QDBusMessage>

using namespace std::chrono_literals;

// A dock: any program on the bus can make it emit its signal.
class Dock final : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    explicit Dock(const QDBusConnection &connection)
        : QDBusAbstractInterface(
            {}, u"/org/ortu/Ortu"_s, "com.canonical.Unity.LauncherEntry", connection, nullptr)
    { }

Q_SIGNALS:
    void Update(const QString &application, const QVariantMap &properties);
};

class LauncherProgressTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        _now = 0ms;
        _shown.clear();
        _bus = std::make_unique<PrivateBus>();
        _connection = std::make_unique<BusConnection>();
        _dock = std::make_unique<Dock>(_connection->get());
        connect(_dock.get(), &Dock::Update, this,
            [this](const QString &application, const QVariantMap &properties) {
                QCOMPARE(application, u"application://org.ortu.Ortu.desktop"_s);
                QCOMPARE(properties[u"progress"_s].typeId(), int(QMetaType::Double));
                _shown.append(properties[u"progress-visible"_s].toBool()
                        ? properties[u"progress"_s].toString()
                        : u"end"_s);
            });
        _progress = std::make_unique<LauncherProgress>([this] { return _now; });
    }
    void cleanup()
    {
        _progress.reset();
        _dock.reset();
        _connection.reset();
        _bus.reset();
    }

    void steps_areShownAsOftenAsOneCanSee()
    {
        for (int step = 1; step <= 10; ++step) {
            _progress->show(step, 10);
            _now += 30ms;
        }
        QCOMPARE(shown(), QStringList({ u"0.1"_s, u"0.5"_s, u"0.9"_s }));
        _now += 1h;
        _progress->show(30, 20);
        QCOMPARE(shown(), QStringList { u"1"_s });
    }

    void progress_ends()
    {
        _progress->end();
        _progress->show(1, 2);
        _progress->end();
        _progress->end();
        _progress->show(1, 4);
        QCOMPARE(shown(), QStringList({ u"0.5"_s, u"end"_s, u"0.25"_s }));
        _progress.reset();
        QTRY_COMPARE(_shown, QStringList { u"end"_s });
    }

private:
    // Each as "progress" or "end", up to a step of its own, which comes after all the others.
    QStringList shown()
    {
        const QString last = u"0.125"_s;
        _now += 1h;
        _progress->show(1, 8);
        if (!QTest::qWaitFor([&] { return _shown.contains(last); }, 10'000)) {
            return { u"nothing comes"_s };
        }
        _shown.removeLast();
        return std::exchange(_shown, {});
    }

    std::unique_ptr<PrivateBus> _bus;
    std::unique_ptr<BusConnection> _connection;
    std::unique_ptr<Dock> _dock;
    QStringList _shown;
    std::chrono::milliseconds _now = 0ms;
    std::unique_ptr<LauncherProgress> _progress;
};

QTEST_GUILESS_MAIN(LauncherProgressTest)
#include "LauncherProgressTest.moc"

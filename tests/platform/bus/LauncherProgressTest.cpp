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
    void steps_areShownAsOftenAsOneCanSee_andProgressEnds()
    {
        const PrivateBus bus;
        BusConnection connection;
        const Dock dock(connection.get());
        QStringList shown;
        connect(&dock, &Dock::Update, this,
            [&shown](const QString &application, const QVariantMap &properties) {
                QCOMPARE(application, u"application://org.ortu.Ortu.desktop"_s);
                QCOMPARE(properties[u"progress"_s].typeId(), int(QMetaType::Double));
                shown.append(properties[u"progress-visible"_s].toBool()
                        ? properties[u"progress"_s].toString()
                        : u"end"_s);
            });
        std::chrono::milliseconds now = 0ms;
        auto progress = std::make_unique<LauncherProgress>([&now] { return now; });
        progress->end();
        for (int step = 1; step <= 10; ++step) {
            progress->show(step, 10);
            now += 30ms;
        }
        now += 1h;
        progress->show(30, 20);
        progress->end();
        progress->end();
        QTRY_COMPARE(shown, QStringList({ u"0.1"_s, u"0.5"_s, u"0.9"_s, u"1"_s, u"end"_s }));
        progress->show(1, 4);
        progress.reset();
        QTRY_COMPARE(shown.mid(5), QStringList({ u"0.25"_s, u"end"_s }));
    }
};

QTEST_GUILESS_MAIN(LauncherProgressTest)
#include "LauncherProgressTest.moc"

// Compositing on a display without a manager for it, which the test then stands in for.

#include "desktop/Programs.h"
#include "platform/freedesktop/FreedesktopDesktop.h"

#include <QGuiApplication>

class CompositingTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void itIsActiveWhileADisplayHasAManagerForIt()
    {
        const std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop();
        const Compositing &compositing = desktop->compositing();
        QSignalSpy changed(&compositing, &Compositing::changed);
        QVERIFY(!compositing.isActive());
        for (int i = 1; i <= 2; ++i) {
            auto manager = std::make_unique<XClient>();
            QVERIFY(manager->own("_NET_WM_CM_S0"));
            QTRY_VERIFY(compositing.isActive());
            // Another one takes over.
            auto other = std::make_unique<XClient>();
            QVERIFY(other->own("_NET_WM_CM_S0"));
            manager.reset();
            // Right from the start, before a notification can arrive.
            QVERIFY(makeFreedesktopDesktop()->compositing().isActive());
            other.reset();
            QTRY_VERIFY(!compositing.isActive());
            QCOMPARE(changed.count(), 2 * i);
        }
    }
};

QTEST_MAIN(CompositingTest)
#include "CompositingTest.moc"

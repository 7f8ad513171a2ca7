#include "support/NotificationCenter.h"

#include "TestCase.h"

class NotificationCenterTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void severalPosts_makeOneAnnouncementAfterWhatWaited()
    {
        NotificationCenter center;
        QString order;
        connect(&center, &NotificationCenter::N_ScanPathListChanged, this, [&] { order += u'p'; });
        connect(&center, &NotificationCenter::applicationDidFinishLaunching, this,
            [&] { order += u'l'; });
        const auto waiting = [&] { order += u'w'; };
        QMetaObject::invokeMethod(this, waiting, Qt::QueuedConnection);
        center.postWhenIdle(&NotificationCenter::N_ScanPathListChanged);
        center.postWhenIdle(&NotificationCenter::applicationDidFinishLaunching);
        center.postWhenIdle(&NotificationCenter::N_ScanPathListChanged);
        QMetaObject::invokeMethod(this, waiting, Qt::QueuedConnection);
        QCOMPARE(order, QString());
        QTRY_COMPARE(order, u"wwpl"_s);
        center.postWhenIdle(&NotificationCenter::N_ScanPathListChanged);
        QTRY_COMPARE(order, u"wwplp"_s);
    }

    void postingFromAReceiver_announcesInALaterTurn()
    {
        NotificationCenter center;
        int announced = 0;
        connect(&center, &NotificationCenter::N_ScanPathListChanged, this, [&] {
            if (++announced < 3) {
                center.postWhenIdle(&NotificationCenter::N_ScanPathListChanged);
            }
        });
        center.postWhenIdle(&NotificationCenter::N_ScanPathListChanged);
        QCoreApplication::processEvents();
        QVERIFY(announced < 2);
        QTRY_COMPARE(announced, 3);
    }
};

QTEST_GUILESS_MAIN(NotificationCenterTest)
#include "NotificationCenterTest.moc"

#include "support/NotificationCenter.h"

#include "TestCase.h"
#include "support/Alerts.h"

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

    void answer_isThePresentersOrTheSafeOne()
    {
        Alert alert { .messageText = u"Erase\nall?"_s,
            .buttons = { u"Erase"_s, u"Keep"_s, u"Help"_s } };
        const auto answering = [](int answer) {
            return [answer](const Alert &, QWidget *) { return answer; };
        };
        {
            const Alerts::PresenterScope outer(answering(0));
            QCOMPARE(Alerts::run(alert), 0);
            // An answer that is no button is none.
            const Alerts::PresenterScope inner(answering(3));
            QCOMPARE(Alerts::run(alert), 2);
        }
        const auto safeAnswer = [&](int safeButton, const QString &taken) {
            alert.safeButton = safeButton;
            expectWarning(u"no one can answer \"Erase\nall\\?\": taken as \"%1\""_s.arg(taken));
            return Alerts::run(alert);
        };
        QCOMPARE(safeAnswer(-1, u"Help"_s), 2);
        QCOMPARE(safeAnswer(1, u"Keep"_s), 1);
    }
};

QTEST_GUILESS_MAIN(NotificationCenterTest)
#include "NotificationCenterTest.moc"

#include "support/Alerts.h"

#include "TestCase.h"

class AlertsTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void answer_isThePresentersOrTheSafeOne()
    {
        Alert alert { .messageText = u"Erase\nall?"_s,
            .buttons = { u"Erase"_s, u"Keep"_s, u"Help"_s } };
        const auto answering = [](int answer) {
            return [answer](const Alert &, QWidget *) { return answer; };
        };
        {
            const Alerts::PresenterScope outer(answering(0));
            {
                const Alerts::PresenterScope inner(answering(1));
                QCOMPARE(Alerts::run(alert), 1);
            }
            QCOMPARE(Alerts::run(alert), 0);
            // An answer that is no button is none.
            const Alerts::PresenterScope wrong(answering(3));
            QCOMPARE(Alerts::run(alert), 2);
        }
        const auto safeAnswer = [&](int safeButton, const QString &taken) {
            alert.safeButton = safeButton;
            expectWarning(u"no one can answer \"Erase\nall\\?\": taken as \"%1\""_s.arg(taken));
            return Alerts::run(alert);
        };
        QCOMPARE(safeAnswer(-1, u"Help"_s), 2);
        QCOMPARE(safeAnswer(1, u"Keep"_s), 1);
        QCOMPARE(safeAnswer(3, u"Help"_s), 2);
        alert.buttons.clear();
        QCOMPARE(safeAnswer(0, {}), 0);
    }
};

QTEST_GUILESS_MAIN(AlertsTest)
#include "AlertsTest.moc"

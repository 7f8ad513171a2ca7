#include "support/Alerts.h"

#include "TestCase.h"

namespace {

Alert question()
{
    return { .messageText = u"Erase\nall?"_s, .buttons = { u"Erase"_s, u"Keep"_s, u"Help"_s } };
}

Alerts::Presenter answering(int answer)
{
    return [answer](const Alert &, QWidget *) { return answer; };
}

} // namespace

class AlertsTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void withoutPresenter_theSafeAnswerHolds()
    {
        for (const auto &[safeButton, taken, answer] :
            std::initializer_list<std::tuple<int, QString, int>> {
                { -1, u"Help"_s, 2 }, { 1, u"Keep"_s, 1 }, { 3, u"Help"_s, 2 }, { 0, {}, 0 } }) {
            Alert alert = question();
            alert.safeButton = safeButton;
            if (taken.isEmpty()) {
                alert.buttons.clear();
            }
            expectWarning(u"no one can answer \"Erase\nall\\?\": taken as \"%1\""_s.arg(taken));
            QCOMPARE(Alerts::run(alert), answer);
        }
    }

    void presenter_answersWhileItsScopeLives()
    {
        const Alerts::PresenterScope outer(answering(0));
        {
            const Alerts::PresenterScope inner(answering(1));
            QCOMPARE(Alerts::run(question()), 1);
        }
        QCOMPARE(Alerts::run(question()), 0);
        // An answer that is no button is none.
        const Alerts::PresenterScope wrong(answering(3));
        QCOMPARE(Alerts::run(question()), 2);
    }
};

QTEST_GUILESS_MAIN(AlertsTest)
#include "AlertsTest.moc"

#include "support/Alerts.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

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

class AlertsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }

    void withoutPresenter_theSafeAnswerHolds()
    {
        const auto expect = [](const char *taken) {
            const QString line = u"nobody can answer \"Erase\nall?\": taken as \"%1\""_s;
            QTest::ignoreMessage(QtWarningMsg, qUtf8Printable(line.arg(QLatin1String(taken))));
        };
        Alert alert = question();
        expect("Help");
        QCOMPARE(Alerts::run(alert), 2);
        alert.safeButton = 1;
        expect("Keep");
        QCOMPARE(Alerts::run(alert), 1);
        alert.safeButton = 3;
        expect("Help");
        QCOMPARE(Alerts::run(alert), 2);
        alert.buttons.clear();
        expect("");
        QCOMPARE(Alerts::run(alert), 0);
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

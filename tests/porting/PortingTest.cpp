// The steps of docs/porting.md on the small platform of PortedProgram: what the program can do
// after each, and that it goes on without the steps that are still missing.

#include "desktop/ProgramRunner.h"

#include <QImage>
#include <QJsonArray>

class PortingTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (const char *name : { "red", "lime", "more/blue" }) {
            _runner.write(u"apps/%1.app/icon"_s.arg(QLatin1String(name)), {});
        }
        _runner.set("TMPDIR", _runner.path(u"."_s));
        _runner.set("PORTED_KEYS", u"lime\r"_s);
    }

    void eachStepBringsItsPart_data()
    {
        QTest::addColumn<QStringList>("found");
        QTest::addColumn<bool>("isKept");
        QTest::addColumn<bool>("isDrawn");
        QTest::addColumn<QByteArray>("printed");
        const QStringList all { u"blue"_s, u"lime"_s, u"red"_s };
        QTest::newRow("0 nothing") << QStringList() << false << false << QByteArray("shown\n");
        QTest::newRow("1 folders") << QStringList() << true << false << QByteArray("shown\n");
        QTest::newRow("2 items") << all << true << false << QByteArray("shown\n");
        QTest::newRow("3 icons") << all << true << true << QByteArray("shown\n");
        QTest::newRow("4 launcher")
            << all << true << true << QByteArray("shown\nlaunch lime.app\n");
    }
    void eachStepBringsItsPart()
    {
        QFETCH(const QStringList, found);
        QFETCH(const bool, isKept);
        QFETCH(const bool, isDrawn);
        QFETCH(const QByteArray, printed);
        _runner.set("PORTED_STEPS", QString::fromLatin1(QTest::currentDataTag()).left(1));

        const auto list = _runner.run({ u"--list"_s, u"allApps"_s, u"--fresh"_s, u"--json"_s });
        QStringList names;
        for (const auto &app : list.json()[u"bunches"_s][0].toArray()) {
            names.append(app[u"name"_s].toString());
        }
        QCOMPARE(names, found);
        QVERIFY(list.exitCode == 0 && list.errorLines.isEmpty());
        QCOMPARE(
            _runner.run({ u"--layout"_s, u"allApps"_s, u"--bounds"_s, u"800x600"_s }).exitCode, 0);

        const auto change = _runner.run({ u"--defaults"_s, u"showWelcomeWindow"_s, u"no"_s });
        QCOMPARE(change.errorLines,
            isKept ? QStringList()
                   : QStringList(u"ortu: this desktop has no folder for preferences"_s));
        QCOMPARE(change.exitCode, isKept ? 0 : 1);
        QCOMPARE(
            _runner.run({ u"--status"_s }).errorLines, QStringList(u"ortu: Ortu is not running"_s));

        const QString picture = _runner.path(u"drawn.png"_s);
        QCOMPARE(
            _runner.run({ u"--screenshot"_s, picture, u"--group"_s, u"allApps"_s }).exitCode, 0);
        QCOMPARE(has(QImage(picture), QColorConstants::Svg::lime), isDrawn);

        QProcess ortu;
        _runner.start(ortu, {});
        QByteArray output;
        while (output.size() < printed.size() && ortu.waitForReadyRead(20'000)) {
            output += ortu.readAllStandardOutput();
        }
        QCOMPARE(output, printed);
        ortu.terminate();
        QVERIFY(ortu.waitForFinished());
        QVERIFY(ortu.exitStatus() == QProcess::NormalExit && ortu.exitCode() == 0);
    }

private:
    static bool has(const QImage &image, const QColor &color)
    {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) == color) {
                    return true;
                }
            }
        }
        return false;
    }

    ProgramRunner _runner;
};

QTEST_GUILESS_MAIN(PortingTest)
#include "PortingTest.moc"

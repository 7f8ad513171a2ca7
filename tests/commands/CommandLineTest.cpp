#include "commands/CommandLine.h"

#include <QTest>

class CommandLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wrongUse_isNamedInOneLine_data();
    void wrongUse_isNamedInOneLine();
    void everyOptionReachesItsVerb();
    void negativePointsAreNoOptions();
    void preferenceValues_areTakenAsTheyStand();
    void helpNamesEveryOption();
};

void CommandLineTest::wrongUse_isNamedInOneLine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("named");

    QTest::newRow("unknown option") << "--frobnicate"
                                    << "--frobnicate";
    QTest::newRow("a file for a verb that takes none") << "--hide picture.png"
                                                       << "picture.png";
    QTest::newRow("two verbs") << "--list --layout 1 --bounds 3x3"
                               << "--layout";
    QTest::newRow("the same verb twice") << "--list --list"
                                         << "--list";
    QTest::newRow("group past the last") << "--list 10"
                                         << "10";
    QTest::newRow("negative group") << "--list -1"
                                    << "-1";
    QTest::newRow("misspelt group") << "--list allapps"
                                    << "allapps";
    QTest::newRow("layout without group") << "--layout --bounds 10x10"
                                          << "a group";
    QTest::newRow("layout without bounds") << "--layout 1"
                                           << "--bounds";
    QTest::newRow("bounds of nothing") << "--layout 1 --bounds 0x10"
                                       << "0x10";
    QTest::newRow("bounds with a third part") << "--layout 1 --bounds 1x2x3"
                                              << "1x2x3";
    QTest::newRow("bounds that are no number") << "--layout 1 --bounds nanxinf"
                                               << "nanxinf";
    QTest::newRow("endless bounds") << "--layout 1 --bounds 1e9x10"
                                    << "1e9x10";
    QTest::newRow("at without point") << "--layout 1 --bounds 9x9 --at"
                                      << "--at";
    QTest::newRow("half a point") << "--layout 1 --bounds 9x9 --at 3"
                                  << "X,Y: 3";
    QTest::newRow("no rows") << "--layout 1 --bounds 9x9 --rows 0"
                             << "--rows";
    QTest::newRow("rows and columns") << "--layout 1 --bounds 9x9 --rows 1 --columns 1"
                                      << "--columns";
    QTest::newRow("fresh layout") << "--layout 1 --bounds 9x9 --fresh"
                                  << "--fresh";
    QTest::newRow("option without verb") << "--json"
                                         << "--json";
    QTest::newRow("set without equals") << "--set iconPadding"
                                        << "KEY=VALUE";
    QTest::newRow("set without anything") << "--set"
                                          << "KEY=VALUE";
    QTest::newRow("set without key") << "--set =3"
                                     << "KEY=VALUE";
    QTest::newRow("screenshot without file") << "--screenshot --group 5"
                                             << "file name";
    QTest::newRow("scale of nothing") << "--screenshot a.png --scale 0"
                                      << "--scale";
    QTest::newRow("reset and set") << "--defaults iconPadding 3 --reset iconPadding"
                                   << "--reset";
    QTest::newRow("colours of nothing") << "--colors --json"
                                        << "a file";
    QTest::newRow("a file for another verb") << "--list 1 a.png"
                                             << "a.png";
    QTest::newRow("a count below none") << "--colors a.png --count -1"
                                        << "-1";
    QTest::newRow("half a colour") << "--colors a.png --count 1.5"
                                   << "1.5";
    QTest::newRow("a picture too large") << "--colors a.png --size 129"
                                         << "from 1 to 128";
    QTest::newRow("a hue that is no number") << "--colors a.png --wrap-hue nan"
                                             << "nan";
    QTest::newRow("an endless distance") << "--colors a.png --delta-e inf"
                                         << "inf";
    QTest::newRow("a sheet without name") << "--colors a.png --sheet --json"
                                          << "file name";
    QTest::newRow("a sheet whose name is empty") << "--colors a.png --sheet "
                                                 << "file name";
    QTest::newRow("a sheet of a list") << "--list --sheet a.png"
                                       << "--sheet";
    QTest::newRow("version of something") << "--version --json"
                                          << "--json";
}

void CommandLineTest::wrongUse_isNamedInOneLine()
{
    QFETCH(const QString, line);
    QFETCH(const QString, named);

    const Invocation call = parseCommandLine(line.split(QLatin1Char(' ')));

    QVERIFY2(call.error.contains(named), qPrintable(call.error));
    QVERIFY(!call.error.contains(QLatin1Char('\n')));
}

void CommandLineTest::everyOptionReachesItsVerb()
{
    const auto parsed = [](const char *line) {
        return parseCommandLine(QString::fromLatin1(line).split(QLatin1Char(' ')));
    };
    QCOMPARE(parseCommandLine({}).verb, Invocation::Verb::Start);

    const Invocation list = parsed("--json --list userApps --fresh --set a=b=c --set d=");
    QCOMPARE(list.error, QString());
    QCOMPARE(list.verb, Invocation::Verb::List);
    QVERIFY(list.isJson && list.isFresh);
    QCOMPARE(*list.group, QStringLiteral("userApps"));
    QCOMPARE(list.settings[0], qMakePair(QStringLiteral("a"), QStringLiteral("b=c")));
    QCOMPARE(list.settings[1], qMakePair(QStringLiteral("d"), QString()));

    const Invocation all = parsed("--list --json");
    QCOMPARE(all.error, QString());
    QVERIFY(!all.group);

    const Invocation picture =
        parsed("--screenshot a.png --group 5 --bounds 300x200.5 --scale 1.5");
    QCOMPARE(picture.error, QString());
    QCOMPARE(picture.file, QStringLiteral("a.png"));
    QCOMPARE(*picture.bounds, QSizeF(300, 200.5));
    QCOMPARE(picture.scale, 1.5);

    const Invocation colors = parsed("a.png --colors b.png --wrap-hue -30 --delta-e 1e-3 --count 0 "
                                     "--size 128 --sheet s.png --json -- --list -x");
    QCOMPARE(colors.error, QString());
    QCOMPARE(colors.files.join(QLatin1Char(' ')), QStringLiteral("a.png b.png --list -x"));
    QCOMPARE(colors.sheet, QStringLiteral("s.png"));
    QCOMPARE(colors.colors.wrapHue, -30.0);
    QCOMPARE(colors.colors.deltaE, 0.001);
    QCOMPARE(colors.colors.count, 0);
    QCOMPARE(colors.colors.size, 128);
    QVERIFY(!colors.colors.minSaturation && !colors.colors.graysBySecondaryColor);

    QCOMPARE(*parsed("--defaults --reset iconPadding").resetKey, QStringLiteral("iconPadding"));
    QCOMPARE(parsed("--layout 1 --bounds 9x9 --columns 4").columns, 4);
}

void CommandLineTest::negativePointsAreNoOptions()
{
    const Invocation call = parseCommandLine({ QStringLiteral("--layout"), QStringLiteral("1"),
        QStringLiteral("--bounds"), QStringLiteral("9x9"), QStringLiteral("--at"),
        QStringLiteral("-1,2.5"), QStringLiteral("3,-.5"), QStringLiteral("--json") });
    QCOMPARE(call.error, QString());
    QCOMPARE(call.points, QList<QPointF>({ { -1, 2.5 }, { 3, -0.5 } }));
    QVERIFY(call.isJson);
}

void CommandLineTest::preferenceValues_areTakenAsTheyStand()
{
    const auto value = [](const QString &text) {
        return parseCommandLine({ QStringLiteral("--defaults"), QStringLiteral("key"), text })
            .value;
    };
    QCOMPARE(value(QStringLiteral("-3")), QStringLiteral("-3"));
    QCOMPARE(value(QStringLiteral("-x")), QStringLiteral("-x"));
    QCOMPARE(value(QString()), QString());
    QVERIFY(!value(QStringLiteral("--json")));
}

void CommandLineTest::helpNamesEveryOption()
{
    const QString help = commandLineHelp();
    for (const char *option :
        { "--list", "--fresh", "--json", "--layout", "--bounds", "--at", "--rows", "--columns",
            "--defaults", "--reset", "--screenshot", "--group", "--scale", "--colors", "--sheet",
            "--size", "--count", "--delta-e", "--gray-threshold", "--wrap-hue", "--min-saturation",
            "--min-luminosity", "--grays-by-secondary-color", "--set", "--help", "--version" }) {
        QVERIFY2(help.contains(QLatin1String(option)), option);
    }
}

QTEST_APPLESS_MAIN(CommandLineTest)

#include "CommandLineTest.moc"

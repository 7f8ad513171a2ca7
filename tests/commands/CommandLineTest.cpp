#include "commands/CommandLine.h"

#include "TestCase.h"
#include "commands/PreferenceText.h"

class CommandLineTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void wrongUse_isNamedInOneLine()
    {
        const std::pair<const char *, const char *> rows[] { { "--frobnicate", "--frobnicate" },
            { "--hide picture.png", "picture.png" },
            { "--list --layout 1 --bounds 3x3", "--layout" }, { "--list --list", "--list" },
            { "--list allapps", "allapps" }, { "--layout --bounds 10x10", "a group" },
            { "--layout 1", "--bounds" }, { "--layout 1 --bounds 0x10", "0x10" },
            { "--layout 1 --bounds nanxinf", "nanxinf" },
            { "--layout 1 --bounds 9x9 --at 3", "X,Y: 3" },
            { "--layout 1 --bounds 9x9 --rows 1 --columns 1", "--columns" },
            { "--set iconPadding", "KEY=VALUE" }, { "--screenshot --group 5", "file name" },
            { "--screenshot a.png --scale 0", "--scale" }, { "--export --import a", "file name" },
            { "--import a b", "argument b" },
            { "--defaults iconPadding 3 --reset iconPadding", "--reset" },
            { "--colors --json", "a file" }, { "--colors a.png --count 1.5", "1.5" },
            { "--colors a.png --size 129", "from 1 to 128" } };
        for (const auto &[line, named] : rows) {
            const Invocation call = parseCommandLine(QString::fromLatin1(line).split(u' '));
            QVERIFY2(call.error.contains(QLatin1String(named)), qPrintable(call.error));
            QVERIFY(!call.error.contains(u'\n'));
        }
    }

    void everyOptionReachesItsVerb()
    {
        const auto parsed = [](const char *line) {
            const Invocation call = parseCommandLine(QString::fromLatin1(line).split(u' '));
            return call.error.isEmpty() ? call : Invocation();
        };
        QCOMPARE(parseCommandLine({}).verb, Invocation::Verb::Start);
        const Invocation list = parsed("--json --list userApps --fresh --set a=b=c --set d=");
        QVERIFY(list.verb == Invocation::Verb::List && list.isJson && list.isFresh);
        QCOMPARE(*list.group, u"userApps"_s);
        QCOMPARE(list.settings[0], qMakePair(u"a"_s, u"b=c"_s));
        QCOMPARE(list.settings[1], qMakePair(u"d"_s, QString()));
        QVERIFY(parsed("--list --json").isJson && !parsed("--list --json").group);

        const Invocation picture =
            parsed("--screenshot a.png --group 5 --bounds 300x200.5 --scale 1.5");
        QVERIFY(picture.file == u"a.png" && picture.scale == 1.5);
        QCOMPARE(*picture.bounds, QSizeF(300, 200.5));

        const Invocation colors =
            parsed("a.png --colors b.png --wrap-hue -30 --delta-e 1e-3 --count 0 "
                   "--size 128 --sheet s.png --json -- --list -x");
        QCOMPARE(colors.files.join(u' '), u"a.png b.png --list -x"_s);
        QCOMPARE(colors.sheet, u"s.png"_s);
        QVERIFY(colors.colors.wrapHue == -30.0 && colors.colors.deltaE == 0.001);
        QVERIFY(colors.colors.count == 0 && colors.colors.size == 128);
        QVERIFY(!colors.colors.minSaturation && !colors.colors.graysBySecondaryColor);

        QCOMPARE(*parsed("--defaults --reset iconPadding").resetKey, u"iconPadding"_s);
        QCOMPARE(parsed("--layout 1 --bounds 9x9 --columns 4").columns, 4);
        // Negative numbers are no options.
        const Invocation at = parsed("--layout 1 --bounds 9x9 --at -1,2.5 3,-.5 --json");
        QCOMPARE(at.points, QList<QPointF>({ { -1, 2.5 }, { 3, -0.5 } }));
        QVERIFY(at.isJson);
    }

    void preferenceValues_areTakenAsTheyStand()
    {
        const auto value = [](const QString &text) {
            return parseCommandLine({ u"--defaults"_s, u"key"_s, text }).value;
        };
        QVERIFY(value(u"-3"_s) == u"-3"_s && value(u"-x"_s) == u"-x"_s);
        QCOMPARE(value(QString()), QString());
        QVERIFY(!value(u"--json"_s));
    }

    // The default, a text, and what it is read as; invalid where it cannot be.
    void textIsReadByTheTypeOfTheDefault()
    {
        const QVariant list = QVariantList();
        const QVariant folders = QVariantList { QVariantMap { { u"path"_s, u"/a b"_s } } };
        const std::tuple<QVariant, QString, QVariant> rows[] { { false, u"YES"_s, true },
            { false, u"2"_s, {} }, { 1, u"-4"_s, -4LL }, { 1, u"1.5"_s, {} },
            { 1, u"99999999999999999999"_s, {} }, { 0.5, u"3"_s, 3.0 }, { 0.5, u"inf"_s, {} },
            { 0.5, u""_s, {} }, { list, uR"([{"path":"/a b"}])"_s, folders },
            { list, uR"({"path":"/"})"_s, {} }, { list, u"["_s, {} },
            { u""_s, u" true "_s, u" true "_s } };
        for (const auto &[registered, text, value] : rows) {
            const std::optional<QVariant> read = preferenceFromText({}, text, registered);
            QCOMPARE(read.has_value(), value.isValid());
            QCOMPARE(read.value_or(QVariant()), value);
            if (read) {
                QCOMPARE(preferenceFromText({}, preferenceText(*read), registered).value(), value);
            }
        }
    }
};

QTEST_APPLESS_MAIN(CommandLineTest)
#include "CommandLineTest.moc"

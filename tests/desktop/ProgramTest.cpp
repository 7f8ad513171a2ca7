// The real program without a display: what it prints, what it keeps, and what it makes of bad
// input.

#include "desktop/ProgramRunner.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

namespace {

const QByteArray plistHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n";

QByteArray plist(const QByteArray &body)
{
    return plistHead + body + "</plist>\n";
}

} // namespace

class ProgramTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void listsAreBuiltAsAStartWould_andNothingIsWritten();
    void favouritesAndExclusionsComeBackFromTheirFiles();
    void aLayoutCanBeCheckedByHand();
    void preferencesAreSetResetAndRefused();
    void aPictureHoldsTheIcons();
    void wrongUseAndMissingDisplay_areOneLine();
    void badApplications_leaveTheRestStanding_data();
    void badApplications_leaveTheRestStanding();
    void damagedBunches_leaveTheFlatOrder();
    void badFiles_loseNothing_data();
    void badFiles_loseNothing();

private:
    QStringList names(const QString &group, const QStringList &more = {}) const;

    std::unique_ptr<ProgramRunner> _runner;
};

void ProgramTest::init()
{
    _runner = std::make_unique<ProgramRunner>();
}

// The names in a group, bunches separated by a bar.
QStringList ProgramTest::names(const QString &group, const QStringList &more) const
{
    const auto result = _runner->run(
        QStringList { QStringLiteral("--list"), group, QStringLiteral("--json") } + more);
    QStringList names;
    const QJsonArray bunches = result.json()[QStringLiteral("bunches")].toArray();
    for (const QJsonValue &bunch : bunches) {
        if (!names.isEmpty()) {
            names.append(QStringLiteral("|"));
        }
        const QJsonArray apps = bunch.toArray();
        for (const QJsonValue &app : apps) {
            names.append(app[QStringLiteral("displayName")].toString());
        }
    }
    return names;
}

void ProgramTest::listsAreBuiltAsAStartWould_andNothingIsWritten()
{
    _runner->writeEntry(QStringLiteral("beta"));
    _runner->writeEntry(QStringLiteral("Alpha"), "Name[de]=Zeta\n");
    _runner->writeEntry(QStringLiteral("Crash Reporter"));
    _runner->scanOnlyOwnApplications();

    const auto all = _runner->run({ QStringLiteral("--list"), QStringLiteral("--json") });
    QCOMPARE(all.exitCode, 0);
    QCOMPARE(all.errorLines, QStringList());
    QCOMPARE(all.json().array().size(), 10);
    QCOMPARE(names(QStringLiteral("allApps")),
        QStringList(
            { QStringLiteral("Alpha"), QStringLiteral("beta"), QStringLiteral("Crash Reporter") }));
    QCOMPARE(names(QStringLiteral("1")),
        QStringList({ QStringLiteral("Alpha"), QStringLiteral("beta") }));
    QCOMPARE(names(QStringLiteral("4")), QStringList { QStringLiteral("Crash Reporter") });
    _runner->set("LANGUAGE", QStringLiteral("de"));
    QCOMPARE(names(QStringLiteral("1")),
        QStringList({ QStringLiteral("beta"), QStringLiteral("Zeta") }));
    QVERIFY(!QFile::exists(_runner->path(QStringLiteral("data/Ortu"))));

    const QString saved = _runner->path(QStringLiteral("apps/saved.desktop"));
    _runner->write(QStringLiteral("data/Ortu/AllApplications.plist"),
        plist("<array><array><string>" + saved.toUtf8() + "</string></array></array>"));
    const QJsonObject missing =
        _runner->run({ QStringLiteral("--list"), QStringLiteral("5"), QStringLiteral("--json") })
            .json()[QStringLiteral("bunches")][0][0]
            .toObject();
    QCOMPARE(missing,
        QJsonObject({ { QStringLiteral("path"), saved },
            { QStringLiteral("name"), QStringLiteral("saved") },
            { QStringLiteral("displayName"), QStringLiteral("saved") },
            { QStringLiteral("valid"), false } }));
    QCOMPARE(names(QStringLiteral("5"), { QStringLiteral("--fresh") }).size(), 3);
    QVERIFY(_runner->read(QStringLiteral("data/Ortu/AllApplications.plist")).contains("saved"));
}

void ProgramTest::favouritesAndExclusionsComeBackFromTheirFiles()
{
    for (const char *name : { "a", "b", "c" }) {
        _runner->writeEntry(QLatin1String(name));
    }
    _runner->scanOnlyOwnApplications();
    const auto entry = [this](const char *name) {
        return "<string>"
            + _runner->path(QStringLiteral("apps/%1.desktop").arg(QLatin1String(name))).toUtf8()
            + "</string>";
    };
    _runner->write(QStringLiteral("data/Ortu/UserApplications.plist"),
        plist("<array><array>" + entry("c") + "</array><array>" + entry("a") + "</array></array>"));
    _runner->write(QStringLiteral("data/Ortu/UserApplications1D.plist"),
        plist("<array>" + entry("a") + entry("c") + "</array>"));
    _runner->write(QStringLiteral("data/Ortu/ExcludedApplications.plist"),
        plist("<array>" + entry("b") + entry("lost") + "</array>"));

    QCOMPARE(names(QStringLiteral("8")),
        QStringList({ QStringLiteral("c"), QStringLiteral("|"), QStringLiteral("a") }));
    QCOMPARE(names(QStringLiteral("9")), QStringList({ QStringLiteral("a"), QStringLiteral("c") }));
    QCOMPARE(names(QStringLiteral("3")), QStringList { QStringLiteral("b") });
    QCOMPARE(names(QStringLiteral("2")), QStringList({ QStringLiteral("a"), QStringLiteral("c") }));
    QCOMPARE(names(QStringLiteral("7")), QStringList { QStringLiteral("lost") });
}

void ProgramTest::aLayoutCanBeCheckedByHand()
{
    for (int i = 0; i < 7; ++i) {
        _runner->writeEntry(QStringLiteral("app%1").arg(i));
    }
    _runner->scanOnlyOwnApplications();

    // Seven cells of 68 points at an aspect of 3: two rows of four, (24 + 4 × 68) × (24 + 2 × 68).
    const auto result =
        _runner->run({ QStringLiteral("--layout"), QStringLiteral("6"), QStringLiteral("--bounds"),
            QStringLiteral("924x324"), QStringLiteral("--json"), QStringLiteral("--at"),
            QStringLiteral("13,150"), QStringLiteral("5,5"), QStringLiteral("1000,1000") });
    QCOMPARE(result.exitCode, 0);
    const QJsonObject layout = result.json().object();
    QCOMPARE(layout[QStringLiteral("rows")].toInt(), 2);
    QCOMPARE(layout[QStringLiteral("columns")].toInt(), 4);
    QCOMPARE(layout[QStringLiteral("viewSize")].toArray(), QJsonArray({ 296, 160 }));
    const QJsonArray cells = layout[QStringLiteral("cells")].toArray();
    QCOMPARE(cells.size(), 8);
    QCOMPARE(cells[5][QStringLiteral("rect")].toArray(), QJsonArray({ 80, 12, 68, 68 }));
    QVERIFY(cells[5][QStringLiteral("app")].toString().endsWith(QLatin1String("app5.desktop")));
    QVERIFY(cells[7][QStringLiteral("app")].isNull());
    const QJsonArray at = layout[QStringLiteral("at")].toArray();
    QCOMPARE(at[0][QStringLiteral("row")].toInt(), 0);
    QCOMPARE(at[0][QStringLiteral("column")].toInt(), 0);
    QCOMPARE(at[1][QStringLiteral("margin")].toInt(), 2);
    QVERIFY(at[1][QStringLiteral("row")].isNull());
    QVERIFY(at[2][QStringLiteral("bunch")].isNull());

    const QJsonObject empty =
        _runner
            ->run({ QStringLiteral("--layout"), QStringLiteral("8"), QStringLiteral("--bounds"),
                QStringLiteral("924x324"), QStringLiteral("--json") })
            .json()
            .object();
    QCOMPARE(empty[QStringLiteral("viewSize")].toArray(), QJsonArray({ 0, 0 }));
    QCOMPARE(empty[QStringLiteral("cells")].toArray().size(), 0);
}

void ProgramTest::preferencesAreSetResetAndRefused()
{
    const auto run = [this](const QStringList &arguments) {
        return _runner->run(QStringList { QStringLiteral("--defaults") } + arguments);
    };
    const auto value = [&run] {
        return run({ QStringLiteral("iconPadding"), QStringLiteral("--json") })
            .json()[QStringLiteral("iconPadding")][QStringLiteral("value")]
            .toInt();
    };
    QCOMPARE(value(), 2);
    QCOMPARE(run({ QStringLiteral("iconPadding"), QStringLiteral("7") }).exitCode, 0);
    QCOMPARE(value(), 7);
    QCOMPARE(_runner
                 ->run({ QStringLiteral("--set"), QStringLiteral("iconPadding=4"),
                     QStringLiteral("--defaults"), QStringLiteral("iconPadding"),
                     QStringLiteral("--json") })
                 .json()[QStringLiteral("iconPadding")][QStringLiteral("value")]
                 .toInt(),
        4);
    QCOMPARE(value(), 7);
    QCOMPARE(run({ QStringLiteral("--reset"), QStringLiteral("iconPadding") }).exitCode, 0);
    QCOMPARE(value(), 2);

    for (const QStringList &refused :
        { QStringList { QStringLiteral("iconPadding"), QStringLiteral("wide") },
            { QStringLiteral("noSuchKey") }, { QStringLiteral("noSuchKey"), QStringLiteral("1") },
            { QStringLiteral("--reset"), QStringLiteral("noSuchKey") },
            { QStringLiteral("--set"), QStringLiteral("noSuchKey=1") },
            { QStringLiteral("--set"), QStringLiteral("iconPadding=wide") } }) {
        const auto result = run(refused);
        QCOMPARE(result.exitCode, 2);
        QCOMPARE(result.errorLines.size(), 1);
    }
}

void ProgramTest::aPictureHoldsTheIcons()
{
    QImage red(64, 64, QImage::Format_RGB32);
    red.fill(QColor(200, 10, 20));
    QVERIFY(red.save(_runner->path(QStringLiteral("red.png"))));
    _runner->writeEntry(
        QStringLiteral("red"), "Icon=" + _runner->path(QStringLiteral("red.png")).toUtf8() + "\n");
    _runner->scanOnlyOwnApplications();
    const QString file = _runner->path(QStringLiteral("picture.png"));

    const auto result = _runner->run(
        { QStringLiteral("--screenshot"), file, QStringLiteral("--scale"), QStringLiteral("2") });

    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.errorLines, QStringList());
    const QImage picture(file);
    // One cell of 68 points within margins of 12 in the middle of the narrowest panel, twice
    // as large.
    QCOMPARE(picture.size(), QSize(332, 312));
    QCOMPARE(picture.pixelColor(166, 152), QColor(200, 10, 20));
    QCOMPARE(picture.pixelColor(103, 89), QColor(200, 10, 20));
    QVERIFY(picture.pixelColor(100, 86) != QColor(200, 10, 20));

    QCOMPARE(_runner->run({ QStringLiteral("--screenshot"), QStringLiteral("/nonexistent/a.png") })
                 .exitCode,
        1);
}

void ProgramTest::wrongUseAndMissingDisplay_areOneLine()
{
    const auto wrong = _runner->run({ QStringLiteral("--list"), QStringLiteral("11") });
    QCOMPARE(wrong.exitCode, 2);
    QCOMPARE(wrong.errorLines.size(), 1);

    for (const char *variable : { "DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM" }) {
        _runner->set(variable, QString());
    }
    const auto shown = _runner->run({});
    QCOMPARE(shown.exitCode, 1);
    QCOMPARE(shown.errorLines.size(), 1);
    QCOMPARE(_runner->run({ QStringLiteral("--version") }).exitCode, 0);
}

void ProgramTest::badApplications_leaveTheRestStanding_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<bool>("isListed");

    const QByteArray head = "[Desktop Entry]\nType=Application\nName=Bad\n";
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("binary") << QByteArray("\x7f"
                                          "ELF\0\1\2\xff\0",
        9) << false;
    QTest::newRow("50 MB") << head + "Exec=/bin/true\nComment=" + QByteArray(50'000'000, 'x')
                           << false;
    QTest::newRow("without Exec") << head << false;
    QTest::newRow("broken encoding")
        << QByteArray("[Desktop Entry]\nType=Application\nName=Caf\xe9\nExec=/bin/true\n") << true;
}

void ProgramTest::badApplications_leaveTheRestStanding()
{
    QFETCH(const QByteArray, entry);
    QFETCH(const bool, isListed);
    _runner->writeEntry(QStringLiteral("good"));
    _runner->write(QStringLiteral("apps/bad.desktop"), entry);
    _runner->scanOnlyOwnApplications();

    const auto result = _runner->run({ QStringLiteral("--list"), QStringLiteral("6") });

    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.errorLines.size() == 1, qPrintable(result.errorLines.join(QLatin1Char('\n'))));
    QVERIFY(result.errorLines[0].contains(QLatin1String("bad.desktop")));
    QVERIFY(result.output.contains("good.desktop"));
    QCOMPARE(result.output.contains("bad.desktop"), isListed);
}

void ProgramTest::damagedBunches_leaveTheFlatOrder()
{
    const QByteArray a = _runner->path(QStringLiteral("apps/a.desktop")).toUtf8();
    _runner->writeEntry(QStringLiteral("a"));
    _runner->scanOnlyOwnApplications();
    _runner->write(QStringLiteral("data/Ortu/UserApplications1D.plist"),
        plist("<array><string>" + a + "</string></array>"));
    QCOMPARE(names(QStringLiteral("9")), QStringList());

    _runner->write(QStringLiteral("data/Ortu/UserApplications.plist"), "<plist");

    QCOMPARE(names(QStringLiteral("9")), QStringList { QStringLiteral("a") });
    QCOMPARE(names(QStringLiteral("8")), QStringList { QStringLiteral("a") });
}

void ProgramTest::badFiles_loseNothing_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("bytes");

    const QString favourites = QStringLiteral("data/Ortu/UserApplications.plist");
    const QString preferences = QStringLiteral("config/Ortu/Preferences.plist");
    const QByteArray deep = plistHead + QByteArray("<array>").repeated(1'000'000);
    QTest::newRow("truncated favourites") << favourites << plistHead + "<array><array><string>/a";
    QTest::newRow("favourites of text") << favourites << QByteArray("my favourites");
    QTest::newRow("favourites of the wrong shape")
        << favourites << plist("<dict><key>a</key><true/></dict>");
    QTest::newRow("endlessly nested favourites") << favourites << deep;
    QTest::newRow("numbers among favourites")
        << favourites
        << plist("<array><array><integer>3</integer><string>/apps/a</string></array></array>");
    QTest::newRow("truncated preferences") << preferences << plistHead + "<dict><key>iconPadding";
    QTest::newRow("preferences of the wrong shape") << preferences << plist("<array/>");
    QTest::newRow("endlessly nested preferences") << preferences << deep;
}

void ProgramTest::badFiles_loseNothing()
{
    QFETCH(const QString, file);
    QFETCH(const QByteArray, bytes);
    _runner->writeEntry(QStringLiteral("good"));
    _runner->scanOnlyOwnApplications();
    _runner->write(file, bytes);

    const auto looked = _runner->run({ QStringLiteral("--list"), QStringLiteral("8") });
    QCOMPARE(looked.exitCode, 0);
    QCOMPARE(looked.errorLines.size(), 1);
    QCOMPARE(_runner->read(file), bytes);

    QProcess started;
    _runner->set("QT_QPA_PLATFORM", QStringLiteral("offscreen"));
    _runner->start(started, {});
    QTRY_COMPARE_WITH_TIMEOUT(_runner->read(file + QStringLiteral(".damaged")), bytes, 20'000);
    started.terminate();
    QVERIFY(started.waitForFinished());
    QVERIFY(_runner->read(file) != bytes);
}

QTEST_GUILESS_MAIN(ProgramTest)

#include "ProgramTest.moc"

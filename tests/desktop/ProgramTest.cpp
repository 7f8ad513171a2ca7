// The real program without a display: what it prints, what it keeps, and what it makes of bad
// input.

#include "desktop/ProgramRunner.h"
#include "feedback/CrashLogs.h"
#include "support/files/PropertyList.h"

#include <QImage>
#include <QJsonArray>

#include <csignal>

class ProgramTest : public TestCase
{
    Q_OBJECT

    static QByteArray plist(const QByteArray &body)
    {
        return R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0">)" + body
            + "</plist>\n";
    }

private Q_SLOTS:
    void init() { _runner = std::make_unique<ProgramRunner>(); }

    void listsAreBuiltAsAStartWould_andNothingIsWritten()
    {
        _runner->writeEntry(u"beta"_s);
        _runner->writeEntry(u"Alpha"_s, "Name[de]=Zeta\n");
        _runner->writeEntry(u"Crash Reporter"_s);
        _runner->scanOnlyOwnApplications();
        const auto all = _runner->run({ u"--list"_s, u"--json"_s });
        QVERIFY(all.exitCode == 0 && all.errorLines.isEmpty());
        QCOMPARE(all.json().array().size(), 10);
        QCOMPARE(names(u"allApps"_s), u"Alpha, beta, Crash Reporter"_s);
        QCOMPARE(names(u"4"_s), u"Crash Reporter"_s);
        _runner->set("LANGUAGE", u"de"_s);
        QCOMPARE(names(u"1"_s), u"beta, Zeta"_s);
        QVERIFY(!QFile::exists(_runner->path(u"data/Ortu"_s)));

        const QString saved = _runner->path(u"apps/saved.desktop"_s);
        _runner->write(u"data/Ortu/AllApplications.plist"_s,
            plist("<array><array><string>" + saved.toUtf8() + "</string></array></array>"));
        QCOMPARE(list({ u"5"_s })[0][0].toObject(),
            QJsonObject({ { u"path"_s, saved }, { u"name"_s, u"saved"_s },
                { u"displayName"_s, u"saved"_s }, { u"valid"_s, false } }));
        QCOMPARE(list({ u"5"_s, u"--fresh"_s })[0].toArray().size(), 3);
        QVERIFY(_runner->read(u"data/Ortu/AllApplications.plist"_s).contains("saved"));
    }

    void aLayoutCanBeCheckedByHand()
    {
        for (int i = 0; i < 7; ++i) {
            _runner->writeEntry(u"app%1"_s.arg(i));
        }
        _runner->scanOnlyOwnApplications();
        // Seven cells of 68 points at an aspect of 3: two rows of four, (24 + 4 × 68) × (24 + 2 ×
        // 68).
        const auto result = _runner->run({ u"--layout"_s, u"6"_s, u"--bounds"_s, u"924x324"_s,
            u"--json"_s, u"--at"_s, u"13,140"_s, u"5,5"_s, u"1000,1000"_s });
        const QJsonObject layout = result.json().object();
        QVERIFY(layout[u"rows"_s] == 2 && layout[u"columns"_s] == 4);
        QCOMPARE(layout[u"viewSize"_s].toArray(), QJsonArray({ 296, 160 }));
        const QJsonArray cells = layout[u"cells"_s].toArray();
        QCOMPARE(cells.size(), 8);
        QCOMPARE(cells[5][u"rect"_s].toArray(), QJsonArray({ 80, 12, 68, 68 }));
        QVERIFY(cells[5][u"app"_s].toString().endsWith(u"app5.desktop"_s));
        QVERIFY(cells[7][u"app"_s].isNull());
        const QJsonArray at = layout[u"at"_s].toArray();
        QVERIFY(at[0][u"row"_s] == 0 && at[0][u"column"_s] == 0 && at[1][u"margin"_s] == 2);
        QVERIFY(at[1][u"row"_s].isNull() && at[2][u"bunch"_s].isNull());
    }

    void preferencesAreSetResetAndRefused()
    {
        const auto run = [this](const QString &arguments) {
            return _runner->run(arguments.split(u' '));
        };
        const auto value = [&run](const QString &options = {}) {
            const auto result = run(u"--defaults iconPadding --json"_s + options);
            return result.json()[u"iconPadding"_s][u"value"_s].toInt();
        };
        QCOMPARE(value(), 2);
        QCOMPARE(run(u"--defaults iconPadding 7"_s).exitCode, 0);
        QCOMPARE(value(), 7);
        QCOMPARE(value(u" --set iconPadding=4"_s), 4);
        QCOMPARE(value(), 7);
        QCOMPARE(run(u"--defaults --reset iconPadding"_s).exitCode, 0);
        QCOMPARE(value(), 2);
        for (const char *refused :
            { "iconPadding wide", "noSuchKey", "noSuchKey 1", "--reset noSuchKey",
                "--set noSuchKey=1", "--set iconPadding=wide", "windowColor reddish",
                "--set windowColor=reddish", "maximumIconSize 129", "--set windowAlpha=-0.1" }) {
            const auto result = run(u"--defaults "_s + QLatin1String(refused));
            QVERIFY2(result.exitCode == 2 && result.errorLines.size() == 1, refused);
        }
        QCOMPARE(run(u"--defaults windowColor #102030"_s).exitCode, 0);
        // A file stands where the folder belongs.
        _runner->set("XDG_CONFIG_HOME", _runner->path(u"config/Ortu/Preferences.plist"_s));
        const auto failed = run(u"--defaults iconPadding 7"_s);
        QVERIFY(failed.exitCode == 1 && failed.errorLines.size() == 1);
    }

    void settingsGoOut_andComeBackAsTheyWere()
    {
        _runner->run({ u"--defaults"_s, u"iconPadding"_s, u"7"_s });
        _runner->run({ u"--defaults"_s, u"hotKeyCode"_s, u"-1"_s });
        const auto file = [](const QString &name) { return u"data/Ortu/%1.plist"_s.arg(name); };
        _runner->write(file(u"UserApplications"_s),
            PropertyList::toXml(QVariantList { QStringList { u"/gone/b"_s, u"/ä & <c>"_s },
                QStringList(), QStringList(u"/a"_s) }));
        _runner->write(file(u"UserApplications1D"_s),
            PropertyList::toXml(QStringList { u"/a"_s, u"/gone/b"_s, u"/ä & <c>"_s }));
        _runner->write(file(u"ExcludedApplications"_s), PropertyList::toXml(QStringList(u"/e"_s)));
        const QVariantMap color { { u"red"_s, 0.1 }, { u"green"_s, 1 }, { u"blue"_s, 1.0 / 3 } };
        _runner->write(
            file(u"ColorCorrections"_s), PropertyList::toXml(QVariantMap { { u"/a"_s, color } }));
        const QMap<QString, QByteArray> before = settings();
        QCOMPARE(before.size(), 5);
        QCOMPARE(_runner->run({ u"--export"_s, _runner->path(u"kept"_s) }).exitCode, 0);
        const QByteArray kept = _runner->read(u"kept"_s);
        QCOMPARE(_runner->run({ u"--export"_s, u"-"_s }).output, kept);
        QDir(_runner->path(u"data"_s)).removeRecursively();
        QDir(_runner->path(u"config"_s)).removeRecursively();
        QCOMPARE(import(u"kept"_s).exitCode, 0);
        QCOMPARE(settings(), before);

        // Nothing of these is taken.
        for (const QByteArray &bad : { kept.left(kept.size() / 2), QByteArray("<html></html>"),
                 plist("<dict/>"), QByteArray(kept).replace("<integer>1<", "<integer>2<"),
                 QByteArray(kept).replace("<string>/e<", "<string>e<") }) {
            _runner->write(u"bad"_s, bad);
            const auto refused = import(u"bad"_s);
            QVERIFY2(refused.exitCode == 1 && refused.errorLines.size() == 1, bad);
            QCOMPARE(settings(), before);
        }
        // These are named and left out; what changes is kept as it was.
        _runner->write(u"other"_s,
            plist(
                "<dict><key>OrtuSettingsVersion</key><integer>1</integer><key>Mail</key><array/>"
                "<key>UserApplications1D</key><array><string>/e</string><string>/e</string></array>"
                "<key>ColorCorrections</key><dict><key>/a</key><dict><key>red</key><real>2</real>"
                "</dict></dict><key>Preferences</key><dict><key>hotKeyCode</key>"
                "<integer>-1</integer><key>iconPadding</key><true/>"
                "<key>maximumIconSize</key><integer>-4</integer><key>lastScan</key><dict/>"
                "<key>windowColor</key><string>red</string></dict></dict>"));
        QCOMPARE(import(u"other"_s).errorLines.size(), 6);
        QCOMPARE(_runner->read(file(u"UserApplications"_s)),
            PropertyList::toXml(QVariantList { QStringList(u"/e"_s) }));
        const QStringList unchanged { u"Preferences.plist"_s, u"ExcludedApplications.plist"_s };
        for (const QString &name : before.keys()) {
            const QByteArray &was = before[name];
            QCOMPARE(_runner->read(name + u".before"_s),
                unchanged.contains(QFileInfo(name).fileName()) ? QByteArray() : was);
        }
    }

    void aPictureHoldsTheIcons()
    {
        const QColor color(200, 10, 20);
        QImage red(64, 64, QImage::Format_RGB32);
        red.fill(color);
        QVERIFY(red.save(_runner->path(u"red.png"_s)));
        _runner->writeEntry(u"red"_s, "Icon=" + _runner->path(u"red.png"_s).toUtf8() + "\n");
        _runner->scanOnlyOwnApplications();
        const QString file = _runner->path(u"picture.png"_s);
        const auto result = _runner->run({ u"--screenshot"_s, file, u"--scale"_s, u"2"_s });
        QVERIFY(result.exitCode == 0 && result.errorLines.isEmpty());
        const QImage picture(file);
        // One cell of 68 points within margins of 12 in the middle of the narrowest panel, twice
        // as large.
        QCOMPARE(picture.height(), 312);
        const int middle = picture.width() / 2;
        QCOMPARE(picture.pixelColor(middle - 63, 89), color);
        QVERIFY(picture.pixelColor(middle - 66, 86) != color);
        QCOMPARE(_runner->run({ u"--screenshot"_s, u"/nonexistent/a.png"_s }).exitCode, 1);
    }

    void wrongUseAndMissingDisplay_areOneLine()
    {
        const auto wrong = _runner->run({ u"--list"_s, u"11"_s });
        QVERIFY(wrong.exitCode == 2 && wrong.errorLines.size() == 1);
        for (const char *variable : { "DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM" }) {
            _runner->set(variable, QString());
        }
        const auto shown = _runner->run({});
        QVERIFY(shown.exitCode == 1 && shown.errorLines.size() == 1);
        QCOMPARE(_runner->run({ u"--version"_s }).exitCode, 0);
    }

    void badApplications_leaveTheRestStanding()
    {
        _runner->writeEntry(u"good"_s);
        _runner->write(u"apps/binary.desktop"_s, QByteArray("\x7f\x45LF\0\1\2\xff\0", 9));
        // A name that forges a line of the log.
        _runner->write(u"apps/a\nortu.catalogue: forged\x1b[31m.desktop"_s,
            "[Desktop Entry]\nType=Application\nName=Bad\nExec=/bin/true\n");
        _runner->scanOnlyOwnApplications();

        const auto result = _runner->run({ u"--list"_s, u"6"_s });

        QCOMPARE(result.exitCode, 0);
        for (const char *name :
            { "binary.desktop", "a\\nortu.catalogue: forged\\u001b[31m.desktop" }) {
            QCOMPARE(result.errorLines.filter(QLatin1String(name)).size(), 1);
        }
        QCOMPARE(result.errorLines.size(), 2);
        QVERIFY(result.output.count(".desktop") == 1 && result.output.contains("good.desktop"));
    }

    void aCrash_leavesALogThatIsFound_andOldOnesGo()
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        QSKIP("the sanitizer handles crashes");
#endif
        for (int i = 10; i < 35; ++i) {
            _runner->write(
                u"state/Ortu/Logs/CrashReporter/Ortu_2020-01-01-0000%1.crash"_s.arg(i), "old");
        }
        const CrashLogs logs({ _runner->path(u"state/Ortu"_s) }, u"Ortu"_s);
        _runner->set("QT_QPA_PLATFORM", u"offscreen"_s);
        _runner->set("DBUS_SESSION_BUS_ADDRESS", u"none:"_s);
        _runner->scanOnlyOwnApplications();
        QProcess process;
        _runner->start(process, { u"--service"_s });
        QTRY_COMPARE_WITH_TIMEOUT(logs.crashLogsSince({}).size(), 20, 60'000);
        ::kill(static_cast<pid_t>(process.processId()), SIGSEGV);
        QVERIFY(process.waitForFinished());
        QVERIFY(process.exitStatus() == QProcess::CrashExit && process.exitCode() == SIGSEGV);
        const QStringList paths = logs.crashLogsSince({});
        QVERIFY(paths.size() == 21 && paths[0].endsWith(u"Ortu_2020-01-01-000015.crash"_s));
        const QString text = CrashLogs::latestCrashLogContents(paths);
        QVERIFY2(text.contains(u"(SIGSEGV)"_s) && text.contains(u"/libQt6Core.so"_s)
                && text.endsWith(u"End of the log\n"_s),
            qUtf8Printable(text));
    }

private:
    ProgramRunner::Result import(const QString &name) const
    {
        return _runner->run({ u"--import"_s, _runner->path(name) });
    }
    // The user's files that an export takes along.
    QMap<QString, QByteArray> settings() const
    {
        QMap<QString, QByteArray> contents;
        for (const QString &folder : { u"config/Ortu"_s, u"data/Ortu"_s }) {
            for (const QString &name : QDir(_runner->path(folder)).entryList(QDir::Files)) {
                contents.insert(folder + u'/' + name, _runner->read(folder + u'/' + name));
            }
        }
        return contents;
    }
    // The bunches of a group.
    QJsonValue list(const QStringList &arguments) const
    {
        return _runner->run(QStringList(u"--list"_s) + arguments + QStringList(u"--json"_s))
            .json()[u"bunches"_s];
    }
    QString names(const QString &group) const
    {
        QStringList names;
        const QJsonArray apps = list({ group })[0].toArray();
        for (const QJsonValue &app : apps) {
            names.append(app[u"displayName"_s].toString());
        }
        return names.join(u", "_s);
    }

    std::unique_ptr<ProgramRunner> _runner;
};

QTEST_GUILESS_MAIN(ProgramTest)
#include "ProgramTest.moc"

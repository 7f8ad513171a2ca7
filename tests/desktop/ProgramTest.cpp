// The real program without a display: what it prints, what it keeps, and what it makes of bad
// input.

#include "desktop/ProgramRunner.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

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
    void init() { _runner = std::make_unique<ProgramRunner>(); }

    void listsAreBuiltAsAStartWould_andNothingIsWritten()
    {
        _runner->writeEntry(u"beta"_s);
        _runner->writeEntry(u"Alpha"_s, "Name[de]=Zeta\n");
        _runner->writeEntry(u"Crash Reporter"_s);
        _runner->scanOnlyOwnApplications();

        const auto all = _runner->run({ u"--list"_s, u"--json"_s });
        QCOMPARE(all.exitCode, 0);
        QCOMPARE(all.errorLines, QStringList());
        QCOMPARE(all.json().array().size(), 10);
        QCOMPARE(names(u"allApps"_s), QStringList({ u"Alpha"_s, u"beta"_s, u"Crash Reporter"_s }));
        QCOMPARE(names(u"1"_s), QStringList({ u"Alpha"_s, u"beta"_s }));
        QCOMPARE(names(u"4"_s), QStringList { u"Crash Reporter"_s });
        _runner->set("LANGUAGE", u"de"_s);
        QCOMPARE(names(u"1"_s), QStringList({ u"beta"_s, u"Zeta"_s }));
        QVERIFY(!QFile::exists(_runner->path(u"data/Ortu"_s)));

        const QString saved = _runner->path(u"apps/saved.desktop"_s);
        _runner->write(u"data/Ortu/AllApplications.plist"_s,
            plist("<array><array><string>" + saved.toUtf8() + "</string></array></array>"));
        const QJsonObject missing = _runner->run({ u"--list"_s, u"5"_s, u"--json"_s })
                                        .json()[u"bunches"_s][0][0]
                                        .toObject();
        QCOMPARE(missing,
            QJsonObject({ { u"path"_s, saved }, { u"name"_s, u"saved"_s },
                { u"displayName"_s, u"saved"_s }, { u"valid"_s, false } }));
        QCOMPARE(names(u"5"_s, { u"--fresh"_s }).size(), 3);
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
            u"--json"_s, u"--at"_s, u"13,150"_s, u"5,5"_s, u"1000,1000"_s });
        QCOMPARE(result.exitCode, 0);
        const QJsonObject layout = result.json().object();
        QCOMPARE(layout[u"rows"_s].toInt(), 2);
        QCOMPARE(layout[u"columns"_s].toInt(), 4);
        QCOMPARE(layout[u"viewSize"_s].toArray(), QJsonArray({ 296, 160 }));
        const QJsonArray cells = layout[u"cells"_s].toArray();
        QCOMPARE(cells.size(), 8);
        QCOMPARE(cells[5][u"rect"_s].toArray(), QJsonArray({ 80, 12, 68, 68 }));
        QVERIFY(cells[5][u"app"_s].toString().endsWith(QLatin1String("app5.desktop")));
        QVERIFY(cells[7][u"app"_s].isNull());
        const QJsonArray at = layout[u"at"_s].toArray();
        QCOMPARE(at[0][u"row"_s].toInt(), 0);
        QCOMPARE(at[0][u"column"_s].toInt(), 0);
        QCOMPARE(at[1][u"margin"_s].toInt(), 2);
        QVERIFY(at[1][u"row"_s].isNull() && at[2][u"bunch"_s].isNull());
    }

    void preferencesAreSetResetAndRefused()
    {
        const auto run = [this](const QStringList &arguments) {
            return _runner->run(QStringList { u"--defaults"_s } + arguments);
        };
        const auto value = [&run] {
            return run({ u"iconPadding"_s, u"--json"_s })
                .json()[u"iconPadding"_s][u"value"_s]
                .toInt();
        };
        QCOMPARE(value(), 2);
        QCOMPARE(run({ u"iconPadding"_s, u"7"_s }).exitCode, 0);
        QCOMPARE(value(), 7);
        QCOMPARE(_runner
                     ->run({ u"--set"_s, u"iconPadding=4"_s, u"--defaults"_s, u"iconPadding"_s,
                         u"--json"_s })
                     .json()[u"iconPadding"_s][u"value"_s]
                     .toInt(),
            4);
        QCOMPARE(value(), 7);
        QCOMPARE(run({ u"--reset"_s, u"iconPadding"_s }).exitCode, 0);
        QCOMPARE(value(), 2);

        for (const QStringList &refused : { QStringList { u"iconPadding"_s, u"wide"_s },
                 { u"noSuchKey"_s }, { u"noSuchKey"_s, u"1"_s }, { u"--reset"_s, u"noSuchKey"_s },
                 { u"--set"_s, u"noSuchKey=1"_s }, { u"--set"_s, u"iconPadding=wide"_s } }) {
            const auto result = run(refused);
            QCOMPARE(result.exitCode, 2);
            QCOMPARE(result.errorLines.size(), 1);
        }
    }

    void aPictureHoldsTheIcons()
    {
        QImage red(64, 64, QImage::Format_RGB32);
        red.fill(QColor(200, 10, 20));
        QVERIFY(red.save(_runner->path(u"red.png"_s)));
        _runner->writeEntry(u"red"_s, "Icon=" + _runner->path(u"red.png"_s).toUtf8() + "\n");
        _runner->scanOnlyOwnApplications();
        const QString file = _runner->path(u"picture.png"_s);
        const auto result = _runner->run({ u"--screenshot"_s, file, u"--scale"_s, u"2"_s });
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.errorLines, QStringList());
        const QImage picture(file);
        // One cell of 68 points within margins of 12 in the middle of the narrowest panel, twice
        // as large.
        QCOMPARE(picture.height(), 312);
        const int middle = picture.width() / 2;
        QCOMPARE(picture.pixelColor(middle, 152), QColor(200, 10, 20));
        QCOMPARE(picture.pixelColor(middle - 63, 89), QColor(200, 10, 20));
        QVERIFY(picture.pixelColor(middle - 66, 86) != QColor(200, 10, 20));
        QCOMPARE(_runner->run({ u"--screenshot"_s, u"/nonexistent/a.png"_s }).exitCode, 1);
    }

    void wrongUseAndMissingDisplay_areOneLine()
    {
        const auto wrong = _runner->run({ u"--list"_s, u"11"_s });
        QCOMPARE(wrong.exitCode, 2);
        QCOMPARE(wrong.errorLines.size(), 1);
        for (const char *variable : { "DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM" }) {
            _runner->set(variable, QString());
        }
        const auto shown = _runner->run({});
        QCOMPARE(shown.exitCode, 1);
        QCOMPARE(shown.errorLines.size(), 1);
        QCOMPARE(_runner->run({ u"--version"_s }).exitCode, 0);
        // A home that Qt would take for another one.
        QProcess shell;
        shell.start(
            u"sh"_s, { u"-c"_s, u"HOME=$(printf '/tmp/\\351') exec \"$ORTU_PROGRAM\" --list"_s });
        QVERIFY(shell.waitForFinished());
        QCOMPARE(shell.exitCode(), 1);
        QCOMPARE(shell.readAllStandardError().trimmed(),
            "ortu: cannot use HOME=/tmp/\uFFFD: not valid UTF-8");
    }

    void badApplications_leaveTheRestStanding()
    {
        const QByteArray head = "[Desktop Entry]\nType=Application\nName=Bad\n";
        _runner->writeEntry(u"good"_s);
        _runner->write(u"apps/empty.desktop"_s, {});
        _runner->write(u"apps/binary.desktop"_s, QByteArray("\x7f\x45LF\0\1\2\xff\0", 9));
        _runner->write(u"apps/long.desktop"_s,
            head + "Exec=/bin/true\nComment=" + QByteArray(50'000'000, 'x'));
        _runner->write(u"apps/idle.desktop"_s, head);
        _runner->write(
            u"apps/odd.desktop"_s, QByteArray(head).replace("Bad", "Caf\xe9") + "Exec=/bin/true\n");
        // Names that forge a line, one of them in what a list shows and one in what the log says.
        const QString forged = u"a\nortu.catalogue: forged\u202e"_s;
        _runner->write(u"apps/%1.desktop"_s.arg(forged),
            "[Desktop Entry]\nType=Application\nExec=/bin/true\n");
        _runner->write(u"apps/%1\x1b[31m.desktop"_s.arg(forged), head + "Exec=/bin/true\n");
        _runner->scanOnlyOwnApplications();

        const auto result = _runner->run({ u"--list"_s, u"6"_s });

        QCOMPARE(result.exitCode, 0);
        for (const char *name : { "empty", "binary", "long", "idle", "odd" }) {
            QCOMPARE(result.errorLines.filter(QLatin1String(name) + u".desktop"_s).size(), 1);
        }
        const QString escaped = u"a\\nortu.catalogue: forged\\u202e"_s;
        QCOMPARE(result.errorLines.filter(escaped + u"\\u001b[31m.desktop: no"_s).size(), 1);
        QCOMPARE(result.errorLines.size(), 6);
        QCOMPARE(result.output.count(".desktop"), 3);
        QCOMPARE(result.output.count('\n'), 4);
        QVERIFY(result.output.contains(escaped.toUtf8() + ".desktop"));
        QVERIFY(result.output.contains("good.desktop") && result.output.contains("odd.desktop"));
    }

    void badFiles_loseNothing()
    {
        const std::pair<QString, QByteArray> files[] {
            { u"data/Ortu/UserApplications.plist"_s,
                plist("<array><array><integer>3</integer><string>/a</string></array></array>") },
            { u"config/Ortu/Preferences.plist"_s, plist("<array/>") }
        };
        for (const auto &[file, bytes] : files) {
            _runner->write(file, bytes);
        }
        const auto looked = _runner->run({ u"--list"_s, u"8"_s });
        QCOMPARE(looked.exitCode, 0);
        QCOMPARE(looked.errorLines.filter(u": cannot "_s).size(), 2);
        for (const auto &[file, bytes] : files) {
            QCOMPARE(_runner->read(file), bytes);
        }

        QProcess started;
        _runner->set("QT_QPA_PLATFORM", u"offscreen"_s);
        _runner->start(started, {});
        for (const auto &[file, bytes] : files) {
            QTRY_COMPARE_WITH_TIMEOUT(_runner->read(file + u".damaged"_s), bytes, 20'000);
        }
        started.terminate();
        QVERIFY(started.waitForFinished());
        QVERIFY(_runner->read(files[0].first) != files[0].second);
    }

private:
    // The names in a group, bunches separated by a bar.
    QStringList names(const QString &group, const QStringList &more = {}) const
    {
        const auto result = _runner->run(QStringList { u"--list"_s, group, u"--json"_s } + more);
        QStringList names;
        const QJsonArray bunches = result.json()[u"bunches"_s].toArray();
        for (const QJsonValue &bunch : bunches) {
            if (!names.isEmpty()) {
                names.append(u"|"_s);
            }
            const QJsonArray apps = bunch.toArray();
            for (const QJsonValue &app : apps) {
                names.append(app[u"displayName"_s].toString());
            }
        }
        return names;
    }

    std::unique_ptr<ProgramRunner> _runner;
};

QTEST_GUILESS_MAIN(ProgramTest)
#include "ProgramTest.moc"

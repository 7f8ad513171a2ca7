// Every call that README.md and docs/commands.md name, with and without its optional parts, made of
// the real program: it succeeds without a complaint, and shows, prints or draws something. The
// session is German, and what goes to scripts is English all the same. The preferences are those of
// docs/preferences.md.

#include "desktop/ProgramRunner.h"

#include <QHash>
#include <QImage>

class ReadmeTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void callsDoWhatTheySay()
    {
        const QStringList calls = documented(u"ortu\\b"_s);
        QVERIFY(calls.size() > 10);
        _runner.writeEntry(u"alpha"_s, "Icon=" + _picture.toUtf8() + "\n");
        _runner.scanOnlyOwnApplications();
        _runner.set("LANGUAGE", u"de"_s);
        QImage red(8, 8, QImage::Format_RGB32);
        red.fill(Qt::red);
        QVERIFY(red.save(_picture));
        const QHash<QString, QString> samples { { u"FILE…"_s, _picture },
            { u"FILE"_s, _runner.path(u"settings"_s) }, { u"FILE.png"_s, _drawn },
            { u"OUT.png"_s, _drawn }, { u"GROUP"_s, u"allApps"_s }, { u"WxH"_s, u"800x600"_s },
            { u"X,Y"_s, u"20,20"_s }, { u"…"_s, u"30,30"_s }, { u"N"_s, u"2"_s },
            { u"F"_s, u"2"_s }, { u"KEY"_s, u"iconPadding"_s }, { u"VALUE"_s, u"3"_s } };
        for (const QString &call : calls) {
            for (const QString &variant : variants(call)) {
                QStringList arguments = variant.split(u' ').mid(1);
                for (QString &argument : arguments) {
                    argument = samples.value(argument, argument);
                }
                check(arguments);
                if (QTest::currentTestFailed()) {
                    return qWarning("%s", qPrintable(variant));
                }
            }
        }
        start({});
        QCOMPARE(_runner.status()[u"hotKey"_s].toString(), u"⌃ Strg + Tab"_s);
        tell(u"--hide"_s);
        const auto result = _runner.run({ _picture, _runner.path(u"none.png"_s) });
        QVERIFY(result.exitCode == 1 && result.errorLines.size() == 1);
        QVERIFY(result.errorLines[0].endsWith(u"none.png: no such file") && !isVisible());
    }

    void optionsAreInTheHelp()
    {
        const QByteArray help = _runner.run({ u"--help"_s }).output;
        for (const QString &text : documented(u"(?:ortu )?--"_s)) {
            for (const QString &word : text.split(u' ').filter(QRegularExpression(u"^\\[?--"_s))) {
                const QByteArray option = word.mid(word.indexOf(u'-')).remove(u']').toUtf8();
                QVERIFY2(help.contains(option), option);
            }
        }
    }

    void preferencesAreThose()
    {
        const QJsonObject all = _runner.run({ u"--defaults"_s, u"--json"_s }).json().object();
        QVERIFY(!all.isEmpty());
        const QRegularExpression row(u"^\\| (`[^|]*`) \\|"_s, QRegularExpression::MultilineOption);
        const QString text = textOf(u"docs/preferences.md"_s);
        QStringList keys;
        for (const auto &match : row.globalMatch(text)) {
            keys += match.captured(1).remove(u'`').split(u", "_s);
        }
        QVERIFY(keys.size() > 40);
        for (const QString &key : std::as_const(keys)) {
            QVERIFY2(all.contains(key), qPrintable(key));
        }
    }

    void cleanupTestCase()
    {
        _ortu.terminate();
        _ortu.waitForFinished();
    }

private:
    static QString textOf(const QString &document)
    {
        return QString::fromUtf8(load(QStringLiteral(DOCUMENTS "/") + document));
    }
    // What stands as code in the documents and begins like that, without the code's marks.
    static QStringList documented(const QString &start)
    {
        QStringList found;
        const QRegularExpression code(u"`(%1[^`]*)`"_s.arg(start));
        const QString text = textOf(u"README.md"_s) + textOf(u"docs/commands.md"_s);
        for (const auto &match : code.globalMatch(text)) {
            found.append(match.captured(1).replace(u"\\|"_s, u"|"_s));
        }
        return found;
    }
    // With and without each part that stands in brackets.
    static QStringList variants(const QString &call)
    {
        static const QRegularExpression optional(uR"( \[([^\]]*)\])"_s);
        const auto part = optional.match(call);
        if (!part.hasMatch()) {
            return { call };
        }
        const auto with = [&](const QString &choice) {
            return variants(
                QString(call).replace(part.capturedStart(), part.capturedLength(), choice));
        };
        QStringList all = with({});
        for (const QString &choice : part.captured(1).split(u" | "_s)) {
            all += with(u' ' + choice);
        }
        return all;
    }
    void check(const QStringList &arguments)
    {
        const QString verb = arguments.value(0);
        const bool doesShow = !verb.startsWith(u"--") || verb == u"--show" || verb == u"--toggle";
        start(doesShow ? arguments : QStringList());
        QCOMPARE(tell(doesShow ? u"--hide"_s : u"--show"_s), 0);
        QTRY_COMPARE(isVisible(), !doesShow);
        QFile::remove(_drawn);

        const auto result = _runner.run(arguments);

        QCOMPARE(result.errorLines.join(u'\n'), QString());
        QCOMPARE(result.exitCode, 0);
        QTRY_COMPARE(isVisible(), verb != u"--hide" && verb != u"--quit");
        const QStringList printing { u"--status"_s, u"--list"_s, u"--layout"_s, u"--version"_s };
        QVERIFY(!printing.contains(verb) || !result.output.isEmpty());
        QVERIFY(!arguments.contains(u"--json"_s) || !result.json().isNull());
        QVERIFY(!arguments.contains(_drawn) || !QImage(_drawn).isNull());
        // The next start finds nothing in its way.
        if (doesShow || verb == u"--quit") {
            QCOMPARE(tell(u"--quit"_s), doesShow ? 0 : 1);
            QVERIFY(_ortu.waitForFinished());
        }
    }
    void start(const QStringList &arguments)
    {
        if (_ortu.state() == QProcess::NotRunning) {
            _runner.start(_ortu, arguments);
            QTRY_VERIFY_WITH_TIMEOUT(isVisible(), 20'000);
        }
    }
    bool isVisible() const { return _runner.status()[u"visible"_s].toBool(); }
    int tell(const QString &verb) const { return _runner.run({ verb }).exitCode; }

    ProgramRunner _runner;
    const QString _picture = _runner.path(u"in.png"_s);
    const QString _drawn = _runner.path(u"out.png"_s);
    QProcess _ortu;
};

QTEST_GUILESS_MAIN(ReadmeTest)
#include "ReadmeTest.moc"

// Drags with a real mouse: icons within the panel of the real program, and files out of another
// one. What became of the favourites is read by a third program, from their files.

#include "desktop/GridPointer.h"

class DragTest : public TestCase
{
    Q_OBJECT

    void writeFavourites(const QString &text)
    {
        QByteArray bunches, flat;
        for (const QString &letters : text.split(u'|', Qt::SkipEmptyParts)) {
            bunches += "<array>";
            for (const QChar letter : letters) {
                const QByteArray path = "<string>"
                    + _runner->path(u"apps/%1.desktop"_s.arg(letter)).toUtf8() + "</string>";
                bunches += path;
                flat += path;
            }
            bunches += "</array>";
        }
        const auto write = [this](const QString &name, const QByteArray &elements) {
            _runner->write(u"data/Ortu/"_s + name + u".plist"_s,
                R"(<plist version="1.0"><array>)" + elements + "</array></plist>");
        };
        write(u"UserApplications"_s, bunches);
        write(u"UserApplications1D"_s, flat);
    }

    void start(int group)
    {
        _runner->start(_ortu,
            { u"--set"_s, u"groupToShowWhenWindowOpens=%1"_s.arg(group), u"--set"_s,
                u"com.apple.springing.delay=0.05"_s });
        QTRY_VERIFY_WITH_TIMEOUT(_runner->status()[u"active"_s].toBool(), patience);
    }
    void quit()
    {
        QCOMPARE(_runner->run({ u"--quit"_s }).exitCode, 0);
        QVERIFY(_ortu.waitForFinished());
        QTRY_COMPARE(windowsOf(u"ortu"_s).size(), 0);
    }

private Q_SLOTS:
    void init()
    {
        _runner = std::make_unique<ProgramRunner>();
        _grid.emplace(*_runner);
        for (int i = 0; i < 24; ++i) {
            const QString name(QChar(u'a' + i));
            _runner->writeEntry(name, i % 2 == 0 ? "MimeType=text/plain;\n" : "");
        }
        _runner->scanOnlyOwnApplications();
        Pointer::move({ 1270, 790 });
    }
    void cleanup()
    {
        if (_ortu.state() != QProcess::NotRunning) {
            _ortu.kill();
            _ortu.waitForFinished();
        }
    }

    void iconsAreFiled()
    {
        const std::tuple<QString, QString, QString> rows[] {
            { u"a"_s, u"d"_s, u"b|cad|e|"_s },
            { u"a"_s, u"gap 2"_s, u"b|cd|a|e|"_s },
            { u"d"_s, u"gap 0"_s, u"d|ab|c|e|"_s },
            { u"d"_s, u"gap 3"_s, u"ab|c|e|d|"_s },
            { u"e"_s, u"end 1 0"_s, u"ab|ecd|"_s },
            { u"a"_s, u"end 1 2"_s, u"b|cda|e|"_s },
            { u"a"_s, u"out"_s, u"ab|cd|e|"_s },
            { u"a"_s, u"Escape"_s, u"ab|cd|e|"_s },
        };
        for (const auto &[app, to, expected] : rows) {
            writeFavourites(u"ab|cd|e"_s);
            start(8);
            QCOMPARE(_grid->namesIn(8), u"ab|cd|e|"_s);
            const bool isGivenUp = to == u"Escape";
            const QPoint from = _grid->placeOf(app, 8);
            Pointer::move(from);
            Pointer::press();
            _grid->moveSlowly(from, _grid->placeOf(isGivenUp ? u"d"_s : to, 8));
            if (isGivenUp) {
                xdotool(u"key Escape"_s);
            }
            Pointer::release();
            QTRY_COMPARE(_grid->namesIn(8), expected);
            // It has neither launched nor hidden anything.
            QVERIFY2(!GridPointer::panel().isEmpty(), qPrintable(app + u' ' + to));
            quit();
        }
    }

    void aFile_isOpenedByWhatTakesIt()
    {
        const QString note = _runner->path(u"opened"_s);
        _runner->write(u"apps/a.desktop"_s,
            "[Desktop Entry]\nType=Application\nName=a\nMimeType=text/plain;\nExec=cp %f "
                + note.toUtf8() + "\n");
        start(1);
        for (const QString &to : { u"b"_s, u"a"_s }) {
            Pointer::Drag drag;
            _grid->moveSlowly({ 670, 340 }, _grid->placeOf(to, 1));
            drag.drop();
            QTRY_COMPARE(GridPointer::panel().isEmpty(), to == u"a");
            QTRY_COMPARE(QFile::exists(note), to == u"a");
        }
        QCOMPARE(load(note), load(u"/etc/hostname"_s));
    }

private:
    std::unique_ptr<ProgramRunner> _runner;
    std::optional<GridPointer> _grid;
    QProcess _ortu;
};

QTEST_GUILESS_MAIN(DragTest)
#include "DragTest.moc"

// Drags with a real mouse: icons within the panel of the real program, and files out of another
// one. What became of the favourites is read by a third program, from their files.

#include "desktop/Pointer.h"
#include "desktop/ProgramRunner.h"

#include <QJsonArray>
#include <QRectF>

class DragTest : public TestCase
{
    Q_OBJECT

    // The largest grid that a panel shows on the screen, or more: icons have their full size.
    static inline const QString bounds = u"1200x700"_s;
    // Of the panel round the grid.
    static constexpr int left = 18;
    static constexpr int top = 30;

    // As the window manager has it: a search among all windows finds nothing when it meets one that
    // goes.
    static QString panel() { return windowsOf(u"ortu"_s).value(0); }

    static QString nameOf(const QJsonValue &path)
    {
        return path.toString().section(u'/', -1).section(u'.', 0, 0);
    }
    static QRectF rectOf(const QJsonValue &value)
    {
        const QJsonArray array = value.toArray();
        return { array[0].toDouble(), array[1].toDouble(), array[2].toDouble(),
            array[3].toDouble() };
    }

    // As "ab|cd|".
    QString favourites() const
    {
        QString text;
        const QJsonObject group =
            _runner->run({ u"--list"_s, u"8"_s, u"--json"_s }).json().object();
        for (const QJsonValue &bunch : group[u"bunches"_s].toArray()) {
            for (const QJsonValue &app : bunch.toArray()) {
                text += app[u"name"_s].toString();
            }
            text += u'|';
        }
        return text;
    }
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

    QJsonObject layoutOf(int group) const
    {
        return _runner
            ->run({ u"--layout"_s, QString::number(group), u"--bounds"_s, bounds, u"--json"_s })
            .json()
            .object();
    }
    // On the screen: an icon's letter, "gap 1" for a gap between bunches, "end 1 0" for the end of
    // a band in a margin, "out" for nowhere.
    QPoint placeOf(const QString &text, int group) const
    {
        if (text == u"out") {
            return { 20, 700 };
        }
        const QJsonObject layout = layoutOf(group);
        const QStringList words = text.split(u' ');
        QRectF rect;
        if (words[0] == u"gap") {
            rect = rectOf(layout[u"spacerRects"_s][words[1].toInt()]);
        } else if (words[0] == u"end") {
            rect = rectOf(layout[u"bunchRects"_s][words[1].toInt()])
                & rectOf(layout[u"marginRects"_s][words[2].toInt()]);
        } else {
            for (const QJsonValue &cell : layout[u"cells"_s].toArray()) {
                rect = nameOf(cell[u"app"_s]) == text ? rectOf(cell[u"rect"_s]) : rect;
            }
        }
        const QJsonArray size = layout[u"viewSize"_s].toArray();
        const QRect frame = frameOf(panel());
        const double spare = frame.width() - 2 * left - size[0].toDouble();
        return frame.topLeft()
            + QPoint(left + int(spare / 2 + rect.center().x()),
                top + int(size[1].toDouble() - rect.center().y()));
    }
    // A drag is dropped where it was seen last: the program answers between any two steps, and has
    // seen the pointer by then.
    void moveSlowly(const QPoint &from, const QPoint &to) const
    {
        constexpr int steps = 6;
        for (int i = 1; i <= steps; ++i) {
            moveTo(from + (to - from) * i / steps);
        }
        for (const QPoint &nudge : { QPoint(1, 0), QPoint(0, 0), QPoint(0, 1), QPoint(0, 0) }) {
            moveTo(to + nudge);
        }
    }
    void moveTo(const QPoint &place) const
    {
        Pointer::move(place);
        QVERIFY(!_runner->status().isEmpty());
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
            QCOMPARE(favourites(), u"ab|cd|e|"_s);
            const bool isGivenUp = to == u"Escape";
            const QPoint from = placeOf(app, 8);
            Pointer::move(from);
            Pointer::press();
            moveSlowly(from, placeOf(isGivenUp ? u"d"_s : to, 8));
            if (isGivenUp) {
                xdotool(u"key Escape"_s);
            }
            Pointer::release();
            QTRY_COMPARE(favourites(), expected);
            // It has neither launched nor hidden anything.
            QVERIFY2(!panel().isEmpty(), qPrintable(app + u' ' + to));
            quit();
        }
    }

    void aDragThatRestsOnTheSelector_goesOnInTheFavourites()
    {
        writeFavourites(u"ab|cd|e"_s);
        start(1);
        const QPoint from = placeOf(u"k"_s, 1);
        Pointer::move(from);
        Pointer::press();
        QPoint over = from;
        // The panel has another size for each group that opens on the way.
        for (int x = 30; _runner->status()[u"group"_s].toInt() != 8; x += 5) {
            const QRect frame = frameOf(panel());
            QVERIFY(x < frame.width());
            over = frame.bottomLeft() + QPoint(x, -17);
            moveTo(over);
        }
        moveSlowly(over, placeOf(u"c"_s, 8));
        Pointer::release();
        QTRY_COMPARE(favourites(), u"ab|kcd|e|"_s);
        // And back again, by key.
        xdotool(u"key ctrl+z"_s);
        QTRY_COMPARE(favourites(), u"ab|cd|e|"_s);
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
            moveSlowly({ 670, 340 }, placeOf(to, 1));
            drag.drop();
            QTRY_COMPARE(panel().isEmpty(), to == u"a");
            QTRY_COMPARE(QFile::exists(note), to == u"a");
        }
        QCOMPARE(load(note), load(u"/etc/hostname"_s));
    }

private:
    std::unique_ptr<ProgramRunner> _runner;
    QProcess _ortu;
};

QTEST_GUILESS_MAIN(DragTest)
#include "DragTest.moc"

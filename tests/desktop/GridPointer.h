// The mouse over the grid of the real program: where an icon or a gap lies on the screen is asked
// of another process, which reads the same files.

#pragma once

#include "desktop/Pointer.h"
#include "desktop/ProgramRunner.h"

#include <QJsonArray>
#include <QRectF>

class GridPointer
{
    // The largest grid that a panel shows on the screen, or more: icons have their full size.
    static inline const QString bounds = u"1200x700"_s;
    // Of the panel round the grid.
    static constexpr int left = 18;
    static constexpr int top = 30;

    static QRectF rectOf(const QJsonValue &value)
    {
        const QJsonArray array = value.toArray();
        return { array[0].toDouble(), array[1].toDouble(), array[2].toDouble(),
            array[3].toDouble() };
    }
    QJsonObject layoutOf(int group) const
    {
        return _runner
            .run({ u"--layout"_s, QString::number(group), u"--bounds"_s, bounds, u"--json"_s })
            .json()
            .object();
    }

public:
    explicit GridPointer(const ProgramRunner &runner)
        : _runner(runner)
    { }

    static QString nameOf(const QJsonValue &path)
    {
        return path.toString().section(u'/', -1).section(u'.', 0, 0);
    }
    // As the window manager has it: a search among all windows finds nothing when it meets one that
    // goes.
    static QString panel() { return windowsOf(u"ortu"_s).value(0); }

    // The names in a group, as "ab|cd|".
    QString namesIn(int group) const
    {
        QString text;
        const QJsonObject list =
            _runner.run({ u"--list"_s, QString::number(group), u"--json"_s }).json().object();
        for (const QJsonValue &bunch : list[u"bunches"_s].toArray()) {
            for (const QJsonValue &app : bunch.toArray()) {
                text += app[u"name"_s].toString();
            }
            text += u'|';
        }
        return text;
    }
    // On the screen: an icon by its name, "gap 1" for a gap between bunches, "end 1 0" for the end
    // of a band in a margin, "middle" of the panel, "out" for nowhere.
    QPoint placeOf(const QString &text, int group) const
    {
        if (text == u"out") {
            return { 20, 700 };
        }
        if (text == u"middle") {
            return frameOf(panel()).center();
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
        QVERIFY(!_runner.status().isEmpty());
    }
    // Until it is selected; the panel may have come up this moment. Gives the place.
    QPoint pointAt(const QString &name, int group) const
    {
        QPoint place;
        const auto isSelected = [&] {
            place = placeOf(name, group);
            Pointer::move(place + QPoint(1, 0));
            Pointer::move(place);
            return nameOf(_runner.status()[u"selected"_s]) == name;
        };
        [&] { QTRY_VERIFY2(isSelected(), qPrintable(name)); }();
        return place;
    }
    // Drags an icon of another group over the capsules until the favourites open, and then to its
    // place among them.
    void dragToFavourites(const QString &name, int group, const QString &to) const
    {
        pointAt(name, group);
        Pointer::press();
        const auto isOpen = [this] { return _runner.status()[u"group"_s].toInt() == 8; };
        QPoint over;
        // The panel has another size for each group that opens on the way.
        for (int x = 30; !isOpen(); x += 5) {
            const QRect frame = frameOf(panel());
            QVERIFY(x < frame.width());
            moveTo(frame.bottomLeft() + QPoint(x, -17));
            if (isOpen()) {
                // Off the capsules, before another one opens.
                over = frameOf(panel()).center();
                moveTo(over);
            }
        }
        moveSlowly(over, placeOf(to, 8));
        Pointer::release();
    }

private:
    const ProgramRunner &_runner;
};

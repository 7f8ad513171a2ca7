// A hand on the mouse: xdotool, and a program to drag something out of.

#pragma once

#include <QCoreApplication>
#include <QPoint>
#include <QProcess>
#include <QStringList>
#include <QTest>

namespace Pointer {

// Where nothing is.
constexpr QPoint away(400, 600);

inline void use(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.readAllStandardError(), QByteArray());
    QCOMPARE(process.exitCode(), 0);
    // What the server has done by now, we are to see as well.
    QCoreApplication::processEvents();
}

inline void move(const QPoint &to)
{
    use({ QStringLiteral("mousemove"), QString::number(to.x()), QString::number(to.y()) });
}

inline void press(int button = 1)
{
    use({ QStringLiteral("mousedown"), QString::number(button) });
}

inline void release(int button = 1)
{
    use({ QStringLiteral("mouseup"), QString::number(button) });
}

// Drags a file out of another program.
class Drag
{
public:
    Drag()
    {
        _source.start(qEnvironmentVariable("ORTU_DRAG_SOURCE"), {});
        use({ QStringLiteral("search"), QStringLiteral("--sync"), QStringLiteral("--onlyvisible"),
            QStringLiteral("--name"), QStringLiteral("^Drag Source$") });
        move({ 640, 340 });
        press();
        move({ 655, 340 });
        move({ 670, 340 });
    }
    ~Drag()
    {
        _source.terminate();
        _source.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Drag)

    // What became of the file.
    QByteArray drop()
    {
        release();
        [this] { QTRY_VERIFY(_source.canReadLine()); }();
        return _source.readLine().trimmed();
    }

private:
    QProcess _source;
};

} // namespace Pointer

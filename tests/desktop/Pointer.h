// The mouse, moved by xdotool, and a program to drag something out of.

#pragma once

#include "desktop/Programs.h"

#include <QPoint>

namespace Pointer {

// Where nothing is.
constexpr QPoint away(400, 600);

inline void use(const QStringList &arguments)
{
    QCOMPARE(QProcess::execute(u"xdotool"_s, arguments), 0);
    // What the server has done by now, this program must see as well.
    QCoreApplication::processEvents();
}

inline void move(const QPoint &to)
{
    use({ u"mousemove"_s, QString::number(to.x()), QString::number(to.y()) });
}

inline void press(int button = 1)
{
    use({ u"mousedown"_s, QString::number(button) });
}

inline void release(int button = 1)
{
    use({ u"mouseup"_s, QString::number(button) });
}

// Drags a file out of another program, or data of these types.
class Drag : public OtherProcess
{
public:
    explicit Drag(const QStringList &types = {})
        : OtherProcess(qEnvironmentVariable("ORTU_DRAG_SOURCE"), types)
    {
        use({ u"search"_s, u"--sync"_s, u"--onlyvisible"_s, u"--name"_s, u"^Drag Source$"_s });
        move({ 640, 340 });
        press();
        move({ 655, 340 });
        move({ 670, 340 });
    }
    // What became of the file.
    QByteArray drop()
    {
        release();
        [this] { QTRY_VERIFY(canReadLine()); }();
        return readLine().trimmed();
    }
};

} // namespace Pointer

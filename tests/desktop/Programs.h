// Other programs: those that say what has become of the windows, those that stand in for the
// user's, and clients of the X server that are not ours.

#pragma once

#include "TestCase.h"
#include "desktop/XClient.h"

#include <QCoreApplication>
#include <QProcess>
#include <QRect>

// Milliseconds that a program may take to start or to end.
constexpr int patience = 20'000;

inline QString outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

inline QString xdotool(const QString &arguments)
{
    return outputOf(u"xdotool"_s, arguments.split(u' '));
}

inline QString propertyOf(const QString &window, const QString &name)
{
    return outputOf(u"xprop"_s, { u"-id"_s, window, name });
}

// The identifiers of the windows whose class begins so, as the window manager lists them.
inline QStringList windowsOf(const QString &className)
{
    QStringList ids;
    for (const QString &line : outputOf(u"wmctrl"_s, { u"-lx"_s }).split(u'\n')) {
        if (line.section(u' ', 2, -1, QString::SectionSkipEmpty).startsWith(className + u'.')) {
            ids.append(line.section(u' ', 0, 0));
        }
    }
    return ids;
}

// As the window manager names it, in the form of wmctrl.
inline QString activeWindow()
{
    const QString text = outputOf(u"xprop"_s, { u"-root"_s, u"_NET_ACTIVE_WINDOW"_s });
    // What other programs see by now, this program must see as well.
    QCoreApplication::processEvents();
    return u"0x"_s + text.section(u"0x"_s, -1).rightJustified(8, u'0');
}

inline QRect frameOf(const QString &window)
{
    const QString text = xdotool(u"getwindowgeometry --shell "_s + window);
    const auto value = [&text](const QString &name) {
        return text.section(u'\n' + name + u'=', 1).section(u'\n', 0, 0).toInt();
    };
    return { value(u"X"_s), value(u"Y"_s), value(u"WIDTH"_s), value(u"HEIGHT"_s) };
}

inline QString idOf(quintptr window)
{
    return u"0x%1"_s.arg(window, 8, 16, QLatin1Char('0'));
}

// Runs for as long as this lasts; one that reads its input gets to the end of it first.
class OtherProcess : public QProcess
{
public:
    OtherProcess(const QString &program, const QStringList &arguments)
    {
        start(program, arguments);
        waitForStarted();
    }
    ~OtherProcess() override
    {
        closeWriteChannel();
        terminate();
        waitForFinished();
    }
    void tell(const QByteArray &line) { write(line + '\n'); }
};

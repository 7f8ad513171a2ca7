// Which applications of a grid are being started and have not come up yet, and how that shows on
// their icons.
//
// A start shows after half a second, since most are over by then. It ends when a window of the
// application comes, when its program says that it has started, when it fails, or after fifteen
// seconds. Icons pulse; where the desktop asks for less movement they carry a mark that stands
// still. At rest no timer runs.

#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QString>
#include <QTimer>

class Desktop;
class QWidget;

class StartMarks final : public QObject
{
    Q_OBJECT

public:
    // In milliseconds.
    static constexpr qint64 Delay = 500;
    static constexpr qint64 LongestStart = 15'000;

    // The view is the one that shows the icons; both outlive this.
    StartMarks(const QWidget &view, Desktop &desktop);

    // Anew where a start goes on.
    void begin(const QString &path);
    void end(const QString &path);

    // Whether a start of it goes on.
    bool hasBegun(const QString &path) const { return _begun.contains(path); }
    // Whether its icon is to show that it starts.
    bool isShown(const QString &path) const;
    // Whether that is to stand still.
    bool isStill() const;
    // How strongly a pulsing icon is to be drawn at present, from 0 to 1.
    float strengthOf(const QString &path) const;

Q_SIGNALS:
    // The icon looks different now.
    void changed(const QString &path);

private:
    void tick();

    const QWidget &_view;
    Desktop &_desktop;
    QHash<QString, QElapsedTimer> _begun;
    QTimer _timer;
};

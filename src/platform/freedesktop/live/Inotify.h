// The kernel's report of what happens in folders (inotify).

#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>

#include <cstdint>
#include <functional>
#include <utility>

class Inotify final
{
public:
    struct Event
    {
        // NoWatch when events were lost.
        int watch;
        uint32_t mask;
        // In the watched folder; empty when it is about the folder itself.
        QByteArray name;
    };
    static constexpr int NoWatch = -1;

    // Has no more watches than these at a time.
    explicit Inotify(qsizetype mostWatches);
    ~Inotify();
    Q_DISABLE_COPY_MOVE(Inotify)

    // Readable when there are events; -1 when the system has no more of this kind.
    int descriptor() const { return _descriptor; }

    // Watches the folder at a path, links followed, for these events beside those it is watched for
    // already. One folder has one number, whatever path leads to it. NoWatch when there is no such
    // folder, when it may not be read, or when no watch is left.
    int add(const QString &path, uint32_t mask);
    // A watch that has ended by itself is ignored.
    void remove(int watch);
    // Whether a watch has been refused since the last call because none was left.
    bool takeIsShort() { return std::exchange(_isShort, false); }

    // Takes all events that wait, in order.
    void read(const std::function<void(const Event &)> &take);

private:
    int _descriptor;
    qsizetype _mostWatches;
    QSet<int> _watches;
    bool _isShort = false;
};

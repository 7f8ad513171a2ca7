// Opens what a drag rests on: something that has been under the pointer of a drag for a while acts
// as if it had been clicked, so that the drag can go on in what it opens.
//
// It acts once for each rest: again only after the drag has been elsewhere.

#pragma once

#include <QBasicTimer>
#include <QObject>

class SpringLoading : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Registers the preference of the delay. To be called once, before anything reads it.
    static void registerDefaults();
    // How long a drag has to rest, in seconds. One that cannot be is not used, and none is longer
    // than a day.
    static double delay();

    // The drag is over one of the things that can be opened; -1 for none of them.
    void dragMovedTo(int item);
    // The drag has left, or has ended.
    void dragEnded() { dragMovedTo(-1); }

Q_SIGNALS:
    void opened(int item);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    QBasicTimer _timer;
    int _item = -1;
};

// Tells before the program is stopped from its terminal, as by Ctrl-Z, and once it goes on, so that
// it can let go of what the rest of the session needs.
//
// Only one is active at a time. Lives on a thread with an event loop.

#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <array>
#include <memory>

class TerminalStop final : public QObject
{
    Q_OBJECT

public:
    // Does nothing where the signal is ignored or handled already.
    explicit TerminalStop(QObject *parent = nullptr);
    ~TerminalStop() override;

Q_SIGNALS:
    // The program stops as soon as all receivers have returned.
    void stopping();
    void continued();

private:
    void stop();

    // A pipe, from the signal handler to the thread; -1 when there is none.
    std::array<int, 2> _ends { -1, -1 };
    std::unique_ptr<QSocketNotifier> _notifier;
};

// Alerts: what the program asks or tells its user and waits for.
//
// Every alert goes through Alerts::run(). Who shows it is up to the presenter in force: the program
// sets one while it has windows, a test one that answers. Where there is none, no question is
// asked: one log line, and the alert's own safe answer holds. Main thread only.

#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

struct Alert
{
    enum class Style { Warning, Informational };

    static constexpr int LastButton = -1;

    Style style = Style::Warning;
    QString messageText {};
    // Smaller, below the message; may be empty.
    QString informativeText {};
    // From left to right; the first is the one that Return chooses. None: the presenter's word for
    // having read it.
    QStringList buttons {};
    // The button that stands for "no answer": for Escape, for a window that went away
    // and for a program without windows. It must not do what cannot be undone.
    int safeButton = LastButton;

    // Something to read, with the button "Ok".
    static Alert information(const QString &message, const QString &text = {});
    static Alert warning(const QString &message, const QString &text = {});

    // safeButton as an index of `buttons`; the last one when it is none. 0 without buttons.
    int safeAnswer() const;
};

namespace Alerts {

// Shows the alert, on `parent` unless that is null, and returns the index of the button chosen.
using Presenter = std::function<int(const Alert &alert, QWidget *parent)>;

// The index of the button chosen; the alert's safe answer when there is no one to ask.
int run(const Alert &alert, QWidget *parent = nullptr);

// Puts a presenter in force while it lives; the one before is then in force again. Of several, the
// last one made has to go first. An empty one asks no one.
class PresenterScope final
{
public:
    explicit PresenterScope(Presenter presenter);
    ~PresenterScope();
    Q_DISABLE_COPY_MOVE(PresenterScope)

private:
    Presenter _previous;
};

} // namespace Alerts

#include "support/Alerts.h"

#include "support/files/Log.h"

#include <QCoreApplication>

#include <utility>

namespace {

Alerts::Presenter &presenterInForce()
{
    static Alerts::Presenter presenter;
    return presenter;
}

bool isButton(const Alert &alert, int index)
{
    return index >= 0 && index < qMax(alert.buttons.size(), 1);
}

} // namespace

Alert Alert::information(const QString &message, const QString &text)
{
    return { .style = Style::Informational,
        .messageText = message,
        .informativeText = text,
        .buttons = { QCoreApplication::translate("Alerts", "Ok") } };
}

Alert Alert::warning(const QString &message, const QString &text)
{
    Alert alert = information(message, text);
    alert.style = Style::Warning;
    return alert;
}

int Alert::safeAnswer() const
{
    return isButton(*this, safeButton) ? safeButton : qMax(int(buttons.size()) - 1, 0);
}

int Alerts::run(const Alert &alert, QWidget *parent)
{
    // A copy: while the alert is shown, another presenter may come into force.
    const Presenter presenter = presenterInForce();
    if (!presenter) {
        qCWarning(lcSupport, "no one can answer \"%s\": taken as \"%s\"",
            qUtf8Printable(alert.messageText),
            qUtf8Printable(alert.buttons.value(alert.safeAnswer())));
        return alert.safeAnswer();
    }
    const int answer = presenter(alert, parent);
    return isButton(alert, answer) ? answer : alert.safeAnswer();
}

Alerts::PresenterScope::PresenterScope(Presenter presenter)
    : _previous(std::exchange(presenterInForce(), std::move(presenter)))
{ }

Alerts::PresenterScope::~PresenterScope()
{
    presenterInForce() = std::move(_previous);
}

#include "commands/Commands.h"
#include "commands/Output.h"
#include "platform/SingleInstance.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

using Verb = Invocation::Verb;

namespace {

// Files as typed are those of the folder that the program was called in; what is no file there and
// looks like an address is one.
QUrl urlOf(const QString &typed)
{
    const QUrl address(typed, QUrl::StrictMode);
    const bool isAddress = address.isValid() && address.scheme().size() > 1;
    return isAddress && !QFileInfo::exists(typed)
        ? address
        : QUrl::fromLocalFile(QDir::cleanPath(QDir::current().absoluteFilePath(typed)));
}

InstanceRequest::Verb requestedVerb(const Invocation &invocation)
{
    switch (invocation.verb) {
    case Verb::Toggle:
        return InstanceRequest::Verb::Toggle;
    case Verb::Show:
        return InstanceRequest::Verb::Show;
    case Verb::Hide:
        return InstanceRequest::Verb::Hide;
    case Verb::Preferences:
        return InstanceRequest::Verb::Preferences;
    case Verb::Rescan:
        return InstanceRequest::Verb::Rescan;
    case Verb::Quit:
        return InstanceRequest::Verb::Quit;
    case Verb::Status:
        return InstanceRequest::Verb::Status;
    default:
        return invocation.files.isEmpty() ? InstanceRequest::Verb::Activate
                                          : InstanceRequest::Verb::Open;
    }
}

QString valueText(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("yes") : QStringLiteral("no");
    case QJsonValue::Double:
        return QString::number(value.toDouble());
    default:
        return value.toString();
    }
}

bool printStatus(const QString &json, bool isJson)
{
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    if (isJson) {
        return Output::printJson(document);
    }
    QStringList lines;
    const QJsonObject status = document.object();
    for (auto it = status.begin(); it != status.end(); ++it) {
        lines.append(QStringLiteral("%1: %2").arg(it.key(), valueText(it.value())));
    }
    return Output::printLines(lines);
}

} // namespace

bool Commands::startsProgram(const Invocation &invocation)
{
    return invocation.verb == Verb::Start || invocation.verb == Verb::Toggle
        || invocation.verb == Verb::Show || invocation.verb == Verb::Preferences;
}

bool Commands::concernsInstance(const Invocation &invocation)
{
    return startsProgram(invocation) || invocation.verb == Verb::Hide
        || invocation.verb == Verb::Rescan || invocation.verb == Verb::Quit
        || invocation.verb == Verb::Status;
}

InstanceRequest Commands::instanceRequest(const Invocation &invocation)
{
    InstanceRequest request;
    request.verb = requestedVerb(invocation);
    for (const QString &file : invocation.files) {
        request.files.append(urlOf(file));
    }
    return request;
}

std::optional<int> Commands::tellRunningInstance(
    const Invocation &invocation, SingleInstance &instance)
{
    const InstanceRequest request = instanceRequest(invocation);
    for (const QUrl &file : request.files) {
        if (file.isLocalFile() && !QFileInfo::exists(file.toLocalFile())) {
            return Output::fail(
                QStringLiteral("cannot open %1: no such file").arg(file.toLocalFile()));
        }
    }
    const InstanceAnswer answer = instance.tell(request);
    switch (answer.outcome) {
    case InstanceAnswer::Outcome::NoneRuns:
        if (startsProgram(invocation)) {
            return std::nullopt;
        }
        return Output::fail(QStringLiteral("Ortu is not running"));
    case InstanceAnswer::Outcome::Failed:
        return Output::fail(answer.text);
    case InstanceAnswer::Outcome::Done:
        break;
    }
    if (!invocation.settings.isEmpty()) {
        Output::remark(QStringLiteral("--set has no effect on the Ortu that runs already"));
    }
    return invocation.verb == Verb::Status && !printStatus(answer.text, invocation.isJson) ? 1 : 0;
}

#include "platform/freedesktop/web/LoadedWebClient.h"

#include "platform/freedesktop/base/ProgramModule.h"

#include <utility>

std::unique_ptr<WebExchange> LoadedWebClient::send(
    const WebRequest &request, Receiver receiver) const
{
    using Send = WebExchange *(*)(const WebRequest &request, WebClient::Receiver &receiver);
    static const auto sendRequest = reinterpret_cast<Send>(
        ProgramModule::resolve(QStringLiteral("ortu-web"), "ortuSendRequest", "requests"));
    if (sendRequest == nullptr) {
        return WebClient::send(request, std::move(receiver));
    }
    return std::unique_ptr<WebExchange>(sendRequest(request, receiver));
}

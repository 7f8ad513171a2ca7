#include "platform/WebClient.h"

#include <QObject>
#include <QTimer>

#include <utility>

namespace {

class RefusedExchange final : public QObject, public WebExchange
{
public:
    explicit RefusedExchange(WebClient::Receiver receiver)
        : _receiver(std::move(receiver))
    {
        QTimer::singleShot(0, this, [this] {
            const WebClient::Receiver receive = std::move(_receiver);
            receive({ .problem = QStringLiteral("there is no way to reach a server") });
        });
    }

private:
    WebClient::Receiver _receiver;
};

} // namespace

std::unique_ptr<WebExchange> WebClient::send(
    const WebRequest & /*request*/, Receiver receiver) const
{
    return std::make_unique<RefusedExchange>(std::move(receiver));
}

bool WebClient::canReach(const QUrl &url)
{
    const bool isWeb =
        url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    return url.isValid() && isWeb && !url.host().isEmpty();
}

// Requests to web servers.
//
// A request ends with one answer, within a time and a size that the caller gives. Redirects are
// followed to the same scheme, host and port only, and what is sent goes to no other. Main thread
// only. The base class is a system that reaches no server.

#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>

struct WebRequest
{
    QUrl url;
    // Posted, with its type; without a type nothing is posted and the address is read.
    QByteArray contentType = {};
    QByteArray body = {};
    // From here to the end of the answer, redirects included.
    std::chrono::milliseconds maxTime = std::chrono::seconds(60);
    // In bytes. What an answer has beyond it is not read.
    qint64 maxAnswerSize = 1'048'576;
};

struct WebAnswer
{
    // Of HTTP; 0 when there is no complete answer.
    int status = 0;
    QByteArray body = {};
    // It would have been larger than the request allows.
    bool isCut = false;
    // Why there is no complete answer; empty when there is one, whatever its status.
    QString problem = {};
};

// A request on its way. Destroying it cancels the request.
class WebExchange
{
public:
    WebExchange() = default;
    virtual ~WebExchange() = default;
    Q_DISABLE_COPY_MOVE(WebExchange)
};

class WebClient
{
public:
    // Called once, from the event loop. It may end the exchange.
    using Receiver = std::function<void(const WebAnswer &answer)>;

    WebClient() = default;
    virtual ~WebClient() = default;
    Q_DISABLE_COPY_MOVE(WebClient)

    // Never null.
    virtual std::unique_ptr<WebExchange> send(const WebRequest &request, Receiver receiver) const;

    // Whether requests can go to this address: HTTP or HTTPS, and a host.
    static bool canReach(const QUrl &url);
};

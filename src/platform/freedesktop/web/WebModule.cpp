// The module that speaks to web servers. The program loads it with the first request.

#include "platform/WebClient.h"

#include <QIODevice>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

#include <algorithm>
#include <cstring>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace {

constexpr int MaxRedirects = 5;
// What Qt may read ahead of us.
constexpr qint64 ReadAhead = 64 * 1024;

// What is posted, from the start to the end, once: where a server hangs up, Qt would send a body
// that it can rewind again, and the server might have it twice.
class BodyOnce final : public QIODevice
{
public:
    explicit BodyOnce(QByteArray body)
        : _body(std::move(body))
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return true; }
    bool seek(qint64 /*position*/) override { return false; }
    qint64 bytesAvailable() const override { return _body.size() - _read; }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const qint64 size = std::min(maxSize, bytesAvailable());
        if (size == 0) {
            return -1;
        }
        std::memcpy(data, _body.constData() + _read, size_t(size));
        _read += size;
        return size;
    }
    qint64 writeData(const char * /*data*/, qint64 /*maxSize*/) override { return -1; }

private:
    QByteArray _body;
    qint64 _read = 0;
};

int statusOf(const QNetworkReply &reply)
{
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

// The server has answered in whole, if only to refuse.
bool isAnswer(const QNetworkReply &reply)
{
    const QNetworkReply::NetworkError error = reply.error();
    const bool isRefusal =
        (error > QNetworkReply::UnknownProxyError && error <= QNetworkReply::UnknownContentError)
        || (error >= QNetworkReply::InternalServerError
            && error <= QNetworkReply::UnknownServerError);
    return statusOf(reply) > 0 && (error == QNetworkReply::NoError || isRefusal);
}

int portOf(const QUrl &url)
{
    return url.port(url.scheme() == QLatin1String("https") ? 443 : 80);
}

bool isSameServer(const QUrl &one, const QUrl &other)
{
    return one.scheme() == other.scheme() && one.host() == other.host()
        && portOf(one) == portOf(other);
}

// Which proxy leads to an address. The system may run a script for this, or wait for a server; so a
// thread asks it, which is left alone when the answer is no longer wanted.
class ProxyLookup final : public QObject
{
public:
    using Receiver = std::function<void(const QNetworkProxy &proxy)>;

    // The receiver is called from the event loop, once, unless this ends before. It may end this.
    ProxyLookup(const QUrl &url, Receiver receiver)
        : _receiver(std::move(receiver))
    {
        _asker->lookup = this;
        std::thread([asker = _asker, url] {
            const QNetworkProxy proxy =
                QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(url)).first();
            const std::lock_guard lock(asker->mutex);
            if (ProxyLookup *const lookup = asker->lookup) {
                QMetaObject::invokeMethod(
                    lookup, [lookup, proxy] { lookup->hand(proxy); }, Qt::QueuedConnection);
            }
        }).detach();
    }

    ~ProxyLookup() override
    {
        const std::lock_guard lock(_asker->mutex);
        _asker->lookup = nullptr;
    }

private:
    // What the thread shares with the lookup, and outlives it.
    struct Asker
    {
        std::mutex mutex;
        ProxyLookup *lookup = nullptr;
    };

    void hand(const QNetworkProxy &proxy)
    {
        const Receiver receiver = std::move(_receiver);
        receiver(proxy);
    }

    Receiver _receiver;
    std::shared_ptr<Asker> _asker = std::make_shared<Asker>();
};

class QtExchange final : public QObject, public WebExchange
{
public:
    QtExchange(const WebRequest &request, WebClient::Receiver receiver)
        : _request(request)
        , _receiver(std::move(receiver))
    {
        _timer.setSingleShot(true);
        connect(&_timer, &QTimer::timeout, this, [this] {
            fail(QStringLiteral("no answer within %1 seconds")
                     .arg(_request.maxTime.count() / 1000.));
        });
        _timer.start(_request.maxTime);
        start(_request.url);
    }

    ~QtExchange() override { drop(); }

private:
    void start(const QUrl &url)
    {
        _proxyLookup = std::make_unique<ProxyLookup>(
            url, [this, url](const QNetworkProxy &proxy) { startThrough(proxy, url); });
    }

    void startThrough(const QNetworkProxy &proxy, const QUrl &url)
    {
        _proxyLookup.reset();
        _manager.setProxy(proxy);
        QNetworkRequest request(url);
        request.setAttribute(
            QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
        request.setAttribute(
            QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
        request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Ortu/" ORTU_VERSION));
        if (_request.contentType.isEmpty()) {
            _reply = _manager.get(request);
        } else {
            request.setHeader(QNetworkRequest::ContentTypeHeader, _request.contentType);
            request.setHeader(QNetworkRequest::ContentLengthHeader, _request.body.size());
            request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
            auto *const body = new BodyOnce(_request.body);
            _reply = _manager.post(request, body);
            body->setParent(_reply);
        }
        _reply->setReadBufferSize(ReadAhead);
        connect(_reply, &QNetworkReply::readyRead, this, &QtExchange::read);
        connect(_reply, &QNetworkReply::finished, this, &QtExchange::replyDidFinish);
    }

    QUrl redirectionTarget() const
    {
        return _reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    }

    // Whatever is in the body of a redirect, and however much.
    void read()
    {
        if (!redirectionTarget().isEmpty()) {
            follow();
            return;
        }
        take();
        if (_answer.isCut) {
            finish();
        }
    }

    void take()
    {
        _answer.body += _reply->read(_request.maxAnswerSize - _answer.body.size());
        _answer.isCut = _reply->bytesAvailable() > 0;
    }

    void replyDidFinish()
    {
        if (!isAnswer(*_reply)) {
            fail(_reply->errorString());
        } else if (!redirectionTarget().isEmpty()) {
            follow();
        } else {
            take();
            finish();
        }
    }

    // As browsers do: 307 and 308 want the same request anew, the others another page.
    void follow()
    {
        const QUrl from = _reply->url();
        const QUrl to = from.resolved(redirectionTarget());
        const int code = statusOf(*_reply);
        if (!isSameServer(from, to)) {
            fail(QStringLiteral("the server sends on to another one, %1://%2:%3")
                     .arg(to.scheme(), to.host())
                     .arg(portOf(to)));
        } else if (++_redirects > MaxRedirects) {
            fail(QStringLiteral("the server sends on too often"));
        } else {
            drop();
            if (code != 307 && code != 308) {
                _request.contentType.clear();
            }
            _answer = {};
            start(to);
        }
    }

    void fail(const QString &problem)
    {
        _answer = { .problem = problem };
        hand();
    }

    void finish()
    {
        _answer.status = statusOf(*_reply);
        hand();
    }

    // The receiver may end this, and Qt's reply with it, which may be what has just reported.
    void hand()
    {
        _timer.stop();
        _proxyLookup.reset();
        drop();
        QTimer::singleShot(0, this, [this] {
            const WebClient::Receiver receiver = std::move(_receiver);
            const WebAnswer answer = std::move(_answer);
            receiver(answer);
        });
    }

    void drop()
    {
        if (QNetworkReply *const reply = std::exchange(_reply, nullptr)) {
            reply->disconnect(this);
            reply->abort();
            reply->deleteLater();
        }
    }

    WebRequest _request;
    WebClient::Receiver _receiver;
    QNetworkAccessManager _manager;
    QTimer _timer;
    // Until the request is on its way.
    std::unique_ptr<ProxyLookup> _proxyLookup;
    QNetworkReply *_reply = nullptr;
    WebAnswer _answer;
    int _redirects = 0;
};

} // namespace

// The caller owns what it gives.
extern "C" Q_DECL_EXPORT WebExchange *ortuSendRequest(
    const WebRequest &request, WebClient::Receiver &receiver)
{
    return new QtExchange(request, std::move(receiver));
}

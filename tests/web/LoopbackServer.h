// A web server on this machine that keeps what it receives and answers as a test tells it to.

#pragma once

#include "TestCase.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <functional>

class LoopbackServer final
{
public:
    struct Request
    {
        QByteArray line;
        QByteArray head;
        QByteArray body;
    };
    // What it sends, and what it does then.
    struct Answer
    {
        enum class Then { Close, Wait, Abort };
        QByteArray bytes;
        Then then = Then::Close;
    };

    std::function<Answer(const Request &)> answer = [](const Request &) {
        return Answer { status(200) };
    };

    LoopbackServer()
        : LoopbackServer(std::make_unique<QTcpServer>(), u"http"_s)
    { }
    LoopbackServer(std::unique_ptr<QTcpServer> server, const QString &scheme)
        : _listener(std::move(server))
        , _scheme(scheme)
    {
        _listener->listen(QHostAddress::LocalHost);
        QObject::connect(_listener.get(), &QTcpServer::pendingConnectionAvailable, _listener.get(),
            [this] { accept(); });
    }

    QUrl url(const QString &path = u"/feedback"_s) const
    {
        return QUrl(u"%1://127.0.0.1:%2%3"_s.arg(_scheme).arg(_listener->serverPort()).arg(path));
    }
    const QList<Request> &requests() const { return _requests; }

    static QByteArray status(int code, const QByteArray &head = {}, const QByteArray &body = {})
    {
        return "HTTP/1.1 " + QByteArray::number(code) + " x\r\n" + head
            + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    }

    // Of no given length, and longer than any caller reads.
    static Answer endless(const QByteArray &start)
    {
        return { "HTTP/1.1 200 x\r\n\r\n" + start + QByteArray(2'000'000, 'x'),
            Answer::Then::Wait };
    }

private:
    void accept()
    {
        QTcpSocket *const socket = _listener->nextPendingConnection();
        auto received = std::make_shared<QByteArray>();
        QObject::connect(socket, &QTcpSocket::readyRead, _listener.get(), [this, socket, received] {
            *received += socket->readAll();
            const qsizetype end = received->indexOf("\r\n\r\n");
            const Request request { received->left(received->indexOf("\r\n")),
                received->left(end + 2), received->mid(end + 4) };
            if (end >= 0 && request.body.size() >= length(request.head)) {
                received->clear();
                _requests.append(request);
                send(*socket, answer(request));
            }
        });
    }

    static qsizetype length(const QByteArray &head)
    {
        static const QRegularExpression field(
            u"Content-Length: (\\d+)\r\n"_s, QRegularExpression::CaseInsensitiveOption);
        return field.match(QString::fromLatin1(head)).captured(1).toLongLong();
    }

    static void send(QTcpSocket &socket, const Answer &answer)
    {
        socket.write(answer.bytes);
        if (answer.then == Answer::Then::Close) {
            socket.disconnectFromHost();
        } else if (answer.then == Answer::Then::Abort) {
            socket.abort();
        }
    }

    std::unique_ptr<QTcpServer> _listener;
    QString _scheme;
    QList<Request> _requests;
};

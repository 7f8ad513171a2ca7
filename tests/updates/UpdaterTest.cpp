#include "updates/Updater.h"

#include "support/Alerts.h"
#include "support/InfoDictionary.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"
#include "updates/UpdateWindow.h"
#include "web/LinkedWebClient.h"
#include "web/LoopbackServer.h"

#include <QCheckBox>
#include <QDateTime>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>

namespace {

using Answer = LoopbackServer::Answer;

const QByteArray rss = R"(<?xml version="1.0"?><rss version="2.0"><channel><title>Ortu</title>
    <item><title>Ortu 98.1</title><link>https://example.org/98</link></item>
    <item><title>A new one</title><link>https://example.org/99</link>
      <description>&lt;ul&gt;&lt;li&gt;Faster&lt;/li&gt;&lt;/ul&gt;</description>
      <enclosure url="x" xmlns:u="urn:u" u:version="99.2"/></item>
    <item><title>Ortu 100-rc1</title></item></channel></rss>)";

class CountingClient final : public WebClient
{
public:
    std::unique_ptr<WebExchange> send(const WebRequest &request, Receiver receiver) const override
    {
        ++sent;
        return LinkedWebClient().send(request, [this, receiver](const WebAnswer &answer) {
            receiver(answer);
            ++answered;
        });
    }

    mutable int sent = 0;
    mutable int answered = 0;
};

// A version, its link and its notes, or what is wrong.
QString readFeed(const QByteArray &feed)
{
    QString problem;
    const std::optional<Release> release = UpdateFeed::newestRelease(feed, &problem);
    return release
        ? release->version.toString() + u' ' + release->link.toString() + u' ' + release->notes
        : u"! "_s + problem;
}

} // namespace

class UpdaterTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void feed_isReadOrRefused_data();
    void feed_isReadOrRefused();
    void user_isToldWhatTheFeedSays_data();
    void user_isToldWhatTheFeedSays();
    void background_asksOnceADayAndTellsUntilItIsSeen();
    void address_isHttpsOrNone();

private:
    std::unique_ptr<Updater> makeUpdater()
    {
        save(_folder.filePath(u"Info.plist"_s),
            "<plist version=\"1.0\"><dict><key>SUFeedURL</key><string>" + _address.toUtf8()
                + "</string></dict></plist>");
        return std::make_unique<Updater>(_client, InfoDictionary(_folder.filePath(u"Info.plist"_s)),
            [this](const Alert &alert) { _alerts.append(alert.messageText); });
    }

    QTemporaryDir _folder;
    CountingClient _client;
    std::unique_ptr<LoopbackServer> _server;
    std::unique_ptr<UserDefaults> _defaults;
    QString _address;
    QStringList _alerts;
    QStringList _messages;
};

// A server with a certificate of its own that this program trusts.
void UpdaterTest::initTestCase()
{
    qputenv("no_proxy", "127.0.0.1,localhost");
    const QString key = _folder.filePath(u"key.pem"_s);
    const QString certificate = _folder.filePath(u"certificate.pem"_s);
    QProcess openssl;
    openssl.start(u"openssl"_s,
        { u"req"_s, u"-x509"_s, u"-newkey"_s, u"rsa:2048"_s, u"-nodes"_s, u"-days"_s, u"2"_s,
            u"-subj"_s, u"/CN=loopback"_s, u"-addext"_s, u"subjectAltName=IP:127.0.0.1"_s,
            u"-keyout"_s, key, u"-out"_s, certificate });
    QVERIFY2(openssl.waitForFinished() && openssl.exitCode() == 0, openssl.readAllStandardError());
    QSslConfiguration trusting = QSslConfiguration::defaultConfiguration();
    trusting.addCaCertificates(certificate);
    QSslConfiguration::setDefaultConfiguration(trusting);

    QSslConfiguration serving = QSslConfiguration::defaultConfiguration();
    serving.setLocalCertificate(QSslCertificate(load(certificate)));
    serving.setPrivateKey(QSslKey(load(key), QSsl::Rsa));
    auto listener = std::make_unique<QSslServer>();
    listener->setSslConfiguration(serving);
    _server = std::make_unique<LoopbackServer>(std::move(listener), u"https"_s);
    connect(&NotificationCenter::defaultCenter(), &NotificationCenter::N_UserMessage, this,
        [this](const QString &message) { _messages.append(message); });
}

void UpdaterTest::init()
{
    TestCase::init();
    _defaults = std::make_unique<UserDefaults>();
    UserDefaults::setStandard(_defaults.get());
    Updater::registerDefaults();
    _address = _server->url(u"/feed"_s).toString();
    _server->answer = [](const LoopbackServer::Request &) {
        return Answer { LoopbackServer::status(200, {}, rss) };
    };
    _alerts.clear();
    _client.sent = _client.answered = 0;
}

void UpdaterTest::cleanup()
{
    UserDefaults::setStandard(nullptr);
}

void UpdaterTest::feed_isReadOrRefused_data()
{
    QTest::addColumn<QByteArray>("feed");
    QTest::addColumn<QString>("read");
    QTest::newRow("RSS") << rss << u"99.2 https://example.org/99 Faster"_s;
    QTest::newRow("Atom") << QByteArray(
        R"(<feed xmlns="http://www.w3.org/2005/Atom"><title>Releases 7</title>
               <entry><title>v2.10</title><link href="https://example.org/v2"/><content
               type="html">more &amp;lt; less</content></entry><entry><title>v2.9.5</title>
               </entry></feed>)")
                          << u"2.10 https://example.org/v2 more < less"_s;
    QTest::newRow("dangerous link")
        << QByteArray("<rss><item><title>Ortu 3</title><link>file:///bin/sh</link></item></rss>")
        << u"3  "_s;
    QTest::newRow("cut off") << rss.chopped(1) << u"! Premature end of document."_s;
    QTest::newRow("deep text") << "<rss><item><title>" + QByteArray("<a>").repeated(300'000)
                               << u"! its elements lie too deep in one another"_s;
    QTest::newRow("deep elsewhere") << "<rss><item><title>Ortu <b>3</b></title>"
            + QByteArray("<a>").repeated(300'000) + QByteArray("</a>").repeated(300'000)
            + "</item></rss>" << u"3  "_s;
    QTest::newRow("number of the build")
        << QByteArray("<rss><item><enclosure version='4711'/><title>Ortu 5</title>"
                      "<shortVersionString> v1.2 </shortVersionString></item><item>"
                      "<version>0.9</version><title>Ortu 6</title></item></rss>")
        << u"1.2  "_s;
    QTest::newRow("tried out") << QByteArray(
        "<rss><item><enclosure version='12' shortVersionString='1.2 beta'/>"
        "<title>Ortu 1.2</title></item><item><title>Ortu 1</title></item></rss>")
                               << u"1  "_s;
    for (const char *title : { "Ortu 4: faster", "Ortu 4, faster", "Faster (v4)", "4" }) {
        QTest::newRow(title) << "<rss><item><title>" + QByteArray(title) + "</title></item></rss>"
                             << u"4  "_s;
    }
    QTest::newRow("no version") << QByteArray("<rss><item><title>x.y 1.2-rc1</title></item></rss>")
                                << u"! it names no version"_s;
    QTest::newRow("HTML") << QByteArray("<!DOCTYPE html><html><title>Ortu 9</title></html>")
                          << u"! it defines a document type of its own"_s;
    QTest::newRow("nothing") << QByteArray() << u"! Premature end of document."_s;
}

void UpdaterTest::feed_isReadOrRefused()
{
    QFETCH(QByteArray, feed);
    QTEST(readFeed(feed), "read");
}

void UpdaterTest::user_isToldWhatTheFeedSays_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<QString>("told");
    // In the log, with the failure.
    QTest::addColumn<QString>("reason");
    const auto status = &LoopbackServer::status;
    const QString failed = u"Could not look for a newer version."_s;
    const QString another = u"the server sends on to another one, %1"_s;
    const QUrl url = _server->url({});
    QTest::newRow("newer") << Answer { status(200, {}, rss) } << u"window"_s << QString();
    QTest::newRow("present") << Answer { status(
        200, {}, QByteArray(rss).replace("99.2", "0.1").replace("98.1", "0.0.1")) }
                             << u"There is no newer version."_s << QString();
    QTest::newRow("missing") << Answer { status(404, {}, rss) } << failed
                             << u"the server answered with status 404"_s;
    QTest::newRow("endless") << LoopbackServer::endless("<rss>") << failed
                             << u"the feed is larger than 1048576 bytes"_s;
    for (const QString &target : { url.toString().replace(u"https"_s, u"http"_s),
             url.toString().replace(u"127.0.0.1"_s, u"localhost"_s) }) {
        QTest::addRow("to %s", qUtf8Printable(target.section(u':', 0, 1)))
            << Answer { status(302, "Location: " + target.toLatin1() + "/\r\n", {}) } << failed
            << another.arg(target);
    }
}

void UpdaterTest::user_isToldWhatTheFeedSays()
{
    QFETCH(Answer, answer);
    QFETCH(QString, told);
    QFETCH(QString, reason);
    _server->answer = [answer](const LoopbackServer::Request &) { return answer; };
    const std::unique_ptr<Updater> updater = makeUpdater();
    if (!reason.isEmpty()) {
        expectWarning(u"cannot look for updates at 127.0.0.1: "_s + reason + u'$');
    }
    QSignalSpy shown(updater.get(), &Updater::windowShown);
    updater->checkForUpdates();
    updater->checkForUpdates();
    QTRY_VERIFY(!shown.isEmpty() || !_alerts.isEmpty());
    QCOMPARE(_alerts, told == u"window" ? QStringList() : QStringList { told });
    QCOMPARE(updater->window() != nullptr, told == u"window");
    if (UpdateWindow *const window = updater->window()) {
        QCOMPARE(window->findChild<QPlainTextEdit *>()->toPlainText(), u"Faster"_s);
        QSignalSpy page(window, &UpdateWindow::pageWanted);
        window->disconnect(updater.get());
        for (QPushButton *const button : window->findChildren<QPushButton *>()) {
            if (button->isDefault()) {
                button->click();
                break;
            }
        }
        QCOMPARE(page.value(0).value(0).toUrl(), QUrl(u"https://example.org/99"_s));
    }
}

void UpdaterTest::background_asksOnceADayAndTellsUntilItIsSeen()
{
    std::unique_ptr<Updater> updater = makeUpdater();
    const auto asksAfter = [&](int hours) {
        _defaults->setObject(
            u"SULastCheckTime"_s, QDateTime::currentDateTimeUtc().addSecs(-hours * 3600));
        const int before = _client.sent;
        updater->checkForUpdatesInBackground();
        return _client.sent == before + 1;
    };
    const auto tells = [&] {
        _messages.clear();
        return QTest::qWaitFor([this] { return _client.answered == _client.sent; })
            && !_messages.isEmpty() && _messages.first().startsWith(u"Ortu 99.2 is available."_s);
    };
    updater->checkForUpdatesInBackground();
    QCOMPARE(_client.sent, 1);
    QVERIFY(tells() && !updater->window());
    QVERIFY(!asksAfter(23) && asksAfter(25) && tells());
    // A clock that was ahead stops no check.
    QVERIFY(asksAfter(-1000) && tells());

    _defaults->setObject(u"SUEnableAutomaticChecks"_s, false);
    QVERIFY(!asksAfter(25));
    // Switched on again it looks at once, and the user gets the answer of that.
    _defaults->setObject(u"SUEnableAutomaticChecks"_s, true);
    updater->checkForUpdates();
    QCOMPARE(_client.sent, 4);
    QVERIFY(!tells() && updater->window());
    updater->window()->reject();
    QVERIFY(!updater->window() && asksAfter(25) && !tells());
    // Another run tells it, unless it is to be skipped.
    updater = makeUpdater();
    QVERIFY(asksAfter(25) && tells());
    _defaults->setObject(u"SUSkippedVersion"_s, u"99.2"_s);
    QVERIFY(asksAfter(25) && !tells());
}

void UpdaterTest::address_isHttpsOrNone()
{
    QVERIFY(Updater::feedUrl(InfoDictionary()).isEmpty());
    for (const QString &address : { u"http://example.org/feed"_s, u"feed"_s, u"https:///"_s }) {
        _address = address;
        expectWarning(u"no updates: SUFeedURL is no address of HTTPS: "_s + address);
        const std::unique_ptr<Updater> updater = makeUpdater();
        QVERIFY(!updater->automaticallyChecksForUpdates());
        updater->checkForUpdates();
    }
}

QTEST_MAIN(UpdaterTest)
#include "UpdaterTest.moc"

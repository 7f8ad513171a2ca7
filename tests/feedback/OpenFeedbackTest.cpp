#include "feedback/OpenFeedback.h"

#include "feedback/OFController.h"
#include "platform/Desktop.h"
#include "shell/ShellTest.h"
#include "support/Alerts.h"
#include "support/InfoDictionary.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"
#include "web/LinkedWebClient.h"
#include "web/LoopbackServer.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabBar>

#include <optional>

namespace {

using Answer = LoopbackServer::Answer;
using Request = LoopbackServer::Request;

class KnownAccount final : public Account
{
public:
    void findEmailAddresses(QObject * /*context*/, const Receiver &receiver) const override
    {
        receiver({ u"me@example.org"_s, u"other@example.org"_s });
    }
};

class WebDesktop final : public Desktop, private SearchPaths
{
public:
    explicit WebDesktop(const QString &library)
        : _library(library)
    { }

    const SearchPaths &searchPaths() const override { return *this; }
    QString libraryFolder(Domain domain) const override
    {
        return domain == Domain::User ? _library : QString();
    }
    const WebClient &webClient() const override { return _webClient; }
    const Account &account() const override { return _account; }

private:
    LinkedWebClient _webClient;
    KnownAccount _account;
    QString _library;
};

class CensoringDelegate final : public OpenFeedbackDelegate
{
public:
    bool isAllowed = true;

    bool openFeedbackWillSendData(OpenFeedback & /*feedback*/, FeedbackFields &fields) override
    {
        fields[u"message"_s] = u"nothing"_s;
        return isAllowed;
    }
};

// A program whose feedback goes to the server; alerts are noted and answered.
class Program final
{
    QTemporaryDir _folder;
    QString _library;
    WebDesktop _desktop { _library };
    InfoDictionary _info;
    UserDefaults _defaults;

public:
    // With a library of its own unless one is given.
    explicit Program(const QString &address, const QString &library = {})
        : _library(library.isEmpty() ? _folder.path() : library)
        , _info(write(address))
    {
        UserDefaults::setStandard(&_defaults);
    }

    OpenFeedback feedback { _desktop, _info, [this](const Alert &alert, QWidget *parent) {
                               alerts.append(alert.messageText);
                               return parent == &window && window.isVisible() ? 0 : 9;
                           } };
    OFController &window = feedback.windowController();
    const FeedbackOutlets &outlets = window.outlets();
    QStringList alerts;

    QString library() const { return _library; }

    void ask(const QString &question)
    {
        feedback.presentFeedbackPanelForSupport();
        outlets.txtQuestion->setPlainText(question);
        outlets.btnSend->click();
    }

    QString write(const QString &address)
    {
        const QString path = _folder.filePath(u"Info.plist"_s);
        QFile file(path);
        if (file.open(QIODevice::WriteOnly)) {
            file.write("<plist version=\"1.0\"><dict><key>OFSubmitFeedbackURL</key><string>"
                + address.toUtf8() + "</string></dict></plist>");
        }
        return path;
    }
};

const QString sent = u"Feedback Sent"_s;
const QString notSent = u"Can't Send Feedback"_s;

} // namespace

class OpenFeedbackTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("no_proxy", "127.0.0.1,localhost"); }
    void init() { expectNoWarnings(); }
    void form_arrivesAsItWasFilledIn_data();
    void form_arrivesAsItWasFilledIn();
    void sendButton_needsATextAndAnAddressToAnswer();
    void answer_decidesWhetherTheTextIsDone_data();
    void answer_decidesWhetherTheTextIsDone();
    void closedWhileSending_itTellsOnThePanel_data();
    void closedWhileSending_itTellsOnThePanel();
    void draft_isKeptUntilItIsSent();
    void delegate_changesOrRefusesTheForm();
    void request_isBoundedAndStaysWithItsServer();
    void crash_isReportedOnce();
    void address_isChecked();

private:
    static QByteArray versionOfSystem()
    {
        static const QRegularExpression id(
            u"^VERSION_ID=\"?([^\"\n]*)"_s, QRegularExpression::MultilineOption);
        const QString release = QString::fromUtf8(load(u"/etc/os-release"_s));
        return id.match(release).captured(1).toLatin1();
    }
};

void OpenFeedbackTest::form_arrivesAsItWasFilledIn_data()
{
    using Fill = std::function<void(Program &)>;
    QTest::addColumn<Fill>("fill");
    QTest::addColumn<QByteArrayList>("fields");
    QTest::newRow("support") << Fill([](Program &program) {
        program.feedback.presentFeedbackPanelForSupport();
        program.outlets.txtQuestion->setPlainText(u"a=b&c +%\n\u00e9\U0001F600"_s);
    }) << QByteArrayList { "message=a%3db%26c +%\n??", "type=support" };
    QTest::newRow("feature") << Fill([](Program &program) {
        program.feedback.presentFeedbackPanelForFeature();
        program.outlets.txtFeature->setPlainText(u"More"_s);
        program.outlets.btnImportance->setCurrentIndex(1);
        program.outlets.btnIncludeMyEmail->setChecked(true);
    })
                             << QByteArrayList { "email=me@example.org", "importance=Important",
                                    "message=More", "type=feature" };
    QTest::newRow("bug") << Fill([](Program &program) {
        program.feedback.presentFeedbackPanelForBug();
        program.outlets.txtWhatHappened->setPlainText(u"Nothing"_s);
        program.outlets.txtStepsToReproduce->setPlainText(u"Click"_s);
    })
                         << QByteArrayList { "message=What did you expect to happen?\nNothing\n\n"
                                             "What steps will reproduce the problem?\nClick",
                                "type=bug" };
    QTest::newRow("critical bug") << Fill([](Program &program) {
        program.feedback.presentFeedbackPanelForBug();
        program.outlets.txtWhatHappened->setPlainText(QString(1'000'000, u'x'));
        program.outlets.btnIsCritical->setChecked(true);
    })
                                  << QByteArrayList { "critical=1",
                                         "message=What did you expect to happen?\n"
                                             + QByteArray(1'000'000, 'x')
                                             + "\n\nWhat steps will reproduce the problem?\n",
                                         "type=bug" };
    QTest::newRow("crash, after a look at another form")
        << Fill([](Program &program) {
               program.window.presentFeedbackPanelForCrash(u"signal=11"_s);
               program.outlets.tabs->setCurrentIndex(FeedbackOutlets::Support);
               program.outlets.tabs->setCurrentIndex(FeedbackOutlets::Bug);
               program.outlets.txtCrashStepsToReproduce->setPlainText(u"Start"_s);
           })
        << QByteArrayList { "critical=1",
               "message=Crash description:\n\n\n\n\nThe text below is application's crash log, "
               "please "
               "leave it unchanged to help us determine possible cause!\n\nsignal%3d11\n\n"
               "What steps will reproduce the problem?\nStart",
               "type=bug" };
}

void OpenFeedbackTest::form_arrivesAsItWasFilledIn()
{
    QFETCH(std::function<void(Program &)>, fill);
    QFETCH(QByteArrayList, fields);
    LoopbackServer server;
    Program program(server.url().toString());
    fill(program);
    program.outlets.btnSend->click();
    QVERIFY(!program.outlets.btnSend->isEnabled());
    QTRY_COMPARE(program.alerts, QStringList { sent });

    QCOMPARE(server.requests().count(), 1);
    const Request &request = server.requests().first();
    QCOMPARE(request.line, "POST /feedback HTTP/1.1");
    QVERIFY(request.head.toLower().contains("content-type: application/x-www-form-urlencoded\r\n"));
    fields << "appname=ortu"
           << "appversion=" ORTU_VERSION << "systemversion=" + versionOfSystem();
    std::sort(fields.begin(), fields.end());
    QByteArrayList received = request.body.split('&');
    std::sort(received.begin(), received.end());
    QCOMPARE(received, fields);
}

void OpenFeedbackTest::sendButton_needsATextAndAnAddressToAnswer()
{
    Program program(u"http://127.0.0.1:1/"_s);
    const FeedbackOutlets &outlets = program.outlets;
    program.feedback.presentFeedbackPanelForBug();
    QVERIFY(QTest::qWaitForWindowActive(&program.window));
    QVERIFY(outlets.txtWhatHappened->hasFocus() && !outlets.btnSend->isEnabled());
    outlets.txtStepsToReproduce->setPlainText(u"Click"_s);
    QVERIFY(!outlets.btnSend->isEnabled());
    outlets.txtWhatHappened->setPlainText(u"Nothing"_s);
    QVERIFY(outlets.btnSend->isEnabled() && !outlets.cboEmailAddress->isEnabled());
    outlets.btnIncludeMyEmail->setChecked(true);
    QVERIFY(outlets.btnSend->isEnabled() && outlets.cboEmailAddress->isEnabled());
    outlets.cboEmailAddress->setEditText({});
    QVERIFY(!outlets.btnSend->isEnabled() && !outlets.note->text().contains(u"“?”"_s));
    outlets.cboEmailAddress->setEditText(u"ä@example.org"_s);
    QVERIFY(outlets.note->text().contains(u"“?”"_s));
    outlets.btnIncludeMyEmail->setChecked(false);
    outlets.tabs->setCurrentIndex(FeedbackOutlets::Feature);
    QVERIFY(!outlets.btnSend->isEnabled());
    program.window.presentFeedbackPanelForCrash({});
    QVERIFY(outlets.btnSend->isEnabled() && outlets.txtCrashDescription->hasFocus());
}

void OpenFeedbackTest::answer_decidesWhetherTheTextIsDone_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<QString>("alert");
    const auto status = &LoopbackServer::status;
    QTest::newRow("done") << Answer { status(200, {}, "thanks") } << sent;
    QTest::newRow("server error") << Answer { status(500, {}, {}) } << sent;
    QTest::newRow("login wanted") << Answer { status(401, "WWW-Authenticate: Basic\r\n", {}) }
                                  << sent;
    QTest::newRow("endless") << LoopbackServer::endless("x") << sent;
    QTest::newRow("reset") << Answer { {}, Answer::Then::Abort } << notSent;
    QTest::newRow("broken off") << Answer { "HTTP/1.1 200 x\r\nContent-Length: 9\r\n\r\nx" }
                                << notSent;
    QTest::newRow("no HTTP") << Answer { "hello" } << notSent;
    QTest::newRow("another server")
        << Answer { status(302, "Location: http://localhost:1/\r\n", {}) } << notSent;
}

// A failed text is not sent twice, and stays.
void OpenFeedbackTest::answer_decidesWhetherTheTextIsDone()
{
    QFETCH(Answer, answer);
    QFETCH(QString, alert);
    LoopbackServer server;
    server.answer = [answer](const Request &) { return answer; };
    Program program(server.url().toString());
    if (alert == notSent) {
        expectWarning(u"cannot send feedback to 127\\.0\\.0\\.1: .+"_s);
    }
    program.ask(u"Why?"_s);
    QTRY_COMPARE(program.alerts, QStringList { alert });
    if (alert == notSent) {
        // The keyboard is where it was.
        QCOMPARE(program.window.focusWidget(), program.outlets.txtQuestion);
    }
    QCOMPARE(server.requests().count(), 1);
    QCOMPARE(program.window.isVisible(), alert == notSent);
    QCOMPARE(program.outlets.txtQuestion->toPlainText(), alert == sent ? u""_s : u"Why?"_s);
}

void OpenFeedbackTest::closedWhileSending_itTellsOnThePanel_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QStringList>("alerts");
    QTest::addColumn<QString>("left");
    QTest::newRow("sent") << Answer { LoopbackServer::status(200) }
                          << u"Your feedback has been sent successfully. Thank you!"_s
                          << QStringList() << QString();
    QTest::newRow("failed") << Answer { {}, Answer::Then::Abort }
                            << u"We were unable to send your feedback. Please check your "
                               "internet connection and try again."_s
                            << QStringList(notSent) << u"Why?"_s;
}

void OpenFeedbackTest::closedWhileSending_itTellsOnThePanel()
{
    QFETCH(Answer, answer);
    QFETCH(QString, message);
    LoopbackServer server;
    server.answer = [answer](const Request &) { return answer; };
    Program program(server.url().toString());
    QSignalSpy told(&NotificationCenter::defaultCenter(), &NotificationCenter::N_UserMessage);
    program.ask(u"Why?"_s);
    program.window.close();
    QVERIFY(program.window.isSending());
    if (!answer.bytes.startsWith("HTTP")) {
        expectWarning(u"cannot send feedback to 127\\.0\\.0\\.1: .+"_s);
    }
    QTRY_COMPARE(told.count(), 1);
    QCOMPARE(told[0][0].toString(), message);
    QVERIFY(program.alerts.isEmpty());
    program.feedback.presentFeedbackPanelForSupport();
    QCoreApplication::processEvents();
    QTEST(program.alerts, "alerts");
    QTEST(program.outlets.txtQuestion->toPlainText(), "left");
    // Told once.
    program.window.close();
    program.feedback.presentFeedbackPanelForSupport();
    QCoreApplication::processEvents();
    QTEST(program.alerts, "alerts");
}

void OpenFeedbackTest::draft_isKeptUntilItIsSent()
{
    const QTemporaryDir library;
    const QString state = library.filePath(u"Ortu"_s);
    const QString draft = state + u"/Feedback Draft.plist"_s;
    LoopbackServer server;
    const QString address = server.url().toString();
    {
        const Program program(address, state);
        QVERIFY(!QFile::exists(state));
        program.outlets.txtQuestion->setPlainText(u"<Why\x1b?>\n"_s);
        save(state, "a file, where a folder belongs");
        program.window.presentFeedbackPanelForSupport();
        expectWarning(u"^cannot write .*Draft.plist: Not a directory"_s);
        program.window.close();
        QVERIFY(QFile::remove(state));
    }
    QCOMPARE(QFile::permissions(draft) & ~(QFile::ReadUser | QFile::WriteUser),
        QFile::ReadOwner | QFile::WriteOwner);
    {
        const Program program(address, state);
        QCOMPARE(program.outlets.txtQuestion->toPlainText(), u"<Why?>\n"_s);
        server.answer = [](const Request &) { return Answer { {}, Answer::Then::Wait }; };
        program.outlets.txtFeature->setPlainText(u"More"_s);
        program.window.presentFeedbackPanelForFeature();
        program.outlets.btnSend->click();
        expectWarning(u"feedback may not have been sent: the program ends before 127.0.0.1"_s);
    }
    server.answer = [](const Request &) { return Answer { LoopbackServer::status(200) }; };
    Program program(address, state);
    program.ask(program.outlets.txtFeature->toPlainText());
    QTRY_COMPARE(program.alerts, QStringList { sent });
    QVERIFY(!QFile::exists(draft));
    // Of a program that was killed.
    save(draft, {});
    QCOMPARE(Program(address, state).outlets.txtQuestion->toPlainText(), QString());
}

void OpenFeedbackTest::delegate_changesOrRefusesTheForm()
{
    LoopbackServer server;
    Program program(server.url().toString());
    CensoringDelegate delegate;
    program.feedback.setDelegate(&delegate);
    program.ask(u"Why?"_s);
    QTRY_COMPARE(program.alerts, QStringList { sent });
    QVERIFY(server.requests().first().body.contains("message=nothing"));
    delegate.isAllowed = false;
    program.ask(u"Why?"_s);
    QVERIFY(!program.window.isVisible() && !program.window.isSending());
    QCOMPARE(program.outlets.txtQuestion->toPlainText(), u"Why?"_s);
}

void OpenFeedbackTest::request_isBoundedAndStaysWithItsServer()
{
    LoopbackServer server;
    QByteArray redirect;
    server.answer = [&](const Request &request) {
        return request.line.contains("/silent") ? Answer { {}, Answer::Then::Wait }
            : request.line.contains("/to ")     ? Answer { LoopbackServer::status(200, {}, "ok") }
                                                : Answer { redirect };
    };
    std::optional<WebAnswer> answer;
    const LinkedWebClient client;
    std::unique_ptr<WebExchange> exchange;
    const auto send = [&](const QString &path, std::chrono::milliseconds maxTime) {
        answer.reset();
        exchange = client.send({ .url = server.url(path),
                                   .contentType = "text/plain",
                                   .body = "secret",
                                   .maxTime = maxTime,
                                   .maxAnswerSize = 1 },
            [&answer](const WebAnswer &received) { answer = received; });
    };
    send(u"/silent"_s, std::chrono::milliseconds(50));
    QTRY_VERIFY(answer);
    QCOMPARE(answer->problem, u"no answer within 0.05 seconds"_s);

    constexpr auto minute = std::chrono::seconds(60);
    // The page that comes with a redirect does not count, however long it is.
    redirect = LoopbackServer::status(307, "Location: /to\r\n", QByteArray(1'000'000, 'x'));
    send(u"/"_s, minute);
    QTRY_VERIFY(answer);
    QVERIFY(answer->isCut && answer->status == 200 && answer->problem.isEmpty());
    QCOMPARE(answer->body, "o");
    QCOMPARE(server.requests().last().body, "secret");

    redirect = LoopbackServer::status(302, "Location: /to\r\n");
    send(u"/"_s, minute);
    QTRY_VERIFY(answer);
    QCOMPARE(server.requests().last().line, "GET /to HTTP/1.1");

    redirect = LoopbackServer::status(307, "Location: /\r\n");
    send(u"/"_s, minute);
    QTRY_VERIFY(answer);
    QCOMPARE(answer->problem, u"the server sends on too often"_s);

    // Neither the host nor the scheme may change; a port that is the usual one need not be named.
    for (const auto &[from, to] :
        { std::pair(u"127.0.0.1"_s, u"localhost"_s), std::pair(u"http:"_s, u"https:"_s) }) {
        const qsizetype before = server.requests().count();
        const QString target = server.url(u"/to"_s).toString().replace(from, to);
        redirect = LoopbackServer::status(307, "Location: " + target.toLatin1() + "\r\n");
        send(u"/"_s, minute);
        QTRY_VERIFY(answer);
        QCOMPARE(answer->problem,
            u"the server sends on to another one, "_s + target.chopped(int(qstrlen("/to"))));
        QCOMPARE(server.requests().count(), before + 1);
    }

    // What is cancelled while the server answers is not told.
    bool isCancelledTold = false;
    const auto answerUsual = std::exchange(server.answer, [&exchange](const Request &) {
        exchange.reset();
        return Answer { LoopbackServer::status(200) };
    });
    exchange = client.send({ .url = server.url(u"/to"_s) },
        [&isCancelledTold](const WebAnswer &) { isCancelledTold = true; });
    QTRY_VERIFY(!exchange);
    server.answer = answerUsual;
    send(u"/to"_s, minute);
    QTRY_VERIFY(answer);
    QVERIFY(!isCancelledTold);
}

void OpenFeedbackTest::crash_isReportedOnce()
{
    Program program(u"http://127.0.0.1:1/"_s);
    program.feedback.presentFeedbackPanelIfCrashed();
    QVERIFY(!program.window.isVisible());
    const QString logs = program.library() + u"/Logs/CrashReporter"_s;
    QVERIFY(QDir().mkpath(logs));
    save(logs + u"/Ortu_1.crash"_s, "signal=11");
    // The time of a file is finer than that of a preference.
    const QDateTime check = program.feedback.lastCrashCheckTime();
    QVERIFY(check.isValid());
    program.feedback.setLastCrashCheckTime(check.addSecs(-1));
    program.feedback.presentFeedbackPanelIfCrashed();
    QVERIFY(program.window.isVisible());
    QVERIFY(program.outlets.txtCrashDescription->toPlainText().endsWith(u"signal=11"_s));
    program.window.close();
    program.feedback.setLastCrashCheckTime(QDateTime::currentDateTimeUtc().addSecs(1));
    program.feedback.presentFeedbackPanelIfCrashed();
    QVERIFY(!program.window.isVisible());
}

void OpenFeedbackTest::address_isChecked()
{
    QTemporaryDir folder;
    QVERIFY(OpenFeedback::submitUrl(InfoDictionary()).isEmpty());
    for (const QString &address : { u"file:///etc/passwd"_s, u"feedback"_s, u"http://"_s }) {
        expectWarning(
            u"no feedback: OFSubmitFeedbackURL is no address of a web server: "_s + address);
        const Program program(address);
        expectWarning(u"OpenFeedback Error: You must set OFSubmitFeedbackURL in Info.plist"_s);
        program.window.sendFeedback();
        QVERIFY(!program.window.isSending());
    }
}

QTEST_MAIN(OpenFeedbackTest)
#include "OpenFeedbackTest.moc"

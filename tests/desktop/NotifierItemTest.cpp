// The status item on the session bus, where another program stands in for a desktop's panel. There
// is no tray.

#include "platform/freedesktop/FreedesktopDesktop.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QIcon>
#include <QMenu>
#include <QPixmap>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

QIcon picture()
{
    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::green);
    return pixmap;
}

class Registrar
{
public:
    explicit Registrar(const QStringList &arguments = { u"host"_s })
    {
        _process.start(qEnvironmentVariable("ORTU_NOTIFIER_REGISTRAR"), arguments);
        [this] {
            QTRY_VERIFY(_process.canReadLine());
            QCOMPARE(_process.readLine(), QByteArray("ready\n"));
        }();
    }
    ~Registrar()
    {
        _process.closeWriteChannel();
        _process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Registrar)

    void tell(const QByteArray &line) { _process.write(line + '\n'); }
    bool hasItem() const { return _process.canReadLine(); }
    QString item() { return QString::fromUtf8(_process.readLine()).trimmed(); }

private:
    QProcess _process;
};

} // namespace

class NotifierItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aHost_isWaitedFor();
    void aHost_tellsOfChoicesOnly();
    void aRegisterThatRestarts_getsTheItemBack();
    void aHiddenItem_isGone();

private:
    QMenu _menu;
    std::unique_ptr<Desktop> _desktop;
    StatusItem *_item = nullptr;
};

void NotifierItemTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".?"_s));
    _desktop = makeFreedesktopDesktop();
    _item = &_desktop->statusItem();
    _menu.addAction(u"Quit Ortu"_s);
    _item->show(picture(), u"Ortu"_s, _menu);
}

void NotifierItemTest::cleanup()
{
    _desktop.reset();
}

// The first to run: the toolkit decides once.
void NotifierItemTest::aHost_isWaitedFor()
{
    QSignalSpy changes(_item, &StatusItem::isShownChanged);
    Registrar registrar(QStringList {});
    QCoreApplication::processEvents();
    QVERIFY(!_item->isShown());
    registrar.tell("host");
    QTRY_VERIFY(_item->isShown());
    QTRY_VERIFY(registrar.hasItem());
    QVERIFY(!_item->reportsPresses());
    registrar.tell("no host");
    QTRY_VERIFY(!_item->isShown());
    QCOMPARE(changes.count(), 2);
}

void NotifierItemTest::aHost_tellsOfChoicesOnly()
{
    QSignalSpy activated(_item, &StatusItem::activated);
    QSignalSpy menuWanted(_item, &StatusItem::menuWanted);
    Registrar registrar;
    QTRY_VERIFY(registrar.hasItem());
    const QString item = registrar.item();
    for (const char *const method : { "Activate", "SecondaryActivate", "ContextMenu" }) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            item, u"/StatusNotifierItem"_s, u"org.kde.StatusNotifierItem"_s, QLatin1String(method));
        call << 10 << 10;
        QDBusConnection::sessionBus().asyncCall(call);
    }
    QTRY_COMPARE(menuWanted.count(), 1);
    QCOMPARE(activated.count(), 1);
}

void NotifierItemTest::aRegisterThatRestarts_getsTheItemBack()
{
    for (int i = 0; i < 2; ++i) {
        {
            Registrar registrar;
            QTRY_VERIFY(_item->isShown());
            QTRY_VERIFY(registrar.hasItem());
        }
        QTRY_VERIFY(!_item->isShown());
    }
}

void NotifierItemTest::aHiddenItem_isGone()
{
    Registrar registrar;
    QTRY_VERIFY(_item->isShown());
    QTRY_VERIFY(registrar.hasItem());
    registrar.item();
    _item->hide();
    QVERIFY(!_item->isShown());
    // As if to change what a click does.
    _item->show(picture(), u"Ortu"_s, _menu);
    QTRY_VERIFY(_item->isShown());
    QTRY_VERIFY(registrar.hasItem());
}

QTEST_MAIN(NotifierItemTest)

#include "NotifierItemTest.moc"

// The status item on the session bus, where another program stands in for a desktop's panel. There
// is no tray.

#include "desktop/Programs.h"
#include "platform/freedesktop/FreedesktopDesktop.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QIcon>
#include <QMenu>
#include <QPixmap>

namespace {

QIcon picture()
{
    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::green);
    return pixmap;
}

class Registrar : public OtherProcess
{
public:
    explicit Registrar(const QStringList &arguments = { u"host"_s })
        : OtherProcess(qEnvironmentVariable("ORTU_NOTIFIER_REGISTRAR"), arguments)
    {
        [this] {
            QTRY_VERIFY(canReadLine());
            QCOMPARE(readLine(), QByteArray("ready\n"));
        }();
    }
    bool hasItem() const { return canReadLine(); }
    QString item() { return QString::fromUtf8(readLine()).trimmed(); }
};

} // namespace

class NotifierItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".?"_s));
        _desktop = makeFreedesktopDesktop();
        _item = &_desktop->statusItem();
        _menu.addAction(u"Quit Ortu"_s);
        _item->show(picture(), u"Ortu"_s, _menu);
    }
    void cleanup() { _desktop.reset(); }

    // The first to run: the toolkit decides once.
    void aHost_isWaitedFor()
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

    void aHost_tellsOfChoicesOnly()
    {
        QSignalSpy activated(_item, &StatusItem::activated);
        QSignalSpy menuWanted(_item, &StatusItem::menuWanted);
        Registrar registrar;
        QTRY_VERIFY(registrar.hasItem());
        const QString item = registrar.item();
        for (const char *const method : { "Activate", "SecondaryActivate", "ContextMenu" }) {
            QDBusMessage call = QDBusMessage::createMethodCall(item, u"/StatusNotifierItem"_s,
                u"org.kde.StatusNotifierItem"_s, QLatin1String(method));
            call << 10 << 10;
            QDBusConnection::sessionBus().asyncCall(call);
        }
        QTRY_COMPARE(menuWanted.count(), 1);
        QCOMPARE(activated.count(), 1);
    }

    void aRegisterThatRestarts_getsTheItemBack()
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

    void aHiddenItem_isGone()
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

private:
    QMenu _menu;
    std::unique_ptr<Desktop> _desktop;
    StatusItem *_item = nullptr;
};

QTEST_MAIN(NotifierItemTest)
#include "NotifierItemTest.moc"

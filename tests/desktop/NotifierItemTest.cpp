// The status item on the session bus, where another program stands in for a desktop's panel. There
// is no tray.

#include "desktop/Programs.h"
#include "platform/freedesktop/FreedesktopDesktop.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QIcon>
#include <QMenu>

class NotifierItemTest : public TestCase
{
    Q_OBJECT

    class Registrar : public OtherProcess
    {
    public:
        explicit Registrar(const QStringList &arguments = { u"host"_s })
            : OtherProcess(qEnvironmentVariable("ORTU_NOTIFIER_REGISTRAR"), arguments)
        {
            [this] { QTRY_VERIFY(canReadLine()); }();
            readLine(); // "ready"
        }
        bool hasItem() const { return canReadLine(); }
    };

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        _desktop = makeFreedesktopDesktop();
        _item = &_desktop->statusItem();
        _menu.addAction(u"Quit Ortu"_s);
        _item->show(QPixmap(22, 22), u"Ortu"_s, _menu);
    }

    // The first to run: Qt decides once.
    void aHost_isWaitedFor()
    {
        QSignalSpy changes(_item, &StatusItem::isShownChanged);
        Registrar registrar(QStringList {});
        QCoreApplication::processEvents();
        QVERIFY(!_item->isShown());
        registrar.tell("host");
        QTRY_VERIFY(_item->isShown());
        QTRY_VERIFY(registrar.hasItem());
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
        const QString item = QString::fromUtf8(registrar.readLine()).trimmed();
        for (const char *const method : { "Activate", "SecondaryActivate", "ContextMenu" }) {
            QDBusMessage call = QDBusMessage::createMethodCall(item, u"/StatusNotifierItem"_s,
                u"org.kde.StatusNotifierItem"_s, QLatin1String(method));
            QDBusConnection::sessionBus().send(call << 10 << 10);
        }
        QTRY_COMPARE(menuWanted.count(), 1);
        QCOMPARE(activated.count(), 1);
    }

    void theItem_comesBack()
    {
        // The first register ends, and another one starts.
        for (int i = 0; i < 2; ++i) {
            QTRY_VERIFY(!_item->isShown());
            Registrar registrar;
            QTRY_VERIFY(_item->isShown());
            QTRY_VERIFY(registrar.hasItem());
        }
    }

private:
    QMenu _menu;
    std::unique_ptr<Desktop> _desktop;
    StatusItem *_item = nullptr;
};

QTEST_MAIN(NotifierItemTest)
#include "NotifierItemTest.moc"

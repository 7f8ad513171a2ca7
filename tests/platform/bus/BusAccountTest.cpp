#include "platform/freedesktop/bus/BusAccount.h"

#include "TestCase.h"
#include "platform/bus/PrivateBus.h"

#include <QDBusConnection>
#include <QDBusObjectPath>

#include <unistd.h>

// AccountsService, as far as it is asked; the user is an object of the same one.
class Accounts final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Accounts")

public Q_SLOTS:
    QDBusObjectPath FindUserById(qlonglong id) { return QDBusObjectPath(u"/user%1"_s.arg(id)); }
};

class User final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Accounts.User")
    Q_PROPERTY(QString Email MEMBER email)

public:
    QString email;
};

class BusAccountTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void address_isThatOfTheAccount_elseOfTheEnvironment()
    {
        const PrivateBus bus;
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
        qputenv("EMAIL", "me@environment");
        const BusAccount account;
        const auto found = [&account] {
            QStringList addresses;
            QObject context;
            account.findEmailAddresses(
                &context, [&](const QStringList &received) { addresses = received; });
            [&] { QTRY_VERIFY(!addresses.isEmpty()); }();
            return addresses;
        };
        QCOMPARE(found(), QStringList { u"me@environment"_s });

        auto system = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"accounts"_s);
        Accounts accounts;
        User user;
        user.email = u"me@account"_s;
        system.registerObject(
            u"/org/freedesktop/Accounts"_s, &accounts, QDBusConnection::ExportAllSlots);
        system.registerObject(
            u"/user%1"_s.arg(getuid()), &user, QDBusConnection::ExportAllProperties);
        QVERIFY(system.registerService(u"org.freedesktop.Accounts"_s));
        QCOMPARE(found(), QStringList { u"me@account"_s });
        user.email.clear();
        QCOMPARE(found(), QStringList { u"me@environment"_s });
        QDBusConnection::disconnectFromBus(u"accounts"_s);
    }
};

QTEST_GUILESS_MAIN(BusAccountTest)
#include "BusAccountTest.moc"

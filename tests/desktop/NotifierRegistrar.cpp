// Stands in for a panel that shows the status items of the session bus:
//
//   NotifierRegistrar [host]
//
// keeps the register, with a host for the items if so told, and prints "ready" and then each item
// that registers. "host" or "no host" on standard input says that one has come or gone; the end of
// the input ends the program.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QSocketNotifier>

#include <iostream>
#include <string>

class Registrar final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered MEMBER hasHost)

public:
    bool hasHost = false;
    void readLine()
    {
        std::string line;
        if (!std::getline(std::cin, line)) {
            QCoreApplication::quit();
        }
        hasHost = line == "host";
        Q_EMIT hasHost ? StatusNotifierHostRegistered() : StatusNotifierHostUnregistered();
    }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &item) // NOLINT(readability-identifier-naming)
    {
        std::cout << qPrintable(item) << std::endl;
    }

Q_SIGNALS:
    void StatusNotifierHostRegistered(); // NOLINT(readability-identifier-naming)
    void StatusNotifierHostUnregistered(); // NOLINT(readability-identifier-naming)
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    Registrar registrar;
    registrar.hasHost = argc > 1;
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject(
        QStringLiteral("/StatusNotifierWatcher"), &registrar, QDBusConnection::ExportAllContents);
    if (!bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"))) {
        return 1;
    }
    QSocketNotifier input(fileno(stdin), QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &registrar, &Registrar::readLine);
    std::cout << "ready" << std::endl;
    return QCoreApplication::exec();
}

#include "NotifierRegistrar.moc"

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

#include <cstdio>
#include <iostream>
#include <string>

class Registrar final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)

public:
    explicit Registrar(bool hasHost)
        : _hasHost(hasHost)
    { }

    bool hasHost() const { return _hasHost; }
    void setHost(bool hasHost)
    {
        _hasHost = hasHost;
        Q_EMIT hasHost ? StatusNotifierHostRegistered() : StatusNotifierHostUnregistered();
    }
    void readLine()
    {
        std::string line;
        if (std::getline(std::cin, line)) {
            setHost(line == "host");
        } else {
            QCoreApplication::quit();
        }
    }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &item) // NOLINT(readability-identifier-naming)
    {
        std::cout << qPrintable(item) << std::endl;
    }

Q_SIGNALS:
    void StatusNotifierHostRegistered(); // NOLINT(readability-identifier-naming)
    void StatusNotifierHostUnregistered(); // NOLINT(readability-identifier-naming)

private:
    bool _hasHost;
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    Registrar registrar(argc > 1);
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), &registrar,
        QDBusConnection::ExportAllProperties | QDBusConnection::ExportAllSlots
            | QDBusConnection::ExportAllSignals);
    if (!bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"))) {
        return 1;
    }
    QSocketNotifier input(fileno(stdin), QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &registrar, &Registrar::readLine);
    std::cout << "ready" << std::endl;
    return QCoreApplication::exec();
}

#include "NotifierRegistrar.moc"

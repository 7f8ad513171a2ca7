// A session to launch programs in: a bus of its own, peers on it, and programs that write down how
// they were started.

#pragma once

#include "TestCase.h"
#include "platform/FileTree.h"
#include "platform/bus/PrivateBus.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QMap>
#include <QThread>

#include <atomic>

// Answers for a service on the bus, and remembers what was asked.
class Peer final : public QDBusVirtualObject
{
public:
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        asked.append(message);
        return isSilent
            || connection.send(isRefusing ? message.createErrorReply(QDBusError::AccessDenied, {})
                                          : message.createReply());
    }

    QList<QDBusMessage> asked;
    bool isSilent = false;
    bool isRefusing = false;
};

// What one start recorded; the arguments with bars between them.
using StartRecord = QMap<QByteArray, QByteArray>;

class LaunchSession final
{
public:
    LaunchSession()
    {
        qputenv("HOME", QFile::encodeName(tree.addFolder(u"home"_s)));
        const QByteArray records = QFile::encodeName(tree.addFolder(u"records"_s));
        program = tree.add(u"My-Program.AppImage"_s,
            "#!/bin/sh\n{ echo pid $$; echo folder $(pwd -P); echo \"id $DESKTOP_STARTUP_ID\"\n"
            "echo \"token $XDG_ACTIVATION_TOKEN\"; echo \"bus $DBUS_SESSION_BUS_ADDRESS\"\n"
            "echo \"entry $GIO_LAUNCHED_DESKTOP_FILE\"\n"
            "for a in \"$@\"; do printf 'arguments %s\\n' \"$a\"; done\n"
            "echo session $(cut -d' ' -f6 /proc/$$/stat)\n"
            "echo \"leaked $(readlink /proc/$$/fd/100)\"\n"
            "while read key value; do echo ${key%:} $value; done </proc/$$/status; } >"
                + records + "/.$$\nmv " + records + "/.$$ " + records + "/$$\n",
            0755);
        exec = "Exec=" + QFile::encodeName(program);
        _connection = QDBusConnection::connectToBus(
            qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), u"peers"_s);
    }
    ~LaunchSession() { QDBusConnection::disconnectFromBus(u"peers"_s); }
    Q_DISABLE_COPY_MOVE(LaunchSession)

    // Gives a service its place on the bus.
    void add(Peer &peer, const QString &service, const QString &path)
    {
        QVERIFY(_connection.registerVirtualObject(path, &peer));
        QVERIFY(_connection.registerService(service));
    }
    QString addEntry(const QString &name, const QByteArray &lines)
    {
        return tree.add(
            u"data/applications/"_s + name, "[Desktop Entry]\nType=Application\nName=A\n" + lines);
    }
    // The records of the next starts, once there are so many; forgets them.
    QList<StartRecord> started(int count) const
    {
        const QDir folder(tree.path(u"records"_s));
        const auto names = [&] { return folder.entryList(QDir::Files); };
        QList<StartRecord> all;
        if (!QTest::qWaitFor([&] { return names().size() >= count; }, 10'000)) {
            return all;
        }
        for (const QString &name : names()) {
            StartRecord &record = all.emplaceBack();
            QFile file(folder.filePath(name));
            const bool isOpen = file.open(QIODevice::ReadOnly);
            for (const QByteArray &line : isOpen ? file.readAll().split('\n') : QByteArrayList()) {
                const QByteArray key = line.left(line.indexOf(' '));
                const QByteArray before = record.contains(key) ? record[key] + '|' : QByteArray();
                record[key] = before + line.mid(key.size() + 1);
            }
            file.remove();
        }
        return all;
    }
    // As the program does: on threads, with the event loop running here.
    template <typename Function> static bool runOnThreads(int count, Function function)
    {
        std::vector<std::unique_ptr<QThread>> threads;
        std::atomic<int> succeeded = 0;
        for (int i = 0; i < count; ++i) {
            threads.emplace_back(QThread::create([&, i] { succeeded += function(i) ? 1 : 0; }))
                ->start();
        }
        const auto isDone = [](const auto &thread) { return thread->isFinished(); };
        return QTest::qWaitFor(
                   [&] { return std::all_of(threads.begin(), threads.end(), isDone); }, 30'000)
            && succeeded == count;
    }

    FileTree tree { u"launch"_s };
    PrivateBus bus;
    QString program;
    QByteArray exec;

private:
    QDBusConnection _connection { QString() };
};

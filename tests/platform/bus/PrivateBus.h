// A session bus for the length of a test, which the environment names. One follows another at the
// same address, since the bus library reads that once in the life of a process.

#pragma once

#include <QProcess>
#include <QTemporaryDir>

class PrivateBus final
{
public:
    PrivateBus()
    {
        static const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("bus"));
        const QString address = QStringLiteral("unix:path=") + path;
        qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
        QFile::remove(path);
        _daemon.start(QStringLiteral("dbus-daemon"),
            { QStringLiteral("--session"), QStringLiteral("--nofork"),
                QStringLiteral("--print-address"), QStringLiteral("--address"), address });
        if (!_daemon.waitForReadyRead()) {
            qFatal("no bus: %s", _daemon.readAllStandardError().constData());
        }
    }
    ~PrivateBus() { end(); }
    Q_DISABLE_COPY_MOVE(PrivateBus)

    // As a bus that crashes; its address goes on standing in the environment.
    void end()
    {
        _daemon.kill();
        _daemon.waitForFinished();
    }

private:
    QProcess _daemon;
};

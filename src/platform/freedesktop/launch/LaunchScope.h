// Accounting of what was started: where the user's services are managed by systemd, a program gets
// a unit of its own, or it would count as part of ours and end with it.

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

class SessionBus;

namespace LaunchScope {

struct Program
{
    // The absolute path of its entry or bundle.
    QString path;
    QString name;
};

// The name that an application goes by in the names of units: its entry's ID, or the name of its
// bundle, without the extension.
QString applicationId(const QString &path);

QByteArray unitName(const QString &applicationId, qint64 pid);

// Puts each process into a unit of its own. Takes a second at most, and never starts systemd;
// without it, or without a bus, nothing happens. Writes a debug line when a unit is refused. May be
// called from any thread.
void move(const SessionBus &bus, const Program &program, const QList<qint64> &pids);

} // namespace LaunchScope

// The file below the user's preferences: read at start, watched, and changed key by key under a
// lock.
//
// values() is what the file held when it was last read or written. A file that turns up damaged
// while the program runs changes nothing: it may be half written. It is set aside at start and
// before a write of our own, never otherwise. Main thread only.

#pragma once

#include "support/UserDefaults.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <memory>

class FileWatch;

class DefaultsFile final : public QObject
{
    Q_OBJECT

public:
    // Keys and their new values; an invalid value removes the key.
    using Changes = QHash<QString, QVariant>;

    // With an empty path or Writing::Never changes are kept in memory. Only a file that may be
    // written is watched, and only while there is an application.
    DefaultsFile(const QString &path, UserDefaults::Writing writing);
    ~DefaultsFile() override;

    const QVariantMap &values() const { return _values; }

    // Reads the file again, changes the keys and writes it; values() then also has what others
    // changed, for which no signal comes. False and one log line when the file cannot be written:
    // values() stays, and `error` receives the reason.
    bool apply(const Changes &changes, QString *error);

Q_SIGNALS:
    void changedOutside();

private:
    void readAgain();
    bool applyLocked(const Changes &changes, QString *error);

    QString _path;
    UserDefaults::Writing _writing = UserDefaults::Writing::Allowed;
    QVariantMap _values;
    std::unique_ptr<FileWatch> _watch;
};

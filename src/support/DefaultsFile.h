// The file below the user's preferences: read at start, watched, and changed key by key under a
// lock.
//
// Changes count at once and are written on a thread of its own, shortly after the last one. A write
// reads the file again, changes the keys and replaces it; changes that cannot be written go along
// with the next write. A file that turns up damaged while the program runs changes nothing: it may
// be half written. It is set aside at start and before a write of our own, never otherwise. Main
// thread only.

#pragma once

#include "support/UserDefaults.h"
#include "support/files/WriteBehind.h"

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
    // Writes what has not been tried yet.
    ~DefaultsFile() override;

    // What the file held when it was last read or written, and above it what is not written yet.
    const QVariantMap &values() const { return _values; }
    // A change of the key waits for a write, for the first time or after one that failed.
    bool isWaiting(const QString &key) const { return _waiting.contains(key); }

    // An invalid value removes the key.
    void change(const QString &key, const QVariant &value);
    // Writes everything that is not written yet. False when that fails.
    bool synchronize();
    // Asks for another write when one failed.
    void writeAgain();

Q_SIGNALS:
    // The watch found that another program changed the file.
    void changedOutside();
    // A write succeeded; values() now has what others changed as well.
    void written();
    // A write failed, after one log line.
    void writeFailed(const QString &reason);

private:
    struct Outcome;

    void readAgain();
    WriteBehind::Job nextJob();
    static Outcome write(const QString &path, const Changes &changes, const QVariantMap &known);
    static Outcome writeLocked(
        const QString &path, const Changes &changes, const QVariantMap &known);
    void conclude(const Outcome &outcome);

    QString _path;
    UserDefaults::Writing _writing = UserDefaults::Writing::Allowed;
    QVariantMap _values;
    Changes _waiting;
    // Given to the write that goes on.
    Changes _onTheWay;
    // The watch reported a change meanwhile, which may be that write.
    bool _isReadingDue = false;
    bool _isLastWriteGood = true;
    std::unique_ptr<FileWatch> _watch;
    WriteBehind _writer { [this] { return nextJob(); } };
};

// The user's preferences: stored values above registered defaults.
//
// A value for this run (--set) stands above a stored one and is never written. Keys of stored
// values that are not registered are kept as they are: they may belong to another version. The file
// is an XML property list; a change that another program makes to it is noticed and announced like
// one made here. Changes made here count at once; the file is written on another thread, 200 ms
// after the last of several and at most a second after the first. Writing happens under a lock
// beside the file and re-reads it first, so that two programs do not undo each other. The type of a
// registered default is the type of its preference: values are given in it. Main thread only.

#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>

#include <memory>

class QColor;

class UserDefaults : public QObject
{
    Q_OBJECT

public:
    enum class Writing { Allowed, Never };

    // Without a path the values live in memory alone. With Writing::Never the file is read once,
    // changes stay in memory, and nothing is ever created, moved or written.
    explicit UserDefaults(
        const QString &path = {}, Writing writing = Writing::Allowed, QObject *parent = nullptr);
    // Writes the changes that have not been tried yet, and waits for that.
    ~UserDefaults() override;

    // The preferences that the whole program reads; in memory until setStandard() names others,
    // which the caller keeps owning. Null, and the end of those others, go back to the ones in
    // memory.
    static UserDefaults &standard();
    static void setStandard(UserDefaults *defaults);

    // Adds defaults below every stored value. A later registration of the same key wins.
    void registerDefaults(const QVariantMap &defaults);
    // The same for what the program remembers of itself or of this computer: it is kept among the
    // preferences, but is no choice that a user would take elsewhere.
    void registerState(const QVariantMap &defaults);

    // The value in force, or an invalid one. A stored value whose type cannot stand for the type of
    // the registered default is not used: one log line, and the default holds.
    QVariant objectForKey(const QString &key) const;
    // These convert as QVariant does; 0, false or empty when there is no value.
    bool boolForKey(const QString &key) const;
    qint64 integerForKey(const QString &key) const;
    float floatForKey(const QString &key) const;
    double doubleForKey(const QString &key) const;
    QString stringForKey(const QString &key) const;
    QVariantList arrayForKey(const QString &key) const;
    // A text as colorFromText() reads it. One that is no colour is not used: one log line, and the
    // registered default holds. Invalid when that is none either.
    QColor colorForKey(const QString &key) const;

    // The registered default; invalid for a key that is not registered.
    QVariant defaultForKey(const QString &key) const;
    // Every registered key, sorted.
    QStringList registeredKeys() const;
    // Whether registerState() registered it.
    bool isState(const QString &key) const;
    // Invalid when there is none. One that objectForKey() does not use is among them.
    QVariant storedValue(const QString &key) const;
    bool hasStoredValue(const QString &key) const { return storedValue(key).isValid(); }
    // Whether a value may stand for the preference: its type fits and, where the default is a
    // colour, it is one.
    bool isUsable(const QString &key, const QVariant &value) const;

    // Stores a value and announces the change; the file follows. Nothing happens when the same
    // value is stored already. False and one log line, and nothing changed, for a value of the
    // wrong type or one that a property list cannot hold. An invalid value removes the key.
    //
    // When the file cannot be written, which costs one log line, the value holds until the program
    // ends, the next write takes it along, and the user is told of the first such failure.
    bool setObject(const QString &key, const QVariant &value);
    void removeObject(const QString &key);

    // Writes at once what is not written yet, what failed before included, and waits for that.
    // False when it fails. Happens by itself when the event loop of the application ends.
    bool synchronize();
    // Has what could not be written tried once more, on the other thread; costs nothing where there
    // is no such thing.
    void writeAgain();

    // Why the last try to write the file failed; empty when it did not.
    const QString &writeProblem() const;

    // Overrides a value until the program ends, by the same rule of types; an invalid one lifts it
    // again.
    void setObjectForThisRun(const QString &key, const QVariant &value);
    bool isFixedForThisRun(const QString &key) const;

Q_SIGNALS:
    // The value in force of a key has changed; values are the ones in force, defaults included.
    void changed(const QString &key, const QVariant &oldValue, const QVariant &newValue);
    void writeProblemChanged();

private:
    void announceChanges();
    void setWriteProblem(const QString &reason);

    class Private;
    std::unique_ptr<Private> d;
};

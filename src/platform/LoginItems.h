// The programs that the desktop starts when the user logs in.
//
// The base class is a desktop that starts none. Main thread only.

#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

// A program as it is started at login.
struct LoginItem
{
    // The program's desktop ID, without `.desktop`.
    QString id;
    // What people read in the settings of their session.
    QString name;
    // A name in the icon theme.
    QString icon;
    // An absolute path.
    QString program;
    QStringList arguments;
};

class LoginItems : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Whether the next login starts the program, be it with these arguments or with others.
    virtual bool contains(const LoginItem & /*item*/) const { return false; }

    // Has the next login start the program, or not. Returns the reason for a failure, which the
    // log has then as well; empty when it is done, or was before.
    virtual QString setContained(const LoginItem & /*item*/, bool isContained)
    {
        return isContained ? QStringLiteral(
                   QT_TRANSLATE_NOOP("Reason", "this desktop starts no programs at login"))
                           : QString();
    }

    // While watched, changed() is emitted. Off at first.
    virtual void setWatched(bool /*isWatched*/) { }

Q_SIGNALS:
    // The items may have changed, whichever program has changed them.
    void changed();
};

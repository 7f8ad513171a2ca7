// How much each application was used of late, in a file that only the user may read.
//
// Each use counts one, and half as much three weeks later. Of an application one number is kept,
// the moment at which its uses come to one: it grows with each use and need not be touched as time
// goes on, and the greater number is the greater use. The file holds paths and these numbers and
// nothing else, of the applications that were used most. It is read when it is first needed and
// written shortly after a use. Main thread only.

#pragma once

#include "support/files/WriteBehind.h"

#include <QHash>
#include <QObject>
#include <QString>

class UseCounts final : public QObject
{
    Q_OBJECT

public:
    // In seconds.
    static constexpr double HalfLife = 21 * 24 * 3600;
    // What is used least is forgotten beyond that.
    static constexpr qsizetype MostPaths = 500;

    // Without a path nothing is kept; the folder is made when something is written.
    explicit UseCounts(QString path, QObject *parent = nullptr);
    // Writes what is not written yet.
    ~UseCounts() override;

    // While they are off nothing is noted, read or told. They are off at first.
    void setOn(bool isOn);

    // Reads the file now, so that the first question need not.
    void read();
    // The more the greater; 0 for what was not used. Only the order of two numbers means anything.
    double of(const QString &path);
    // The application was used at this time, in seconds since 1970.
    void note(const QString &path, double now);
    // Forgets everything, the file included; also while they are off.
    void forget();

private:
    void dropLeast();
    WriteBehind::Job nextJob();

    QString _path;
    bool _isOn = false;
    bool _isRead = false;
    // A file that cannot be moved out of the way stays as it is.
    bool _mayWrite = true;
    QHash<QString, double> _moments;
    WriteBehind _writer { [this] { return nextJob(); } };
};

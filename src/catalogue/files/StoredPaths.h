// One list of the user's paths, and the file in which it outlives the program.
//
// The list holds everything that the file holds, also what is not found on any disk today, with the
// changes of this program that are not written yet. What other programs change in the file is taken
// over whenever it is read, and before it is written. A file that is gone or damaged while the
// program runs takes nothing away. The former content of the file stays beside it for a day.

#pragma once

#include "catalogue/files/PathFile.h"

#include <utility>

class StoredPaths final
{
public:
    enum class Writing { Allowed, Never };

    StoredPaths(QString path, PathFile::Shape shape, Writing writing);

    const QString &path() const { return _path; }
    const PathBunches &paths() const { return _paths; }
    // Whether there has ever been anything to read or to restore.
    bool isKnown() const { return _isKnown; }
    bool isUnwritten() const { return _isUnwritten; }

    // Reads the file. One that is damaged is set aside; what remains of it is to be written again.
    // One log line.
    void read();
    // Reads a file that another program may just be changing: a damaged one is left alone.
    void readAgain();
    // Reads what the file was before.
    PathBunches former() const;

    // Takes over the list as it stands in memory, which may leave out whatever it likes: the paths
    // that are new in it come in, and of the others only the changed ones are moved or removed.
    void change(const PathBunches &mine, const QSet<QString> &changed);
    // Adds what is to be written with the next change, but does not ask for it.
    void add(const QStringList &paths);
    // Puts all of these into a list that has been lost.
    void restore(const PathBunches &paths);

    // Brings file and list together; the caller holds the folder's lock. False and one log line
    // when the file cannot be written: the list stays as it is and is tried again. `error` receives
    // the reason.
    bool write(QString *error);

    // Whether another program has changed the list since the last call of the second.
    bool isChangedOutside() const { return _isChangedOutside; }
    bool takeOutsideChange() { return std::exchange(_isChangedOutside, false); }

private:
    void setPaths(const PathBunches &paths);
    void takeOver(const PathBunches &theirs);

    QString _path;
    PathFile::Shape _shape;
    Writing _writing;
    PathBunches _paths;
    // What the file held last, in the same form.
    PathBunches _inFile;
    // By this program, since then.
    QSet<QString> _changed;
    bool _isKnown = false;
    bool _isUnwritten = false;
    bool _isChangedOutside = false;
};

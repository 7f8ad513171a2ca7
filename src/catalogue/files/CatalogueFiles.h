// The files in which the catalogue's lists outlive the program: property lists that hold paths, and
// one that holds colours by paths.
//
// Exclusions, favourites and colours are the user's: StoredPaths and StoredColors keep them, they
// are written under the lock of their folder, and whatever cannot be written is written with the
// next change of its kind, by writeAgain(), or at the end. The scan result is replaced as a whole,
// since a scan can make it again. A file that cannot be read, or has
// another shape, is set aside and never overwritten. Each such case is one log line. Main thread
// only.

#pragma once

#include "catalogue/files/StoredColors.h"
#include "catalogue/files/StoredPaths.h"
#include "platform/SearchPaths.h"

#include <QObject>

#include <array>
#include <functional>
#include <memory>

class FileWatch;

class CatalogueFiles final : public QObject
{
    Q_OBJECT

public:
    using Writing = StoredPaths::Writing;
    enum class List { ExcludedApps, UserApps, UserApps1D };

    struct Change
    {
        List list;
        // As in memory; see StoredPaths::change().
        PathBunches paths;
        QSet<QString> changed;
    };

    // The files are watched where they may be written and while there is an application.
    explicit CatalogueFiles(const SearchPaths &searchPaths, Writing writing = Writing::Allowed);
    ~CatalogueFiles() override;

    // The program's own folder in each domain; the temporary folder stands in for a missing one.
    static QString userFolder(const SearchPaths &searchPaths);
    QString userApplicationSupportFolder() const;
    QString localApplicationSupportFolder() const;

    // Empty when there is no file that can be used.
    PathBunches readAllApps();
    // A file that holds the same is left alone.
    void writeAllApps(const PathBunches &bunches);

    // Reads the user's exclusions and those for everybody.
    void readExclusions();
    // Reads both orders of the favourites. One that is lost is made again from the other, and both
    // from what they were before, which the user is told.
    //
    // A program may have been killed between the two: which applications are favourites is then
    // what the bunches say, which are written first.
    void readFavourites();

    // Whether there is a file of the list, or was one that is restored.
    bool isKnown(List list) const { return at(list).isKnown(); }
    const PathBunches &stored(List list) const { return at(list).paths(); }
    // Whether another program has changed the list since the last call of the second.
    bool isChangedOutside(List list) const { return at(list).isChangedOutside(); }
    bool takeOutsideChange(List list) { return at(list).takeOutsideChange(); }

    // Takes over what changed in lists that belong together, and writes them. When they cannot be
    // written the user is told, once until they can.
    void store(const QList<Change> &changes);
    // Tries once more to write what could not be written; costs nothing where there is no such
    // thing.
    void writeAgain();

    // The colours that the user gave to applications.
    void readColors();
    const StoredColors::Colors &colors() const { return _colors.colors(); }
    bool takeOutsideChangeOfColors() { return _colors.takeOutsideChange(); }
    // Takes over what changed, and writes it, likewise.
    void storeColors(const StoredColors::Change &change);

Q_SIGNALS:
    // Another program has changed a list, or the colours.
    void changedOutside();

private:
    StoredPaths &at(List list) { return _lists[size_t(list)]; }
    const StoredPaths &at(List list) const { return _lists[size_t(list)]; }
    bool restoreFormer(List list);
    static void sayRestored(const QString &path, const QString &whatIsLost);
    void restoreOrder(List lost, List other);
    void completeFlatOrder();
    void completeBunches();
    void readAgain();
    void write();
    void writeColors();
    void whileLocked(QString *error, const std::function<void()> &write) const;
    void sayNotKept(const QString &what, const QString &error, bool &isTold);

    const SearchPaths &_searchPaths;
    Writing _writing;
    // In the order in which they are written.
    std::array<StoredPaths, 3> _lists;
    std::unique_ptr<FileWatch> _watch;
    bool _isFailureTold = false;
    StoredColors _colors;
    bool _isFailureOfColorsTold = false;
};

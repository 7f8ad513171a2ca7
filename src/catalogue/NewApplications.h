// Which applications are new: a scan found them and the scan before it did not, and they have been
// neither launched nor seen running since.
//
// Nothing is new on the first start, nor where the scan before did not look because the folders to
// scan or the depth were others. An application that is hidden for a while, or lies on a disk that
// is away, is not new when it is back; nor is a copy by which the user replaces an application, see
// Items::standInFor(), except that it is new when the application was. What vanishes is forgotten.
//
// The set outlives the program as a preference, since a change of these is announced, written on
// another thread and merged with those of other programs. Main thread only.

#pragma once

#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

class Items;

class NewApplications final : public QObject
{
    Q_OBJECT

public:
    // Where a scan looks: folders in standard form, and how many levels of each; see FolderWalk.
    struct Reach
    {
        QStringList folders;
        int depth = 0;

        bool covers(const QString &path) const;
    };

    // The items outlive this.
    explicit NewApplications(const Items &items);

    // To be called before one is made.
    static void registerDefaults();

    bool contains(const QString &path) const { return _paths.contains(path); }

    // What the saved result of the last scan holds. Not to be called where there is none.
    void setLastFound(const QStringList &paths);
    // A scan has ended.
    void scanned(const QStringList &found, const Reach &reach);
    // They are launched or run.
    void remove(const QStringList &paths);

Q_SIGNALS:
    // These have become new, or are no longer.
    void changed(const QStringList &paths);

private:
    void preferenceDidChange(const QString &key);
    QSet<QString> withStandIns(const QSet<QString> &paths) const;

    const Items &_items;
    QSet<QString> _paths;
    // What the last scan found and what it would have found but for being hidden or away; empty
    // before the first scan.
    std::optional<QSet<QString>> _known;
};

// The files in which the catalogue's lists outlive the program: property lists that hold paths.
//
// A file that cannot be read, or has another shape, is set aside and never overwritten; from a file
// in which only some entries are no paths, those are left out and what remains is written again.
// Each such case is one log line.

#pragma once

#include "platform/SearchPaths.h"

#include <QList>
#include <QSet>
#include <QStringList>
#include <QVariant>

#include <optional>

class CatalogueFiles
{
public:
    using Domain = SearchPaths::Domain;
    enum class Writing { Allowed, Never };
    enum class Shape { Flat, Bunched };

    // The paths in a file, in stored order. Only the member of the shape that was asked for is
    // filled; an empty file array is both.
    struct PathArrays
    {
        QStringList flat;
        QList<QStringList> bunched;
    };

    explicit CatalogueFiles(const SearchPaths &searchPaths, Writing writing = Writing::Allowed);

    // The program's own folder in each domain; the temporary folder stands in for a missing one.
    QString userApplicationSupportFolder() const { return folder(Domain::User); }
    QString localApplicationSupportFolder() const { return folder(Domain::Local); }

    // Empty when there is no such file, or nothing in it can be used.
    std::optional<PathArrays> readPathArrays(const QString &fileName, Domain inDomain, Shape shape);

    // Whether a file was found damaged since this object was made.
    bool wasDamaged(const QString &fileName) const { return _damaged.contains(fileName); }

    // False and one log line when the file could not be written. A file that was damaged and could
    // not be moved away is not written either, which the log knows already.
    bool writePaths(const QStringList &paths, const QString &fileName);
    bool writePathArrays(const QList<QStringList> &bunches, const QString &fileName);

private:
    QString folder(Domain domain) const;
    bool write(const QVariantList &array, const QString &fileName);
    void reportDamage(const QString &fileName, Domain domain, const QString &reason,
        const QVariantList &remaining);

    const SearchPaths &_searchPaths;
    Writing _writing;
    QSet<QString> _damaged;
    // Damaged files that could not be moved away.
    QSet<QString> _untouchable;
};

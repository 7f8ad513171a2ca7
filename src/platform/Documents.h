// Which applications open which documents. The base class knows of none.
//
// A question is asked for many applications at once, and answered with those of their paths that
// qualify. It may come from any thread.

#pragma once

#include <QSet>
#include <QString>
#include <QStringList>
#include <QUrl>

class Documents
{
public:
    virtual ~Documents() = default;

    // Those that are able to open the document: by what they say of themselves, if only of a more
    // general type, or because the user has associated them with it.
    virtual QSet<QString> applicationsThatAccept(
        const QUrl &document, const QStringList &bundlePaths) const;

    // Those that are meant for the document: its default application, what the user has associated
    // with its type, and what names that very type. What the user has dissociated from it is not.
    virtual QSet<QString> applicationsThatPrefer(
        const QUrl &document, const QStringList &bundlePaths) const;
};

// Which applications open which documents. The base class knows of none.

#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

class Documents
{
public:
    virtual ~Documents() = default;

    // Whether the application at a path is able to open the document, by what it says of itself.
    virtual bool canAccept(const QString &bundlePath, const QUrl &document) const;

    // The paths of the applications that claim the document, the preferred one first.
    virtual QStringList applicationsFor(const QUrl &document) const;
};

// The associations of documents and applications that GIO reads from the MIME tables.
//
// A local document's type is told by its name and content, any other one's by the scheme of its
// URL.

#pragma once

#include "platform/Documents.h"

class FreedesktopDocuments final : public Documents
{
public:
    bool canAccept(const QString &bundlePath, const QUrl &document) const override;
    QStringList applicationsFor(const QUrl &document) const override;
};

// Documents of pages that are shown within the program.
//
// The base class is a system that can show none.

#pragma once

#include <QImage>
#include <QSizeF>
#include <QString>

#include <memory>

class PagedDocument
{
public:
    PagedDocument() = default;
    virtual ~PagedDocument() = default;
    Q_DISABLE_COPY_MOVE(PagedDocument)

    virtual int pageCount() const = 0;
    // In points, of which 72 are an inch. Pages are counted from 0.
    virtual QSizeF pageSize(int page) const = 0;
    // What the page says, for screen readers.
    virtual QString text(int page) const = 0;
    // The page on white, of this size in pixels.
    virtual QImage image(int page, const QSize &size) const = 0;
};

class PageRenderer
{
public:
    PageRenderer() = default;
    virtual ~PageRenderer() = default;
    Q_DISABLE_COPY_MOVE(PageRenderer)

    // Null, after one log line, for a file that is no such document, and where none can be shown.
    virtual std::unique_ptr<PagedDocument> open(const QString &path) const;
};

// The module that reads PDF. The program loads it when a document is opened: Qt's library for that
// is larger than all of Ortu, and most runs show no document.

#include "platform/PageRenderer.h"

#include <QPainter>
#include <QPdfDocument>
#include <QPdfSelection>

namespace {

class PdfPages final : public PagedDocument
{
public:
    bool load(const QString &path)
    {
        return _document.load(path) == QPdfDocument::Error::None && pageCount() > 0;
    }
    int pageCount() const override { return _document.pageCount(); }
    QSizeF pageSize(int page) const override { return _document.pagePointSize(page); }
    QString text(int page) const override
    {
        return const_cast<QPdfDocument &>(_document).getAllText(page).text();
    }
    QImage image(int page, const QSize &size) const override
    {
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter(&image).drawImage(0, 0, const_cast<QPdfDocument &>(_document).render(page, size));
        return image;
    }

private:
    QPdfDocument _document;
};

} // namespace

// The caller owns what it gives; null when the file is no PDF that can be read.
extern "C" Q_DECL_EXPORT PagedDocument *ortuOpenPages(const QString &path)
{
    auto pages = std::make_unique<PdfPages>();
    return pages->load(path) ? pages.release() : nullptr;
}

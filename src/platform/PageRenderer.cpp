#include "platform/PageRenderer.h"

#include "platform/Log.h"

std::unique_ptr<PagedDocument> PageRenderer::open(const QString &path) const
{
    qCWarning(lcPlatform, "cannot show %s: this desktop shows no pages", qUtf8Printable(path));
    return nullptr;
}

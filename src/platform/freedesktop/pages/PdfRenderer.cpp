#include "platform/freedesktop/pages/PdfRenderer.h"

#include "platform/freedesktop/base/Log.h"
#include "platform/freedesktop/base/ProgramModule.h"

std::unique_ptr<PagedDocument> PdfRenderer::open(const QString &path) const
{
    using OpenPages = PagedDocument *(*)(const QString &path);
    static const auto openPages = reinterpret_cast<OpenPages>(
        ProgramModule::resolve(QStringLiteral("ortu-pages"), "ortuOpenPages", "documents"));
    if (openPages == nullptr) {
        return nullptr;
    }
    std::unique_ptr<PagedDocument> document(openPages(path));
    if (!document) {
        qCWarning(lcPlatform, "cannot show %s: it is no document of pages", qUtf8Printable(path));
    }
    return document;
}

#include "platform/freedesktop/pages/PdfRenderer.h"

#include "platform/freedesktop/base/Log.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLibrary>
#include <QStringList>

namespace {

using OpenPages = PagedDocument *(*)(const QString &path);

// Beside the program in the folder it was built in, and where it is installed.
OpenPages loadModule()
{
    const QString folder = QCoreApplication::applicationDirPath() + QLatin1Char('/');
    for (const QString &place : { folder + QStringLiteral(ORTU_PAGES_BUILT),
             folder + QStringLiteral(ORTU_PAGES_INSTALLED) }) {
        if (QFileInfo::exists(place)) {
            QLibrary module(place);
            if (const QFunctionPointer open = module.resolve("ortuOpenPages")) {
                return reinterpret_cast<OpenPages>(open);
            }
            qCWarning(lcPlatform, "no documents: %s", qUtf8Printable(module.errorString()));
            return nullptr;
        }
    }
    qCWarning(lcPlatform, "no documents: the module %s is missing", ORTU_PAGES_BUILT);
    return nullptr;
}

} // namespace

std::unique_ptr<PagedDocument> PdfRenderer::open(const QString &path) const
{
    static const OpenPages openPages = loadModule();
    if (openPages == nullptr) {
        return nullptr;
    }
    std::unique_ptr<PagedDocument> document(openPages(path));
    if (!document) {
        qCWarning(lcPlatform, "cannot show %s: it is no document of pages", qUtf8Printable(path));
    }
    return document;
}

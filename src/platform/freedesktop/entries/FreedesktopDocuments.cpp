#include "platform/freedesktop/entries/FreedesktopDocuments.h"

#include "platform/freedesktop/base/DocumentFile.h"
#include "platform/freedesktop/base/GioPointer.h"

#include <QFile>
#include <QFileInfo>

#include <gio/gdesktopappinfo.h>

namespace {

// Empty when nothing can be told.
QByteArray contentTypeOf(const QUrl &document)
{
    if (!document.isLocalFile()) {
        const QString scheme = document.scheme();
        return scheme.isEmpty() ? QByteArray() : "x-scheme-handler/" + scheme.toLatin1();
    }
    const GioPointer<GFile> file(g_file_new_for_path(fileNameOf(document).constData()));
    const GioPointer<GFileInfo> info(g_file_query_info(file.get(),
        G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE, G_FILE_QUERY_INFO_NONE, nullptr, nullptr));
    return info ? QByteArray(g_file_info_get_content_type(info.get())) : QByteArray();
}

QString entryPathOf(GAppInfo *application)
{
    return G_IS_DESKTOP_APP_INFO(application)
        ? QFile::decodeName(g_desktop_app_info_get_filename(G_DESKTOP_APP_INFO(application)))
        : QString();
}

// The entries of a list of applications, which is used up.
QStringList takeEntryPaths(GList *applications)
{
    QStringList paths;
    for (const GList *link = applications; link != nullptr; link = link->next) {
        paths.append(entryPathOf(G_APP_INFO(link->data)));
    }
    g_list_free_full(applications, g_object_unref);
    paths.removeAll(QString());
    return paths;
}

// Whether the entry itself claims the type or one that it is a kind of.
bool claims(const QString &bundlePath, const QByteArray &contentType)
{
    const GioPointer<GDesktopAppInfo> application(
        g_desktop_app_info_new_from_filename(QFile::encodeName(bundlePath).constData()));
    if (!application) {
        return false;
    }
    const char **type = g_app_info_get_supported_types(G_APP_INFO(application.get()));
    for (; type != nullptr && *type != nullptr; ++type) {
        if (g_content_type_is_a(contentType.constData(), *type) != FALSE) {
            return true;
        }
    }
    return false;
}

} // namespace

bool FreedesktopDocuments::canAccept(const QString &bundlePath, const QUrl &document) const
{
    const QByteArray type = contentTypeOf(document);
    const QFileInfo bundle(bundlePath);
    if (type.isEmpty() || !bundlePath.endsWith(QLatin1String(".desktop")) || !bundle.isFile()) {
        return false;
    }
    if (claims(bundlePath, type)) {
        return true;
    }
    // The user may have associated them, wherever the entry's own list stands to it.
    const QString canonical = bundle.canonicalFilePath();
    const QStringList paths = takeEntryPaths(g_app_info_get_all_for_type(type.constData()));
    return std::any_of(paths.begin(), paths.end(), [&canonical](const QString &path) {
        return QFileInfo(path).canonicalFilePath() == canonical;
    });
}

QStringList FreedesktopDocuments::applicationsFor(const QUrl &document) const
{
    const QByteArray type = contentTypeOf(document);
    if (type.isEmpty()) {
        return {};
    }
    QStringList paths;
    const GioPointer<GAppInfo> preferred(g_app_info_get_default_for_type(type.constData(), FALSE));
    if (preferred) {
        paths.append(entryPathOf(preferred.get()));
    }
    paths += takeEntryPaths(g_app_info_get_recommended_for_type(type.constData()));
    paths += takeEntryPaths(g_app_info_get_all_for_type(type.constData()));
    paths.removeAll(QString());
    paths.removeDuplicates();
    return paths;
}

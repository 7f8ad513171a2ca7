#include "platform/freedesktop/entries/FreedesktopDocuments.h"

#include "platform/freedesktop/base/DocumentFile.h"
#include "platform/freedesktop/base/FileState.h"
#include "platform/freedesktop/base/GioPointer.h"
#include "platform/freedesktop/entries/DesktopEntryIndex.h"
#include "platform/freedesktop/entries/TypeAssociations.h"

#include <QFile>
#include <QHash>

#include <gio/gdesktopappinfo.h>

namespace {

const QByteArray schemeTypes = "x-scheme-handler/";

// Empty when nothing can be told: the file is gone, say.
QByteArray contentTypeOf(const QUrl &document)
{
    if (!document.isLocalFile()) {
        const QString scheme = document.scheme();
        return scheme.isEmpty() ? QByteArray() : schemeTypes + scheme.toLatin1();
    }
    const QByteArray name = fileNameOf(document);
    if (!name.startsWith('/') || name.contains('\0')) {
        return {};
    }
    // Opens regular files alone, so that a pipe keeps no one waiting.
    const GioPointer<GFile> file(g_file_new_for_path(name.constData()));
    const GioPointer<GFileInfo> info(g_file_query_info(file.get(),
        G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE, G_FILE_QUERY_INFO_NONE, nullptr, nullptr));
    return info ? QByteArray(g_file_info_get_content_type(info.get())) : QByteArray();
}

// What opens a document of the type when the user says no more, be it by a more general type.
QStringList defaultApplication(const QByteArray &type)
{
    const GioPointer<GAppInfo> info(g_app_info_get_default_for_type(type.constData(), FALSE));
    return info && G_IS_DESKTOP_APP_INFO(info.get()) ? QStringList(
               QFile::decodeName(g_desktop_app_info_get_filename(G_DESKTOP_APP_INFO(info.get()))))
                                                     : QStringList();
}

// Compares the type of a document with many others, of which most come again and again.
class TypeComparison final
{
public:
    using Relation = FreedesktopDocuments::Relation;

    TypeComparison(QByteArray type, Relation relation)
        : _type(std::move(type))
        // All but folders would be kinds of application/octet-stream, which no URL is.
        , _relation(_type.startsWith(schemeTypes) ? Relation::SameType : relation)
    { }

    bool holdsFor(const QByteArray &other)
    {
        const auto known = _answers.constFind(other);
        if (known != _answers.constEnd()) {
            return *known;
        }
        const bool holds = _relation == Relation::SameType
            ? g_content_type_equals(_type.constData(), other.constData()) != FALSE
            : g_content_type_is_a(_type.constData(), other.constData()) != FALSE;
        _answers.insert(other, holds);
        return holds;
    }

    // Whether it holds for one of the types between semicolons.
    bool holdsForAny(const QByteArray &types)
    {
        for (qsizetype start = 0; start < types.size();) {
            const qsizetype semicolon = types.indexOf(';', start);
            const qsizetype end = semicolon < 0 ? types.size() : semicolon;
            const QByteArray type = types.mid(start, end - start).trimmed();
            if (!type.isEmpty() && holdsFor(type)) {
                return true;
            }
            start = end + 1;
        }
        return false;
    }

private:
    const QByteArray _type;
    const Relation _relation;
    QHash<QByteArray, bool> _answers;
};

// Files, by what they are: links lead to entries as well.
class FileSet final
{
public:
    explicit FileSet(const QStringList &paths)
    {
        for (const QString &path : paths) {
            if (const std::optional<FileState> file = FileState::of(path)) {
                _files.insert({ file->device, file->number });
            }
        }
    }
    bool contains(const QString &path) const
    {
        if (_files.isEmpty()) {
            return false;
        }
        const std::optional<FileState> file = FileState::of(path);
        return file && _files.contains({ file->device, file->number });
    }

private:
    QSet<std::pair<quint64, quint64>> _files;
};

} // namespace

FreedesktopDocuments::FreedesktopDocuments(DesktopEntryIndex &entries, QStringList dataFolders)
    : _entries(entries)
    , _dataFolders(std::move(dataFolders))
{ }

QSet<QString> FreedesktopDocuments::applicationsThatAccept(
    const QUrl &document, const QStringList &bundlePaths) const
{
    return applicationsFor(document, bundlePaths, Relation::KindOf);
}

QSet<QString> FreedesktopDocuments::applicationsThatPrefer(
    const QUrl &document, const QStringList &bundlePaths) const
{
    return applicationsFor(document, bundlePaths, Relation::SameType);
}

QSet<QString> FreedesktopDocuments::applicationsFor(
    const QUrl &document, const QStringList &bundlePaths, Relation relation) const
{
    const QByteArray type = contentTypeOf(document);
    if (type.isEmpty()) {
        return {};
    }
    TypeComparison comparison(type, relation);
    const TypeAssociations associations(_dataFolders,
        [&comparison](const QByteArray &other) { return comparison.holdsFor(other); });
    const FileSet associated(associations.added() + defaultApplication(type));
    // An entry that is no longer meant for a type is still able to open it.
    const FileSet withdrawn(
        relation == Relation::SameType ? associations.removed() : QStringList());
    QSet<QString> found;
    for (const QString &path : bundlePaths) {
        const auto entry =
            path.endsWith(QLatin1String(".desktop")) ? _entries.entryAt(path) : nullptr;
        if (entry && entry->kind == DesktopEntry::Kind::Application && !entry->isHidden
            && (associated.contains(path)
                || (comparison.holdsForAny(entry->documentTypes) && !withdrawn.contains(path)))) {
            found.insert(path);
        }
    }
    return found;
}

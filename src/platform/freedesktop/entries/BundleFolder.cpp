#include "platform/freedesktop/entries/BundleFolder.h"

#include "platform/freedesktop/entries/DesktopEntry.h"
#include "support/files/PropertyList.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>

namespace {

// Real ones have some thousand bytes. Reading this much takes a few milliseconds.
constexpr qint64 largestInfo = 256 * 1024;

enum class Layout { None, Contents, Resources, AppDir };

bool hasExtension(const QString &name, QLatin1String extension)
{
    return name.endsWith(extension, Qt::CaseInsensitive) && name.size() > extension.size();
}

QString inFolder(const QString &folder, const QString &name)
{
    return folder + QLatin1Char('/') + name;
}

QString contentsList(const QString &path)
{
    return inFolder(path, QStringLiteral("Contents/Info.plist"));
}

QString resourcesList(const QString &path)
{
    return inFolder(path, QStringLiteral("Resources/Info-gnustep.plist"));
}

QString appRun(const QString &path)
{
    return inFolder(path, QStringLiteral("AppRun"));
}

bool isFile(const QString &path)
{
    return QFileInfo(path).isFile();
}

Layout layoutOf(const QString &path)
{
    if (hasExtension(path, QLatin1String(".AppDir"))) {
        return isFile(appRun(path)) ? Layout::AppDir : Layout::None;
    }
    if (!hasExtension(path, QLatin1String(".app"))) {
        return Layout::None;
    }
    if (isFile(contentsList(path))) {
        return Layout::Contents;
    }
    return isFile(resourcesList(path)) ? Layout::Resources : Layout::None;
}

// A value that has to be the plain name of a file; empty when it is not.
QString fileNameIn(const QString &listPath, const QString &key)
{
    const PropertyList::Document list = PropertyList::readFile(listPath, largestInfo);
    const QString name = list.value.toMap().value(key).toString();
    return name.contains(QLatin1Char('/')) || name.startsWith(QLatin1Char('.')) ? QString() : name;
}

bool isExecutableFile(const QString &path)
{
    const QFileInfo info(path);
    return info.isFile() && info.isExecutable();
}

// Bundles made for other systems hold executables of another format.
bool isForThisSystem(const QString &path)
{
    QFile file(path);
    if (!isExecutableFile(path) || !file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QByteArray start = file.read(4);
    return start
        == "\x7f"
           "ELF"
        || start.startsWith("#!");
}

QString existing(const QString &path)
{
    return isFile(path) ? path : QString();
}

QString iconInAppDir(const QString &path, const QList<QByteArray> &languages)
{
    QString own = existing(inFolder(path, QStringLiteral(".DirIcon")));
    if (!own.isEmpty()) {
        return own;
    }
    const QStringList entries =
        QDir(path).entryList({ QStringLiteral("*.desktop") }, QDir::Files, QDir::Name);
    if (entries.isEmpty()) {
        return {};
    }
    const QString icon =
        DesktopEntry::fromFile(inFolder(path, entries.constFirst()), languages).icon;
    if (icon.isEmpty() || icon.contains(QLatin1Char('/'))) {
        return {};
    }
    for (const char *extension : { "", ".png", ".svg", ".xpm" }) {
        QString file = existing(inFolder(path, icon + QLatin1String(extension)));
        if (!file.isEmpty()) {
            return file;
        }
    }
    return {};
}

} // namespace

bool BundleFolder::isPackageName(const QString &name)
{
    static constexpr std::array extensions { QLatin1String(".app"), QLatin1String(".AppDir"),
        QLatin1String(".bundle"), QLatin1String(".plugin") };
    return std::any_of(extensions.begin(), extensions.end(),
        [&name](QLatin1String extension) { return hasExtension(name, extension); });
}

bool BundleFolder::isApplication(const QString &path)
{
    return layoutOf(path) != Layout::None;
}

QString BundleFolder::executableOf(const QString &path)
{
    switch (layoutOf(path)) {
    case Layout::None:
        break;
    case Layout::AppDir:
        return isExecutableFile(appRun(path)) ? appRun(path) : QString();
    case Layout::Resources: {
        const QString program = inFolder(path, QFileInfo(path).completeBaseName());
        return isExecutableFile(program) ? program : QString();
    }
    case Layout::Contents: {
        const QString name = fileNameIn(contentsList(path), QStringLiteral("CFBundleExecutable"));
        const QString program = inFolder(path, QStringLiteral("Contents/MacOS/") + name);
        return !name.isEmpty() && isForThisSystem(program) ? program : QString();
    }
    }
    return {};
}

QString BundleFolder::iconOf(const QString &path, const QList<QByteArray> &languages)
{
    switch (layoutOf(path)) {
    case Layout::None:
        break;
    case Layout::AppDir:
        return iconInAppDir(path, languages);
    case Layout::Resources: {
        const QString name = fileNameIn(resourcesList(path), QStringLiteral("NSIcon"));
        return name.isEmpty() ? name
                              : existing(inFolder(path, QStringLiteral("Resources/") + name));
    }
    case Layout::Contents: {
        QString name = fileNameIn(contentsList(path), QStringLiteral("CFBundleIconFile"));
        if (!name.isEmpty() && !name.contains(QLatin1Char('.'))) {
            name += QStringLiteral(".icns");
        }
        return name.isEmpty()
            ? name
            : existing(inFolder(path, QStringLiteral("Contents/Resources/") + name));
    }
    }
    return {};
}

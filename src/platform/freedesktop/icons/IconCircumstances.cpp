#include "platform/freedesktop/icons/IconCircumstances.h"

#include "platform/freedesktop/base/Languages.h"
#include "support/files/FileStamp.h"

#include <QDataStream>
#include <QIODevice>

// Far more than a theme has; each is asked for before the first frame.
constexpr qsizetype mostFiles = 4096;

QByteArray IconCircumstances::now(
    const IconPlaces &places, const QString &themeName, const QStringList &files)
{
    QByteArray text;
    QDataStream stream(&text, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << files << themeName << Languages::preferred() << places.desktops << places.configHome
           << places.configDirs << places.baseFolders << places.pixmapFolders;
    for (const QString &file : files.first(std::min(files.size(), mostFiles))) {
        stream << FileStamp::of(file);
    }
    return files.size() > mostFiles ? QByteArray() : text;
}

bool IconCircumstances::areStill(
    const QByteArray &circumstances, const IconPlaces &places, const QString &themeName)
{
    QStringList files;
    QDataStream stream(circumstances);
    stream.setVersion(QDataStream::Qt_6_4);
    stream >> files;
    return stream.status() == QDataStream::Ok && !circumstances.isEmpty()
        && now(places, themeName, files) == circumstances;
}

// Base folders with icon themes and single pictures in a temporary folder.

#pragma once

#include "platform/FileTree.h"
#include "platform/freedesktop/base/IconPlaces.h"

#include <QDirIterator>
#include <QMap>
#include <QtEndian>

class IconThemeFiles final
{
public:
    // Two base folders, the user's first, and one for pictures of no theme.
    IconPlaces places() const
    {
        IconPlaces places;
        places.baseFolders = { _tree.path(QStringLiteral("user")),
            _tree.path(QStringLiteral("base")) };
        places.pixmapFolders = { _tree.path(QStringLiteral("pixmaps")) };
        return places;
    }

    QString path(const QString &relative) const { return _tree.path(relative); }

    // Directories as "path/below:Type:Size[:Min:Max[:Scale]]", parted by blanks; a type of "-"
    // gives none a section.
    void addTheme(const QString &name, const QString &inherits, const QString &directories)
    {
        QStringList paths;
        QString sections;
        for (const QString &directory : directories.split(u' ', Qt::SkipEmptyParts)) {
            const QStringList parts = directory.split(u':');
            paths.append(parts.at(0));
            if (parts.value(1) == u"-") {
                continue;
            }
            sections +=
                QStringLiteral("[%1]\nType=%2\nSize=%3\n").arg(parts[0], parts[1], parts[2]);
            if (parts.size() > 4) {
                sections += QStringLiteral("MinSize=%1\nMaxSize=%2\n").arg(parts[3], parts[4]);
            }
            if (parts.size() > 5) {
                sections += QStringLiteral("Scale=%1\n").arg(parts[5]);
            }
        }
        const QString text = QStringLiteral("# A theme\n[Icon Theme]\nName=Test\nInherits=%1\n"
                                            "Directories=%2\n\n%3")
                                 .arg(inherits, paths.join(u','), sections);
        _tree.add(QStringLiteral("base/%1/index.theme").arg(name), text.toUtf8());
    }

    QString addPicture(const QString &file) { return _tree.add(file, "x"); }

    // Gives each theme the index of what it has now.
    void addCaches() const
    {
        for (const QString &base : places().baseFolders) {
            for (const QString &name : QDir(base).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
                writeCache(base + u'/' + name, cacheOf(base + u'/' + name));
            }
        }
    }

    static void writeCache(const QString &themeFolder, const QByteArray &cache)
    {
        QFile file(themeFolder + QLatin1String("/icon-theme.cache"));
        if (!file.open(QIODevice::WriteOnly) || file.write(cache) != cache.size()) {
            qFatal("cannot write a cache");
        }
    }

    static QByteArray cacheOf(const QString &themeFolder)
    {
        static const QStringList suffixes { QStringLiteral("xpm"), QStringLiteral("svg"),
            QStringLiteral("png") };
        QByteArrayList directories;
        QMap<QByteArray, QMap<int, int>> icons;
        QDirIterator files(themeFolder, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QFileInfo file = files.nextFileInfo();
            if (!suffixes.contains(file.suffix())) {
                continue;
            }
            const QByteArray directory =
                QDir(themeFolder).relativeFilePath(file.path()).toLocal8Bit();
            if (!directories.contains(directory)) {
                directories.append(directory);
            }
            icons[file.completeBaseName().toLocal8Bit()][int(directories.indexOf(directory))] |= 1
                << suffixes.indexOf(file.suffix());
        }
        return cacheOf(directories, icons);
    }

private:
    static QByteArray number16(int number)
    {
        const quint16 big = qToBigEndian(quint16(number));
        return { reinterpret_cast<const char *>(&big), 2 };
    }
    static QByteArray number32(qsizetype number)
    {
        const quint32 big = qToBigEndian(quint32(number));
        return { reinterpret_cast<const char *>(&big), 4 };
    }

    // A table of one bucket, so that every icon but one follows another.
    static QByteArray cacheOf(
        const QByteArrayList &directories, const QMap<QByteArray, QMap<int, int>> &icons)
    {
        QByteArray body;
        const qsizetype start = 12 + 8;
        qsizetype next = 0xffffffff;
        for (auto icon = icons.cbegin(); icon != icons.cend(); ++icon) {
            const qsizetype name = start + body.size();
            body += icon.key() + '\0';
            const qsizetype images = start + body.size();
            body += number32(icon->size());
            for (auto image = icon->cbegin(); image != icon->cend(); ++image) {
                body += number16(image.key()) + number16(image.value()) + number32(0);
            }
            const qsizetype record = start + body.size();
            body += number32(next) + number32(name) + number32(images);
            next = record;
        }
        QByteArray list = number32(directories.size());
        for (const QByteArray &directory : directories) {
            list += number32(start + body.size());
            body += directory + '\0';
        }
        return number16(1) + number16(0) + number32(12) + number32(start + body.size())
            + number32(1) + number32(next) + body + list;
    }

    FileTree _tree;
};

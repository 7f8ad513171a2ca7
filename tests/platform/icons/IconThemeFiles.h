// Base folders with icon themes and single pictures in a temporary folder.

#pragma once

#include "TestCase.h"
#include "platform/FileTree.h"
#include "platform/freedesktop/base/IconPlaces.h"

#include <QProcess>

class IconThemeFiles final
{
public:
    // Two base folders, the user's first, and one for pictures of no theme.
    IconPlaces places() const
    {
        IconPlaces places;
        places.baseFolders = { path(u"user"_s), path(u"base"_s) };
        places.pixmapFolders = { path(u"pixmaps"_s) };
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
            paths.append(parts[0]);
            const QStringList keys { u"Type"_s, u"Size"_s, u"MinSize"_s, u"MaxSize"_s, u"Scale"_s };
            sections += parts[1] == u"-" ? QString() : u"[%1]\n"_s.arg(parts[0]);
            for (qsizetype i = 1; i < parts.size() && parts[1] != u"-"; ++i) {
                sections += keys[i - 1] + u'=' + parts[i] + u'\n';
            }
        }
        const QString text =
            u"# A theme\n[Icon Theme]\nName=Test\nInherits=%1\nDirectories=%2\n\n"_s.arg(
                inherits, paths.join(u','));
        _tree.add(u"base/%1/index.theme"_s.arg(name), (text + sections).toUtf8());
    }

    QString addPicture(const QString &file) { return _tree.add(file, "x"); }

    // Gives each theme the index of what it has now.
    void addCaches() const
    {
        for (const QString &base : places().baseFolders) {
            for (const QString &name : QDir(base).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
                const QStringList arguments { u"-q"_s, u"-f"_s, u"-t"_s, base + u'/' + name };
                QCOMPARE(QProcess::execute(u"gtk-update-icon-cache"_s, arguments), 0);
            }
        }
    }

private:
    FileTree _tree;
};

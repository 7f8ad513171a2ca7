// A temporary folder that a test fills.

#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <sys/stat.h>

class FileTree final
{
public:
    FileTree() = default;
    explicit FileTree(const QString &name)
        : _folder(QDir::tempPath() + QLatin1Char('/') + name + QStringLiteral("-XXXXXX"))
    { }

    QString path(const QString &relative = {}) const { return _folder.filePath(relative); }

    // Writes a file, its folders included, and gives its path.
    QString add(const QString &relative, const QByteArray &content, mode_t mode = 0644)
    {
        addFolder(QFileInfo(relative).path());
        QFile file(path(relative));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            qFatal("cannot write %s", qUtf8Printable(file.fileName()));
        }
        file.close();
        ::chmod(QFile::encodeName(file.fileName()).constData(), mode);
        return file.fileName();
    }

    QString addFolder(const QString &relative)
    {
        QDir(_folder.path()).mkpath(relative);
        return path(relative);
    }

    QString addLink(const QString &relative, const QString &target)
    {
        addFolder(QFileInfo(relative).path());
        QFile::link(target, path(relative));
        return path(relative);
    }

    // A folder for $PATH that holds these programs of the system and no others.
    QString addPrograms(const QString &relative, const QStringList &names)
    {
        for (const QString &name : names) {
            addLink(relative + QLatin1Char('/') + name, QStandardPaths::findExecutable(name));
        }
        return path(relative);
    }

    // A program that opens it to read waits for ever.
    QString addPipe(const QString &relative)
    {
        addFolder(QFileInfo(relative).path());
        ::mkfifo(QFile::encodeName(path(relative)).constData(), 0600);
        return path(relative);
    }

private:
    QTemporaryDir _folder;
};

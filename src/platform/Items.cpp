#include "platform/Items.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <sys/stat.h>

ItemFlags Items::flagsOf(const QString &path) const
{
    ItemFlags flags;
    const QFileInfo item(path);
    flags.isAlias = item.isSymLink();
    flags.isContainer = item.isDir() && !flags.isAlias;
    return flags;
}

QString Items::displayName(const QString &path) const
{
    return nameOf(path);
}

std::optional<QString> Items::genericNameOf(const QString &) const
{
    return std::nullopt;
}

ItemWords Items::wordsOf(const QString &) const
{
    return {};
}

QString Items::refusal(const QString &) const
{
    return {};
}

QString Items::nameOf(const QString &path)
{
    if (path == QLatin1String("/")) {
        return path;
    }
    const QString component = path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
    const qsizetype dot = component.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? component.left(dot) : component;
}

std::optional<quint64> Items::fileNumberOf(const QString &path, QString *error)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) {
        *error = path + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(errno));
        return std::nullopt;
    }
    return status.st_ino;
}

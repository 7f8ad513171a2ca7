#include "support/StandardPath.h"

#include <QDir>

QString standardizedPath(const QString &path)
{
    if (path == QLatin1String("~") || path.startsWith(QLatin1String("~/"))) {
        return QDir::cleanPath(QDir::homePath() + path.mid(1));
    }
    return path.isEmpty() ? path : QDir::cleanPath(path);
}

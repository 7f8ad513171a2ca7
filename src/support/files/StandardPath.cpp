#include "support/files/StandardPath.h"

#include <QDir>

namespace {

// Above the root there is nothing; QDir leaves such parts in.
QString cleanPath(const QString &path)
{
    const QString parent = QStringLiteral("/..");
    QString clean = QDir::cleanPath(path);
    while (clean == parent || clean.startsWith(parent + QLatin1Char('/'))) {
        clean.remove(0, parent.size());
    }
    return clean.isEmpty() ? QStringLiteral("/") : clean;
}

} // namespace

QString standardizedPath(const QString &path)
{
    if (path == QLatin1String("~") || path.startsWith(QLatin1String("~/"))) {
        return cleanPath(QDir::homePath() + path.mid(1));
    }
    return path.isEmpty() ? path : cleanPath(path);
}

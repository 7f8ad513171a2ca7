#include "support/files/StandardPath.h"

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

QString abbreviatedPath(const QString &path, const QString &home)
{
    const bool isBelowHome =
        !home.isEmpty() && (path == home || path.startsWith(home + QLatin1Char('/')));
    return isBelowHome ? QLatin1Char('~') + path.mid(home.size()) : path;
}

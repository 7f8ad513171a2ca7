#include "platform/freedesktop/base/IconKeyFile.h"

#include "platform/freedesktop/base/FileState.h"

constexpr qint64 largestKeyFile = 4 * 1024 * 1024;

void visitKeyFile(const QByteArray &text, const KeyFileVisitor &visitor)
{
    const QByteArrayView all(text);
    QByteArrayView group;
    for (qsizetype start = 0; start < all.size();) {
        qsizetype end = all.indexOf('\n', start);
        end = end < 0 ? all.size() : end;
        const QByteArrayView line = all.sliced(start, end - start).trimmed();
        start = end + 1;
        if (line.isEmpty() || line.front() == '#' || line.front() == ';') {
            continue;
        }
        if (line.front() == '[') {
            const qsizetype close = line.lastIndexOf(']');
            group = close > 0 ? line.sliced(1, close - 1) : QByteArrayView();
        } else if (const qsizetype equals = line.indexOf('='); equals > 0) {
            visitor(group, line.first(equals).trimmed(), line.sliced(equals + 1).trimmed());
        }
    }
}

QByteArray readKeyFile(const QString &path)
{
    QString problem;
    return readSmallFile(path, largestKeyFile, &problem).value_or(QByteArray());
}

QString keyFileValue(const QByteArray &text, QByteArrayView group, QByteArrayView key)
{
    QByteArrayView found;
    visitKeyFile(text, [&](QByteArrayView itsGroup, QByteArrayView itsKey, QByteArrayView value) {
        if (found.isEmpty() && itsKey == key && (group.isEmpty() || itsGroup == group)) {
            found = value;
        }
    });
    if (found.size() >= 2 && found.front() == found.back()
        && (found.front() == '"' || found.front() == '\'')) {
        found = found.sliced(1, found.size() - 2);
    }
    return QString::fromUtf8(found);
}

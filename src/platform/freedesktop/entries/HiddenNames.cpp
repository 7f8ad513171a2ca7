#include "platform/freedesktop/entries/HiddenNames.h"

#include "platform/freedesktop/base/FileState.h"
#include "platform/freedesktop/base/Log.h"

#include <QFile>

namespace {

constexpr qint64 largestList = 1 << 20;

QSet<QString> namesIn(const QString &listPath)
{
    QSet<QString> names;
    if (!FileState::of(listPath)) {
        return names;
    }
    QString problem;
    const std::optional<QByteArray> list = readSmallFile(listPath, largestList, &problem);
    if (!list) {
        qCWarning(lcPlatform, "%s: %s", qUtf8Printable(listPath), qUtf8Printable(problem));
        return names;
    }
    const QList<QByteArray> lines = list->split('\n');
    for (const QByteArray &line : lines) {
        names.insert(QFile::decodeName(line));
    }
    return names;
}

} // namespace

bool HiddenNames::contains(const QString &folder, const QString &name)
{
    const QMutexLocker lock(&_mutex);
    auto names = _names.constFind(folder);
    if (names == _names.constEnd()) {
        names = _names.insert(folder, namesIn(folder + QStringLiteral("/.hidden")));
    }
    return names->contains(name);
}

void HiddenNames::forget()
{
    const QMutexLocker lock(&_mutex);
    _names.clear();
}

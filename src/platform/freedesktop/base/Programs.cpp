#include "platform/freedesktop/base/Programs.h"

#include <QFile>
#include <QFileInfo>

#include <glib.h>

bool Programs::isThere(const QString &program)
{
    char *const found = g_find_program_in_path(QFile::encodeName(program).constData());
    g_free(found);
    return found != nullptr;
}

bool Programs::isAppImage(const QString &path)
{
    const QFileInfo file(path);
    return path.endsWith(QLatin1String(".AppImage"), Qt::CaseInsensitive) && file.isFile()
        && file.isExecutable();
}

bool Programs::isKnown(const QString &program)
{
    {
        const QMutexLocker lock(&_mutex);
        const auto known = _known.constFind(program);
        if (known != _known.constEnd()) {
            return *known;
        }
    }
    const bool isFound = isThere(program);
    const QMutexLocker lock(&_mutex);
    return *_known.insert(program, isFound);
}

void Programs::forget()
{
    const QMutexLocker lock(&_mutex);
    _known.clear();
}

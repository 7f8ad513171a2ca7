#include "platform/freedesktop/pinned/PinFiles.h"

#include "platform/freedesktop/base/FileState.h"
#include "platform/freedesktop/base/KeyFile.h"
#include "platform/freedesktop/base/Log.h"

#include <QFileInfo>

QByteArray PinFiles::read(const QString &path)
{
    if (!QFileInfo::exists(path)) {
        return {};
    }
    QString problem;
    const std::optional<QByteArray> text = readSmallFile(path, maximumSize, &problem);
    if (!text) {
        sayUnusable(path, problem);
    }
    return text.value_or(QByteArray());
}

QString PinFiles::itemValue(const QString &path, std::string_view group, std::string_view key)
{
    QString problem;
    const std::optional<QByteArray> text = readSmallFile(path, maximumItemSize, &problem);
    return text ? keyFileValue(*text, group, key) : QString();
}

void PinFiles::sayUnusable(const QString &path, const QString &reason)
{
    qCWarning(lcPlatform, "cannot read %s: %s", qUtf8Printable(path), qUtf8Printable(reason));
}

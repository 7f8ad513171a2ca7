#include "feedback/CrashLogs.h"

#include "feedback/Log.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <QTimeZone>

#include <utility>

namespace {

constexpr qint64 MaxLogSize = 1'048'576;

// Null when it is none. A character that a limit has cut off at the end is left out.
QString decoded(const QByteArray &bytes, bool isCut)
{
    QStringDecoder decoder(QStringDecoder::Utf8,
        isCut ? QStringDecoder::Flag::Default : QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(bytes);
    if (decoder.hasError()) {
        return {};
    }
    return text.isNull() ? QLatin1String("") : text;
}

QString textOf(const QString &path)
{
    QFile file(path);
    // Opening a named pipe would wait for its writer.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray bytes = file.read(MaxLogSize);
    const bool isCut = !file.atEnd();
    QString text = file.error() == QFileDevice::NoError ? decoded(bytes, isCut) : QString();
    if (isCut && !text.isNull()) {
        text += QStringLiteral("\n\n(Cut off here: the log has %1 bytes.)\n").arg(file.size());
    }
    return text;
}

} // namespace

CrashLogs::CrashLogs(QStringList libraryFolders, QString applicationName)
    : _libraryFolders(std::move(libraryFolders))
    , _applicationName(std::move(applicationName))
{ }

QStringList CrashLogs::crashLogsSince(const QDateTime &date) const
{
    QStringList logs;
    for (const QString &folder : _libraryFolders) {
        logs += logsIn(folder + QStringLiteral("/Logs/CrashReporter"), _applicationName + u'_',
            QStringLiteral("crash"), date);
        logs += logsIn(folder + QStringLiteral("/Logs/HangReporter/") + _applicationName, {},
            QStringLiteral("hang"), date);
    }
    return logs;
}

QString CrashLogs::latestCrashLogContents(const QStringList &paths)
{
    if (paths.isEmpty()) {
        qCWarning(lcFeedback, "logs != nil && [logs count] > 0");
        return {};
    }
    QDateTime latest(QDate(1, 1, 1), QTime(0, 0), QTimeZone::utc());
    QString latestPath;
    for (const QString &path : paths) {
        if (fileIsNewerThan(path, latest)) {
            latest = modificationTimeOfFile(path);
            latestPath = path;
        }
    }
    return textOf(latestPath);
}

bool CrashLogs::fileIsNewerThan(const QString &path, const QDateTime &date)
{
    const QDateTime modified = modificationTimeOfFile(path);
    return !date.isValid() || !modified.isValid() || date <= modified;
}

QDateTime CrashLogs::modificationTimeOfFile(const QString &path)
{
    return QFileInfo(path).lastModified();
}

QStringList CrashLogs::logsIn(
    const QString &folder, const QString &prefix, const QString &extension, const QDateTime &date)
{
    QStringList logs;
    QDirIterator entries(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QFileInfo entry(entries.next());
        // The dot of a hidden file begins no extension.
        const bool isLog = entry.fileName().startsWith(prefix) && entry.suffix() == extension
            && !entry.completeBaseName().isEmpty();
        if (isLog && fileIsNewerThan(entry.filePath(), date)) {
            logs.append(entry.filePath());
        }
    }
    logs.sort();
    return logs;
}

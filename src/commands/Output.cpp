#include "commands/Output.h"

#include <QFileInfo>
#include <QImage>
#include <QSaveFile>

#include <cstdio>

bool Output::print(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    return std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout) == size_t(bytes.size())
        && std::fflush(stdout) == 0;
}

bool Output::printJson(const QJsonDocument &document)
{
    return print(QString::fromUtf8(document.toJson(QJsonDocument::Indented)));
}

int Output::writePicture(const QImage &picture, const QString &file)
{
    const auto isSaved = [&](QFileDevice &target) {
        return target.open(QIODevice::WriteOnly) && picture.save(&target, "PNG") && target.flush();
    };
    const auto failed = [&](const QFileDevice &target) {
        return fail(QStringLiteral("cannot write %1: %2").arg(file, target.errorString()));
    };
    // A device or a pipe is written into: only files may be replaced.
    if (const QFileInfo old(file); old.exists() && !old.isFile() && !old.isDir()) {
        QFile target(file);
        return isSaved(target) ? 0 : failed(target);
    }
    QSaveFile target(file);
    return isSaved(target) && target.commit() ? 0 : failed(target);
}

int Output::fail(const QString &reason, int exitCode)
{
    std::fprintf(stderr, "ortu: %s\n", qUtf8Printable(reason));
    return exitCode;
}

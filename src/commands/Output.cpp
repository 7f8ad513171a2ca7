#include "commands/Output.h"

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
    QSaveFile target(file);
    if (target.open(QIODevice::WriteOnly) && picture.save(&target, "PNG") && target.commit()) {
        return 0;
    }
    return fail(QStringLiteral("cannot write %1: %2").arg(file, target.errorString()));
}

int Output::fail(const QString &reason, int exitCode)
{
    std::fprintf(stderr, "ortu: %s\n", qUtf8Printable(reason));
    return exitCode;
}

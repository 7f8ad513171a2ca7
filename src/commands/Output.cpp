#include "commands/Output.h"

#include "support/Printable.h"

#include <QFileInfo>
#include <QImage>
#include <QSaveFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

// Asked before main(): the next file that is opened gets the number of a closed one, and must not
// be written into.
static const bool isOutputOpen = ::fcntl(STDOUT_FILENO, F_GETFD) != -1;

bool Output::print(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    const auto size = std::size_t(bytes.size());
    errno = EBADF;
    if (isOutputOpen && std::fwrite(bytes.constData(), 1, size, stdout) == size
        && std::fflush(stdout) == 0) {
        return true;
    }
    const QString reason = QString::fromLocal8Bit(std::strerror(errno));
    fail(QStringLiteral("cannot write to standard output: %1").arg(reason));
    return false;
}

bool Output::printLines(const QStringList &lines)
{
    QString text;
    for (const QString &line : lines) {
        text += Printable::escaped(line) + QLatin1Char('\n');
    }
    return print(text);
}

// Qt escapes less within strings than a terminal may take for an instruction.
bool Output::printJson(const QJsonDocument &document)
{
    const QString text = QString::fromUtf8(document.toJson(QJsonDocument::Indented));
    return printLines(text.trimmed().split(QLatin1Char('\n')));
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

void Output::remark(const QString &text)
{
    std::fprintf(stderr, "ortu: %s\n", qUtf8Printable(Printable::escaped(text)));
}

int Output::fail(const QString &reason, int exitCode)
{
    remark(reason);
    return exitCode;
}

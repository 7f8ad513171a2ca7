#include "shell/base/ProgramDocuments.h"

#include "shell/base/Log.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStringList>

namespace {

// How far from its end a PDF file may say that it ends.
constexpr qint64 longestTrailer = 1024;

struct State
{
    QString folder;
    QSet<QString> reported;
};

State &state()
{
    static State state;
    return state;
}

QStringList folders()
{
    if (!state().folder.isEmpty()) {
        return { state().folder };
    }
    const QString program = QCoreApplication::applicationDirPath();
    return { program + QStringLiteral("/../documents"),
        program + QStringLiteral("/" ORTU_DOCUMENTS_FROM_PROGRAM) };
}

// Empty when the file is a PDF file from its beginning to its end.
QString problemWith(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return file.errorString();
    }
    const bool isPdf = file.peek(5) == "%PDF-";
    const bool isWhole =
        file.seek(qMax(file.size() - longestTrailer, 0)) && file.readAll().contains("%%EOF");
    return isPdf && isWhole ? QString() : QStringLiteral("not a whole PDF file");
}

void report(const QString &name, const QString &line)
{
    if (!state().reported.contains(name)) {
        state().reported.insert(name);
        qCWarning(lcShell).noquote() << line;
    }
}

} // namespace

QString ProgramDocuments::path(const QString &name)
{
    const QString fileName = name + QStringLiteral(".pdf");
    const QStringList searched = folders();
    for (const QString &folder : searched) {
        const QFileInfo file(folder + QLatin1Char('/') + fileName);
        if (!file.isFile()) {
            continue;
        }
        QString path = file.canonicalFilePath();
        const QString problem = problemWith(path);
        if (problem.isEmpty()) {
            return path;
        }
        report(name, QStringLiteral("cannot read %1: %2").arg(path, problem));
        return {};
    }
    report(name, QStringLiteral("no document %1 in %2").arg(fileName, searched.join(u", ")));
    return {};
}

void ProgramDocuments::setFolder(const QString &folder)
{
    state() = { .folder = folder, .reported = {} };
}

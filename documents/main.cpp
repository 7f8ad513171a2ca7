// Writes a document of the program during the build:
//
//     ortu_document_writer guide|slides TITLE OUT.pdf SOURCE.md…
//
// The exit code is 1 when the document could not be written; then there is no OUT.pdf.

#include "Guide.h"
#include "Slides.h"

#include <QDebug>
#include <QFile>
#include <QGuiApplication>
#include <QPdfWriter>

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 5) {
        qWarning("usage: ortu_document_writer guide|slides TITLE OUT.pdf SOURCE.md...");
        return 1;
    }
    const QString &kind = arguments[1];
    const QString &title = arguments[2];
    const QString &path = arguments[3];
    const QStringList sources = arguments.mid(4);
    bool isWritten = false;
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly)) {
            qWarning().noquote() << "cannot write" << path + ":" << file.errorString();
            return 1;
        }
        QPdfWriter writer(&file);
        writer.setTitle(title);
        writer.setCreator(QStringLiteral("Ortu"));
        isWritten = kind == QStringLiteral("guide") ? Guide(sources).write(writer)
                                                    : Slides(sources).write(writer);
        isWritten = isWritten && file.flush();
    }
    if (!isWritten) {
        QFile::remove(path);
        return 1;
    }
    return 0;
}

// installed.sh puts this program beside an installed Ortu, where it does what Ortu does with the
// files around it: prints the pages of the welcome document, and how a request to no server failed.

#include "platform/freedesktop/pages/PdfRenderer.h"
#include "platform/freedesktop/web/LoadedWebClient.h"
#include "shell/base/ProgramDocuments.h"

#include <QGuiApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const QString path = ProgramDocuments::path(ProgramDocuments::welcome());
    const auto document = PdfRenderer().open(path);
    std::printf("pages: %d\n", document ? document->pageCount() : 0);

    const auto exchange = LoadedWebClient().send(
        { .url = QUrl(QStringLiteral("http://127.0.0.1:1/")) }, [](const WebAnswer &answer) {
            std::printf("request: %s\n", qPrintable(answer.problem));
            QCoreApplication::quit();
        });
    return QCoreApplication::exec();
}

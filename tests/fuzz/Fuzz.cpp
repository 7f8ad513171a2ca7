#include "fuzz/Fuzz.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>

void require(bool holds)
{
    if (!holds) {
        std::abort();
    }
}

QString folderWith(const QString &name, const QByteArray &bytes)
{
    static const QTemporaryDir folder;
    QFile file(folder.filePath(name));
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    return folder.path();
}

extern "C" int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    fuzz(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    return 0;
}

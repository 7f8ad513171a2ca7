// Walking and reading 2,000 desktop entries takes at most 150 ms once the disk has been read; that
// is the scan of a computer with far more applications than most.

#include "catalogue/files/FolderWalk.h"
#include "platform/freedesktop/FreedesktopDesktop.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

constexpr int EntryCount = 2000;
constexpr int TranslationCount = 15;

void writeEntry(const QString &path, int number)
{
    QByteArray text = "[Desktop Entry]\nType=Application\nExec=/bin/true %U\nIcon=none\n";
    for (const char *key : { "Name", "GenericName", "Comment" }) {
        text += QByteArray(key) + "=An application, number " + QByteArray::number(number) + "\n";
        for (int language = 0; language < TranslationCount; ++language) {
            text += QByteArray(key) + "[l" + QByteArray::number(language)
                + "]=The same application in another language\n";
        }
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
}

// A desktop that has read nothing yet walks, reads and names every entry.
void walkAndRead(benchmark::State &state)
{
    const QTemporaryDir home;
    for (int i = 0; i < EntryCount; ++i) {
        writeEntry(home.filePath(QStringLiteral("entry%1.desktop").arg(i)), i);
    }
    for (auto _ : state) {
        const auto desktop = makeFreedesktopDesktop();
        desktop->items().willScan();
        FolderWalk walk(desktop->items(), { home.path() }, 4);
        const QStringList paths = walk.pathsUnder(home.path());
        if (paths.size() != EntryCount) {
            state.SkipWithError("not every entry was found");
        }
        for (const QString &path : paths) {
            benchmark::DoNotOptimize(desktop->items().displayName(path));
        }
    }
}
BENCHMARK(walkAndRead)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

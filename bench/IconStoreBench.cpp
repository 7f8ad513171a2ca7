// A start shows all its icons in the first frame: what that takes with icons of an earlier run,
// from the open file to pictures and colours in hand, and without. Meant for a system with the
// Papirus theme and its index.

#include "ThemedHome.h"
#include "icons/IconFetch.h"
#include "icons/store/IconStore.h"
#include "platform/freedesktop/icons/FreedesktopIcons.h"

#include <QThread>

#include <benchmark/benchmark.h>

namespace {

constexpr int Edge = 64;

// Of the entries that ThemedHome writes.
QString iconNameOf(const QString &entry)
{
    QFile file(entry);
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return QString::fromUtf8(text.mid(text.lastIndexOf("Icon=") + 5).trimmed());
}

class Home final
{
public:
    explicit Home(int count)
        : themed(count)
    {
        const QDir folder(
            QFile::decodeName(qgetenv("XDG_DATA_HOME")) + QLatin1String("/applications"));
        for (const QFileInfo &file : folder.entryInfoList(QDir::Files)) {
            entries.append(file.filePath());
        }
        cache = folder.filePath(QStringLiteral("cache"));
    }

    ThemedHome themed;
    QStringList entries;
    QString cache;
};

void loadAll(const Home &home, const FreedesktopIcons &icons, IconStore *store)
{
    for (const QString &entry : home.entries) {
        const LoadedIcon icon = IconFetch::load(entry, Edge, icons, store);
        const IconMeasurement measurement = measureIcon(icon.image, {});
        if (store != nullptr) {
            store->keepColors(icon.image.cacheKey(), measurement.colors, {});
        }
        benchmark::DoNotOptimize(measurement.colors.size());
    }
}

void decodeAndMeasure(benchmark::State &state)
{
    quietImageLibraries();
    const Home home(int(state.range(0)));
    const FreedesktopIcons icons(iconNameOf);
    for (auto _ : state) {
        loadAll(home, icons, nullptr);
    }
}
BENCHMARK(decodeAndMeasure)->Arg(300)->Arg(1000)->Unit(benchmark::kMillisecond);

void takeFromStore(benchmark::State &state)
{
    quietImageLibraries();
    const Home home(int(state.range(0)));
    const FreedesktopIcons icons(iconNameOf);
    // Until the entries have settled.
    QThread::sleep(3);
    {
        IconStore store(home.cache);
        loadAll(home, icons, &store);
        store.write(icons);
    }
    qsizetype missing = 0;
    for (auto _ : state) {
        IconStore store(home.cache);
        store.prepare(icons);
        for (const QString &entry : home.entries) {
            const auto icon = store.atHand(entry, Edge);
            missing += icon && icon->question ? 0 : 1;
        }
    }
    state.counters["missing"] = double(missing);
}
BENCHMARK(takeFromStore)->Arg(300)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();

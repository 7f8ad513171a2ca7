// The promises about icons: a start with some 300 applications must not wait for the theme, neither
// for its description nor for names that it lacks. Meant for a system with the Papirus theme and
// its index.

#include "platform/freedesktop/icons/FreedesktopIcons.h"
#include "platform/freedesktop/icons/IconThemeName.h"

#include <QDir>
#include <QStringList>

#include <benchmark/benchmark.h>
#include <filesystem>

static const QString theme = QStringLiteral("Papirus");

static QStringList someNames()
{
    static const QStringList names = [] {
        const QDir folder(QStringLiteral("/usr/share/icons/Papirus/64x64/apps"));
        QStringList all = folder.entryList({ QStringLiteral("*.svg") }, QDir::Files);
        QStringList some;
        for (qsizetype i = 0; i < 300 && !all.isEmpty(); ++i) {
            some.append(all.at(i * all.size() / 300).chopped(4));
        }
        return some;
    }();
    return names;
}

static void readThemeName(benchmark::State &state)
{
    const IconPlaces places = IconPlaces::fromEnvironment();
    for (auto step : state) {
        benchmark::DoNotOptimize(IconThemeName::current(places));
    }
}
BENCHMARK(readThemeName);

static void makeLookup(benchmark::State &state)
{
    const IconPlaces places = IconPlaces::fromEnvironment();
    for (auto step : state) {
        const IconLookup lookup(places, theme);
        benchmark::DoNotOptimize(&lookup);
    }
}
BENCHMARK(makeLookup)->Unit(benchmark::kMicrosecond);

static void resolveHit(benchmark::State &state)
{
    const IconLookup lookup(IconPlaces::fromEnvironment(), theme);
    const QStringList names = someNames();
    qsizetype i = 0;
    for (auto step : state) {
        benchmark::DoNotOptimize(lookup.find(names.at(++i % names.size()), 64));
    }
}
BENCHMARK(resolveHit);

static void resolveMiss(benchmark::State &state)
{
    const IconLookup lookup(IconPlaces::fromEnvironment(), theme);
    for (auto step : state) {
        benchmark::DoNotOptimize(lookup.find(QStringLiteral("org.example.Nobody"), 64));
    }
}
BENCHMARK(resolveMiss);

// A theme without an index: 300 names, every third unknown, as a first start would ask for them.
static void coldStartWithoutIndex(benchmark::State &state)
{
    namespace fs = std::filesystem;
    const fs::path base = fs::temp_directory_path() / "IconBench";
    std::error_code error;
    fs::create_directories(base / "Papirus", error);
    for (const auto &entry : fs::directory_iterator("/usr/share/icons/Papirus", error)) {
        if (entry.path().filename() != "icon-theme.cache") {
            fs::create_symlink(entry.path(), base / "Papirus" / entry.path().filename(), error);
        }
    }
    IconPlaces places;
    places.baseFolders.append(QString::fromStdString(base.string()));
    const QStringList names = someNames();
    for (auto step : state) {
        const IconLookup lookup(places, theme);
        for (qsizetype i = 0; i < names.size(); ++i) {
            const QString unknown = i % 3 == 0 ? QStringLiteral("-nobody") : QString();
            benchmark::DoNotOptimize(lookup.find(names.at(i) + unknown, 64));
        }
    }
    fs::remove_all(base, error);
}
BENCHMARK(coldStartWithoutIndex)->Unit(benchmark::kMillisecond);

// Per icon; the time of all threads together is what matters.
static void decodeScalable(benchmark::State &state)
{
    static const FreedesktopIcons icons([](const QString &path) { return path; });
    static const IconLookup lookup(IconPlaces::fromEnvironment(), theme);
    QList<IconSource> sources;
    for (const QString &name : someNames()) {
        sources.append({ lookup.find(name, 64) });
    }
    qsizetype i = state.thread_index();
    for (auto step : state) {
        benchmark::DoNotOptimize(icons.decode(sources.at(i % sources.size()), 64));
        i += state.threads();
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(decodeScalable)->Threads(1)->Threads(2)->UseRealTime();

BENCHMARK_MAIN();

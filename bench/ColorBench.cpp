// The promises about colour: measuring an icon must cost little beside decoding it, and judging it
// again by other preferences next to nothing. Meant for a system with the Papirus theme.

#include "colour/DominantColors.h"
#include "icons/ColorKey.h"
#include "icons/IconMeasurement.h"
#include "platform/freedesktop/icons/FreedesktopIcons.h"

#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <string_view>
#include <vector>

static constexpr qsizetype iconCount = 300;

static IconParameters usualParameters()
{
    IconParameters parameters;
    parameters.grayThreshold = 0.05F;
    parameters.minSaturation = 0.14F;
    return parameters;
}

static const QList<QImage> &themeIcons(int size)
{
    static QHash<int, QList<QImage>> icons;
    if (!icons.contains(size)) {
        const FreedesktopIcons provider([](const QString &path) { return path; });
        const QDir folder(QStringLiteral("/usr/share/icons/Papirus/64x64/apps"));
        const QStringList names = folder.entryList({ QStringLiteral("*.svg") }, QDir::Files);
        for (qsizetype i = 0; i < iconCount && !names.isEmpty(); ++i) {
            const QString file = folder.filePath(names.at(i * names.size() / iconCount));
            icons[size].append(provider.decode({ file }, size));
        }
    }
    return icons[size];
}

// The time of one icon, the median of all of them: a few have many more colours than the rest.
static void measureMedianIcon(benchmark::State &state)
{
    const QList<QImage> &icons = themeIcons(int(state.range(0)));
    const IconParameters parameters = usualParameters();
    std::vector<double> times(std::size_t(icons.size()));
    for (auto step : state) {
        for (std::size_t i = 0; i < times.size(); ++i) {
            QElapsedTimer timer;
            timer.start();
            benchmark::DoNotOptimize(measureIcon(icons[qsizetype(i)], parameters));
            times[i] = double(timer.nsecsElapsed()) * 1e-9;
        }
        const auto median = times.begin() + std::ptrdiff_t(times.size() / 2);
        std::nth_element(times.begin(), median, times.end());
        state.SetIterationTime(*median);
    }
}
BENCHMARK(measureMedianIcon)
    ->Arg(64)
    ->Arg(128)
    ->UseManualTime()
    ->Iterations(50)
    ->Unit(benchmark::kMicrosecond);

// The three below tell where the time of the one above goes, as means.
static void makeHistogram(benchmark::State &state)
{
    const QList<QImage> &icons = themeIcons(int(state.range(0)));
    qsizetype i = 0;
    for (auto step : state) {
        benchmark::DoNotOptimize(createColorHistogram(bitmapView(icons[++i % icons.size()])));
    }
}
BENCHMARK(makeHistogram)->Arg(64)->Arg(128)->Unit(benchmark::kMicrosecond);

static void convertHistogram(benchmark::State &state)
{
    std::vector<ColorHistogram> histograms;
    double colors = 0;
    for (const QImage &icon : themeIcons(int(state.range(0)))) {
        histograms.push_back(createColorHistogram(bitmapView(icon)));
        colors += double(histograms.back().size());
    }
    std::size_t i = 0;
    for (auto step : state) {
        benchmark::DoNotOptimize(
            createColorSpectrumFromHistogram(histograms[++i % histograms.size()]));
    }
    state.counters["colors"] = colors / double(histograms.size());
}
BENCHMARK(convertHistogram)->Arg(64)->Arg(128)->Unit(benchmark::kMicrosecond);

static void reduceSpectrum(benchmark::State &state)
{
    std::vector<ColorHistogram> histograms;
    for (const QImage &icon : themeIcons(int(state.range(0)))) {
        histograms.push_back(createColorHistogram(bitmapView(icon)));
    }
    std::size_t i = 0;
    for (auto step : state) {
        state.PauseTiming();
        HclColors spectrum = createColorSpectrumFromHistogram(histograms[++i % histograms.size()]);
        state.ResumeTiming();
        benchmark::DoNotOptimize(
            createDominantColorsFromSpectrum(std::move(spectrum), 6, 0.14F, 50));
    }
}
BENCHMARK(reduceSpectrum)->Arg(64)->Arg(128)->Unit(benchmark::kMicrosecond);

static void pick(benchmark::State &state)
{
    const IconParameters parameters = usualParameters();
    std::vector<IconMeasurement> measurements;
    for (const QImage &icon : themeIcons(64)) {
        measurements.push_back(measureIcon(icon, parameters));
    }
    std::size_t i = 0;
    for (auto step : state) {
        benchmark::DoNotOptimize(
            pickAndSortColors(measurements[++i % measurements.size()].colors, parameters));
    }
}
BENCHMARK(pick);

// --write-icons FOLDER: the icons as PNG pictures, for another program to be timed on.
static bool writeIcons(const QDir &folder)
{
    bool isWritten = true;
    for (const int size : { 64, 128 }) {
        for (qsizetype i = 0; i < themeIcons(size).size(); ++i) {
            const QString name = QStringLiteral("%1-%2.png").arg(size).arg(i);
            isWritten = themeIcons(size)[i].save(folder.filePath(name)) && isWritten;
        }
    }
    return isWritten;
}

int main(int argc, char **argv)
{
    // Drawing text in an icon takes fonts.
    const QGuiApplication application(argc, argv);
    if (themeIcons(64).isEmpty()) {
        std::fputs("ColorBench: the Papirus theme is not installed\n", stderr);
        return 1;
    }
    if (argc == 3 && std::string_view(argv[1]) == "--write-icons") {
        return writeIcons(QDir(QString::fromLocal8Bit(argv[2]))) ? 0 : 1;
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

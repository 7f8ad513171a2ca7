// The promise about finding: what a key costs until the applications are ranked anew, out of 300
// and of 2,000; and what making them ready costs, once and on a thread.

#include "finding/Query.h"

#include <benchmark/benchmark.h>

namespace {

// Names made of words as applications have them, each application of its own.
QString text(int seed, int words)
{
    static const QStringList known { QStringLiteral("Libre"), QStringLiteral("Office"),
        QStringLiteral("Writer"), QStringLiteral("Terminal"), QStringLiteral("Web"),
        QStringLiteral("Browser"), QStringLiteral("Settings"), QStringLiteral("Переводчик"),
        QStringLiteral("Müll"), QStringLiteral("ダウンロード"), QStringLiteral("Image"),
        QStringLiteral("Viewer"), QStringLiteral("Calculator"), QStringLiteral("Disk") };
    QStringList parts;
    for (int i = 0; i < words; ++i) {
        parts.append(known[(seed * 7 + i * 5 + seed / 13) % known.size()]);
    }
    return parts.join(QLatin1Char(' ')) + QString::number(seed % 97);
}

Findable itemOf(int seed)
{
    ItemWords words;
    words.untranslatedName = text(seed + 1, 2);
    words.genericName = text(seed + 2, 2);
    words.untranslatedGenericName = text(seed + 3, 2);
    for (int i = 0; i < 8; ++i) {
        words.keywords.append(text(seed + i, 1));
        words.untranslatedKeywords.append(text(seed + 50 + i, 1));
    }
    words.commands = { text(seed, 1).toLower() };
    QList<ApplicationActions::Action> actions;
    if (seed % 4 == 0) {
        actions = { { QStringLiteral("w"), QStringLiteral("New Window") },
            { QStringLiteral("p"), QStringLiteral("New Private Window") } };
    }
    return Findable(text(seed, 2), words, actions);
}

void makeReady(benchmark::State &state)
{
    for (auto _ : state) {
        for (int i = 0; i < state.range(0); ++i) {
            benchmark::DoNotOptimize(itemOf(i));
        }
    }
}
BENCHMARK(makeReady)->Arg(300)->Arg(2000)->Unit(benchmark::kMillisecond);

void rank(benchmark::State &state, const QString &typed)
{
    std::vector<Findable> items;
    std::vector<Candidate> candidates;
    for (int i = 0; i < state.range(0); ++i) {
        items.push_back(itemOf(i));
    }
    for (size_t i = 0; i < items.size(); ++i) {
        candidates.push_back({ &items[i], double(i % 11) });
    }
    size_t found = 0;
    for (auto _ : state) {
        found = ranked(Query(typed), candidates).size();
    }
    state.counters["found"] = double(found);
}

const auto oneLetter = QStringLiteral("w");
const auto word = QStringLiteral("term");
const auto twoWords = QStringLiteral("libre writer");
const auto otherLayout = QStringLiteral("gthtdj");
const auto action = QStringLiteral("private");
const auto nothing = QStringLiteral("xyzzyplugh");
const auto letters = QStringLiteral("lbrwr");

} // namespace

BENCHMARK_CAPTURE(rank, oneLetter, oneLetter)->Arg(300)->Arg(2000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(rank, word, word)->Arg(300)->Arg(2000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(rank, twoWords, twoWords)->Arg(300)->Arg(2000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(rank, otherLayout, otherLayout)
    ->Arg(300)
    ->Arg(2000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(rank, action, action)->Arg(300)->Arg(2000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(rank, letters, letters)->Arg(300)->Arg(2000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(rank, nothing, nothing)->Arg(300)->Arg(2000)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();

// A walk over many applications reads each one's entry: 2,000 entries in at most 150 ms, with what
// the disk holds already in memory and nothing remembered by us. What a dragged file can be dropped
// on is asked of 500 entries while the drag goes on: in at most 50 ms, the first time as well.

#include "platform/freedesktop/entries/DesktopEntryIndex.h"
#include "platform/freedesktop/entries/FreedesktopDocuments.h"
#include "platform/freedesktop/entries/FreedesktopItems.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <optional>

namespace {

constexpr int entryCount = 2000;

QByteArray entryText(int number)
{
    const QByteArray digits = QByteArray::number(number);
    QByteArray text = "[Desktop Entry]\nType=Application\nVersion=1.0\nName=Application " + digits
        + "\nGenericName=Program\nComment=Does what programs do\nIcon=application-" + digits
        + "\nExec=program-" + QByteArray::number(number % 500) + " --open %U\nTerminal=false\n";
    for (const char *language : { "ar", "bg", "ca", "cs", "da", "de", "el", "es", "fi", "fr", "hu",
             "it", "ja", "nl", "zh_CN" }) {
        for (const char *key : { "Name", "GenericName", "Comment", "Keywords" }) {
            text += QByteArray(key) + '[' + language + "]=A translation of some length " + digits
                + '\n';
        }
    }
    return text
        + "Categories=Utility;\nMimeType=text/plain;\n[Desktop Action new]\nName=New\nExec=x\n";
}

// A folder as a distribution installs it, and one of the user's own before it.
class Folders final
{
public:
    Folders()
    {
        QDir().mkpath(applications());
        QDir().mkpath(_folder.filePath(QStringLiteral("home/applications")));
        for (int i = 0; i < entryCount; ++i) {
            write(applications() + QStringLiteral("/org.example.Application%1.desktop").arg(i), i);
        }
        for (int i = 0; i < 100; ++i) {
            write(_folder.filePath(QStringLiteral("home/applications/own%1.desktop").arg(i)), i);
        }
    }

    QStringList dataFolders() const
    {
        return { _folder.filePath(QStringLiteral("home")),
            _folder.filePath(QStringLiteral("system")) };
    }
    QString applications() const { return _folder.filePath(QStringLiteral("system/applications")); }

private:
    static void write(const QString &path, int number)
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(entryText(number)) < 0) {
            qFatal("cannot write %s", qUtf8Printable(path));
        }
    }

    QTemporaryDir _folder;
};

const Folders &folders()
{
    static const Folders made;
    return made;
}

void classifyAndName(benchmark::State &state)
{
    const QString applications = folders().applications();
    for (auto _ : state) {
        DesktopEntryIndex index({ "nl_BE", "nl" });
        FreedesktopItems items(index, folders().dataFolders(), { QStringLiteral("GNOME") });
        int found = 0;
        QDirIterator entries(applications);
        while (entries.hasNext()) {
            const QString path = entries.next();
            found +=
                items.flagsOf(path).isApplication && !items.displayName(path).isEmpty() ? 1 : 0;
        }
        if (found != entryCount) {
            state.SkipWithError("not every entry was found");
        }
    }
}
BENCHMARK(classifyAndName)->Unit(benchmark::kMillisecond);

// Another walk when nothing has changed.
void classifyAgain(benchmark::State &state)
{
    const QStringList names = QDir(folders().applications()).entryList(QDir::Files);
    DesktopEntryIndex index({ "nl_BE", "nl" });
    FreedesktopItems items(index, folders().dataFolders(), { QStringLiteral("GNOME") });
    for (auto _ : state) {
        items.willScan();
        for (const QString &name : names) {
            benchmark::DoNotOptimize(
                items.flagsOf(folders().applications() + QLatin1Char('/') + name));
        }
    }
}
BENCHMARK(classifyAgain)->Unit(benchmark::kMillisecond);

// A start shows the names of what was found last time.
void name300(benchmark::State &state)
{
    QStringList paths = QDir(folders().applications()).entryList(QDir::Files).mid(0, 300);
    for (QString &path : paths) {
        path.prepend(folders().applications() + QLatin1Char('/'));
    }
    for (auto _ : state) {
        DesktopEntryIndex index({ "nl_BE", "nl" });
        FreedesktopItems items(index, folders().dataFolders(), { QStringLiteral("GNOME") });
        for (const QString &path : paths) {
            benchmark::DoNotOptimize(items.displayName(path));
        }
    }
}
BENCHMARK(name300)->Unit(benchmark::kMillisecond);

// When it is the first time the entries are read.
void acceptDocument(benchmark::State &state, bool isFirst)
{
    QStringList paths = QDir(folders().applications()).entryList(QDir::Files).mid(0, 500);
    for (QString &path : paths) {
        path.prepend(folders().applications() + QLatin1Char('/'));
    }
    QTemporaryDir folder;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.path()));
    QFile lists(folder.filePath(QStringLiteral("mimeapps.list")));
    QFile document(folder.filePath(QStringLiteral("document.txt")));
    if (!lists.open(QIODevice::WriteOnly) || !document.open(QIODevice::WriteOnly)
        || lists.write("[Added Associations]\ntext/plain=org.example.Application7.desktop;\n") < 0
        || document.write("text\n") < 0) {
        qFatal("cannot write to %s", qUtf8Printable(folder.path()));
    }
    lists.close();
    document.close();
    std::optional<DesktopEntryIndex> index(std::in_place, QList<QByteArray>());
    for (auto _ : state) {
        if (isFirst) {
            index.emplace(QList<QByteArray>());
        }
        const FreedesktopDocuments documents(*index, folders().dataFolders());
        const auto found =
            documents.applicationsThatAccept(QUrl::fromLocalFile(document.fileName()), paths);
        if (found.size() != paths.size()) {
            state.SkipWithError("not every application was found");
        }
    }
}
BENCHMARK_CAPTURE(acceptDocument, first, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(acceptDocument, again, false)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();

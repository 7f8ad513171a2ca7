#include "icons/store/IconStore.h"

#include "TestCase.h"
#include "icons/IconLoader.h"
#include "platform/FileTree.h"

#include <QColor>
#include <QRandomGenerator>

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr int edge = 16;
constexpr int iconCount = 3;

QImage pattern(int number, int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            image.setPixelColor(x, y, QColor::fromHsv((number * 97 + x) % 360, 200, 255 - y));
        }
    }
    return image;
}

// A bundle is a file that holds the number of a pattern, and its own picture.
class FileIcons final : public IconProvider
{
public:
    QByteArray theme = "one";
    // Of an icon theme, where the bundle's file is not asked.
    QHash<QString, QString> sources;
    mutable std::atomic<int> resolved = 0;

    IconSource resolve(const QString &bundlePath, int) const override
    {
        ++resolved;
        return { sources.value(bundlePath, bundlePath) };
    }
    QImage decode(const IconSource &source, int size) const override
    {
        QFile file(source.file);
        return file.open(QIODevice::ReadOnly) ? pattern(file.readAll().toInt(), size) : QImage();
    }
    QByteArray circumstances() const override { return theme; }
    bool areStill(const QByteArray &then) const override { return then == theme; }
};

// The file of kept icons, with three of them in it.
class Kept final
{
public:
    Kept()
    {
        for (int i = 0; i < iconCount; ++i) {
            bundles.append(tree.add(u"bundle%1"_s.arg(i), QByteArray::number(i)));
        }
        IconStore store(folder());
        store.prepare(icons);
        add(store);
        store.write(icons);
    }

    QString folder() const { return tree.path(u"cache"_s); }
    QString file() const { return folder() + u"/icons"_s; }

    // As a run does that starts long after all files have settled.
    void add(IconStore &store, bool isThemed = false) const
    {
        const qint64 later = FileStamp::now() + 60'000'000'000;
        for (const QString &bundle : bundles) {
            DecodedIcon icon = icons.decodeFrom({ bundle }, edge);
            icon.isThemed = isThemed;
            store.keep({ bundle }, edge, icon, later);
            store.keepColors(icon.image.cacheKey(), measured(icon.image).colors, { 0.5, 0.25 });
            store.keepAnswer(bundle, FileStamp::of(bundle), edge, { bundle }, later);
        }
    }
    static IconMeasurement measured(const QImage &image) { return measureIcon(image, {}); }

    FileTree tree;
    FileIcons icons;
    QStringList bundles;
};

// One letter for each icon: at hand, found by its source, absent, or, which must never be, wrong.
QString stateOf(IconStore &store, const Kept &kept)
{
    QString state;
    for (const QString &bundle : kept.bundles) {
        const QImage right = kept.icons.decode({ bundle }, edge);
        const auto atHand = store.atHand(bundle, edge);
        const auto found = atHand ? atHand : store.find({ bundle }, edge);
        state += !found ? u'-' : found->image != right ? u'!' : atHand ? u'h' : u'f';
    }
    return state;
}

QString reopened(const Kept &kept)
{
    IconStore store(kept.folder());
    store.prepare(kept.icons);
    return stateOf(store, kept);
}

void setTimes(const QString &file, const FileStamp &stamp)
{
    const timeval time { stamp.modified / 1'000'000'000, stamp.modified / 1'000 % 1'000'000 };
    const timeval times[] { time, time };
    QCOMPARE(::utimes(QFile::encodeName(file).constData(), times), 0);
}

} // namespace

class IconStoreTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void icons_areAtHandInTheNextRun_withTheirColors()
    {
        const Kept kept;
        IconStore store(kept.folder());
        store.prepare(kept.icons);
        for (const QString &bundle : kept.bundles) {
            const auto icon = store.atHand(bundle, edge);
            QVERIFY(icon && icon->question);
            const QImage right = kept.icons.decode({ bundle }, edge);
            QCOMPARE(icon->image, right);
            QCOMPARE(icon->question->minSaturation, 0.5F);
            const IconMeasurement measured = Kept::measured(right);
            QCOMPARE(size_t(icon->colors.size()), measured.colors.size());
            QCOMPARE(std::memcmp(icon->colors.constData(), measured.colors.data(),
                         measured.colors.size() * sizeof(HclColor)),
                0);
            // The same picture, so that what is shown need not be compared.
            QCOMPARE(store.find({ bundle }, edge)->image.cacheKey(), icon->image.cacheKey());
        }
        QVERIFY(!store.isChanged());
        store.endAtHand();
        QCOMPARE(stateOf(store, kept), u"fff"_s);
        QCOMPARE(kept.icons.resolved, 0);
        QVERIFY(!store.find({ kept.bundles[0] }, 2 * edge));
        store.rest();
        QCOMPARE(stateOf(store, kept), u"fff"_s);
    }

    void scaledIcons_areKept_withTheirOriginals()
    {
        const Kept kept;
        {
            IconStore store(kept.folder());
            kept.add(store);
            for (const QString &bundle : kept.bundles) {
                const QImage icon = store.find({ bundle }, edge)->image;
                store.keepScaled(icon.cacheKey(), icon.scaled(edge / 2, edge / 2));
                // An icon of this run is seen in the file as well.
                store.write(kept.icons);
                QCOMPARE(store.kept(icon.cacheKey()), icon);
            }
        }
        save(kept.bundles[0], "7");
        IconStore store(kept.folder());
        store.prepare(kept.icons);
        kept.add(store);
        const auto scaledOf = [&](const QString &bundle) {
            return store.findScaled(store.find({ bundle }, edge)->image.cacheKey(), edge / 2);
        };
        QVERIFY(scaledOf(kept.bundles[0]).isNull());
        QCOMPARE(scaledOf(kept.bundles[1]), pattern(1, edge).scaled(edge / 2, edge / 2));
    }

    void staleIcons_areNotUsed_data()
    {
        QTest::addColumn<QString>("state");
        QTest::newRow("nothing") << u"hhh"_s;
        QTest::newRow("written over, same size and times") << u"-hh"_s;
        QTest::newRow("touched") << u"-hh"_s;
        QTest::newRow("longer") << u"-hh"_s;
        QTest::newRow("exchanged, same size and times") << u"-hh"_s;
        QTest::newRow("deleted") << u"-hh"_s;
        QTest::newRow("other theme") << u"fff"_s;
        QTest::newRow("other theme, stand-ins") << u"---"_s;
        QTest::newRow("not settled") << u"hh-"_s;
    }
    void staleIcons_areNotUsed()
    {
        Kept kept;
        const QString &first = kept.bundles[0];
        const FileStamp before = FileStamp::of(first);
        const QByteArray change = QTest::currentDataTag();
        if (change.startsWith("written over")) {
            save(first, "7");
            setTimes(first, before);
        } else if (change == "touched") {
            setTimes(first, {});
        } else if (change == "longer") {
            save(first, "07");
        } else if (change.startsWith("exchanged")) {
            const QString other = kept.tree.add(u"other"_s, "7");
            setTimes(other, before);
            QCOMPARE(::rename(other.toUtf8().constData(), first.toUtf8().constData()), 0);
        } else if (change == "deleted") {
            QVERIFY(QFile::remove(first));
        } else if (change == "other theme, stand-ins") {
            QVERIFY(QFile::remove(kept.file()));
            IconStore store(kept.folder());
            kept.add(store, /*isThemed=*/true);
            store.write(kept.icons);
            QCOMPARE(reopened(kept), u"hhh"_s);
        } else if (change == "not settled") {
            QVERIFY(QFile::remove(kept.file()));
            IconStore store(kept.folder());
            const QString last = kept.bundles.takeLast();
            kept.add(store);
            IconFetch::load(last, edge, kept.icons, &store);
            store.write(kept.icons);
            kept.bundles.append(last);
        }
        if (change.startsWith("other theme")) {
            kept.icons.theme = "two";
        }
        QTEST(reopened(kept), "state");
    }

    // The index and the pictures.
    void damagedFile_givesTheRightPictureOrNone()
    {
        const Kept kept;
        const QByteArray whole = load(kept.file());
        QList<QImage> right;
        for (const QString &bundle : kept.bundles) {
            right.append(kept.icons.decode({ bundle }, edge));
        }
        QRandomGenerator random(1);
        int pictures = 0;
        for (int i = 0; i < 10'000; ++i) {
            QByteArray damaged = whole;
            if (i % 4 == 0) {
                damaged.truncate(random.bounded(int(whole.size())));
            }
            for (int flips = i % 4; flips > 0; --flips) {
                const int at = random.bounded(int(whole.size()));
                damaged[at] = char(damaged[at] ^ (1 << random.bounded(8)));
            }
            save(kept.file(), damaged);
            QString problem;
            const auto file = StoreFile::open(kept.file(), &problem);
            for (const PictureRecord &record :
                file ? file->index().pictures : QList<PictureRecord>()) {
                const QImage image = file->icon(record).image;
                pictures += image.isNull() ? 0 : 1;
                QVERIFY(image.isNull()
                    || image == right[qsizetype(kept.bundles.indexOf(record.key.file))]);
            }
        }
        // Those before and behind the damage.
        QVERIFY(pictures > iconCount);
    }

    void indexOfAnotherProgram_isKeptWithinTheFile()
    {
        const Kept kept;
        QString problem;
        const StoreIndex whole = StoreFile::open(kept.file(), &problem)->index();
        const qint64 end = QFileInfo(kept.file()).size();
        QVERIFY(StoreIndex::fromBytes(whole.toBytes(), 64, end));
        using Change = void (*)(StoreIndex &);
        for (const Change change : { Change([](StoreIndex &i) { i.pictures[0].offset = 1; }),
                 Change([](StoreIndex &i) { i.pictures[0].offset = INT64_MAX - 7; }),
                 Change([](StoreIndex &i) { i.pictures[0].offset = -8; }),
                 Change([](StoreIndex &i) { i.pictures[0].key.size = 1'000; }),
                 Change([](StoreIndex &i) { i.pictures[0].key.size = -edge; }),
                 Change([](StoreIndex &i) { i.pictures[0].colorCount = UINT32_MAX; }),
                 Change([](StoreIndex &i) { i.answers[0].picture = 3; }),
                 Change([](StoreIndex &i) { i.answers[0].picture = -2; }) }) {
            StoreIndex changed = whole;
            change(changed);
            QVERIFY(!StoreIndex::fromBytes(changed.toBytes(), 64, end));
        }
    }

    void foreignFile_isNotUsed_data()
    {
        QTest::addColumn<QString>("problem");
        QTest::newRow("other version") << u"damaged"_s;
        QTest::newRow("other user") << u"it belongs to another user"_s;
        QTest::newRow("others may write") << u"other users may write to it"_s;
        QTest::newRow("empty") << u"its length of 0 bytes is out of range"_s;
        QTest::newRow("4 GB") << u"its length of 4294967296 bytes is out of range"_s;
        QTest::newRow("folder") << u"not a regular file"_s;
        QTest::newRow("link") << u"Too many levels of symbolic links"_s;
        QTest::newRow("absent") << QString();
    }
    void foreignFile_isNotUsed()
    {
        const Kept kept;
        const QByteArray path = QFile::encodeName(kept.file());
        const QByteArray what = QTest::currentDataTag();
        if (what == "other version") {
            QByteArray bytes = load(kept.file());
            bytes[8] = 99;
            save(kept.file(), bytes);
        } else if (what == "other user") {
            if (::geteuid() != 0) {
                QSKIP("only root gives files away");
            }
            QCOMPARE(::chown(path.constData(), 12345, 12345), 0);
        } else if (what == "others may write") {
            QCOMPARE(::chmod(path.constData(), 0666), 0);
        } else if (what == "empty" || what == "4 GB") {
            QCOMPARE(::truncate(path.constData(), what == "empty" ? 0 : 1LL << 32), 0);
        } else {
            QVERIFY(QFile::rename(kept.file(), kept.tree.path(u"moved"_s)));
            if (what == "folder") {
                QVERIFY(QDir().mkpath(kept.file()));
            } else if (what == "link") {
                QVERIFY(QFile::link(kept.tree.path(u"moved"_s), kept.file()));
            }
        }
        QFETCH(const QString, problem);
        if (!problem.isEmpty()) {
            expectWarning(u"^cannot use .*: "_s + problem);
        }
        QCOMPARE(reopened(kept), u"---"_s);
        // All but a folder makes way for a good one.
        IconStore store(kept.folder());
        kept.add(store);
        if (what == "folder") {
            expectWarning(u"^cannot write .*: Is a directory"_s);
        }
        store.write(kept.icons);
        if (what == "folder") {
            expectWarning(u"^cannot use .*: "_s + problem);
        }
        QCOMPARE(reopened(kept), what == "folder" ? u"---"_s : u"hhh"_s);
    }

    void fileCutShortInUse_readsAsNothingAndIsTold()
    {
        const Kept kept;
        auto store = std::make_shared<IconStore>(kept.folder());
        IconLoader loader;
        loader.keepIcons(store, kept.icons);
        QSignalSpy lost(&loader, &IconLoader::iconsLost);
        QTRY_VERIFY(store->atHand(kept.bundles[0], edge));
        const QImage first = store->atHand(kept.bundles[0], edge)->image;
        QCOMPARE(::truncate(QFile::encodeName(kept.file()).constData(), 0), 0);
        QCOMPARE(first.pixel(0, 0), 0U);
        QVERIFY(lost.wait());
        QCOMPARE(stateOf(*store, kept), u"---"_s);
        loader.stopKeeping();
    }

    void fullDisk_isSaidOnce_andTheOldFileStays()
    {
        const Kept kept;
        IconStore store(kept.folder());
        store.prepare(kept.icons);
        kept.add(store);
        const auto previous = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit {};
        ::getrlimit(RLIMIT_FSIZE, &limit);
        const rlimit tight { 1024, limit.rlim_max };
        ::setrlimit(RLIMIT_FSIZE, &tight);
        expectWarning(u"^cannot write .*icons: File too large$"_s);
        store.write(kept.icons);
        ::setrlimit(RLIMIT_FSIZE, &limit);
        std::signal(SIGXFSZ, previous);
        QVERIFY(!store.isChanged());
        QCOMPARE(QDir(kept.folder()).entryList(QDir::Files), QStringList { u"icons"_s });
        QCOMPARE(reopened(kept), u"hhh"_s);
    }

    void twoPrograms_leaveAWholeFile()
    {
        const Kept kept;
        const auto write = [&kept] {
            for (int i = 0; i < 50; ++i) {
                IconStore store(kept.folder());
                store.prepare(kept.icons);
                kept.add(store);
                store.write(kept.icons);
            }
        };
        std::thread other(write);
        write();
        other.join();
        QCOMPARE(reopened(kept), u"hhh"_s);
    }

    // The theme has another picture for the first one, which no state of a file tells.
    void loader_handsOverAtOnce_andCorrectsLater()
    {
        Kept kept;
        IconLoader loader;
        loader.keepIcons(std::make_shared<IconStore>(kept.folder()), kept.icons);
        kept.icons.sources.insert(kept.bundles[0], kept.bundles[2]);
        QHash<QString, QList<QImage>> received;
        IconParameters parameters;
        parameters.maximumIconSize = edge;
        for (const QString &bundle : std::as_const(kept.bundles)) {
            loader.addOperation({ bundle, parameters,
                                    [&received, bundle](const LoadedIcon &icon) {
                                        QVERIFY(icon.measurement.isMeasured);
                                        received[bundle].append(icon.image);
                                    } },
                kept.icons);
            QCOMPARE(received[bundle].size(), 1);
        }
        QCOMPARE(loader.pendingCount(), 0);
        QCOMPARE(kept.icons.resolved, 0);
        QSignalSpy finished(&loader, &IconLoader::finished);
        QVERIFY(finished.wait());
        QCOMPARE(kept.icons.resolved, iconCount);
        QCOMPARE(received[kept.bundles[0]].last(), pattern(2, edge));
        QCOMPARE(received[kept.bundles[0]].size(), 2);
        QCOMPARE(received[kept.bundles[1]].size(), 1);
        loader.stopKeeping();
    }
};

QTEST_GUILESS_MAIN(IconStoreTest)
#include "IconStoreTest.moc"

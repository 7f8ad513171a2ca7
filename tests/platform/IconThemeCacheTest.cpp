#include "platform/freedesktop/IconThemeCache.h"

#include "platform/IconThemeFiles.h"
#include "platform/freedesktop/IconLookup.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>

class IconThemeCacheTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void index_isUsedWhileUpToDate_data();
    void index_isUsedWhileUpToDate();
    void indexOfTheUsualTool_isUnderstood();
    void truncatedIndex_isSafe();
    void damagedIndex_isSafe();
    void ringOfIcons_comesToAnEnd();
    void pipeForAnIndex_isNotOpened();

private:
    // A theme with an index that is asked for everything it has and more.
    static void ask(const QString &themeFolder);
};

void IconThemeCacheTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
}

static IconThemeFiles *smallTheme()
{
    auto *themes = new IconThemeFiles;
    themes->addTheme(QStringLiteral("T"), {}, QStringLiteral("64:Fixed:64 48/apps:Fixed:48"));
    themes->addPictures(QStringLiteral("base/T/64/a.png base/T/48/apps/a.svg base/T/64/bcd.xpm"));
    return themes;
}

void IconThemeCacheTest::ask(const QString &themeFolder)
{
    const auto cache = IconThemeCache::open(QFile::encodeName(themeFolder));
    if (cache == nullptr) {
        return;
    }
    const size_t directories = cache->directories().size();
    QVERIFY(directories <= 65536);
    for (const char *name : { "a", "bcd", "nobody", "" }) {
        const IconImages images = cache->find(name);
        QVERIFY(images.size() < 1000);
    }
}

static void setTime(const QString &path, time_t seconds)
{
    const timespec times[2] { { seconds, 0 }, { seconds, 0 } };
    QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
}

void IconThemeCacheTest::index_isUsedWhileUpToDate_data()
{
    QTest::addColumn<int>("secondsNewer");
    QTest::addColumn<bool>("isUsed");
    QTest::newRow("newer") << 100 << true;
    QTest::newRow("as old") << 0 << true;
    QTest::newRow("older") << -1 << false;
}

void IconThemeCacheTest::index_isUsedWhileUpToDate()
{
    QFETCH(int, secondsNewer);
    QFETCH(bool, isUsed);
    const std::unique_ptr<IconThemeFiles> themes(smallTheme());
    const QString folder = themes->path(QStringLiteral("base/T"));
    themes->addCaches();
    // The index does not know of this one.
    const QString late = themes->addPicture(QStringLiteral("base/T/64/late.png"));
    const time_t now = 1'700'000'000;
    setTime(folder + QLatin1String("/icon-theme.cache"), now + secondsNewer);
    setTime(folder, now);

    const IconLookup lookup(themes->places(), QStringLiteral("T"));

    QCOMPARE(lookup.find(QStringLiteral("late"), 64), isUsed ? QString() : late);
    QCOMPARE(lookup.find(QStringLiteral("bcd"), 64), folder + QLatin1String("/64/bcd.xpm"));
}

void IconThemeCacheTest::indexOfTheUsualTool_isUnderstood()
{
    const QString tool = QStandardPaths::findExecutable(QStringLiteral("gtk-update-icon-cache"));
    if (tool.isEmpty()) {
        QSKIP("gtk-update-icon-cache is not installed");
    }
    const std::unique_ptr<IconThemeFiles> themes(smallTheme());
    const QString folder = themes->path(QStringLiteral("base/T"));
    QCOMPARE(QProcess::execute(tool, { QStringLiteral("-q"), QStringLiteral("-f"), folder }), 0);

    const auto cache = IconThemeCache::open(QFile::encodeName(folder));

    QVERIFY(cache != nullptr);
    const IconImages images = cache->find("a");
    QCOMPARE(images.size(), 2);
    for (const IconImage &image : images) {
        const bool isLarge = cache->directories().at(size_t(image.directory)) == "64";
        QCOMPARE(image.suffixes, isLarge ? PngSuffix : SvgSuffix);
    }
    QVERIFY(cache->find("b").isEmpty());
}

void IconThemeCacheTest::truncatedIndex_isSafe()
{
    const std::unique_ptr<IconThemeFiles> themes(smallTheme());
    themes->addCaches();
    const QString folder = themes->path(QStringLiteral("base/T"));
    QFile file(folder + QLatin1String("/icon-theme.cache"));
    for (qint64 length = file.size(); length >= 0; --length) {
        QVERIFY(file.resize(length));
        ask(folder);
    }
}

void IconThemeCacheTest::damagedIndex_isSafe()
{
    const std::unique_ptr<IconThemeFiles> themes(smallTheme());
    const QString folder = themes->path(QStringLiteral("base/T"));
    const QByteArray whole = IconThemeFiles::cacheOf(folder);
    themes->addCaches();
    QFile file(folder + QLatin1String("/icon-theme.cache"));
    QVERIFY(file.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    // Every number once as large as can be, near the end, and zero.
    const QByteArrayList values { QByteArray(4, '\xff'), QByteArray("\x7f\xff\xff\xff"),
        QByteArray("\0\0\0", 3) + char(whole.size() - 3), QByteArray(4, '\0') };
    for (qsizetype at = 0; at + 4 <= whole.size(); ++at) {
        for (const QByteArray &value : values) {
            QVERIFY(file.seek(at) && file.write(value) == 4);
            ask(folder);
        }
        QVERIFY(file.seek(at) && file.write(whole.mid(at, 4)) == 4);
    }
}

void IconThemeCacheTest::ringOfIcons_comesToAnEnd()
{
    const std::unique_ptr<IconThemeFiles> themes(smallTheme());
    const QString folder = themes->path(QStringLiteral("base/T"));
    QByteArray cache = IconThemeFiles::cacheOf(folder);
    // The one bucket's first icon is followed by itself.
    const QByteArray first = cache.mid(16, 4);
    cache.replace(qFromBigEndian<qint32>(first.constData()), 4, first);
    IconThemeFiles::writeCache(folder, cache);
    ask(folder);
    QVERIFY(IconThemeCache::open(QFile::encodeName(folder)) != nullptr);
}

void IconThemeCacheTest::pipeForAnIndex_isNotOpened()
{
    const std::unique_ptr<IconThemeFiles> themes(smallTheme());
    const QString folder = themes->path(QStringLiteral("base/T"));
    const QByteArray pipe = QFile::encodeName(folder + QLatin1String("/icon-theme.cache"));
    QCOMPARE(::mkfifo(pipe.constData(), 0600), 0);
    const IconLookup lookup(themes->places(), QStringLiteral("T"));
    QVERIFY(!lookup.find(QStringLiteral("a"), 64).isEmpty());
}

QTEST_GUILESS_MAIN(IconThemeCacheTest)
#include "IconThemeCacheTest.moc"

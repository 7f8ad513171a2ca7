#include "platform/freedesktop/icons/IconThemeCache.h"

#include "platform/freedesktop/icons/IconLookup.h"
#include "platform/icons/IconThemeFiles.h"

#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

// A theme whose index is asked for everything it has and more.
class SmallTheme final
{
public:
    SmallTheme()
    {
        files.addTheme(u"T"_s, {}, u"64:Fixed:64 48/apps:Fixed:48"_s);
        for (const QString &picture : { u"64/a.png"_s, u"48/apps/a.svg"_s, u"64/bcd.xpm"_s }) {
            files.addPicture(u"base/T/"_s + picture);
        }
    }

    void ask() const
    {
        const auto cache = IconThemeCache::open(QFile::encodeName(folder));
        if (cache == nullptr) {
            return;
        }
        QVERIFY(cache->directories().size() < 10'000);
        for (const char *name : { "a", "bcd", "other", "" }) {
            QVERIFY(cache->find(name).size() <= 1000);
        }
    }

    IconThemeFiles files;
    QString folder = files.path(u"base/T"_s);
    QString index = folder + u"/icon-theme.cache"_s;
};

static void setTime(const QString &path, time_t seconds)
{
    const timespec times[2] { { seconds, 0 }, { seconds, 0 } };
    QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
}

class IconThemeCacheTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }

    void index_isUsedWhileUpToDate()
    {
        SmallTheme theme;
        theme.files.addCaches();
        // The index does not know of this one.
        const QString late = theme.files.addPicture(u"base/T/64/late.png"_s);
        const time_t now = 1'700'000'000;
        setTime(theme.folder, now);
        for (const int secondsNewer : { 0, -1 }) {
            setTime(theme.index, now + secondsNewer);
            const IconLookup lookup(theme.files.places(), u"T"_s);
            QCOMPARE(lookup.find(u"late"_s, 64), secondsNewer < 0 ? late : QString());
            QCOMPARE(lookup.find(u"bcd"_s, 64), theme.folder + u"/64/bcd.xpm"_s);
        }
    }

    void indexOfTheUsualTool_isUnderstood()
    {
        const QString tool = QStandardPaths::findExecutable(u"gtk-update-icon-cache"_s);
        if (tool.isEmpty()) {
            QSKIP("gtk-update-icon-cache is not installed");
        }
        const SmallTheme theme;
        QCOMPARE(QProcess::execute(tool, { u"-q"_s, u"-f"_s, theme.folder }), 0);
        const auto cache = IconThemeCache::open(QFile::encodeName(theme.folder));
        QVERIFY(cache != nullptr);
        const IconImages images = cache->find("a");
        QCOMPARE(images.size(), 2);
        for (const IconImage &image : images) {
            const bool isLarge = cache->directories().at(size_t(image.directory)) == "64";
            QCOMPARE(image.suffixes, isLarge ? PngSuffix : SvgSuffix);
        }
        QVERIFY(cache->find("b").isEmpty());
    }

    void damagedIndex_isSafe()
    {
        const SmallTheme theme;
        const QByteArray whole = IconThemeFiles::cacheOf(theme.folder);
        theme.files.addCaches();
        QFile file(theme.index);
        QVERIFY(file.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
        // Every number once as large as can be, near the end, and zero.
        const QByteArrayList values { QByteArray(4, '\xff'), QByteArray("\x7f\xff\xff\xff"),
            QByteArray("\0\0\0", 3) + char(whole.size() - 3), QByteArray(4, '\0') };
        for (qsizetype at = 0; at + 4 <= whole.size(); ++at) {
            for (const QByteArray &value : values) {
                QVERIFY(file.seek(at) && file.write(value) == 4);
                theme.ask();
            }
            QVERIFY(file.seek(at) && file.write(whole.mid(at, 4)) == 4);
        }
        // Shortened in place, both for who opens it anew and for who has it open.
        const auto open = IconThemeCache::open(QFile::encodeName(theme.folder));
        QCOMPARE(open->find("a").size(), 2);
        for (qint64 length = file.size(); length >= 0; --length) {
            QVERIFY(file.resize(length));
            theme.ask();
            QVERIFY(open->find("a").size() <= 2);
        }
        QVERIFY(open->find("a").isEmpty() && open->directories().empty());
    }

    void ringOfIcons_comesToAnEnd()
    {
        const SmallTheme theme;
        QByteArray cache = IconThemeFiles::cacheOf(theme.folder);
        // The one bucket's first icon is followed by itself.
        const QByteArray first = cache.mid(16, 4);
        cache.replace(qFromBigEndian<qint32>(first.constData()), 4, first);
        IconThemeFiles::writeCache(theme.folder, cache);
        QVERIFY(IconThemeCache::open(QFile::encodeName(theme.folder))->find("zz").isEmpty());
    }

    void pipeForAnIndex_isNotOpened()
    {
        const SmallTheme theme;
        QCOMPARE(::mkfifo(QFile::encodeName(theme.index).constData(), 0600), 0);
        QVERIFY(IconThemeCache::open(QFile::encodeName(theme.folder)) == nullptr);
    }
};

QTEST_GUILESS_MAIN(IconThemeCacheTest)
#include "IconThemeCacheTest.moc"

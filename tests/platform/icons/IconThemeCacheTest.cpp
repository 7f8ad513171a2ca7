#include "platform/freedesktop/icons/IconThemeCache.h"

#include "platform/freedesktop/icons/IconLookup.h"
#include "platform/icons/IconThemeFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

// Damaged ones are for the fuzz target.
class IconThemeCacheTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        _files = std::make_unique<IconThemeFiles>();
        _folder = _files->path(u"base/T"_s);
        _files->addTheme(u"T"_s, {}, u"64:Fixed:64 48/apps:Fixed:48"_s);
        for (const QString &picture : { u"64/a.png"_s, u"48/apps/a.svg"_s, u"64/bcd.xpm"_s }) {
            _files->addPicture(u"base/T/"_s + picture);
        }
    }

    void index_isUsedWhileUpToDate()
    {
        _files->addCaches();
        // The index does not know of this one.
        const QString late = _files->addPicture(u"base/T/64/late.png"_s);
        const auto setTime = [](const QString &path, time_t seconds) {
            const timespec times[2] { { seconds, 0 }, { seconds, 0 } };
            QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
        };
        const time_t now = 1'700'000'000;
        setTime(_folder, now);
        for (const int secondsNewer : { 0, -1 }) {
            setTime(_folder + u"/icon-theme.cache"_s, now + secondsNewer);
            const IconLookup lookup(_files->places(), u"T"_s);
            QCOMPARE(lookup.find(u"late"_s, 64), secondsNewer < 0 ? late : QString());
            QCOMPARE(lookup.find(u"bcd"_s, 64), _folder + u"/64/bcd.xpm"_s);
        }
    }

    void index_namesDirectoriesAndKinds()
    {
        _files->addCaches();
        const auto cache = open();
        QVERIFY(cache != nullptr);
        const IconImages images = cache->find("a");
        QCOMPARE(images.size(), 2);
        for (const IconImage &image : images) {
            const bool isLarge = cache->directories().at(size_t(image.directory)) == "64";
            QCOMPARE(image.suffixes, isLarge ? PngSuffix : SvgSuffix);
        }
        QVERIFY(cache->find("b").isEmpty());
        // Cut short while it is in use, and for a program that opens it then.
        QFile file(_folder + u"/icon-theme.cache"_s);
        QVERIFY(file.resize(file.size() / 2) && open() == nullptr);
        QVERIFY(file.resize(0) && cache->find("a").isEmpty() && cache->directories().empty());
    }

    void pipeForAnIndex_isNotOpened()
    {
        const QByteArray index = QFile::encodeName(_folder) + "/icon-theme.cache";
        QCOMPARE(::mkfifo(index.constData(), 0600), 0);
        QVERIFY(open() == nullptr);
    }

private:
    std::unique_ptr<const IconThemeCache> open() const
    {
        return IconThemeCache::open(QFile::encodeName(_folder));
    }

    std::unique_ptr<IconThemeFiles> _files;
    QString _folder;
};

QTEST_GUILESS_MAIN(IconThemeCacheTest)
#include "IconThemeCacheTest.moc"

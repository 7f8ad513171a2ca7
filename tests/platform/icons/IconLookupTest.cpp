#include "platform/freedesktop/icons/IconLookup.h"

#include "platform/freedesktop/icons/IconThemeCache.h"
#include "platform/icons/IconThemeFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

class IconLookupTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void name_givesBestFile()
    {
        // Directories, files of the theme T (others with their whole paths), of which the first is
        // to be found, and what is asked for, always for 64 pixels.
        struct Row
        {
            const char *directories, *files;
            const char *name = "a";
        };
        for (const auto &[directories, files, name] : {
                 Row {
                     "48:Fixed:48 64:Fixed:64 256:Fixed:256", "T/64/a.png T/48/a.png T/256/a.png" },
                 Row { "48:Fixed:48 256:Fixed:256", "T/48/a.png T/256/a.png" },
                 // Equally near: the first of the theme.
                 Row { "96:Fixed:96 32:Fixed:32", "T/96/a.png T/32/a.png" },
                 Row { "48:Fixed:48 s:Scalable:16:8:512", "T/s/a.svg T/48/a.png" },
                 // Pictures that fit as well: the one drawn for the size.
                 Row { "256:Scalable:256:56:256 64:Fixed:64", "T/64/a.png T/256/a.png" },
                 // A drawing that fits as well: the first of the theme.
                 Row { "s:Scalable:256:56:256 64:Fixed:64", "T/s/a.svg T/64/a.png" },
                 Row { "s:Scalable:512:512:512 62:Threshold:62", "T/62/a.png T/s/a.svg" },
                 // The twin of another scale has its real size, and comes last.
                 Row { "32x2:Fixed:32:32:32:2 64:Fixed:64", "T/64/a.png T/32x2/a.png" },
                 Row { "64:Fixed:64", "T/64/a.png T/64/a.xpm T/64/a.svg" },
                 Row { "64:Fixed:64", "T/64/a.svg T/64/a.xpm" },
                 Row { "x:- 16:Fixed:16", "T/16/a.png T/x/a.png" },
                 Row { "64:Fixed:64", "user/T/64/a.png T/64/a.png" },
                 Row { "64:Fixed:64 48:Fixed:48", "T/64/a.png user/T/48/a.png" },
                 Row { "16:Fixed:16", "T/16/a.png pixmaps/a.png" },
                 Row { "64:Fixed:64", "base/a.svg pixmaps/a.png" },
                 Row { "64:Fixed:64", "pixmaps/a.png T/64/a.png", "a.png" },
                 Row { "64:Fixed:64", "T/64/a.png pixmaps/a.xpm", "a.svg" },
                 Row { "64:Fixed:64", " T/64/abc.png", "ab" },
                 Row { "64:Fixed:64", " T/64/a.png", "64/a" },
             }) {
            IconThemeFiles themes;
            themes.addTheme(u"T"_s, {}, QLatin1String(directories));
            QStringList paths;
            for (const QString &file : QString::fromLatin1(files).split(u' ')) {
                const QString whole = file.startsWith(u"T/"_s) ? u"base/"_s + file : file;
                paths += file.isEmpty() ? file : themes.addPicture(whole);
            }
            const QString asked = QLatin1String(name);
            QCOMPARE(IconLookup(themes.places(), u"T"_s).find(asked, 64), paths[0]);
            themes.addCaches();
            QCOMPARE(IconLookup(themes.places(), u"T"_s).find(asked, 64), paths[0]);
        }
    }

    void themes_areAskedInOrder()
    {
        // What A to D inherit, and the files, of which the first one is expected.
        const std::pair<QStringList, QString> rows[] {
            { { u"B"_s }, u"A/16/a.png B/64/a.png"_s }, // its own, at any size
            { { u"C,B"_s }, u"C/64/a.png B/64/a.png"_s },
            { { u"B,C"_s, u"D"_s }, u"D/64/a.png C/64/a.png"_s },
            { { u"B"_s, u"C"_s, u"A"_s }, u"C/64/a.png"_s }, // in a circle
            { { u"X, B"_s }, u"B/64/a.png"_s },
            { { u"hicolor,B"_s }, u"B/64/a.png hicolor/64/a.png"_s },
            { {}, u"hicolor/64/a.png B/64/a.png"_s },
        };
        for (const auto &[inherits, files] : rows) {
            IconThemeFiles themes;
            const QStringList names { u"A"_s, u"B"_s, u"C"_s, u"D"_s, u"hicolor"_s };
            for (qsizetype i = 0; i < names.size(); ++i) {
                themes.addTheme(names[i], inherits.value(i), u"64:Fixed:64 16:Fixed:16"_s);
            }
            for (const QString &file : files.split(u' ')) {
                themes.addPicture(u"base/"_s + file);
            }
            const QString expected = themes.path(u"base/"_s + files.section(u' ', 0, 0));
            QCOMPARE(IconLookup(themes.places(), u"A"_s).find(u"a"_s, 64), expected);
        }
    }

    void fileGoneSinceTheIndex_givesTheNextBest()
    {
        IconThemeFiles themes;
        themes.addTheme(u"T"_s, {}, u"64:Fixed:64 48:Fixed:48"_s);
        const QString gone = themes.addPicture(u"base/T/64/a.png"_s);
        const QString left = themes.addPicture(u"base/T/48/a.png"_s);
        themes.addCaches();
        QVERIFY(QFile::remove(gone));
        QCOMPARE(IconLookup(themes.places(), u"T"_s).find(u"a"_s, 64), left);
    }

    void standIns_areTheNextBest()
    {
        IconThemeFiles themes;
        themes.addTheme(u"T"_s, u"P"_s,
            u"16:Fixed:16 48:Fixed:48 s:Scalable:64:8:512 96:Fixed:96 128:Fixed:128"_s);
        themes.addTheme(u"P"_s, {}, u"64:Fixed:64"_s);
        QStringList expected;
        // 16 pixels are too few, and what is asked for does not count.
        for (const QString &file : { u"T/96/a.png"_s, u"T/128/a.png"_s, u"T/128/a.svg"_s,
                 u"T/48/a.png"_s, u"P/64/a.png"_s }) {
            expected.append(themes.addPicture(u"base/"_s + file));
        }
        expected.append(themes.addPicture(u"pixmaps/a.png"_s));
        themes.addPicture(u"base/T/16/a.png"_s);
        const QString flawed = themes.addPicture(u"base/T/s/a.svg"_s);
        const IconLookup lookup(themes.places(), u"T"_s);
        QCOMPARE(lookup.find(u"a"_s, 64), flawed);
        QCOMPARE(lookup.standIns(u"a"_s, 64, flawed), expected);
        QCOMPARE(lookup.standIns(u"../a"_s, 64, flawed), QStringList());
    }

    void state_differsWhenAnIconComes()
    {
        const auto differsBy = [](const QString &file, bool isIndexed = false) {
            IconThemeFiles themes;
            themes.addTheme(u"T"_s, u"P"_s, u"64:Fixed:64 48:Fixed:48"_s);
            themes.addPicture(u"base/T/64/a.png"_s);
            themes.addPicture(u"pixmaps/a.png"_s);
            if (isIndexed) {
                themes.addCaches();
            }
            const QByteArray before = IconLookup(themes.places(), u"T"_s).state();
            themes.addPicture(file);
            return IconLookup(themes.places(), u"T"_s).state() != before;
        };
        QVERIFY(differsBy(u"base/T/48/a.png"_s));
        QVERIFY(differsBy(u"base/T/48/a.png"_s, /*isIndexed=*/true));
        QVERIFY(differsBy(u"base/P/index.theme"_s));
        QVERIFY(!differsBy(u"base/U/64/a.png"_s));
    }

    void index_isUsedWhileUpToDate()
    {
        SmallTheme theme;
        theme.files.addCaches();
        // The index does not know of this one.
        const QString late = theme.files.addPicture(u"base/T/64/late.png"_s);
        const auto setTime = [](const QString &path, time_t seconds) {
            const timespec times[2] { { seconds, 0 }, { seconds, 0 } };
            QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
        };
        const time_t now = 1'700'000'000;
        setTime(theme.folder, now);
        for (const int secondsNewer : { 0, -1 }) {
            setTime(theme.folder + u"/icon-theme.cache"_s, now + secondsNewer);
            const IconLookup lookup(theme.files.places(), u"T"_s);
            QCOMPARE(lookup.find(u"late"_s, 64), secondsNewer < 0 ? late : QString());
            QCOMPARE(lookup.find(u"bcd"_s, 64), theme.folder + u"/64/bcd.xpm"_s);
        }
    }

    void index_namesDirectoriesAndKinds()
    {
        SmallTheme theme;
        theme.files.addCaches();
        const auto cache = theme.open();
        QVERIFY(cache != nullptr);
        const IconImages images = cache->find("a");
        QCOMPARE(images.size(), 2);
        for (const IconImage &image : images) {
            const bool isLarge = cache->directories().at(size_t(image.directory)) == "64";
            QCOMPARE(image.suffixes, isLarge ? PngSuffix : SvgSuffix);
        }
        QVERIFY(cache->find("b").isEmpty());
        // Cut short while it is in use, and for a program that opens it then.
        QFile file(theme.folder + u"/icon-theme.cache"_s);
        QVERIFY(file.resize(file.size() / 2) && theme.open() == nullptr);
        QVERIFY(file.resize(0) && cache->find("a").isEmpty() && cache->directories().empty());
    }

private:
    // A theme whose index is looked into; damaged ones are for the fuzz target.
    struct SmallTheme
    {
        SmallTheme()
        {
            files.addTheme(u"T"_s, {}, u"64:Fixed:64 48/apps:Fixed:48"_s);
            for (const QString &picture : { u"64/a.png"_s, u"48/apps/a.svg"_s, u"64/bcd.xpm"_s }) {
                files.addPicture(u"base/T/"_s + picture);
            }
        }
        std::unique_ptr<const IconThemeCache> open() const
        {
            return IconThemeCache::open(QFile::encodeName(folder));
        }

        IconThemeFiles files;
        QString folder = files.path(u"base/T"_s);
    };
};

QTEST_GUILESS_MAIN(IconLookupTest)
#include "IconLookupTest.moc"

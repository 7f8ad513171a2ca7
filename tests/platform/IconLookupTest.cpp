#include "platform/freedesktop/IconLookup.h"

#include "platform/IconThemeFiles.h"

#include <QTest>

class IconLookupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void name_givesBestFile_data();
    void name_givesBestFile();
    void themes_areAskedInOrder_data();
    void themes_areAskedInOrder();
    void fileGoneSinceTheIndex_givesTheNextBest();
    void directoryLeadingOutside_isNotFollowed();
    void state_differsWhenAnIconComes_data();
    void state_differsWhenAnIconComes();
};

void IconLookupTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
}

void IconLookupTest::name_givesBestFile_data()
{
    QTest::addColumn<QString>("directories");
    QTest::addColumn<QString>("files");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *title, const char *directories, const char *files,
                         const char *name, int size, const char *expected) {
        QTest::newRow(title) << QString::fromLatin1(directories) << QString::fromLatin1(files)
                             << QString::fromUtf8(name) << size << QString::fromUtf8(expected);
    };
    row("the very size", "48:Fixed:48 64:Fixed:64 256:Fixed:256",
        "base/T/48/a.png base/T/64/a.png base/T/256/a.png", "a", 64, "base/T/64/a.png");
    row("nearest is smaller", "48:Fixed:48 256:Fixed:256", "base/T/48/a.png base/T/256/a.png", "a",
        64, "base/T/48/a.png");
    row("nearest is larger", "16:Fixed:16 96:Fixed:96", "base/T/16/a.png base/T/96/a.png", "a", 64,
        "base/T/96/a.png");
    row("equally near: first of the theme", "96:Fixed:96 32:Fixed:32",
        "base/T/32/a.png base/T/96/a.png", "a", 64, "base/T/96/a.png");
    row("scalable within its range", "48:Fixed:48 s:Scalable:16:8:512",
        "base/T/48/a.png base/T/s/a.svg", "a", 64, "base/T/s/a.svg");
    row("pictures that fit as well: the one drawn for the size",
        "256:Scalable:256:56:256 64:Fixed:64", "base/T/256/a.png base/T/64/a.png", "a", 64,
        "base/T/64/a.png");
    row("drawing that fits as well: first of the theme", "s:Scalable:256:56:256 64:Fixed:64",
        "base/T/s/a.svg base/T/64/a.png", "a", 64, "base/T/s/a.svg");
    row("scalable outside its range", "48:Fixed:48 s:Scalable:16:8:32",
        "base/T/48/a.png base/T/s/a.svg", "a", 64, "base/T/48/a.png");
    row("threshold reaches two pixels", "s:Scalable:512:512:512 62:Threshold:62",
        "base/T/s/a.svg base/T/62/a.png", "a", 64, "base/T/62/a.png");
    row("threshold's distance", "70:Fixed:70 61:Threshold:61 60:Fixed:60",
        "base/T/70/a.png base/T/61/a.png base/T/60/a.png", "a", 64, "base/T/61/a.png");
    row("twin of another scale only when nothing fits", "32x2:Fixed:32:32:32:2 64:Fixed:64",
        "base/T/32x2/a.png base/T/64/a.png", "a", 64, "base/T/64/a.png");
    row("twin of another scale has its real size", "48:Fixed:48 32x2:Fixed:32:32:32:2",
        "base/T/32x2/a.png base/T/48/a.png", "a", 64, "base/T/32x2/a.png");
    row("PNG, then SVG", "64:Fixed:64", "base/T/64/a.xpm base/T/64/a.svg base/T/64/a.png", "a", 64,
        "base/T/64/a.png");
    row("SVG, then XPM", "64:Fixed:64", "base/T/64/a.xpm base/T/64/a.svg", "a", 64,
        "base/T/64/a.svg");
    row("directory without a section", "x:- 16:Fixed:16", "base/T/x/a.png base/T/16/a.png", "a", 64,
        "base/T/16/a.png");
    row("directory below a directory", "64x64/apps/x:Fixed:64", "base/T/64x64/apps/x/a.png", "a",
        64, "base/T/64x64/apps/x/a.png");
    row("user's part of the theme first", "64:Fixed:64", "user/T/64/a.png base/T/64/a.png", "a", 64,
        "user/T/64/a.png");
    row("size before user's part", "64:Fixed:64 48:Fixed:48", "user/T/48/a.png base/T/64/a.png",
        "a", 64, "base/T/64/a.png");
    row("theme before single pictures", "16:Fixed:16", "base/T/16/a.png pixmaps/a.png", "a", 64,
        "base/T/16/a.png");
    row("single picture", "64:Fixed:64", "pixmaps/a.xpm", "a", 64, "pixmaps/a.xpm");
    row("single picture in a base folder", "64:Fixed:64", "base/a.svg pixmaps/a.png", "a", 64,
        "base/a.svg");
    row("single picture by its full name", "64:Fixed:64", "base/T/64/a.png pixmaps/a.png", "a.png",
        64, "pixmaps/a.png");
    row("full name of another kind", "64:Fixed:64", "base/T/64/a.png pixmaps/a.xpm", "a.svg", 64,
        "base/T/64/a.png");
    row("full name in the theme", "64:Fixed:64", "base/T/64/a.b.svg", "a.b.png", 64,
        "base/T/64/a.b.svg");
    row("name with dots", "64:Fixed:64", "base/T/64/org.x.Y.png", "org.x.Y", 64,
        "base/T/64/org.x.Y.png");
    row("name beyond ASCII", "64:Fixed:64", "base/T/64/b.png", "\xc3\xbc", 64, "");
    row("case counts", "64:Fixed:64", "base/T/64/a.png", "A", 64, "");
    row("part of a name", "64:Fixed:64", "base/T/64/abc.png", "ab", 64, "");
    row("other kinds of file", "64:Fixed:64", "base/T/64/a.txt base/T/64/.png", "a", 64, "");
    row("no name", "64:Fixed:64", "base/T/64/a.png", "", 64, "");
    row("only an extension", "64:Fixed:64", "base/T/64/a.png", ".png", 64, "");
    row("name that is a path", "64:Fixed:64", "base/T/64/a.png", "64/a", 64, "");
    row("name that leads elsewhere", "64:Fixed:64", "base/T/64/a.png base/a.png", "../../a", 64,
        "");
}

void IconLookupTest::name_givesBestFile()
{
    QFETCH(QString, directories);
    QFETCH(QString, files);
    QFETCH(QString, name);
    QFETCH(int, size);
    QFETCH(QString, expected);
    IconThemeFiles themes;
    themes.addTheme(QStringLiteral("T"), {}, directories);
    themes.addPictures(files);
    const QString path = expected.isEmpty() ? QString() : themes.path(expected);

    QCOMPARE(IconLookup(themes.places(), QStringLiteral("T")).find(name, size), path);
    themes.addCaches();
    QCOMPARE(IconLookup(themes.places(), QStringLiteral("T")).find(name, size), path);
}

void IconLookupTest::themes_areAskedInOrder_data()
{
    QTest::addColumn<QString>("inherits");
    QTest::addColumn<QString>("files");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *title, const char *inherits, const char *files,
                         const char *expected) {
        QTest::newRow(title) << QString::fromLatin1(inherits) << QString::fromLatin1(files)
                             << QString::fromLatin1(expected);
    };
    // What A to D inherit, parted by semicolons.
    row("own before parent's, at any size", "B", "A/16/a.png B/64/a.png", "A/16/a.png");
    row("parent's", "B", "B/64/a.png hicolor/64/a.png", "B/64/a.png");
    row("first parent", "C,B", "B/64/a.png C/64/a.png", "C/64/a.png");
    row("grandparent before second parent", "B,C;D", "C/64/a.png D/64/a.png", "D/64/a.png");
    row("itself", "A", "hicolor/64/a.png", "hicolor/64/a.png");
    row("in a circle", "B;C;A", "C/64/a.png", "C/64/a.png");
    row("a parent that is not there", "X, B", "B/64/a.png", "B/64/a.png");
    row("hicolor comes last, wherever it is named", "hicolor,B", "B/64/a.png hicolor/64/a.png",
        "B/64/a.png");
    row("no parents", "", "hicolor/64/a.png B/64/a.png", "hicolor/64/a.png");
    row("a parent outside the base folder", "../other/A", "../other/A/64/a.png", "");
}

void IconLookupTest::themes_areAskedInOrder()
{
    QFETCH(QString, inherits);
    QFETCH(QString, files);
    QFETCH(QString, expected);
    IconThemeFiles themes;
    const QStringList parents = inherits.split(u';');
    const QStringList names { QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C"),
        QStringLiteral("D"), QStringLiteral("hicolor"), QStringLiteral("../other/A") };
    for (qsizetype i = 0; i < names.size(); ++i) {
        themes.addTheme(names[i], parents.value(i), QStringLiteral("64:Fixed:64 16:Fixed:16"));
    }
    for (const QString &file : files.split(u' ')) {
        themes.addPicture(QLatin1String("base/") + file);
    }

    const IconLookup lookup(themes.places(), QStringLiteral("A"));

    QCOMPARE(lookup.find(QStringLiteral("a"), 64),
        expected.isEmpty() ? QString() : themes.path(QLatin1String("base/") + expected));
}

void IconLookupTest::fileGoneSinceTheIndex_givesTheNextBest()
{
    IconThemeFiles themes;
    themes.addTheme(QStringLiteral("T"), {}, QStringLiteral("64:Fixed:64 48:Fixed:48"));
    themes.addPictures(QStringLiteral("base/T/64/a.png base/T/48/a.png"));
    themes.addCaches();
    QVERIFY(QFile::remove(themes.path(QStringLiteral("base/T/64/a.png"))));
    const IconLookup lookup(themes.places(), QStringLiteral("T"));
    QCOMPARE(lookup.find(QStringLiteral("a"), 64), themes.path(QStringLiteral("base/T/48/a.png")));
}

void IconLookupTest::directoryLeadingOutside_isNotFollowed()
{
    IconThemeFiles themes;
    const QString outside = QFileInfo(themes.addPicture(QStringLiteral("outside/a.png"))).path();
    themes.addTheme(QStringLiteral("T"), {},
        QStringLiteral("../../outside:Fixed:64 x/../../../outside:Fixed:64 %1:Fixed:64")
            .arg(outside));
    const IconLookup lookup(themes.places(), QStringLiteral("T"));
    QVERIFY(lookup.find(QStringLiteral("a"), 64).isEmpty());
}

void IconLookupTest::state_differsWhenAnIconComes_data()
{
    QTest::addColumn<bool>("isIndexed");
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("differs");
    const auto row = [](const char *title, bool isIndexed, const char *file, bool differs) {
        QTest::newRow(title) << isIndexed << QString::fromLatin1(file) << differs;
    };
    row("new icon", false, "base/T/64/b.png", true);
    row("new size", false, "base/T/48/a.png", true);
    row("first of the user's own", false, "user/T/48/a.png", true);
    row("new folder in an indexed theme", true, "base/T/48/a.png", true);
    row("parent theme", false, "base/P/index.theme", true);
    row("single picture", false, "pixmaps/b.png", true);
    row("another theme", false, "base/U/64/a.png", false);
    row("no picture", false, "pixmaps/b.txt", false);
}

void IconLookupTest::state_differsWhenAnIconComes()
{
    QFETCH(bool, isIndexed);
    QFETCH(QString, file);
    QFETCH(bool, differs);
    IconThemeFiles themes;
    themes.addTheme(
        QStringLiteral("T"), QStringLiteral("P"), QStringLiteral("64:Fixed:64 48:Fixed:48"));
    themes.addPictures(QStringLiteral("base/T/64/a.png pixmaps/a.png"));
    if (isIndexed) {
        themes.addCaches();
    }
    const QByteArray before = IconLookup(themes.places(), QStringLiteral("T")).state();
    QCOMPARE(IconLookup(themes.places(), QStringLiteral("T")).state(), before);
    themes.addPicture(file);

    QCOMPARE(IconLookup(themes.places(), QStringLiteral("T")).state() != before, differs);
}

QTEST_GUILESS_MAIN(IconLookupTest)
#include "IconLookupTest.moc"

#include "platform/FileTree.h"
#include "platform/freedesktop/FreedesktopIcons.h"

#include <QProcess>
#include <QSaveFile>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

class IconProviderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void bundle_givesSource_data();
    void bundle_givesSource();
    void otherTheme_isNoticed_data();
    void otherTheme_isNoticed();
    void newIcon_isNoticed_data();
    void newIcon_isNoticed();
    void settingOfGSettings_isNoticed();
    void threads_mayAskWhileTheThemeChanges();

private:
    // A session of its own, with the themes One and Two.
    void start(const char *desktop);
    QString path(const QString &relative) const { return _tree->path(relative); }
    void chooseTheme(const char *name);

    std::unique_ptr<FileTree> _tree;
};

static const QByteArray picture = "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 9 9'>"
                                  "<rect width='9' height='9' fill='red'/></svg>";

static QByteArray settingsFor(const char *theme)
{
    return QByteArray("[Settings]\ngtk-icon-theme-name=") + theme + '\n';
}

// What a bundle says its icon is, in these tests: its own path.
static QString itself(const QString &bundlePath)
{
    return bundlePath;
}

void IconProviderTest::initTestCase()
{
    // Both are remembered by GLib from the first question on.
    static const FileTree fixed;
    fixed.path();
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(fixed.path(QStringLiteral("config"))));
    qputenv("GSETTINGS_SCHEMA_DIR", QFile::encodeName(fixed.path(QStringLiteral("schemas"))));
    qputenv("GSETTINGS_BACKEND", "keyfile");
}

void IconProviderTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
}

void IconProviderTest::start(const char *desktop)
{
    _tree = std::make_unique<FileTree>();
    qputenv("HOME", QFile::encodeName(path(QStringLiteral("home"))));
    qputenv("XDG_DATA_HOME", QFile::encodeName(path(QStringLiteral("home/share"))));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(path(QStringLiteral("share"))));
    qputenv("XDG_CONFIG_DIRS", QFile::encodeName(path(QStringLiteral("xdg"))));
    qputenv("XDG_CURRENT_DESKTOP", desktop);
    for (const char *name : { "One", "Two", "hicolor" }) {
        const QString theme = QLatin1String("share/icons/%1/").arg(QLatin1String(name));
        _tree->add(theme + QLatin1String("index.theme"),
            "[Icon Theme]\nDirectories=64\n[64]\nSize=64\nType=Fixed\n");
        _tree->add(theme + QLatin1String("64/app.svg"), picture);
    }
    chooseTheme("One");
}

void IconProviderTest::chooseTheme(const char *name)
{
    _tree->add(QStringLiteral("xdg/gtk-3.0/settings.ini"), settingsFor(name));
}

void IconProviderTest::bundle_givesSource_data()
{
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QString>("expected");
    QTest::newRow("name") << "app"
                          << "share/icons/One/64/app.svg";
    QTest::newRow("name with an extension") << "app.png"
                                            << "share/icons/One/64/app.svg";
    QTest::newRow("path") << "/elsewhere/own.png"
                          << "elsewhere/own.png";
    QTest::newRow("path to nowhere") << "/elsewhere/other.png"
                                     << "";
    QTest::newRow("name nobody has") << "nobody"
                                     << "";
    QTest::newRow("nothing") << ""
                             << "";
    QTest::newRow("relative path") << "64/app"
                                   << "";
}

void IconProviderTest::bundle_givesSource()
{
    QFETCH(QString, icon);
    QFETCH(QString, expected);
    start("");
    _tree->add(QStringLiteral("elsewhere/own.png"), "x");
    const QString given = icon.startsWith(u'/') ? path(icon.mid(1)) : icon;

    const FreedesktopIcons icons(itself);
    QCOMPARE(icons.resolve(given, 64).file, expected.isEmpty() ? QString() : path(expected));
}

void IconProviderTest::otherTheme_isNoticed_data()
{
    QTest::addColumn<bool>("isReplaced");
    QTest::newRow("written anew") << false;
    QTest::newRow("replaced") << true;
}

void IconProviderTest::otherTheme_isNoticed()
{
    QFETCH(bool, isReplaced);
    start("");
    FreedesktopIcons icons(itself);
    QSignalSpy changed(&icons, &IconProvider::iconsChanged);
    for (const char *name : { "Two", "One", "hicolor" }) {
        const QString settings = path(QStringLiteral("xdg/gtk-3.0/settings.ini"));
        if (isReplaced) {
            QSaveFile file(settings);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(settingsFor(name));
            QVERIFY(file.commit());
        } else {
            chooseTheme(name);
        }
        QVERIFY(changed.wait());
        const QString file = QLatin1String("share/icons/%1/64/app.svg").arg(QLatin1String(name));
        QCOMPARE(icons.resolve(QStringLiteral("app"), 64).file, path(file));
    }
}

void IconProviderTest::newIcon_isNoticed_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("in the theme") << "share/icons/One/64/fresh.svg";
    QTest::newRow("in the fallback theme") << "share/icons/hicolor/64/fresh.svg";
    QTest::newRow("in the user's own part, the first one")
        << "home/share/icons/hicolor/64/fresh.svg";
    QTest::newRow("among single pictures") << "share/pixmaps/fresh.png";
}

void IconProviderTest::newIcon_isNoticed()
{
    QFETCH(QString, file);
    start("");
    _tree->addFolder(QStringLiteral("home"));
    FreedesktopIcons icons(itself);
    QSignalSpy changed(&icons, &IconProvider::iconsChanged);
    QVERIFY(icons.resolve(QStringLiteral("fresh"), 64).isNull());

    _tree->add(file, picture);

    // A folder made for it may be seen before the picture is in it.
    QTRY_COMPARE(icons.resolve(QStringLiteral("fresh"), 64).file, path(file));
    QVERIFY(!changed.isEmpty());
}

void IconProviderTest::settingOfGSettings_isNoticed()
{
    const QString tool = QStandardPaths::findExecutable(QStringLiteral("glib-compile-schemas"));
    if (tool.isEmpty()) {
        QSKIP("glib-compile-schemas is not installed");
    }
    const QString schemas = QFile::decodeName(qgetenv("GSETTINGS_SCHEMA_DIR"));
    const QString keys =
        QFile::decodeName(qgetenv("XDG_CONFIG_HOME")) + QLatin1String("/glib-2.0/settings");
    QVERIFY(QDir().mkpath(schemas) && QDir().mkpath(keys));
    QFile schema(schemas + QLatin1String("/a.gschema.xml"));
    QVERIFY(schema.open(QIODevice::WriteOnly));
    schema.write(
        "<schemalist><schema id='org.gnome.desktop.interface' path='/org/gnome/desktop/interface/'>"
        "<key name='icon-theme' type='s'><default>'Two'</default></key></schema></schemalist>");
    schema.close();
    QCOMPARE(QProcess::execute(tool, { schemas }), 0);
    start("ubuntu:GNOME");
    FreedesktopIcons icons(itself);
    QSignalSpy changed(&icons, &IconProvider::iconsChanged);
    QCOMPARE(icons.resolve(QStringLiteral("app"), 64).file,
        path(QStringLiteral("share/icons/Two/64/app.svg")));

    QFile keyfile(keys + QLatin1String("/keyfile"));
    QVERIFY(keyfile.open(QIODevice::WriteOnly));
    keyfile.write("[org/gnome/desktop/interface]\nicon-theme='hicolor'\n");
    keyfile.close();

    QVERIFY(changed.wait());
    QCOMPARE(icons.resolve(QStringLiteral("app"), 64).file,
        path(QStringLiteral("share/icons/hicolor/64/app.svg")));
}

void IconProviderTest::threads_mayAskWhileTheThemeChanges()
{
    start("");
    FreedesktopIcons icons(itself);
    QSignalSpy changed(&icons, &IconProvider::iconsChanged);
    std::atomic_bool isDone = false;
    std::atomic_int failures = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] {
            while (!isDone) {
                const IconSource source = icons.resolve(QStringLiteral("app"), 64);
                const QImage icon = icons.decode(source, 64);
                failures += icon.pixelColor(9, 9) == QColor(Qt::red) ? 0 : 1;
            }
        });
    }
    for (const char *name : { "Two", "One" }) {
        chooseTheme(name);
        changed.wait();
    }
    isDone = true;
    for (std::thread &thread : threads) {
        thread.join();
    }
    QCOMPARE(changed.size(), 2);
    QCOMPARE(failures.load(), 0);
}

QTEST_MAIN(IconProviderTest)
#include "IconProviderTest.moc"

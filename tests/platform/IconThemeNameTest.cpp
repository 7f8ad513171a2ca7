#include "platform/freedesktop/IconThemeName.h"

#include "platform/FileTree.h"

#include <QTest>

#include <sys/stat.h>

class IconThemeNameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void settings_nameTheTheme_data();
    void settings_nameTheTheme();
    void pipeForASettingsFile_isNotOpened();
    void desktopWithoutGSettings_namesNoSchema();
    void environment_namesTheFolders();
};

void IconThemeNameTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
}

static IconPlaces placesIn(const FileTree &tree, const QString &desktops)
{
    IconPlaces places;
    places.configHome = tree.path(QStringLiteral("config"));
    places.configDirs = { tree.path(QStringLiteral("xdg")), tree.path(QStringLiteral("xdg2")) };
    places.baseFolders = { tree.path(QStringLiteral("icons")) };
    places.desktops = desktops.split(u':');
    return places;
}

void IconThemeNameTest::settings_nameTheTheme_data()
{
    QTest::addColumn<QString>("desktops");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *title, const char *desktops, const QStringList &files,
                         const char *expected) {
        QTest::newRow(title) << QString::fromLatin1(desktops) << files
                             << QString::fromLatin1(expected);
    };
    // Files as "path=text".
    const QString kde = QStringLiteral("config/kdeglobals=[General]\nTheme=B\n[Icons]\nTheme=A\n");
    const QString gtk = QStringLiteral("config/gtk-3.0/settings.ini=[Settings]\n"
                                       "gtk-theme-name=C\ngtk-icon-theme-name = B\n");
    const QString channel =
        QStringLiteral("xfce4/xfconf/xfce-perchannel-xml/xsettings.xml="
                       "<channel name='xsettings'><property name='Net' type='empty'>"
                       "<property name='ThemeName' value='B'/>"
                       "<property name='IconThemeName' type='string' value='%1'/>"
                       "</property></channel>");
    row("nothing set", "", {}, "Adwaita");
    row("KDE", "kde", { kde, gtk }, "A");
    row("KDE's file elsewhere", "xfce", { kde }, "Adwaita");
    row("KDE, set for everybody", "kde", { QStringLiteral("xdg2/kdeglobals=[Icons]\nTheme=B\n") },
        "B");
    row("KDE, user before everybody", "kde",
        { kde, QStringLiteral("xdg/kdeglobals=[Icons]\nTheme=B\n") }, "A");
    row("KDE without a setting", "kde", { gtk, QStringLiteral("icons/breeze/index.theme=x") },
        "breeze");
    row("KDE without Breeze", "kde", { gtk }, "B");
    row("theme not installed", "kde",
        { QStringLiteral("config/kdeglobals=[Icons]\nTheme=Gone\n"), gtk }, "B");
    row("theme that leads elsewhere", "kde",
        { QStringLiteral("config/kdeglobals=[Icons]\nTheme=../icons/A\n"), gtk }, "B");
    row("Xfce", "xfce", { QStringLiteral("config/") + channel.arg(QLatin1Char('A')), gtk }, "A");
    row("Xfce, set for everybody", "xfce",
        { QStringLiteral("xdg/") + channel.arg(QLatin1Char('A')) }, "A");
    row("Xfce, damaged file", "xfce",
        { QStringLiteral("config/")
                + channel.arg(QLatin1Char('A')).replace(QLatin1String("Icon"), QLatin1String("<")),
            gtk },
        "B");
    row("LXQt", "lxqt",
        { QStringLiteral("config/lxqt/lxqt.conf=[General]\nicon_theme=A\n[Qt]\nicon_theme=B\n") },
        "A");
    row("LXQt with a name of its own", "x:lxqt",
        { QStringLiteral("xdg/lxqt/lxqt.conf=[General]\nicon_theme=\"A\"\n") }, "A");
    row("window manager", "openbox", { gtk }, "B");
    row("toolkit, for everybody", "",
        { QStringLiteral("xdg/gtk-3.0/settings.ini=[Settings]\ngtk-icon-theme-name=A") }, "A");
    row("newer toolkit", "",
        { QStringLiteral("config/gtk-4.0/settings.ini=[Settings]\ngtk-icon-theme-name=A") }, "A");
    row("commented out", "",
        { QStringLiteral("config/gtk-3.0/settings.ini=[Settings]\n#gtk-icon-theme-name=A") },
        "Adwaita");
    row("binary file", "",
        { QStringLiteral("config/gtk-3.0/settings.ini=") + QString(5000, QChar(0)) }, "Adwaita");
}

void IconThemeNameTest::settings_nameTheTheme()
{
    QFETCH(QString, desktops);
    QFETCH(QStringList, files);
    QFETCH(QString, expected);
    const auto filled = [&files](const QStringList &themes) {
        auto tree = std::make_unique<FileTree>();
        for (const QString &theme : themes) {
            tree->add(QLatin1String("icons/%1/index.theme").arg(theme), "[Icon Theme]\n");
        }
        for (const QString &file : files) {
            tree->add(file.section(u'=', 0, 0), file.section(u'=', 1).toUtf8());
        }
        return tree;
    };
    const auto tree =
        filled({ QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("Adwaita") });
    QCOMPARE(IconThemeName::current(placesIn(*tree, desktops)), expected);

    const auto bare = filled({});
    const QString last = expected == u"breeze" ? expected : QStringLiteral("hicolor");
    QCOMPARE(IconThemeName::current(placesIn(*bare, desktops)), last);
}

void IconThemeNameTest::pipeForASettingsFile_isNotOpened()
{
    FileTree tree;
    tree.addFolder(QStringLiteral("config/gtk-3.0"));
    const QByteArray pipe =
        QFile::encodeName(tree.path(QStringLiteral("config/gtk-3.0/settings.ini")));
    QCOMPARE(::mkfifo(pipe.constData(), 0600), 0);
    QCOMPARE(IconThemeName::current(placesIn(tree, {})), QStringLiteral("hicolor"));
}

void IconThemeNameTest::desktopWithoutGSettings_namesNoSchema()
{
    const FileTree tree;
    for (const char *desktop : { "kde", "xfce", "lxqt", "", "openbox" }) {
        QCOMPARE(IconThemeName::schema(placesIn(tree, QString::fromLatin1(desktop))), QString());
    }
}

void IconThemeNameTest::environment_namesTheFolders()
{
    qputenv("HOME", "/h");
    qputenv("XDG_DATA_HOME", "relative");
    qputenv("XDG_DATA_DIRS", "/a/:nowhere::/usr/share:/a");
    qputenv("XDG_CONFIG_HOME", "/c:d");
    qputenv("XDG_CONFIG_DIRS", "");
    qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    const IconPlaces places = IconPlaces::fromEnvironment();
    QCOMPARE(places.baseFolders.join(u' '),
        QStringLiteral("/h/.icons /h/.local/share/icons /a/icons /usr/share/icons"));
    QCOMPARE(places.pixmapFolders.join(u' '), QStringLiteral("/a/pixmaps /usr/share/pixmaps"));
    QCOMPARE(places.configHome, QStringLiteral("/c:d"));
    QCOMPARE(places.configDirs, QStringList { QStringLiteral("/etc/xdg") });
    QCOMPARE(places.desktops.join(u' '), QStringLiteral("ubuntu gnome"));
}

QTEST_GUILESS_MAIN(IconThemeNameTest)
#include "IconThemeNameTest.moc"

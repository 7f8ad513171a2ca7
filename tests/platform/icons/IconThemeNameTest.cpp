#include "platform/freedesktop/icons/IconThemeName.h"

#include "TestCase.h"
#include "platform/FileTree.h"

class IconThemeNameTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Desktops, files as "path=text", and the theme that is in force.
    void settings_nameTheTheme()
    {
        const QString gtkFile = u"gtk-3.0/settings.ini=[Settings]\n"_s;
        const QString kde = u"config/kdeglobals=[General]\nTheme=B\n[Icons]\nTheme=A\n"_s;
        const QString gtk =
            u"config/"_s + gtkFile + u"gtk-theme-name=C\ngtk-icon-theme-name = B\n"_s;
        const QString kdeForAll = u"xdg2/kdeglobals=[Icons]\nTheme=B\n"_s;
        const QString channel = u"xfce4/xfconf/xfce-perchannel-xml/xsettings.xml="
                                "<channel name='xsettings'><property name='Net' type='empty'>"
                                "<property name='ThemeName' value='B'/>"
                                "<property name='IconThemeName' type='string' value='A'/>"
                                "</property></channel>"_s;
        const std::tuple<QString, QStringList, QString> rows[] { { {}, {}, u"Adwaita"_s },
            { u"xfce"_s, { kde }, u"Adwaita"_s }, { u"kde"_s, { kdeForAll }, u"B"_s },
            { u"kde"_s, { kde, kdeForAll, gtk }, u"A"_s },
            { u"kde"_s, { gtk, u"icons/breeze/index.theme=x"_s }, u"breeze"_s },
            { u"kde"_s, { gtk }, u"B"_s },
            { u"kde"_s, { u"config/kdeglobals=[Icons]\nTheme=Gone\n"_s, gtk }, u"B"_s },
            { u"xfce"_s, { u"config/"_s + channel, gtk }, u"A"_s },
            { u"xfce"_s, { u"xdg/"_s + channel }, u"A"_s },
            { u"lxqt"_s,
                { u"config/lxqt/lxqt.conf=[General]\nicon_theme=A\n[Qt]\nicon_theme=B\n"_s },
                u"A"_s },
            { u"x:lxqt"_s, { u"xdg/lxqt/lxqt.conf=[General]\nicon_theme=\"A\"\n"_s }, u"A"_s },
            { {}, { u"xdg/"_s + gtkFile + u"gtk-icon-theme-name=A"_s }, u"A"_s },
            { {}, { u"config/gtk-4.0/settings.ini=[Settings]\ngtk-icon-theme-name=A"_s }, u"A"_s },
            { {}, { u"config/"_s + gtkFile + u"#gtk-icon-theme-name=A"_s }, u"Adwaita"_s } };
        for (const auto &[desktops, files, expected] : rows) {
            for (const QStringList &themes : { QStringList { u"A"_s, u"B"_s, u"Adwaita"_s }, {} }) {
                FileTree tree;
                for (const QString &theme : themes) {
                    tree.add(u"icons/%1/index.theme"_s.arg(theme), "[Icon Theme]\n");
                }
                for (const QString &file : files) {
                    tree.add(file.section(u'=', 0, 0), file.section(u'=', 1).toUtf8());
                }
                const bool isThere = !themes.isEmpty() || expected == u"breeze"_s;
                QCOMPARE(IconThemeName::current(placesIn(tree, desktops)),
                    isThere ? expected : u"hicolor"_s);
            }
        }
    }

    void environment_namesTheFolders()
    {
        qputenv("HOME", "/h");
        qputenv("XDG_DATA_HOME", "relative");
        qputenv("XDG_DATA_DIRS", "/a/:nowhere::/usr/share:/a");
        qputenv("XDG_CONFIG_HOME", "/c:d");
        qputenv("XDG_CONFIG_DIRS", "");
        qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
        const IconPlaces places = IconPlaces::fromEnvironment();
        QCOMPARE(places.baseFolders.join(u' '),
            u"/h/.icons /h/.local/share/icons /a/icons /usr/share/icons"_s);
        QCOMPARE(places.pixmapFolders.join(u' '), u"/a/pixmaps /usr/share/pixmaps"_s);
        QCOMPARE(places.configHome, u"/c:d"_s);
        QCOMPARE(places.configDirs, QStringList(u"/etc/xdg"_s));
        QCOMPARE(places.desktops.join(u' '), u"ubuntu gnome"_s);
    }

private:
    static IconPlaces placesIn(const FileTree &tree, const QString &desktops)
    {
        IconPlaces places;
        places.configHome = tree.path(u"config"_s);
        places.configDirs = { tree.path(u"xdg"_s), tree.path(u"xdg2"_s) };
        places.baseFolders = { tree.path(u"icons"_s) };
        places.desktops = desktops.split(u':');
        return places;
    }
};

QTEST_GUILESS_MAIN(IconThemeNameTest)
#include "IconThemeNameTest.moc"

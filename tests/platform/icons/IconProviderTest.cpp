#include "platform/freedesktop/icons/FreedesktopIcons.h"
#include "platform/icons/IconThemeFiles.h"

#include <QSaveFile>

namespace {

const QByteArray picture = "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 9 9'>"
                           "<rect width='9' height='9' fill='red'/></svg>";

// A session of its own, with the themes One, which is chosen, and Two.
class Session final
{
public:
    explicit Session(const QByteArray &desktop = {})
    {
        qputenv("HOME", QFile::encodeName(tree.addFolder(u"home"_s)));
        qputenv("XDG_DATA_HOME", QFile::encodeName(tree.path(u"home/share"_s)));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(tree.path(u"share"_s)));
        qputenv("XDG_CONFIG_DIRS", QFile::encodeName(tree.path(u"xdg"_s)));
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        for (const QString &theme : { u"One"_s, u"Two"_s, u"hicolor"_s }) {
            tree.add(u"share/icons/%1/index.theme"_s.arg(theme),
                "[Icon Theme]\nDirectories=64\n[64]\nSize=64\nType=Fixed\n");
            tree.add(pictureIn(theme), picture);
        }
        tree.add(settings, settingsFor(u"One"_s));
    }

    static QString pictureIn(const QString &theme)
    {
        return u"share/icons/%1/64/app.svg"_s.arg(theme);
    }
    static QByteArray settingsFor(const QString &theme)
    {
        return "[Settings]\ngtk-icon-theme-name=" + theme.toUtf8() + '\n';
    }

    FileTree tree;
    const QString settings = u"xdg/gtk-3.0/settings.ini"_s;
};

// What a bundle says its icon is, in these tests: its own path.
constexpr auto itself = [](const QString &bundlePath) { return bundlePath; };

// The file of the icon, from the session's folder.
QString fileOf(
    const FreedesktopIcons &icons, const Session &session, const QString &name = u"app"_s)
{
    const QString file = icons.resolve(name, 64).file;
    return file.isEmpty() ? file : QDir(session.tree.path()).relativeFilePath(file);
}

} // namespace

class IconProviderTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Both folders are remembered by GLib from the first question on.
    void initTestCase()
    {
        static const FileTree fixed;
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(fixed.path(u"config"_s)));
        qputenv("GSETTINGS_SCHEMA_DIR", QFile::encodeName(fixed.path(u"schemas"_s)));
        qputenv("GSETTINGS_BACKEND", "keyfile");
    }

    void bundle_givesSource()
    {
        Session session;
        const QString own = session.tree.add(u"own.png"_s, "x");
        const FreedesktopIcons icons(itself);
        QCOMPARE(fileOf(icons, session), Session::pictureIn(u"One"_s));
        QCOMPARE(fileOf(icons, session, own), u"own.png"_s);
        for (const QString &name : { session.tree.path(u"other.png"_s), u"absent"_s, QString(),
                 u"64/app"_s, QDir::current().relativeFilePath(own) }) {
            QCOMPARE(fileOf(icons, session, name), QString());
        }
    }

    void drawingThatComesOutWrong_isReplaced()
    {
        Session session;
        const FreedesktopIcons icons(itself);
        const auto colorOf = [&](const QByteArray &drawing) {
            session.tree.add(Session::pictureIn(u"One"_s), drawing);
            return icons.decode(icons.resolve(u"app"_s, 64), 64).pixelColor(9, 9);
        };
        const QByteArray clipped =
            "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 9 9'>"
            "<clipPath id='c'><circle r='4'/></clipPath>"
            "<rect width='9' height='9' fill='blue' clip-path='url(#c)'/></svg>";
        QCOMPARE(colorOf(clipped), QColor(Qt::red));
        expectWarning(u"^cannot read icon .*app.svg: "_s);
        QCOMPARE(colorOf("<svg"), QColor(Qt::red));
        // A wrong picture is better than none.
        QVERIFY(QFile::remove(session.tree.path(Session::pictureIn(u"hicolor"_s))));
        QCOMPARE(colorOf(clipped), QColor(Qt::blue));
    }

    void otherTheme_isNoticed()
    {
        Session session;
        FreedesktopIcons icons(itself);
        QSignalSpy changed(&icons, &IconProvider::iconsChanged);
        icons.startWatching();
        for (const QString &theme : { u"Two"_s, u"One"_s }) {
            if (theme == u"Two"_s) {
                QSaveFile file(session.tree.path(session.settings));
                QVERIFY(file.open(QIODevice::WriteOnly));
                file.write(Session::settingsFor(theme));
                QVERIFY(file.commit());
            } else {
                session.tree.add(session.settings, Session::settingsFor(theme));
            }
            QVERIFY(changed.wait());
            QCOMPARE(fileOf(icons, session), Session::pictureIn(theme));
        }
    }

    void newIcon_isNoticed()
    {
        // Each comes before the last; the user has no other part of a theme.
        Session session;
        FreedesktopIcons icons(itself);
        QSignalSpy changed(&icons, &IconProvider::iconsChanged);
        icons.startWatching();
        QCOMPARE(fileOf(icons, session, u"fresh"_s), QString());
        for (const QString &file :
            { u"share/pixmaps/fresh.png"_s, u"share/icons/hicolor/64/fresh.svg"_s,
                u"home/share/icons/hicolor/64/fresh.svg"_s, u"share/icons/One/64/fresh.svg"_s }) {
            changed.clear();
            session.tree.add(file, picture);
            // A folder made for it may be seen before the picture is in it.
            QTRY_COMPARE(fileOf(icons, session, u"fresh"_s), file);
            QVERIFY(!changed.isEmpty());
        }
    }

    void settingOfGSettings_isNoticed()
    {
        const QString schemas = QFile::decodeName(qgetenv("GSETTINGS_SCHEMA_DIR"));
        const QString keys =
            QFile::decodeName(qgetenv("XDG_CONFIG_HOME")) + u"/glib-2.0/settings"_s;
        QVERIFY(QDir().mkpath(schemas) && QDir().mkpath(keys));
        save(schemas + u"/a.gschema.xml"_s,
            "<schemalist><schema id='org.gnome.desktop.interface' "
            "path='/org/gnome/desktop/interface/'><key name='icon-theme' type='s'>"
            "<default>'Two'</default></key></schema></schemalist>");
        QCOMPARE(QProcess::execute(u"glib-compile-schemas"_s, { schemas }), 0);
        const Session session("ubuntu:GNOME");
        FreedesktopIcons icons(itself);
        QSignalSpy changed(&icons, &IconProvider::iconsChanged);
        icons.startWatching();
        QCOMPARE(fileOf(icons, session), Session::pictureIn(u"Two"_s));
        save(keys + u"/keyfile"_s, "[org/gnome/desktop/interface]\nicon-theme='hicolor'\n");
        QVERIFY(changed.wait());
        QCOMPARE(fileOf(icons, session), Session::pictureIn(u"hicolor"_s));
    }
};

QTEST_MAIN(IconProviderTest)
#include "IconProviderTest.moc"

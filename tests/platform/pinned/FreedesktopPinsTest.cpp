#include "platform/freedesktop/pinned/FreedesktopPins.h"

#include "TestCase.h"
#include "platform/FileTree.h"

#include <QProcess>

namespace {

const QString settings = u"config/glib-2.0/settings/keyfile"_s;
const QString plasmaFile = u"config/plasma-org.kde.plasma.desktop-appletsrc"_s;
const QString xfceFile = u"config/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml"_s;
const QString plankFolder = u"config/plank/dock1/launchers/"_s;
const QString dockFile = u"library/Preferences/com.apple.dock.plist"_s;

} // namespace

// The pinned applications of a home whose data folders are `data` and `system`. An entry of these
// is called by its letter, in upper case when it is the user's own.
class FreedesktopPinsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // GIO reads settings, their schemas and the types of documents when it is first asked.
    void initTestCase()
    {
        _tree = std::make_unique<FileTree>();
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(_tree->addFolder(u"config"_s)));
        qputenv("XDG_DATA_HOME", QFile::encodeName(_tree->path(u"data"_s)));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(_tree->path(u"system"_s)));
        qputenv("GSETTINGS_BACKEND", "keyfile");
        qputenv("GSETTINGS_SCHEMA_DIR", QFile::encodeName(_tree->addFolder(u"schemas"_s)));
        for (const QChar letter : u"abcdefghi"_s) {
            addEntry(u"system/applications/%1.desktop"_s.arg(letter));
        }
        addEntry(u"system/applications/kde/x.desktop"_s);
        addEntry(u"data/applications/b.desktop"_s);
        _tree->add(u"config/mimeapps.list"_s,
            "[Default "
            "Applications]\nx-scheme-handler/http=h.desktop;\ninode/directory=i.desktop\n");
    }

    void init()
    {
        TestCase::init();
        for (const QString &folder : { u"config/xfce4"_s, u"config/plank"_s, u"library"_s }) {
            QDir(_tree->path(folder)).removeRecursively();
        }
        QFile::remove(_tree->path(plasmaFile));
    }

    // The list that comes with the desktop counts only there, and until the user changes it.
    void gnomeShell()
    {
        const QString schemas = QFile::decodeName(qgetenv("GSETTINGS_SCHEMA_DIR"));
        save(schemas + u"/a.gschema.xml"_s,
            "<schemalist><schema id='org.gnome.shell' path='/org/gnome/shell/'>"
            "<key name='favorite-apps' type='as'><default>['a.desktop']</default></key>"
            "</schema></schemalist>");
        QCOMPARE(QProcess::execute(u"glib-compile-schemas"_s, { schemas }), 0);
        QCOMPARE(pinned(u"GNOME"_s), u"a"_s);
        QCOMPARE(pinned(u"LXQt"_s), QString());
        _tree->add(settings,
            "[org/gnome/shell]\nfavorite-apps=['c.desktop', 'absent.desktop', 'b.desktop', "
            "'c.desktop', 'kde-x.desktop']\n"
            "[net/launchpad/plank/docks/dock1]\ndock-items=['2.dockitem', 'gone.dockitem', "
            "'1.dockitem']\n");
        QTRY_COMPARE(pinned(u"GNOME"_s), u"c B x"_s);
    }

    void plasma()
    {
        _tree->add(plasmaFile,
            "[Containments][2]\nplugin=org.kde.panel\n\n"
            "[Containments][2][Applets][4][Configuration][General]\nlaunchers=applications:a."
            "desktop\n"
            "[Containments][2][Applets][4]\nimmutability=1\nplugin=org.kde.plasma.kickoff\n\n"
            "[Containments][2][Applets][5]\nplugin=org.kde.plasma.icontasks\n"
            "[Containments][2][Applets][5][Configuration][General]\nshowOnlyCurrentScreen=true\n"
            "launchers[$i]=applications:d.desktop,preferred://browser,file://"
                + QFile::encodeName(_tree->path(u"system/applications/b.desktop"_s))
                + ",[one\\\\,two]\\napplications:kde/x.desktop,preferred://mailer,"
                  "applications:absent.desktop,preferred://filemanager,e.desktop\n");
        QCOMPARE(pinned(u"KDE"_s), u"d h B x i e"_s);
        // Before the user changes any.
        _tree->add(plasmaFile, "[Containments][2][Applets][5]\nplugin=org.kde.plasma.icontasks\n");
        _tree->add(u"system/plasma/plasmoids/org.kde.plasma.taskmanager/contents/config/main.xml"_s,
            "<kcfg><group name='General'><entry name='a'><default>1</default></entry>"
            "<entry name='launchers' type='StringList'><label>x</label>"
            "<default>applications:f.desktop,preferred://browser</default></entry></group></kcfg>");
        QCOMPARE(pinned(u"KDE"_s), u"f h"_s);
        QCOMPARE(pinned(u"LXQt"_s), u"c B x"_s);
    }

    void xfce()
    {
        const auto property = [](const QByteArray &name, const QByteArray &value,
                                  const QByteArray &content) {
            return "<property name='" + name + "' type='string' value='" + value + "'>" + content
                + "</property>\n";
        };
        const auto items = [&property](const QList<QByteArray> &values) {
            QByteArray text;
            for (const QByteArray &value : values) {
                text += "<value type='string' value='" + value + "'/>";
            }
            return property("items", "", text);
        };
        const QByteArray panel = "<?xml version='1.0' encoding='UTF-8'?>\n<channel>"
            + property("panels", "",
                "<value type='int' value='1'/>"
                    + property("panel-1", "",
                        property("plugin-ids", "",
                            "<value value='7'/><value value='2'/>"
                            "<value value='3'/>")))
            + property("plugins", "",
                property("plugin-2", "launcher",
                    items({ "a.desktop", "SYSTEM/kde/x.desktop",
                        "file:///nowhere/xfce4/panel/launcher-9/1.desktop" }))
                    + property("plugin-3", "tasklist", items({ "e.desktop" }))
                    + property("plugin-7", "launcher", items({ "17.desktop" }))
                    + property("plugin-8", "launcher", items({ "d.desktop" })))
            + "</channel>";
        const QByteArray system = QFile::encodeName(_tree->path(u"system/applications"_s));
        _tree->add(xfceFile, QByteArray(panel).replace("SYSTEM", system));
        _tree->add(u"config/xfce4/panel/launcher-7/17.desktop"_s,
            "[Desktop Entry]\nExec=c\nX-XFCE-Source=file://" + system + "/c.desktop\n");
        _tree->add(u"config/xfce4/panel/launcher-2/a.desktop"_s,
            "[Desktop Entry]\nExec=a\nX-XFCE-Source=\n");
        QCOMPARE(pinned(u"XFCE"_s), u"c a x 1"_s);
        expectWarning(u"cannot read .*xfce4-panel.xml: "_s);
        _tree->add(xfceFile, panel.chopped(20));
        QCOMPARE(pinned(u"XFCE"_s), QString());
    }

    // Beside any desktop's.
    void plankAndThePropertyList()
    {
        const QByteArray system = QFile::encodeName(_tree->path(u"system/applications"_s));
        for (const auto &[name, launcher] : { std::pair(u"1"_s, "file://" + system + "/b.desktop"),
                 std::pair(u"2"_s, QByteArray("application://a.desktop")),
                 std::pair(u"0"_s, "file:" + system + "/%66.desktop"),
                 std::pair(u"3"_s, QByteArray("docklet://trash")) }) {
            _tree->add(plankFolder + name + u".dockitem"_s,
                "[PlankDockItemPreferences]\nLauncher=" + launcher + '\n');
        }
        QCOMPARE(pinned(u"MATE:XFCE"_s), u"a B f"_s);

        const auto tile = [](const QByteArray &path) {
            return "<dict><key>tile-data</key><dict><key>file-data</key><dict>"
                   "<key>_CFURLString</key><string>"
                + path + "</string></dict></dict></dict>";
        };
        _tree->add(dockFile,
            "<plist version=\"1.0\"><dict><key>persistent-apps</key><array>"
                + tile(system + "/d.desktop") + tile("") + "<string>x</string><dict/>"
                + tile("file:///relative") + tile("/Applications/100%25.app")
                + tile(system + "/a.desktop") + "</array></dict></plist>");
        QCOMPARE(pinned(u"KDE"_s), u"a B f d 100%25"_s);
    }

    // The running desktop's list counts alone, and where none of the three runs, all do.
    void whoseListsCount()
    {
        _tree->add(plasmaFile,
            "[Containments][1][Applets][2][Configuration][General]\nlaunchers=applications:g."
            "desktop\n");
        QCOMPARE(pinned(u"X-Odd:KDE"_s), u"g"_s);
        QCOMPARE(pinned(u"ubuntu:GNOME"_s), u"c B x"_s);
        QCOMPARE(pinned(u"XFCE"_s), QString());
        QCOMPARE(pinned(u"LXQt"_s), u"c B x g"_s);
        QCOMPARE(pinned(QString()), u"c B x g"_s);
    }

    // One log line each, and the others count all the same.
    void damagedLists_arePassedOver()
    {
        _tree->add(plankFolder + u"1.dockitem"_s,
            "[PlankDockItemPreferences]\nLauncher=application://a.desktop\n");
        _tree->addPipe(plankFolder + u"2.dockitem"_s);
        const std::tuple<QString, QString, QByteArray, QString> rows[] {
            { u"KDE"_s, plasmaFile, QByteArray(5'000'000, 'x'), u"larger than "_s },
            { u"KDE"_s, plasmaFile,
                "[C][1][Applets][2][Configuration][General]\nlaunchers=" + QByteArray(2000, ','),
                u"more than 1000"_s },
            { u"XFCE"_s, xfceFile, "\xff\xfe nonsense", u"xfce4-panel.xml"_s },
            { u"GNOME"_s, dockFile, "bplist00 nonsense", u"com.apple.dock.plist"_s },
        };
        for (const auto &[desktop, file, content, reason] : rows) {
            _tree->add(file, content);
            expectWarning(u"^cannot read .*"_s + reason);
            QCOMPARE(pinned(desktop), desktop == u"GNOME"_s ? u"c B x a"_s : u"a"_s);
            QFile::remove(_tree->path(file));
        }
        QFile::remove(_tree->path(dockFile));
        _tree->addPipe(xfceFile);
        expectWarning(u"cannot read .*: not a regular file"_s);
        QCOMPARE(pinned(u"XFCE"_s), u"a"_s);
    }

private:
    void addEntry(const QString &relative)
    {
        _tree->add(relative, "[Desktop Entry]\nType=Application\nName=A\nExec=true\n");
    }
    QString pinned(const QString &desktops) const
    {
        const FreedesktopPins pins({ _tree->path(u"data"_s), _tree->path(u"system"_s) },
            desktops.split(u':', Qt::SkipEmptyParts), _tree->path(u"library/Preferences"_s));
        QStringList names;
        for (const QString &path : pins.paths()) {
            const QString name = QFileInfo(path).completeBaseName();
            names.append(path.startsWith(_tree->path(u"data/"_s)) ? name.toUpper() : name);
        }
        return names.join(u' ');
    }

    std::unique_ptr<FileTree> _tree;
};

QTEST_GUILESS_MAIN(FreedesktopPinsTest)
#include "FreedesktopPinsTest.moc"

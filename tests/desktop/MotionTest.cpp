// Whether the desktop wants movement, by each of the ways in which desktops say so.

#include "desktop/Programs.h"
#include "platform/FileTree.h"
#include "platform/freedesktop/FreedesktopDesktop.h"
#include "platform/freedesktop/x11/XSettings.h"

#include <QGuiApplication>
#include <QtEndian>

namespace {

// What a daemon writes: a text, a colour and a number with names that are filled up differently.
QByteArray settings(qint32 animations, bool isBigEndian)
{
    QByteArray bytes;
    const auto add = [&](auto number) {
        const auto ordered = isBigEndian ? qToBigEndian(number) : qToLittleEndian(number);
        bytes.append(reinterpret_cast<const char *>(&ordered), sizeof(ordered));
    };
    const auto addName = [&](char type, const QByteArray &name) {
        bytes += type;
        bytes += '\0';
        add(quint16(name.size()));
        bytes += name;
        bytes.resize((bytes.size() + 3) / 4 * 4, '\0');
        add(quint32(7));
    };
    bytes = QByteArray(1, char(isBigEndian)) + QByteArray(3, '\0');
    add(quint32(1));
    add(quint32(3));
    addName(1, "Net/ThemeName");
    add(quint32(5));
    bytes += QByteArray("Plain\0\0\0", 8);
    addName(2, "Gtk/Red");
    bytes += QByteArray(8, '\1');
    addName(0, "Gtk/EnableAnimations");
    add(animations);
    return bytes;
}

// A settings daemon, until it goes.
class Daemon : public XClient
{
public:
    Daemon() { own("_XSETTINGS_S0"); }
    void write(const QByteArray &bytes)
    {
        const xcb_atom_t name = atom("_XSETTINGS_SETTINGS");
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, name, name, 8,
            quint32(bytes.size()), bytes.constData());
        xcb_flush(connection);
    }
};

} // namespace

class MotionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // GLib remembers from the first question on where schemas and settings are.
    void initTestCase()
    {
        _tree.add(u"schemas/a.gschema.xml"_s,
            "<schemalist><schema id='org.gnome.desktop.interface' "
            "path='/org/gnome/desktop/interface/'>"
            "<key name='enable-animations' type='b'><default>true</default></key>"
            "</schema></schemalist>");
        QCOMPARE(QProcess::execute(u"glib-compile-schemas"_s, { _tree.path(u"schemas"_s) }), 0);
        choose(nullptr);
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(_tree.path(u"config"_s)));
        qputenv("XDG_CONFIG_DIRS", QFile::encodeName(_tree.path(u"system"_s)));
        qputenv("GSETTINGS_SCHEMA_DIR", QFile::encodeName(_tree.path(u"schemas"_s)));
        qputenv("GSETTINGS_BACKEND", "keyfile");
    }

    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        qputenv("XDG_CURRENT_DESKTOP", "Test");
    }

    void settingsDaemon_isHeard()
    {
        const std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop();
        const Motion &motion = desktop->motion();
        QVERIFY(!motion.isReduced());
        for (const bool isBigEndian : { false, true }) {
            Daemon daemon;
            daemon.write(settings(0, isBigEndian));
            QTRY_VERIFY(motion.isReduced());
            daemon.write(settings(1, isBigEndian));
            QTRY_VERIFY(!motion.isReduced());
            daemon.write(settings(0, isBigEndian));
            QTRY_VERIFY(motion.isReduced());
            // Right from the start, before anything can have been told.
            QVERIFY(makeFreedesktopDesktop()->motion().isReduced());
        }
        QTRY_VERIFY(!motion.isReduced());
    }

    void settingsFiles_areReadAgain_data()
    {
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("still");
        QTest::addColumn<QByteArray>("moving");
        const QByteArray toolkit = "[Settings]\ngtk-enable-animations=";
        const QByteArray kde = "[KDE]\nAnimationDurationFactor=";
        QTest::newRow("GTK 3") << QByteArray("Test") << u"config/gtk-3.0/settings.ini"_s
                               << toolkit + "0" << toolkit + "1";
        QTest::newRow("GTK 4") << QByteArray("Test") << u"config/gtk-4.0/settings.ini"_s
                               << toolkit + "false" << toolkit + "true";
        QTest::newRow("of the system") << QByteArray("KDE") << u"system/gtk-4.0/settings.ini"_s
                                       << toolkit + "0" << QByteArray();
        QTest::newRow("KDE") << QByteArray("KDE") << u"config/kdeglobals"_s << kde + "0"
                             << kde + "0.5";
    }
    void settingsFiles_areReadAgain()
    {
        QFETCH(QByteArray, desktop);
        QFETCH(QString, file);
        QFETCH(QByteArray, still);
        QFETCH(QByteArray, moving);
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        const std::unique_ptr<Desktop> made = makeFreedesktopDesktop();
        QVERIFY(!made->motion().isReduced());
        const QString path = _tree.add(file, still);
        QVERIFY(made->motion().isReduced());
        _tree.add(file, moving);
        QVERIFY(!made->motion().isReduced());
        _tree.add(file, still);
        QVERIFY(made->motion().isReduced() && QFile::remove(path));
        QVERIFY(!made->motion().isReduced());
    }

    void choiceInGSettings_isHeard()
    {
        const std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop();
        QVERIFY(!desktop->motion().isReduced());
        choose("false");
        QTRY_VERIFY(desktop->motion().isReduced());
        choose("true");
        QTRY_VERIFY(!desktop->motion().isReduced());
        choose(nullptr);
    }

    void firstThatSaysAnything_decides()
    {
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        const std::unique_ptr<Desktop> kde = makeFreedesktopDesktop();
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        const std::unique_ptr<Desktop> gnome = makeFreedesktopDesktop();
        const auto answers = [&] {
            return std::pair(kde->motion().isReduced(), gnome->motion().isReduced());
        };
        _tree.add(u"config/gtk-3.0/settings.ini"_s, "[Settings]\ngtk-enable-animations=0\n");
        QTRY_COMPARE(answers(), std::pair(true, true));
        choose("true");
        QTRY_COMPARE(answers(), std::pair(false, false));
        Daemon daemon;
        daemon.write(settings(0, false));
        QTRY_COMPARE(answers(), std::pair(true, true));
        _tree.add(u"config/kdeglobals"_s, "[KDE]\nAnimationDurationFactor=1\n");
        QCOMPARE(answers(), std::pair(false, true));
    }

private:
    void choose(const char *value)
    {
        _tree.add(u"config/glib-2.0/settings/keyfile"_s,
            value == nullptr
                ? QByteArray()
                : "[org/gnome/desktop/interface]\nenable-animations=" + QByteArray(value) + '\n');
    }

    FileTree _tree;
};

QTEST_MAIN(MotionTest)
#include "MotionTest.moc"

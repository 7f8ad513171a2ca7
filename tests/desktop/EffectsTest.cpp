// Which effects the desktop wants: movement, by each of the ways in which desktops say so, and
// compositing, whose manager the test stands in for.

#include "desktop/Programs.h"
#include "platform/FileTree.h"
#include "platform/freedesktop/FreedesktopDesktop.h"

#include <QGuiApplication>
#include <QtEndian>

namespace {

// A settings daemon, until it goes. It writes a text and a number.
class Daemon : public XClient
{
public:
    Daemon() { own("_XSETTINGS_S0"); }
    void write(qint32 animations)
    {
        _bytes = QByteArray(4, '\0');
        add<quint32>(1);
        add<quint32>(2);
        addName(1, "Net/ThemeName");
        add<quint32>(5);
        _bytes += QByteArray("Plain\0\0\0", 8);
        addName(0, "Gtk/EnableAnimations");
        add(animations);
        const xcb_atom_t name = atom("_XSETTINGS_SETTINGS");
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, name, name, 8,
            quint32(_bytes.size()), _bytes.constData());
        xcb_flush(connection);
    }

private:
    template <typename Number> void add(Number number)
    {
        const Number ordered = qToLittleEndian(number);
        _bytes.append(reinterpret_cast<const char *>(&ordered), sizeof(ordered));
    }
    void addName(char type, const QByteArray &name)
    {
        _bytes += type;
        _bytes += '\0';
        add(quint16(name.size()));
        _bytes += name;
        _bytes.resize((_bytes.size() + 3) / 4 * 4, '\0');
        add<quint32>(7);
    }

    QByteArray _bytes;
};

std::unique_ptr<Desktop> makeDesktop(const char *name = "Test")
{
    qputenv("XDG_CURRENT_DESKTOP", name);
    return makeFreedesktopDesktop();
}

} // namespace

class EffectsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(_tree.path(u"config"_s)));
        qputenv("XDG_CONFIG_DIRS", QFile::encodeName(_tree.path(u"system"_s)));
        qputenv("GSETTINGS_BACKEND", "memory");
    }

    void settingsDaemon_isHeard()
    {
        const std::unique_ptr<Desktop> desktop = makeDesktop();
        const Motion &motion = desktop->motion();
        QVERIFY(!motion.isReduced());
        {
            Daemon daemon;
            for (const int animations : { 0, 1, 0 }) {
                daemon.write(animations);
                QTRY_COMPARE(motion.isReduced(), animations == 0);
            }
            // Right from the start, before a notification can arrive.
            QVERIFY(makeDesktop()->motion().isReduced());
        }
        QTRY_VERIFY(!motion.isReduced());
    }

    void settingsFiles_areReadAgain()
    {
        const QByteArray gtk = "[Settings]\ngtk-enable-animations=";
        const QByteArray kde = "[KDE]\nAnimationDurationFactor=";
        const std::tuple<const char *, QString, QByteArray, QByteArray> rows[] {
            { "Test", u"config/gtk-3.0/settings.ini"_s, gtk + "0", gtk + "1" },
            { "Test", u"system/gtk-4.0/settings.ini"_s, gtk + "false", gtk + "true" },
            { "KDE", u"config/kdeglobals"_s, kde + "0", kde + "0.5" }
        };
        for (const auto &[name, file, still, moving] : rows) {
            const std::unique_ptr<Desktop> desktop = makeDesktop(name);
            const Motion &motion = desktop->motion();
            QVERIFY(!motion.isReduced());
            _tree.add(file, still);
            QVERIFY2(motion.isReduced(), qPrintable(file));
            _tree.add(file, moving);
            QVERIFY2(!motion.isReduced(), qPrintable(file));
            const QString path = _tree.add(file, still);
            QVERIFY2(motion.isReduced() && QFile::remove(path), qPrintable(file));
        }
    }

    void compositing_isActiveWhileTheDisplayHasAManagerForIt()
    {
        const std::unique_ptr<Desktop> desktop = makeDesktop();
        const Compositing &compositing = desktop->compositing();
        QSignalSpy changed(&compositing, &Compositing::changed);
        QVERIFY(!compositing.isActive());
        auto manager = std::make_unique<XClient>();
        QVERIFY(manager->own("_NET_WM_CM_S0"));
        QTRY_VERIFY(compositing.isActive());
        // Right from the start, before a notification can arrive.
        QVERIFY(makeDesktop()->compositing().isActive());
        manager.reset();
        QTRY_VERIFY(!compositing.isActive());
        QCOMPARE(changed.count(), 2);
    }

private:
    FileTree _tree;
};

QTEST_MAIN(EffectsTest)
#include "EffectsTest.moc"

#include "platform/freedesktop/login/FreedesktopLoginItems.h"

#include "TestCase.h"
#include "platform/FileTree.h"

#include <gio/gdesktopappinfo.h>

namespace {

const QString ownEntry = u"user/autostart/org.ortu.Ortu.desktop"_s;
const QString sharedEntry = u"shared/autostart/org.ortu.Ortu.desktop"_s;

} // namespace

class FreedesktopLoginItemsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        _tree = std::make_unique<FileTree>();
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(_tree->path(u"user"_s)));
        qputenv("XDG_CONFIG_DIRS", QFile::encodeName(_tree->path(u"shared"_s)));
        _tree->add(u"bin/other"_s, "", 0755);
        use(u"bin/ortu"_s);
    }

    void oneEntryIsWritten_andTakenAway()
    {
        QVERIFY(!_items->contains(_item));
        disable();
        QVERIFY(!QFileInfo::exists(_tree->path(u"user"_s)));
        enable();
        const QByteArray text = load(_tree->path(ownEntry));
        enable();
        QCOMPARE(entries(), QStringList(u"org.ortu.Ortu.desktop"_s));
        QCOMPARE(load(_tree->path(ownEntry)), text);
        disable();
        QCOMPARE(entries(), QStringList());
    }

    // GLib reads the entry, as several sessions do.
    void theProgramStarts_whateverItsPath()
    {
        use(u"a \"b\" $HOME `c` \\d\\\\n ~'é\tf;#&*?(g)/ortu=1"_s);
        save(_item.program, "#!/bin/sh\nprintf '%s' \"$*\" > \"${0%/*}/started\"\n");
        enable();
        GDesktopAppInfo *const info = g_desktop_app_info_new_from_filename(
            QFile::encodeName(_tree->path(ownEntry)).constData());
        QVERIFY(info && g_app_info_launch(G_APP_INFO(info), nullptr, nullptr, nullptr));
        g_object_unref(info);
        QTRY_COMPARE(load(QFileInfo(_item.program).path() + u"/started"_s), "--service"_ba);
        disable();
        // GLib looks for a program with two of them.
        use(u"50%f/ortu"_s);
        enable();
        QVERIFY(load(_tree->path(ownEntry)).contains("/50%%f/ortu --service\n"));
    }

    void whatOtherToolsWroteCounts_andStays_data()
    {
        QTest::addColumn<QByteArray>("switchedOff");
        QTest::addColumn<QByteArray>("switchedOn");
        const auto row = [](const char *name, const QByteArray &off, const QByteArray &on) {
            QTest::newRow(name) << off << on;
        };
        row("hidden", "Exec=EXEC --x\nHidden=true\nHidden=1\nX-Delay=3\n",
            "Exec=EXEC --x\nX-Delay=3\n");
        row("disabled in GNOME", "X-GNOME-Autostart-enabled=false\nExec=EXEC\n", "Exec=EXEC\n");
        row("for other desktops", "OnlyShowIn=KDE;\nExec=EXEC\n", "Exec=EXEC\n");
        row("not for this one", "NotShowIn=Plain;KDE\nExec=EXEC\n", "Exec=EXEC\n");
        row("of a program that is gone", "TryExec=gone\nExec=/gone/ortu\n#c\n",
            "Exec=EXEC --service\n#c\n");
        row("with other groups", "Exec=EXEC\nHidden=true\n\n[A]\nHidden=true",
            "Exec=EXEC\n\n[A]\nHidden=true");
    }
    void whatOtherToolsWroteCounts_andStays()
    {
        QFETCH(QByteArray, switchedOff);
        QFETCH(QByteArray, switchedOn);
        addEntry(ownEntry, switchedOff);
        QVERIFY(!_items->contains(_item));
        enable();
        QCOMPARE(load(_tree->path(ownEntry)), entryOf(switchedOn));
        disable();
        QVERIFY(load(_tree->path(ownEntry)).contains("Hidden=true\n"));
        enable();
        QCOMPARE(load(_tree->path(ownEntry)), entryOf(switchedOn));
    }

    void entriesOfAnyNameCount()
    {
        addEntry(u"user/autostart/start.desktop"_s, "Exec=EXEC --x %U\n");
        addEntry(u"user/autostart/other.desktop"_s,
            "Exec=" + QFile::encodeName(_tree->path(u"bin/other"_s)) + " EXEC\n");
        QVERIFY(_items->contains(_item));
        enable();
        QCOMPARE(entries().size(), 2);
        // A link may lead to the entry that the menus show.
        const QByteArray shown = entryOf("Exec=EXEC\n");
        _tree->addLink(ownEntry, _tree->add(u"menu.desktop"_s, shown));
        disable();
        QCOMPARE(load(_tree->path(u"menu.desktop"_s)), shown);
        QCOMPARE(entries(), QStringList({ u"other.desktop"_s, u"start.desktop"_s }));
        QVERIFY(!load(_tree->path(u"user/autostart/other.desktop"_s)).contains("Hidden"));
        enable();
        QCOMPARE(
            load(_tree->path(u"user/autostart/start.desktop"_s)), entryOf("Exec=EXEC --x %U\n"));
    }

    void theSystemsEntryIsMasked()
    {
        addEntry(sharedEntry, "Exec=EXEC\n");
        QVERIFY(_items->contains(_item));
        disable();
        QVERIFY(load(_tree->path(ownEntry)).contains("Hidden=true\n"));
        enable();
        QCOMPARE(entries(), QStringList());
        QCOMPARE(load(_tree->path(sharedEntry)), entryOf("Exec=EXEC\n"));
    }

    void aDamagedEntryIsReplaced_andKept()
    {
        _tree->add(ownEntry, "no entry");
        enable();
        QCOMPARE(load(_tree->path(ownEntry + u".previous"_s)), "no entry"_ba);
        disable();
        QCOMPARE(entries(), QStringList());
    }

    void failuresAreTold()
    {
        _tree->add(u"user/autostart"_s, "a file");
        expectWarning(u"^cannot write .*/autostart/org.ortu.Ortu.desktop: Not a directory$"_s);
        QCOMPARE(_items->setContained(_item, true), u"Not a directory"_s);
        QVERIFY(!_items->contains(_item));
        QFile::remove(_tree->path(u"user/autostart"_s));
        _tree->addFolder(ownEntry);
        expectWarning(u"^cannot write .*: not a regular file$"_s);
        QCOMPARE(_items->setContained(_item, true), u"not a regular file"_s);
        QVERIFY(!_items->contains(_item));
    }

    void changesAreAnnounced_whileWatched()
    {
        QSignalSpy changed(_items.get(), &LoginItems::changed);
        _items->setWatched(true);
        addEntry(ownEntry, "Exec=EXEC\n");
        QTRY_VERIFY(!changed.isEmpty() && _items->contains(_item));
        // In place, as a text editor may write.
        changed.clear();
        addEntry(ownEntry, "Exec=EXEC\nHidden=true\n");
        QTRY_VERIFY(!changed.isEmpty() && !_items->contains(_item));
        changed.clear();
        QDir(_tree->path(u"user/autostart"_s)).removeRecursively();
        addEntry(sharedEntry, "Exec=EXEC\n");
        QTRY_VERIFY(!changed.isEmpty() && _items->contains(_item));
        _items->setWatched(false);
        changed.clear();
        FreedesktopLoginItems others({});
        others.setWatched(true);
        QSignalSpy changedForOthers(&others, &LoginItems::changed);
        disable();
        QTRY_VERIFY(!changedForOthers.isEmpty());
        QVERIFY(changed.isEmpty());
    }

private:
    void use(const QString &program)
    {
        _item = { .id = u"org.ortu.Ortu"_s,
            .name = u"Ortu"_s,
            .icon = u"ortu"_s,
            .program = _tree->add(program, "", 0755),
            .arguments = { u"--service"_s } };
        _items = std::make_unique<FreedesktopLoginItems>(QStringList { u"Own"_s, u"Plain"_s });
    }
    void enable()
    {
        QCOMPARE(_items->setContained(_item, true), QString());
        QVERIFY(_items->contains(_item));
    }
    void disable()
    {
        QCOMPARE(_items->setContained(_item, false), QString());
        QVERIFY(!_items->contains(_item));
    }
    QByteArray entryOf(QByteArray keys) const
    {
        return "[Desktop Entry]\nType=Application\nName=x\n"
            + keys.replace("EXEC", QFile::encodeName(_item.program));
    }
    void addEntry(const QString &name, const QByteArray &keys) { _tree->add(name, entryOf(keys)); }
    QStringList entries() const
    {
        return QDir(_tree->path(u"user/autostart"_s)).entryList({ u"*.desktop"_s });
    }

    std::unique_ptr<FileTree> _tree;
    std::unique_ptr<FreedesktopLoginItems> _items;
    LoginItem _item;
};

QTEST_GUILESS_MAIN(FreedesktopLoginItemsTest)

#include "FreedesktopLoginItemsTest.moc"

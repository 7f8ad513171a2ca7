#include "platform/freedesktop/entries/DesktopEntry.h"

#include "TestCase.h"
#include "platform/freedesktop/base/Languages.h"

using Kind = DesktopEntry::Kind;

namespace {

const QByteArray start = "[Desktop Entry]\nType=Application\n";

// What was read, with only those fields that say something.
QString described(const DesktopEntry &entry)
{
    if (entry.kind == Kind::Broken) {
        return u"broken: "_s + entry.problem;
    }
    QStringList parts;
    const auto flag = [](bool isSet) { return isSet ? u"1"_s : QString(); };
    for (const auto &[field, value] :
        { std::pair(u"other"_s, flag(entry.kind != Kind::Application)),
            std::pair(u"name"_s, entry.name), std::pair(u"icon"_s, entry.icon),
            std::pair(u"program"_s, entry.program), std::pair(u"try"_s, entry.tryExec),
            std::pair(u"class"_s, entry.startupWMClass),
            std::pair(u"only"_s, entry.onlyShowIn.join(u'|')),
            std::pair(u"not"_s, entry.notShowIn.join(u'|')),
            std::pair(u"hidden"_s, flag(entry.isHidden)),
            std::pair(u"noDisplay"_s, flag(entry.isNoDisplay)),
            std::pair(u"bus"_s, flag(entry.isDBusActivatable)),
            std::pair(u"problem"_s, entry.problem) }) {
        parts += value.isEmpty() ? QStringList() : QStringList(field + u'=' + value);
    }
    return parts.join(u' ');
}

} // namespace

class DesktopEntryTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void reading()
    {
        const QByteArray runs = start + "Exec=a\n";
        const std::pair<QByteArray, QByteArray> rows[] {
            { start + "Name=M\nExec=m %U\nIcon=i\nTryExec=/bin/m\nStartupWMClass=Mail-Window\n",
                "name=M icon=i program=m try=/bin/m class=Mail-Window" },
            { "\xef\xbb\xbf" + runs, "program=a" },
            { "[Desktop Entry]\r\nType=Application\r\nTryExec=a\r\nExec=a\r\n\r\n",
                "program=a try=a" },
            { "\n# [No]\n  [Desktop Entry] \n\t\n Type \t=  Application\n #x\nExec =a",
                "program=a" },
            { runs + "Exec=b\nName=A\nName=B\n", "name=B program=b" },
            { runs + "[Desktop Action x]\nExec=b\nnonsense\n", "program=a" },
            { runs + "Exec[de]=b\nHidden[de]=true\n", "program=a" },
            { runs + "OnlyShowIn=KDE; GNOME;;\nNotShowIn=X\\;Y;Z\n",
                "program=a only=KDE|GNOME not=X;Y|Z" },
            { runs + "NotShowIn=Z\\", "program=a not=Z\\" },
            { runs + "Hidden=true \nNoDisplay=1\nDBusActivatable=True\n",
                "program=a hidden=1 noDisplay=1" },
            { runs + "Name=a\\sb\\tc\\\\d\\qe\n", "name=a b c\\d\\qe program=a" },
            { start + "Exec=\"/opt/my \\\\$ app/run\" --flag \"%f\"\n",
                "program=/opt/my $ app/run" },
            { start + "DBusActivatable=true\n", "bus=1" },
            { "[Desktop Entry]\nHidden=true\n", "other=1 hidden=1" },
            { runs + "Name=A\nName[de]=B\nName[de_AT]=C\n", "name=C program=a" },
            { runs + "Name[de_AT]=C\nName[de]=B\nName=A\n", "name=C program=a" },
            { runs + "Name=A\nName[fr]=B\n", "name=A program=a" },
            { runs + "Name=A\nName[de]=\n", "name=A program=a" },
            { runs + "Name=\\s\\na\\nb\\tc\001d\342\200\250e\\s\n", "name=a b c d e program=a" },
            { runs + "Name=Caf\xe9\n",
                "name=Caf\xef\xbf\xbd program=a problem=the name is not in UTF-8" },
            { runs + "Name=" + QByteArray(5000, 'x') + '\n',
                "name=" + QByteArray(300, 'x') + " program=a" },
            { runs + "Name=" + QByteArray(299, 'x') + "\xf0\x9f\x98\x80\n",
                "name=" + QByteArray(299, 'x') + " program=a" },
            { "", "broken: empty" }, { " \n\n#\n", "broken: no [Desktop Entry]" },
            { QByteArray("\177ELF\0\1\2", 7), "broken: binary" },
            { "[Other]\nA=b\n" + runs, "broken: does not begin with [Desktop Entry]" },
            { runs + "nonsense\n", "broken: line 4 is not KEY=VALUE" },
            { start + "=a\n", "broken: line 3 is not KEY=VALUE" },
            { start + "[Oops\nExec=a\n", "broken: line 3 is not KEY=VALUE" },
            { "[Desktop Entry]\nExec=a\n", "broken: no Type" },
            { start + "Name=A\nExec=\n", "broken: no Exec" },
            { start + "Exec=\"a b\n", "broken: the quotes in Exec do not match" }
        };
        for (const auto &[text, expected] : rows) {
            QCOMPARE(described(DesktopEntry::fromData(text, { "de_AT", "de" })).toUtf8(), expected);
        }
    }

    void preferredLanguages_followTheEntryStandard()
    {
        const auto languagesFor = [](const char *language) {
            qputenv("LANGUAGE", language);
            return Languages::preferred().join(',');
        };
        QCOMPARE(languagesFor("sr_RS.UTF-8@latin"), "sr_RS@latin,sr_RS,sr@latin,sr");
        QCOMPARE(languagesFor("pt_BR:de"), "pt_BR,pt,de");
        QCOMPARE(languagesFor("C"), QByteArray());
        qunsetenv("LANGUAGE");
    }

    void shownIn_theFirstNameThatIsListedDecides()
    {
        const auto isShown = [](const QByteArray &keys, const QStringList &desktops) {
            return DesktopEntry::fromData(start + keys + '\n', {}).isShownIn(desktops);
        };
        const QStringList ubuntu { u"ubuntu"_s, u"GNOME"_s };
        QVERIFY(!isShown("Exec=a\nOnlyShowIn=GNOME;", { u"KDE"_s }));
        QVERIFY(isShown("Exec=a\nOnlyShowIn=GNOME;", ubuntu));
        QVERIFY(!isShown("Exec=a\nNotShowIn=KDE;", { u"KDE"_s }));
        QVERIFY(isShown("Exec=a\nOnlyShowIn=ubuntu;\nNotShowIn=GNOME;", ubuntu));
    }
};

QTEST_GUILESS_MAIN(DesktopEntryTest)
#include "DesktopEntryTest.moc"

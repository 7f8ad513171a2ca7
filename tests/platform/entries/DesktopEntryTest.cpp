#include "platform/freedesktop/entries/DesktopEntry.h"

#include "platform/freedesktop/base/Languages.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray start = "[Desktop Entry]\nType=Application\n";

// What was read, with only those fields that say something.
QString described(const DesktopEntry &entry)
{
    if (entry.kind == DesktopEntry::Kind::Broken) {
        return u"broken: "_s + entry.problem;
    }
    QStringList parts;
    const auto add = [&parts](const char *field, const QString &value) {
        if (!value.isEmpty()) {
            parts.append(QLatin1String(field) + u'=' + value);
        }
    };
    const auto addFlag = [&add](const char *field, bool isSet) {
        add(field, isSet ? u"1"_s : QString());
    };
    addFlag("other", entry.kind == DesktopEntry::Kind::Other);
    add("name", entry.name);
    add("icon", entry.icon);
    add("program", entry.program);
    add("try", entry.tryExec);
    add("class", entry.startupWMClass);
    add("only", entry.onlyShowIn.join(u'|'));
    add("not", entry.notShowIn.join(u'|'));
    addFlag("hidden", entry.isHidden);
    addFlag("noDisplay", entry.isNoDisplay);
    addFlag("bus", entry.isDBusActivatable);
    add("problem", entry.problem);
    return parts.join(u' ');
}

} // namespace

class DesktopEntryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }

    void reading_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char *name, const QByteArray &text, const QByteArray &expected) {
            QTest::newRow(name) << text << expected;
        };
        const QByteArray runs = start + "Exec=a\n";
        row("plain",
            start + "Name=M\nExec=m %U\nIcon=i\nTryExec=/bin/m\nStartupWMClass=Mail-Window\n",
            "name=M icon=i program=m try=/bin/m class=Mail-Window");
        row("byte order mark", "\xef\xbb\xbf" + runs, "program=a");
        row("carriage returns",
            "[Desktop Entry]\r\nType=Application\r\nTryExec=a\r\nExec=a\r\n\r\n",
            "program=a try=a");
        row("blanks and comments",
            "\n# [No]\n  [Desktop Entry] \n\t\n Type \t=  Application\n #x\nExec =a", "program=a");
        row("last of equals counts", runs + "Exec=b\nName=A\nName=B\n", "name=B program=b");
        row("group of other things", runs + "[Desktop Action x]\nExec=b\nnonsense\n", "program=a");
        row("translated where none may be", runs + "Exec[de]=b\nHidden[de]=true\n", "program=a");
        row("lists", runs + "OnlyShowIn=KDE; GNOME;;\nNotShowIn=X\\;Y;Z\n",
            "program=a only=KDE|GNOME not=X;Y|Z");
        row("list that ends in a backslash", runs + "NotShowIn=Z\\", "program=a not=Z\\");
        row("truths", runs + "Hidden=true \nNoDisplay=1\nDBusActivatable=True\n",
            "program=a hidden=1 noDisplay=1");
        row("escapes", runs + "Name=a\\sb\\tc\\\\d\\qe\n", "name=a b c\\d\\qe program=a");
        row("quoted program", start + "Exec=\"/opt/my \\\\$ app/run\" --flag \"%f\"\n",
            "program=/opt/my $ app/run");
        row("on the bus without a program", start + "DBusActivatable=true\n", "bus=1");
        row("deleted without more", "[Desktop Entry]\nHidden=true\n", "other=1 hidden=1");

        row("better translation later", runs + "Name=A\nName[de]=B\nName[de_AT]=C\n",
            "name=C program=a");
        row("better translation earlier", runs + "Name[de_AT]=C\nName[de]=B\nName=A\n",
            "name=C program=a");
        row("unwanted translation", runs + "Name=A\nName[fr]=B\n", "name=A program=a");
        row("blank translation", runs + "Name=A\nName[de]=\n", "name=A program=a");
        row("line breaks in the name", runs + "Name=\\s\\na\\nb\\tc\001d\342\200\250e\\s\n",
            "name=a b c d e program=a");
        row("name in Latin 1", runs + "Name=Caf\xe9\n",
            "name=Caf\xef\xbf\xbd program=a problem=the name is not in UTF-8");
        row("endless name", runs + "Name=" + QByteArray(5000, 'x') + '\n',
            "name=" + QByteArray(300, 'x') + " program=a");
        row("name cut inside a character",
            runs + "Name=" + QByteArray(299, 'x') + "\xf0\x9f\x98\x80\n",
            "name=" + QByteArray(299, 'x') + " program=a");

        row("empty", "", "broken: empty");
        row("only blanks", " \n\n#\n", "broken: no [Desktop Entry]");
        row("binary", QByteArray("\177ELF\0\1\2", 7), "broken: binary");
        row("text of another kind", "hello\nworld\n", "broken: line 1 is not KEY=VALUE");
        row("other group first", "[Other]\nA=b\n" + runs,
            "broken: does not begin with [Desktop Entry]");
        row("line without value", runs + "nonsense\n", "broken: line 4 is not KEY=VALUE");
        row("line without key", start + "=a\n", "broken: line 3 is not KEY=VALUE");
        row("open bracket", start + "[Oops\nExec=a\n", "broken: line 3 is not KEY=VALUE");
        row("no type", "[Desktop Entry]\nExec=a\n", "broken: no Type");
        row("no program", start + "Name=A\nExec=\n", "broken: no Exec");
        row("open quote", start + "Exec=\"a b\n", "broken: the quotes in Exec do not match");
    }
    void reading()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, expected);
        QCOMPARE(described(DesktopEntry::fromData(text, { "de_AT", "de" })).toUtf8(), expected);
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

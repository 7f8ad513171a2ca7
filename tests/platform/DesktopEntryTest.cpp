#include "platform/freedesktop/DesktopEntry.h"

#include "platform/freedesktop/Languages.h"

#include <QRegularExpression>
#include <QTest>

class DesktopEntryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void reading_data();
    void reading();
    void translation_data();
    void translation();
    void preferredLanguages_data();
    void preferredLanguages();
    void name_isMadePresentable_data();
    void name_isMadePresentable();
    void shownIn_data();
    void shownIn();
};

namespace {

const QByteArray start = "[Desktop Entry]\nType=Application\n";

// What was read, with only those fields that say something.
QString described(const DesktopEntry &entry)
{
    if (entry.kind == DesktopEntry::Kind::Broken) {
        return QStringLiteral("broken: ") + entry.problem;
    }
    QStringList parts;
    const auto add = [&parts](const char *field, const QString &value) {
        if (!value.isEmpty()) {
            parts.append(QLatin1String(field) + QLatin1Char('=') + value);
        }
    };
    add("other", entry.kind == DesktopEntry::Kind::Other ? QStringLiteral("1") : QString());
    add("name", entry.name);
    add("icon", entry.icon);
    add("program", entry.program);
    add("try", entry.tryExec);
    add("class", entry.startupWMClass);
    add("only", entry.onlyShowIn.join(QLatin1Char('|')));
    add("not", entry.notShowIn.join(QLatin1Char('|')));
    add("hidden", entry.isHidden ? QStringLiteral("1") : QString());
    add("noDisplay", entry.isNoDisplay ? QStringLiteral("1") : QString());
    add("bus", entry.isDBusActivatable ? QStringLiteral("1") : QString());
    add("problem", entry.problem);
    return parts.join(QLatin1Char(' '));
}

} // namespace

void DesktopEntryTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
}

void DesktopEntryTest::reading_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const QByteArray &text, const char *expected) {
        QTest::newRow(name) << text << QString::fromUtf8(expected);
    };
    row("plain", start + "Name=Mail\nExec=mail %U\nIcon=mail-icon\nTryExec=/bin/mail\n",
        "name=Mail icon=mail-icon program=mail try=/bin/mail");
    row("byte order mark", "\xef\xbb\xbf" + start + "Exec=a\n", "program=a");
    row("carriage returns", "[Desktop Entry]\r\nType=Application\r\nTryExec=a\r\nExec=a\r\n\r\n",
        "program=a try=a");
    row("blanks and comments",
        "\n# [No]\n  [Desktop Entry] \n\t\n Type \t=  Application\n #x\nExec =a", "program=a");
    row("no newline at the end", start + "Exec=a", "program=a");
    row("last of equals counts", start + "Exec=a\nExec=b\nName=A\nName=B\n", "name=B program=b");
    row("group of other things", start + "Exec=a\n[Desktop Action x]\nExec=b\nnonsense\n",
        "program=a");
    row("group in two pieces", start + "[Other]\nExec=b\n[Desktop Entry]\nExec=a\n", "program=a");
    row("translated where none may be", start + "Exec=a\nExec[de]=b\nHidden[de]=true\n",
        "program=a");
    row("lists", start + "Exec=a\nOnlyShowIn=KDE; GNOME;;\nNotShowIn=X\\;Y;Z\n",
        "program=a only=KDE|GNOME not=X;Y|Z");
    row("list that ends in a backslash", start + "Exec=a\nNotShowIn=Z\\", "program=a not=Z\\");
    row("truths", start + "Exec=a\nHidden=true \nNoDisplay=1\nDBusActivatable=True\n",
        "program=a hidden=1 noDisplay=1");
    row("escapes", start + "Exec=a\nName=a\\sb\\tc\\\\d\\qe\n", "name=a b c\\d\\qe program=a");
    row("class", start + "Exec=a\nStartupWMClass=Mail-Window\n", "program=a class=Mail-Window");
    row("quoted program", start + "Exec=\"/opt/my \\\\$ app/run\" --flag \"%f\"\n",
        "program=/opt/my $ app/run");
    row("on the bus without a program", start + "DBusActivatable=true\n", "bus=1");
    row("another type", "[Desktop Entry]\nType=Link\nName=L\xe9\nURL=x\n", "other=1 name=L\uFFFD");
    row("deleted without more", "[Desktop Entry]\nHidden=true\n", "other=1 hidden=1");

    row("empty", "", "broken: empty");
    row("only blanks", " \n\n#\n", "broken: no [Desktop Entry]");
    row("binary",
        QByteArray("\x7f"
                   "ELF\0\1\2",
            7),
        "broken: binary");
    row("text of another kind", "hello\nworld\n", "broken: line 1 is not KEY=VALUE");
    row("other group first", "[Other]\nA=b\n" + start + "Exec=a\n",
        "broken: does not begin with [Desktop Entry]");
    row("line without value", start + "Exec=a\nnonsense\n", "broken: line 4 is not KEY=VALUE");
    row("line without key", start + "=a\n", "broken: line 3 is not KEY=VALUE");
    row("open bracket", start + "[Oops\nExec=a\n", "broken: line 3 is not KEY=VALUE");
    row("no type", "[Desktop Entry]\nExec=a\n", "broken: no Type");
    row("no program", start + "Name=A\nExec=\n", "broken: no Exec");
    row("open quote", start + "Exec=\"a b\n", "broken: the quotes in Exec do not match");
}

void DesktopEntryTest::reading()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, expected);
    QCOMPARE(described(DesktopEntry::fromData(text, { "de" })), expected);
}

void DesktopEntryTest::translation_data()
{
    QTest::addColumn<QByteArray>("languages");
    QTest::addColumn<QByteArray>("names");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const char *languages, const char *names,
                         const char *expected) {
        QTest::newRow(name) << QByteArray(languages) << QByteArray(names)
                            << QString::fromUtf8(expected);
    };
    row("better one later", "de_DE,de", "Name=A\nName[de]=B\nName[de_DE]=C", "C");
    row("better one earlier", "de_DE,de", "Name[de_DE]=C\nName[de]=B\nName=A", "C");
    row("second language", "nl,de", "Name=A\nName[de]=B", "B");
    row("none wanted", "fr", "Name=A\nName[de]=B", "A");
    row("only another one", "fr", "Name[de]=B", "");
    row("blank translation", "de", "Name=A\nName[de]=", "A");
    row("longer than wanted", "de", "Name=A\nName[de_AT]=B\nName[d]=C", "A");
}

void DesktopEntryTest::translation()
{
    QFETCH(QByteArray, languages);
    QFETCH(QByteArray, names);
    QFETCH(QString, expected);
    const QByteArray text = start + "Exec=a\n" + names + '\n';
    QCOMPARE(DesktopEntry::fromData(text, languages.split(',')).name, expected);
}

void DesktopEntryTest::preferredLanguages_data()
{
    QTest::addColumn<QByteArray>("language");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("modifier after country")
        << QByteArray("sr_RS.UTF-8@latin") << QByteArray("sr_RS@latin,sr_RS,sr@latin,sr");
    QTest::newRow("several") << QByteArray("pt_BR:de") << QByteArray("pt_BR,pt,de");
    QTest::newRow("untranslated") << QByteArray("C") << QByteArray("");
}

void DesktopEntryTest::preferredLanguages()
{
    QFETCH(QByteArray, language);
    QFETCH(QByteArray, expected);
    qputenv("LANGUAGE", language);
    const QList<QByteArray> languages = Languages::preferred();
    qunsetenv("LANGUAGE");
    QCOMPARE(languages.join(','), expected);
}

void DesktopEntryTest::name_isMadePresentable_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("problem");

    const QString none;
    QTest::newRow("line breaks") << QByteArray("  a\\nb\\tc\x01"
                                               "d\xe2\x80\xa8"
                                               "e ")
                                 << QStringLiteral("a b c d e") << none;
    QTest::newRow("Latin 1") << QByteArray("Caf\xe9") << QStringLiteral("Caf\uFFFD")
                             << QStringLiteral("the name is not in UTF-8");
    QTest::newRow("endless") << QByteArray(5000, 'x') << QString(300, QLatin1Char('x')) << none;
    QTest::newRow("cut inside a character")
        << QByteArray(299, 'x') + "\xf0\x9f\x98\x80" << QString(299, QLatin1Char('x')) << none;
    QTest::newRow("blank") << QByteArray("\\s\\n") << QString() << none;
}

void DesktopEntryTest::name_isMadePresentable()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, expected);
    QFETCH(QString, problem);
    const DesktopEntry entry = DesktopEntry::fromData(start + "Exec=a\nName=" + name + '\n', {});
    QCOMPARE(entry.kind, DesktopEntry::Kind::Application);
    QCOMPARE(entry.name, expected);
    QCOMPARE(entry.problem, problem);
}

void DesktopEntryTest::shownIn_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QStringList>("desktops");
    QTest::addColumn<bool>("isShown");

    const QStringList none;
    const QStringList kde { QStringLiteral("KDE") };
    const QStringList ubuntu { QStringLiteral("ubuntu"), QStringLiteral("GNOME") };
    QTest::newRow("anywhere") << QByteArray() << none << true;
    QTest::newRow("only elsewhere") << QByteArray("OnlyShowIn=GNOME;") << kde << false;
    QTest::newRow("only elsewhere, no desktop") << QByteArray("OnlyShowIn=GNOME;") << none << false;
    QTest::newRow("only here, by the second name")
        << QByteArray("OnlyShowIn=GNOME;") << ubuntu << true;
    QTest::newRow("not here") << QByteArray("NotShowIn=KDE;") << kde << false;
    QTest::newRow("first name decides")
        << QByteArray("OnlyShowIn=ubuntu;\nNotShowIn=GNOME;") << ubuntu << true;
    QTest::newRow("case matters") << QByteArray("NotShowIn=kde;") << kde << true;
}

void DesktopEntryTest::shownIn()
{
    QFETCH(QByteArray, keys);
    QFETCH(QStringList, desktops);
    QFETCH(bool, isShown);
    QCOMPARE(DesktopEntry::fromData(start + keys + '\n', {}).isShownIn(desktops), isShown);
}

QTEST_GUILESS_MAIN(DesktopEntryTest)
#include "DesktopEntryTest.moc"

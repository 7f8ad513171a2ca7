#include "grid/TypeFilter.h"

#include "catalogue/OTApp.h"
#include "grid/FilterMatch.h"
#include "platform/Desktop.h"

#include <QRegularExpression>
#include <QTest>

class TypeFilterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral("."))); }
    void keysEditTheFilter_data();
    void keysEditTheFilter();
    void filtersMatchNames();
};

// In a script of keys that all come at once, "~" lets just under a second pass and "|" a second;
// "<" is Delete, "\n" the keypad's Enter, "!" cancels; "+" makes the next key a repeat, "&" doubles
// it. The answers are "y", "n", and "L" for a key that launches, which entry does while "not" is
// typed.
void TypeFilterTest::keysEditTheFilter_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("answers");

    const auto row = [](const char *name, const char *script, const char *filter,
                         const char *answers) {
        QTest::newRow(name) << QString::fromUtf8(script) << QString::fromUtf8(filter)
                            << QString::fromUtf8(answers);
    };
    row("letters and digits", "NoT7", "not7", "yyyy");
    row("after a second", "not|m", "m", "yyyy");
    row("each key keeps it fresh", "a~b~\n~c", "abc", "yyyy");
    row("spaces neither lead nor double", " a  b ", "a b ", "yyyyyy");
    row("Delete down to nothing", "ab<<<", "", "yyyyy");
    row("Delete held, letter held", "abc<+<d+d", "ad", "yyyyyyn");
    row("not fresh: Delete", "ab|<", "", "yyy");
    row("not fresh: refused, repeated, two at once", "ab|&c+c", "ab", "yynn");
    row("not fresh: refused for what it is", "ab|.", "", "yyn");
    row("refused keys keep nothing fresh", "a~.~b", "b", "yny");
    row("neither letter nor space", "a\t.\x19\u00a0-\U0001F600", "a", "ynnnnnn");
    row("other scripts, vowel marks", "ÉΣЖ字٣กิ", "éσж字٣กิ", "yyyyyyy");
    row("lower case is no single character", "İs", "İs", "yy");
    row("beyond the basic plane", "\U00010400\U00010401<", "\U00010428", "yyy");
    row("entry", "not\r\nnot\nb", "b", "yyyLyyyyLy");
    row("entry, several left", "no\r~t+\r", "not", "yyyyn");
    row("entry, not fresh", "not|\r", "", "yyyL");
    row("entry, several left, not fresh", "no|\r", "", "yyy");
    row("cancelled once, and fresh", "a!!b~c", "bc", "yynyy");
}

void TypeFilterTest::keysEditTheFilter()
{
    QFETCH(QString, script);
    TypeFilter typed;
    QString answers;
    QString prefix;
    qint64 now = 0;
    for (char32_t key : script.toUcs4()) {
        if (key == '~' || key == '|') {
            now += key == '~' ? 999 : 1000;
        } else if (key == '+' || key == '&') {
            prefix = QChar(key);
        } else if (key == '!') {
            answers += QLatin1Char(typed.cancelOperation() ? 'y' : 'n');
        } else {
            key = key == '<' ? 127 : key == '\n' ? 3 : key;
            const QString characters = QString::fromUcs4(&key, 1);
            const auto press = typed.press(
                characters.repeated(prefix == QLatin1Char('&') ? 2 : 1), prefix == QLatin1Char('+'),
                [&] { return typed.string() == QStringLiteral("not"); }, now);
            answers += QLatin1Char(press.launches ? 'L' : press.isHandled ? 'y' : 'n');
            prefix.clear();
        }
    }
    QTEST(answers, "answers");
    QTEST(typed.string(), "filter");
}

void TypeFilterTest::filtersMatchNames()
{
    Desktop desktop;
    const auto matching = [&desktop](const char *filter) {
        QByteArrayList found;
        for (const QByteArray name : { "Quick Note", "Notebook", "No Tag", "Crème Éclair" }) {
            OTApp app(QStringLiteral("/apps/%1.app").arg(QString::fromUtf8(name)), desktop);
            app.findLetters();
            if (matches(QString::fromUtf8(filter), app)) {
                found.append(name);
            }
        }
        return found.join(", ");
    };
    QCOMPARE(matching(""), QByteArray("Quick Note, Notebook, No Tag, Crème Éclair"));
    QCOMPARE(matching("n"), QByteArray("Quick Note, Notebook, No Tag"));
    QCOMPARE(matching("o"), QByteArray());
    QCOMPARE(matching("not"), QByteArray("Quick Note, Notebook"));
    QCOMPARE(matching("o t"), QByteArray("No Tag"));
    QCOMPARE(matching("é") + matching("è"), QByteArray("Crème ÉclairCrème Éclair"));
}

QTEST_APPLESS_MAIN(TypeFilterTest)
#include "TypeFilterTest.moc"

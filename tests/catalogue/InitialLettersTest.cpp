#include "catalogue/InitialLetters.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class InitialLettersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void letters_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("letters");
        const auto row = [](const char *about, const QString &name, const char *letters) {
            QTest::newRow(about) << name << QByteArray(letters);
        };
        row("empty", {}, "");
        row("words", u"Address Book"_s, "ab");
        row("camel case", u"FontBook"_s, "fb");
        row("capital after a small first letter", u"iTunes"_s, "it");
        row("a letter twice", u"Text Template"_s, "t");
        row("two words of one head", u"System Preferences"_s, "sp");
        row("capitals, then a vowel", u"HTMLEdit"_s, "he");
        row("capitals, the last a vowel", u"GUIlt"_s, "gi");
        row("capitals between consonants", u"MPlayer"_s, "ml");
        row("one capital more", u"QTKit"_s, "qk");
        row("two capitals and no more", u"OK"_s, "o");
        row("one capital, then small", u"Krita"_s, "k");
        row("bracket ends no word", u"Adobe (CS5)"_s, "ac5");
        row("small letter after a bracket", u"a (b) &c"_s, "a");
        row("hyphen, underscore, full stop", u"my-app_name.tool"_s, "mant");
        row("digit before a word", u"1Password"_s, "1p");
        row("digit ends the word start", u"4chan"_s, "4");
        row("digits and spaces", u"2 3 2"_s, "23");
        row("digit breaks a run of capitals", u"AB1Cd"_s, "a1c");
        row("white space of all kinds", u"a\tb\nc\vd\fe\rf"_s, "abcdef");
        row("no-break space is none", u"a\u00A0b"_s, "a");
        row("letters beyond ASCII", u"Über Éclair"_s, "");
        row("capital after one of them", u"ÜBer"_s, "b");
        row("every letter and digit",
            u"A b C d E f G h I j K l M n O p Q r S t U v W x Y z 0123456789 A"_s,
            "abcdefghijklmnopqrstuvwxyz0123456789");
        row("nothing but punctuation", u"-_. (&)"_s, "");
    }

    void letters()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, letters);
        QCOMPARE(initialLetters(name), letters);
    }
};

QTEST_GUILESS_MAIN(InitialLettersTest)
#include "InitialLettersTest.moc"

#include "catalogue/InitialLetters.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class InitialLettersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void letters()
    {
        const std::pair<QString, const char *> rows[] { { QString(), "" },
            { u"Address Book"_s, "ab" }, { u"FontBook"_s, "fb" }, { u"iTunes"_s, "it" },
            { u"Text Template"_s, "t" }, { u"System Preferences"_s, "sp" }, { u"HTMLEdit"_s, "he" },
            { u"GUIlt"_s, "gi" }, { u"MPlayer"_s, "ml" }, { u"QTKit"_s, "qk" }, { u"OK"_s, "o" },
            { u"Krita"_s, "k" }, { u"Adobe (CS5)"_s, "ac5" }, { u"a (b) &c"_s, "a" },
            { u"my-app_name.tool"_s, "mant" }, { u"1Password"_s, "1p" }, { u"9chan"_s, "9" },
            { u"2 3 2"_s, "23" }, { u"AB1Cd"_s, "a1c" }, { u"a\tb\nc\vd\fe\rf"_s, "abcdef" },
            { u"a\u00A0b"_s, "a" }, { u"Über Éclair"_s, "" }, { u"ÜBer"_s, "b" },
            { u"-_. (&)"_s, "" } };
        for (const auto &[name, letters] : rows) {
            QCOMPARE(initialLetters(name), QByteArray(letters));
        }
    }
};

QTEST_GUILESS_MAIN(InitialLettersTest)
#include "InitialLettersTest.moc"

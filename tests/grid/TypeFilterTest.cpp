// What keys and the wheel make of the filter.

#include "grid/typing/TypeFilter.h"

#include "TestCase.h"
#include "catalogue/OTApp.h"
#include "grid/typing/FilterMatch.h"
#include "grid/typing/GridWheel.h"
#include "platform/Desktop.h"

#include <utility>

namespace {

using Outcome = GridWheel::Outcome;
// How far, and how long after the one before.
using Swipes = QList<std::pair<double, double>>;

QChar letterOf(Outcome outcome)
{
    return QLatin1Char("-ac><"[int(outcome)]);
}

void typeInto(TypeFilter &filter, const QString &letters)
{
    for (const char32_t code : letters.toUcs4()) {
        filter.press(QString::fromUcs4(&code, 1), false, {}, 0);
    }
}

} // namespace

class TypeFilterTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    // In a script of keys that all come at once, "~" lets just under a second pass and "|" a
    // second; "<" is Delete, "\n" the keypad's Enter, "!" cancels; "+" makes the next key a repeat.
    // The answers are "y", "n", and "L" for a key that launches, which entry does while "not" is
    // typed.
    void keysEditTheFilter()
    {
        for (const auto &[script, filter, answers] :
            std::initializer_list<std::tuple<QString, QString, QString>> {
                { u"NoT7"_s, u"not7"_s, u"yyyy"_s }, { u"not|m"_s, u"m"_s, u"yyyy"_s },
                { u"a~b~\n~c"_s, u"abc"_s, u"yyyy"_s }, // each key keeps it fresh
                { u" a  b "_s, u"a b "_s, u"yyyyyy"_s }, { u"ab<<<"_s, u""_s, u"yyyyy"_s },
                { u"abc<+<d+d"_s, u"ad"_s, u"yyyyyyn"_s }, { u"ab|<"_s, u""_s, u"yyy"_s },
                { u"a\t.\x19\u00a0-\U0001F600"_s, u"a"_s, u"ynnnnnn"_s },
                { u"ÉΣЖ字٣กิ"_s, u"éσж字٣กิ"_s, u"yyyyyyy"_s },
                { u"\U00010400\U00010401<"_s, u"\U00010428"_s, u"yyy"_s },
                { u"not\r\nnot\nb"_s, u"b"_s, u"yyyLyyyyLy"_s },
                { u"no\r~t+\r"_s, u"not"_s, u"yyyyn"_s }, // several left
                { u"not|\r"_s, u""_s, u"yyyL"_s }, { u"a!!b~c"_s, u"bc"_s, u"yynyy"_s } }) {
            TypeFilter typed;
            QString found;
            bool isRepeat = false;
            qint64 now = 0;
            for (char32_t key : script.toUcs4()) {
                if (key == '~' || key == '|') {
                    now += key == '~' ? 999 : 1000;
                } else if (key == '+') {
                    isRepeat = true;
                } else if (key == '!') {
                    found += typed.cancelOperation() ? u'y' : u'n';
                } else {
                    key = key == '<' ? 127 : key == '\n' ? 3 : key;
                    const auto press = typed.press(
                        QString::fromUcs4(&key, 1), std::exchange(isRepeat, false),
                        [&] { return typed.string() == u"not"; }, now);
                    found += press.launches ? u'L' : press.isHandled ? u'y' : u'n';
                }
            }
            QVERIFY2(found == answers, qPrintable(script));
            QCOMPARE(typed.string(), filter);
        }
    }

    void filtersMatchNames()
    {
        Desktop desktop;
        for (const auto &[filter, names] : std::initializer_list<std::pair<QString, QString>> {
                 { u""_s, u"Quick Note, Notebook, No Tag, Crème Éclair"_s },
                 { u"n"_s, u"Quick Note, Notebook, No Tag"_s }, { u"o"_s, u""_s },
                 { u"not"_s, u"Quick Note, Notebook"_s }, { u"o t"_s, u"No Tag"_s },
                 { u"é"_s, u"Crème Éclair"_s }, { u"è"_s, u"Crème Éclair"_s } }) {
            QStringList found;
            for (const QString &name :
                { u"Quick Note"_s, u"Notebook"_s, u"No Tag"_s, u"Crème Éclair"_s }) {
                // Some systems keep accents apart.
                OTApp app(
                    u"/apps/%1.app"_s.arg(name.normalized(QString::NormalizationForm_D)), desktop);
                app.findLetters();
                found += matches(filter, app) ? QStringList(name) : QStringList();
            }
            QCOMPARE(found.join(u", "_s), names);
        }
    }

    // What was typed at 0, when it is scrolled (at 1000 it is no longer fresh) and by what; the
    // outcomes, each with the filter it leaves.
    void filter_decidesWhatScrollingDoes()
    {
        for (const QString &row : { u"|0|0,1.2 0,1.2|cz cy "_s, u"b|0|0,1.2 0,1.2 0,1.2|ca c cz "_s,
                 u"y|0|0,-1.2 0,-1.2 0,-1.2|cz c ca "_s, u"m|0|0,0.5 0,0.5 0,0.1|-m -m cl "_s,
                 u"m|0|0,0.9 0,-0.9 0,-0.9 0,-0.9|-m -m -m cn "_s, u"é|0|0,1.2|c "_s,
                 u"ab|999|0,1.2|-ab "_s, u"ab|1000|0,1.2|cz "_s,
                 u"ab|999|6,0.5 6,0.5 6,0.5|-ab -ab -ab "_s,
                 u"ab|1000|6,0.5 6,0.5 6,0.5|c - > "_s }) {
            const QStringList part = row.split(u'|');
            SwipeDetector detector;
            GridWheel wheel(detector);
            TypeFilter typed;
            typeInto(typed, part[0]);
            QString found;
            for (const QString &delta : part[2].split(u' ')) {
                const QStringList way = delta.split(u',');
                found += letterOf(wheel.scroll(
                    way[0].toDouble(), way[1].toDouble(), 0, false, typed, part[1].toLongLong()));
                found += typed.string() + u' ';
            }
            QCOMPARE(found, part[3]);
        }
    }

    // A device whose events all have one time stamp is judged by when they are handled.
    void swipes_changeGroups()
    {
        const Swipes later { { 6, 0.2 }, { 6, 0.1 }, { 6, 0.1 } };
        const std::pair<Swipes, QString> rows[] {
            { Swipes(6, { 5, 0.02 }), u"--->--"_s }, // 25 in one gesture
            { Swipes(6, { -5, 0.02 }), u"---<--"_s },
            { Swipes(6, { 5, 0.02 }) + later, u"--->---->"_s }, // again after a pause
            { Swipes(2, { 8, 0.02 }) + later, u"---->"_s }, // a pause before it is far enough
            { Swipes(2, { 6, 0.02 }) + Swipes(4, { -6, 0.02 }), u"-----<"_s }, // turned
        };
        for (const auto &[swipes, outcomes] : rows) {
            for (const bool hasTimeStamps : { true, false }) {
                SwipeDetector detector;
                GridWheel wheel(detector);
                TypeFilter filter;
                QString found;
                double time = 100;
                for (const auto &[deltaX, seconds] : swipes) {
                    time += seconds;
                    found += letterOf(wheel.scroll(deltaX, 0.1, hasTimeStamps ? time : 0, false,
                        filter, hasTimeStamps ? 0 : qint64(time * 1000)));
                }
                QCOMPARE(found, outcomes);
            }
        }
    }
};

QTEST_APPLESS_MAIN(TypeFilterTest)
#include "TypeFilterTest.moc"

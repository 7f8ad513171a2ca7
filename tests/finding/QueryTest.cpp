#include "finding/Query.h"

#include "TestCase.h"

#include <map>

class QueryTest : public TestCase
{
    Q_OBJECT

    // How the text finds an application of that name, as a letter: whole, beginning, initials,
    // complete word, word, part, order, pair; none as "-".
    static QString howFound(const QString &typed, const Findable &item)
    {
        const std::optional<Match> match = Query(typed).match(item);
        return match ? QStringLiteral("WBIcwpoq").mid(int(match->how), 1)
                + (match->sense == Match::Sense::OtherLayout ? u"~"_s : QString())
                     : u"-"_s;
    }
    static QString namesFound(
        const QString &typed, const QStringList &names, const std::map<QString, double> &uses = {})
    {
        std::vector<Findable> items;
        for (const QString &name : names) {
            items.emplace_back(name);
        }
        std::vector<Candidate> candidates;
        for (qsizetype i = 0; i < names.size(); ++i) {
            const auto use = uses.find(names[i]);
            candidates.push_back({ &items[size_t(i)], use == uses.end() ? 0 : use->second });
        }
        QStringList found;
        for (const Hit &hit : ranked(Query(typed), candidates)) {
            found.append(names[qsizetype(hit.index)]);
        }
        return found.join(u", ");
    }

private Q_SLOTS:
    void namesAreFound_data()
    {
        QTest::addColumn<QString>("name");
        // Texts and how each finds the name.
        QTest::addColumn<QString>("expected");
        const auto row = [](const QString &name, const QString &expected) {
            QTest::newRow(qUtf8Printable(name)) << name << expected;
        };
        row(u"GNU Image Manipulation Program"_s,
            u"gnu:B gimp:I image:c manip:w ipula:p gmp:o g:B m:w e:- gnu program:c xyz:-"_s);
        row(u"LibreOffice Writer"_s,
            u"libre writer:c writer libre:c lw:I low:I office:c ffice:p lbr:o libre calc:- "
            "libreoffice writer:W libreofficewriter:o"_s);
        row(u"HTMLEdit 7zip"_s, u"edit:c tml:p he7z:I 7:w zip:c"_s);
        row(u"Straßenkarte Çelik Œuvre"_s, u"strasse:B STRASSE:B çel:w celik:c oeuvre:c sco:I"_s);
        row(u"Cafe\u0301 \uFF26\uFF49\uFF52\uFF45 \uFB01le"_s, u"café:B cafe:B fire:c file:c"_s);
        row(u"Łódź İstanbul ısı"_s, u"lodz:B istanbul:c isi:c"_s);
        row(u"Переводчик Ёлка"_s, u"пере:B ПЕРЕ:B елка:c вод:p п:B е:w пё:B gthtdjl:B~"_s);
        row(u"Редактор Їжак"_s, u"]:w~ htlfrnjh:B~"_s);
        row(u"Επεξεργαστής Κειμένου"_s, u"επεξ:B κειμενου:c ΚΕΙΜΈΝΟΥ:c εκ:I σης:- epej:B~"_s);
        row(u"עורך טקסט"_s, u"עורך:B טק:w עט:I gurl:B~"_s);
        row(u"שָׁלוֹם"_s, u"שלום:W akuo:W~"_s);
        row(u"مُحرِّر النصوص"_s, u"محرر:B النص:w مـحـرر:B"_s);
        row(u"ファイルのダウンロード"_s, u"ファイル:B ダウ:w だう:w ﾀﾞｳ:w タウ:- ロ:p ふ:B"_s);
        row(u"谷歌浏览器 Chrome"_s, u"谷歌:B 浏览:p 器:p chrome:c 谷c:I"_s);
        row(u"파일 관리자"_s, u"파일:B 관리:w 리:p 파관:I"_s);
        row(u"Firefox"_s,
            u"firef:B ff:o ox:q ашкуащч:W~ φιρεφ:B~ כןרק:B~ firefoxx:- f:B x:- ашкю:B~ a:-"_s);
        row(u"Word Pad"_s, u"'םרג:B~"_s);
        // Both directions in one name, and what steers them.
        row(u"\u202BעורךVim\u202C \u2067בית\u2069"_s, u"עורך:B vim:c ביי:- בית:c עv:I"_s);
        row(QString(), u"a:-"_s);
        row(u"-- "_s, u"a:-"_s);
    }
    void namesAreFound()
    {
        QFETCH(QString, name);
        QFETCH(QString, expected);
        // A text may have spaces; what follows the colon has none.
        static const QRegularExpression pair(u"([^:]+):(\\S+)(?: |$)"_s);
        const Findable item(name);
        int count = 0;
        for (auto it = pair.globalMatch(expected); it.hasNext(); ++count) {
            const QRegularExpressionMatch one = it.next();
            QCOMPARE(one.captured(1) + u':' + howFound(one.captured(1), item),
                one.captured(0).trimmed());
        }
        QVERIFY(count > 0);
    }

    void kindsComeInOrder_andUseTellsEqualsApart()
    {
        const QStringList names { u"Tea Ermines"_s, u"Lantern"_s, u"XTerm"_s, u"Terminator"_s,
            u"Tiny Editor Rich Mode"_s, u"Term"_s, u"Terminal"_s, u"Еукь"_s };
        const QString ranking =
            u"Term, Terminal, Terminator, Tiny Editor Rich Mode, XTerm, Lantern, Tea Ermines"_s;
        QCOMPARE(namesFound(u"term"_s, names.sliced(0, 7)).remove(u"Lantern, "_s),
            QString(ranking).remove(u"Lantern, "_s));
        QCOMPARE(namesFound(u"ter"_s, { u"Interim"_s, u"Lantern"_s }), u"Interim, Lantern"_s);
        QCOMPARE(
            namesFound(u"ff"_s, { u"LibreOffice"_s, u"Firefox"_s }), u"Firefox, LibreOffice"_s);
        QCOMPARE(namesFound(u"calc"_s, { u"MyCalculator"_s, u"Office Calc"_s, u"Calcify"_s }),
            u"Calcify, Office Calc, MyCalculator"_s);
        QCOMPARE(
            namesFound(u"term"_s, names, { { u"Terminator"_s, 2 }, { u"Terminal"_s, 1 } }).left(27),
            u"Term, Terminator, Terminal,"_s);
        // However much it is used.
        QVERIFY(namesFound(u"term"_s, names, { { u"Еукь"_s, 9 } }).endsWith(u", Еукь"));
        QCOMPARE(namesFound(u""_s, names), QString());
        QCOMPARE(namesFound(u" .'"_s, names), QString());
    }

    void otherTextsFind_afterNames()
    {
        const ItemWords ofFiles { .untranslatedName = u"Files"_s,
            .genericName = u"Dateiverwaltung"_s,
            .untranslatedGenericName = u"File Manager"_s,
            .keywords = { u"ordner"_s, u"Platte leeren"_s },
            .untranslatedKeywords = { u"folder"_s, u"disk"_s },
            .commands = { u"nautilus"_s },
            .hasActions = true };
        const Findable item(u"Dateien"_s, ofFiles,
            { { u"new"_s, u"Neues Fenster"_s }, { u"priv"_s, u"Neues privates Fenster"_s } });
        for (const auto &[typed, how, field, action] :
            { std::tuple(u"files"_s, FoundAs::Whole, FoundBy::UntranslatedName, -1),
                std::tuple(u"datei"_s, FoundAs::Beginning, FoundBy::Name, -1),
                std::tuple(u"verwalt"_s, FoundAs::Part, FoundBy::GenericName, -1),
                std::tuple(u"fm"_s, FoundAs::LettersInOrder, FoundBy::UntranslatedGenericName, -1),
                std::tuple(u"folder"_s, FoundAs::WholeWord, FoundBy::UntranslatedKeywords, -1),
                std::tuple(u"platte"_s, FoundAs::WholeWord, FoundBy::Keywords, -1),
                std::tuple(u"nautilus"_s, FoundAs::Whole, FoundBy::Command, -1),
                std::tuple(u"disk datei"_s, FoundAs::WholeWord, FoundBy::UntranslatedKeywords, -1),
                std::tuple(u"privat"_s, FoundAs::Word, FoundBy::Action, 1),
                std::tuple(u"files priv"_s, FoundAs::Word, FoundBy::Action, 1),
                std::tuple(u"files pr"_s, FoundAs::Word, FoundBy::Action, 1),
                std::tuple(u"fenster"_s, FoundAs::WholeWord, FoundBy::Action, 0) }) {
            const std::optional<Match> match = Query(typed).match(item);
            QVERIFY2(match, qUtf8Printable(typed));
            QCOMPARE(std::tuple(typed, match->how, match->field, match->action),
                std::tuple(typed, how, field, action));
        }
        // Across two keywords, and by what says too little.
        for (const QString &typed : { u"ordner platte x"_s, u"nerplat"_s, u"o"_s, u"fn"_s,
                 u"isk x"_s, u"priv x"_s, u"rd"_s }) {
            QVERIFY2(!Query(typed).match(item), qUtf8Printable(typed));
        }
        // Names come before other texts unless those are used, and both before actions.
        const Findable privateEye(u"Private Eye"_s);
        const Findable browser(u"Surf"_s, {}, { { u"p"_s, u"Private"_s } });
        ItemWords words;
        words.keywords = { u"x"_s, u"unprivate"_s };
        const Findable keyword(u"Tor"_s, words, {});
        ItemWords kind;
        kind.genericName = u"Private Place"_s;
        const Findable whole(u"Eye"_s, kind, {});
        const Findable wholeName(u"My Private"_s);
        for (const double use : { 0, 1 }) {
            const auto found = ranked(Query(u"private"_s), { { &whole, use }, { &wholeName } });
            QCOMPARE(found[0].index, size_t(use ? 0 : 1));
        }
        const auto hits =
            ranked(Query(u"private"_s), { { &browser, 99 }, { &keyword }, { &privateEye } });
        QCOMPARE(hits.size(), size_t(3));
        QVERIFY(hits[0].index == 2 && hits[1].index == 1 && hits[2].index == 0);
    }

    // Each of these takes hours where a step costs more than it should.
    void hostileTextsTakeBoundedTime()
    {
        const QStringList hostile { QString(10'000, u'a'), u"e"_s + QString(5'000, QChar(0x301)),
            QString(10'000, QChar(0x93F)), QString(10'000, QChar(0xFDFA)), u"a "_s.repeated(5'000),
            u"aA"_s.repeated(5'000), QString(10'000, QChar(0xD83D)), u"\u202Eא"_s.repeated(5'000),
            QString(10'000, QChar(0x3099)) };
        for (const QString &text : hostile) {
            ItemWords words;
            words.keywords = QStringList(1'000, text);
            words.commands = { text };
            const Findable item(text, words, {});
            QVERIFY(item.texts().empty()
                || item.texts()[0].text.letters().size() <= FoldedText::longest);
            for (const QString &typed : hostile) {
                Query(typed).match(item);
                Query(typed.left(900)).match(item);
            }
        }
        // A letter with hundreds of marks is that letter, also far behind them.
        QCOMPARE(
            howFound(u"eva"_s, Findable(u"E"_s + QString(500, QChar(0x301)) + u"va"_s)), u"W"_s);
        QCOMPARE(howFound(QString(10'000, u'a'), Findable(QString(10'000, u'a'))), u"-"_s);
        QCOMPARE(howFound(QString(900, u'a'), Findable(QString(10'000, u'a'))), u"B"_s);
    }
};

QTEST_GUILESS_MAIN(QueryTest)

#include "QueryTest.moc"

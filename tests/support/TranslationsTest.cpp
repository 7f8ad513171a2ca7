#include "support/Translations.h"

#include "TestCase.h"

#include <QCoreApplication>
#include <QXmlStreamReader>

namespace {

const QRegularExpression placeholder(u"%L?(\\d|n)"_s);
const QRegularExpression mnemonic(u"&(?=\\S)"_s);

// What a text and its translation have in common: the placeholders, whether a letter is its
// mnemonic, and whether it ends with a colon, an ellipsis or a space.
QString shapeOf(const QString &text)
{
    QStringList parts;
    for (auto found = placeholder.globalMatch(text); found.hasNext();) {
        parts.append(found.next().captured(1));
    }
    parts.sort();
    const QString end = text.right(1);
    return parts.join(u' ') + QString::number(text.count(mnemonic))
        + (u":… "_s.contains(end) ? end : QString());
}

} // namespace

class TranslationsTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void everyText_isTranslated_withItsPlaceholdersAndItsMnemonic()
    {
        for (const QFileInfo &file : QDir(u"" TRANSLATIONS ""_s).entryInfoList({ u"*.ts"_s })) {
            QXmlStreamReader xml(load(file.filePath()));
            QString source;
            int count = 0;
            while (!xml.atEnd()) {
                xml.readNext();
                if (!xml.isStartElement()) {
                    continue;
                }
                // That of a text with plural forms holds an element for each.
                const bool isForm = xml.name() == u"numerusform";
                if (xml.name() == u"source") {
                    source = xml.readElementText();
                    ++count;
                } else if (xml.name() == u"translation") {
                    QVERIFY2(!xml.attributes().hasAttribute(u"type"_s), qPrintable(source));
                }
                if (isForm || (xml.name() == u"translation" && !source.contains(u"%n"))) {
                    const QString text = xml.readElementText();
                    QVERIFY2(!text.isEmpty(), qPrintable(source));
                    QCOMPARE(source + shapeOf(text), source + shapeOf(source));
                }
            }
            QVERIFY2(!xml.hasError() && count > 300, qPrintable(xml.errorString()));
        }
    }

    void language_isTheFirstThatIsEnglishOrHasACatalogue()
    {
        const QString english = u"Quit Ortu"_s;
        const QString german = u"Ortu beenden"_s;
        const std::pair<QList<QByteArray>, QString> rows[] { { {}, english },
            { { "de_AT", "de" }, german }, { { "tlh", "de", "en" }, german },
            { { "en_GB", "en", "de" }, english }, { { "tlh" }, english } };
        for (const auto &[languages, text] : rows) {
            const Translations translations(languages);
            QCOMPARE(QCoreApplication::translate("MainMenu", "Quit Ortu"), text);
        }
        const Translations translations({ "de" });
        QCOMPARE(Translations::ofReason(u"too large"_s), u"Die Datei würde zu groß"_s);
        QCOMPARE(Translations::ofReason(u"Éxample"_s), u"Éxample"_s);
        const auto favourites = [](int n) {
            return QCoreApplication::translate("StatsButtons", "%n Favorite", nullptr, n);
        };
        QCOMPARE(favourites(1) + favourites(2), u"1 Favorit2 Favoriten"_s);
    }
};

QTEST_GUILESS_MAIN(TranslationsTest)
#include "TranslationsTest.moc"

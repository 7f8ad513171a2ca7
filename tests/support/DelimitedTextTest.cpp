#include "support/DelimitedText.h"

#include <QStringConverter>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class DelimitedTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void textsBecomeRecords_data();
    void textsBecomeRecords();
    void anotherSeparatorMayBeAsked();
    void encodingsAreRecognised_data();
    void encodingsAreRecognised();
    void hugeTexts_areReadWithinReason();

private:
    static QString written(const QList<QVariantMap> &records);
};

// "a|b" for the header, then "a=1 b=2" a record, with semicolons between.
QString DelimitedTextTest::written(const QList<QVariantMap> &records)
{
    QStringList parts;
    for (const QVariantMap &record : records) {
        QStringList fields;
        for (auto it = record.begin(); it != record.end(); ++it) {
            fields.append(it->typeId() == QMetaType::QStringList
                    ? it.key() + u": "_s + it->toStringList().join(u'|')
                    : it.key() + u'=' + it->toString());
        }
        parts.append(fields.join(u' '));
    }
    return parts.join(u"; "_s);
}

void DelimitedTextTest::textsBecomeRecords_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("records");
    QTest::newRow("nothing") << u""_s << u""_s;
    QTest::newRow("only comments") << u"# a\tb\n\n#1\t2"_s << u""_s;
    QTest::newRow("a header alone") << u"a\tb"_s << u"keys: a|b"_s;
    QTest::newRow("one column") << u"a\n1\n2\n"_s << u"keys: a; a=1; a=2"_s;
    QTest::newRow("LF") << u"a\tb\n1\t2\n3\t4\n"_s << u"keys: a|b; a=1 b=2; a=3 b=4"_s;
    QTest::newRow("CR") << u"a\tb\r1\t2\r3\t4"_s << u"keys: a|b; a=1 b=2; a=3 b=4"_s;
    QTest::newRow("CRLF") << u"\r\na\tb\r\n1\t2\r\n3\t4\r\n"_s << u"keys: a|b; a=1 b=2; a=3 b=4"_s;
    QTest::newRow("comments and gaps")
        << u"#x\n\na\tb\n\n1\t2\n# 9\t9\n3\t#4"_s << u"keys: a|b; a=1 b=2; a=3 b=#4"_s;
    QTest::newRow("empty fields") << u"a\tb\n\t2\n1\t\n3"_s << u"keys: a|b; b=2; a=1; a=3"_s;
    QTest::newRow("too many fields") << u"a\tb\n1\t2\t3\n\t\t3"_s << u"keys: a|b; a=1 b=2"_s;
    QTest::newRow("blanks count") << u"a\n \n"_s << u"keys: a; a= "_s;
    QTest::newRow("zero bytes") << u"a\tb\n\0\t2\n"_s << u"keys: a|b; a=\0 b=2"_s;
}

void DelimitedTextTest::textsBecomeRecords()
{
    QFETCH(const QString, text);
    QTEST(written(DelimitedText::records(text)), "records");
}

void DelimitedTextTest::anotherSeparatorMayBeAsked()
{
    QCOMPARE(written(DelimitedText::records(u"a,b\n1,2\t3"_s, u',')), u"keys: a|b; a=1 b=2\t3"_s);
}

void DelimitedTextTest::encodingsAreRecognised_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("text");
    const QString text = u"Größe → 1"_s;
    QTest::newRow("UTF-8") << text.toUtf8() << text;
    QTest::newRow("UTF-8 with a mark") << QByteArray("\xef\xbb\xbf" + text.toUtf8()) << text;
    for (const auto encoding : { QStringConverter::Utf16BE, QStringConverter::Utf16LE }) {
        QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
        QTest::newRow(QStringConverter::nameForEncoding(encoding))
            << QByteArray(encoder.encode(text)) << text;
    }
    QTest::newRow("Latin-1") << QByteArray("Gr\xf6\xdf\x65") << u"Größe"_s;
    QTest::newRow("UTF-8 cut off") << QByteArray("a\xc3") << u"aÃ"_s;
    QTest::newRow("empty") << QByteArray() << QString();
}

void DelimitedTextTest::encodingsAreRecognised()
{
    QFETCH(const QByteArray, data);
    QTEST(DelimitedText::decoded(data), "text");
}

void DelimitedTextTest::hugeTexts_areReadWithinReason()
{
    constexpr qsizetype size = 10'000'000;
    const QString endless(size, u'x');
    QCOMPARE(DelimitedText::records(endless).constFirst()[u"keys"_s].toStringList(),
        QStringList(endless));
    const QList<QVariantMap> records =
        DelimitedText::records(QString(size, u'\t') + u'\n' + QString(size, u'\t') + u"\n1"_s);
    QCOMPARE(records.size(), 2);
    QCOMPARE(records[0][u"keys"_s].toStringList().size(), DelimitedText::maximumColumns);
    QCOMPARE(records[1][QString()].toString(), u"1"_s);
}

QTEST_APPLESS_MAIN(DelimitedTextTest)

#include "DelimitedTextTest.moc"

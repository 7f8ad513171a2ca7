#include "support/DelimitedText.h"

#include "TestCase.h"

#include <QStringConverter>

class DelimitedTextTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void textsBecomeRecords()
    {
        const QString both = u"keys: a|b; a=1 b=2; a=3 b=4"_s;
        const std::pair<QString, QString> rows[] { { {}, {} }, { u"# a\tb\n\n#1\t2"_s, {} },
            { u"a\tb"_s, u"keys: a|b"_s }, { u"a\n1\n2\n"_s, u"keys: a; a=1; a=2"_s },
            { u"a\tb\n1\t2\n3\t4\n"_s, both }, { u"a\tb\r1\t2\r3\t4"_s, both },
            { u"\r\na\tb\r\n1\t2\r\n3\t4\r\n"_s, both },
            { u"#x\n\na\tb\n\n1\t2\n# 9\t9\n3\t#4"_s, u"keys: a|b; a=1 b=2; a=3 b=#4"_s },
            { u"a\tb\n\t2\n1\t\n3"_s, u"keys: a|b; b=2; a=1; a=3"_s },
            { u"a\tb\n1\t2\t3\n\t\t3"_s, u"keys: a|b; a=1 b=2"_s },
            { u"a\n \n"_s, u"keys: a; a= "_s }, { u"a\tb\n\0\t2\n"_s, u"keys: a|b; a=\0 b=2"_s } };
        for (const auto &[text, expected] : rows) {
            QCOMPARE(written(DelimitedText::records(text)), expected);
        }
    }

    void encodingsAreRecognised()
    {
        const QString text = u"Größe → 1"_s;
        QStringEncoder big(QStringConverter::Utf16BE, QStringConverter::Flag::WriteBom);
        QStringEncoder little(QStringConverter::Utf16LE, QStringConverter::Flag::WriteBom);
        for (const QByteArray &data : { text.toUtf8(), "\xef\xbb\xbf" + text.toUtf8(),
                 QByteArray(big.encode(text)), QByteArray(little.encode(text)) }) {
            QCOMPARE(DelimitedText::decoded(data), text);
        }
        QCOMPARE(DelimitedText::decoded("Gr\xf6\xdf\x65"), u"Größe"_s);
        // UTF-8 that is cut off.
        QCOMPARE(DelimitedText::decoded("a\xc3"), u"aÃ"_s);
        QCOMPARE(DelimitedText::decoded({}), QString());
    }

private:
    // "a|b" for the header, then "a=1 b=2" a record, with semicolons between.
    static QString written(const QList<QVariantMap> &records)
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
};

QTEST_APPLESS_MAIN(DelimitedTextTest)
#include "DelimitedTextTest.moc"

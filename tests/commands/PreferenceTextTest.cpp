#include "commands/PreferenceText.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class PreferenceTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The default, a text, and what it is read as; invalid where it cannot be.
    void textIsReadByTheTypeOfTheDefault()
    {
        const QVariant list = QVariantList();
        const QVariant folders = QVariantList { QVariantMap { { u"path"_s, u"/a b"_s } } };
        const std::tuple<QVariant, QString, QVariant> rows[] { { false, u"YES"_s, true },
            { false, u"2"_s, {} }, { 1, u"-4"_s, -4LL }, { 1, u"1.5"_s, {} },
            { 1, u"99999999999999999999"_s, {} }, { 0.5, u"3"_s, 3.0 }, { 0.5, u"inf"_s, {} },
            { 0.5, u""_s, {} }, { list, uR"([{"path":"/a b"}])"_s, folders },
            { list, uR"({"path":"/"})"_s, {} }, { list, u"["_s, {} },
            { u""_s, u" true "_s, u" true "_s } };
        for (const auto &[registered, text, value] : rows) {
            const std::optional<QVariant> read = preferenceFromText(text, registered);
            QCOMPARE(read.has_value(), value.isValid());
            QCOMPARE(read.value_or(QVariant()), value);
            if (read) {
                QCOMPARE(preferenceFromText(preferenceText(*read), registered).value(), value);
            }
        }
    }
};

QTEST_APPLESS_MAIN(PreferenceTextTest)

#include "PreferenceTextTest.moc"

#include "commands/PreferenceText.h"

#include <QTest>

class PreferenceTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textIsReadByTheTypeOfTheDefault_data();
    void textIsReadByTheTypeOfTheDefault();
};

void PreferenceTextTest::textIsReadByTheTypeOfTheDefault_data()
{
    QTest::addColumn<QVariant>("registered");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariant>("value");

    const QVariant folders =
        QVariantList { QVariantMap { { QStringLiteral("path"), QStringLiteral("/a b") } } };
    QTest::newRow("yes") << QVariant(false) << "YES" << QVariant(true);
    QTest::newRow("no boolean") << QVariant(false) << "2" << QVariant();
    QTest::newRow("negative integer") << QVariant(1) << "-4" << QVariant(qlonglong(-4));
    QTest::newRow("fraction for an integer") << QVariant(1) << "1.5" << QVariant();
    QTest::newRow("integer past its range") << QVariant(1) << "99999999999999999999" << QVariant();
    QTest::newRow("integer for a real") << QVariant(0.5) << "3" << QVariant(3.0);
    QTest::newRow("infinite real") << QVariant(0.5) << "inf" << QVariant();
    QTest::newRow("nothing for a number") << QVariant(0.5) << "" << QVariant();
    QTest::newRow("list") << QVariant(QVariantList {}) << R"([{"path":"/a b"}])" << folders;
    QTest::newRow("dictionary for a list")
        << QVariant(QVariantList {}) << R"({"path":"/"})" << QVariant();
    QTest::newRow("broken list") << QVariant(QVariantList {}) << "[" << QVariant();
    QTest::newRow("string") << QVariant(QString()) << " true "
                            << QVariant(QStringLiteral(" true "));
}

void PreferenceTextTest::textIsReadByTheTypeOfTheDefault()
{
    QFETCH(const QVariant, registered);
    QFETCH(const QString, text);
    QFETCH(const QVariant, value);

    const std::optional<QVariant> read = preferenceFromText(text, registered);

    QCOMPARE(read.has_value(), value.isValid());
    QCOMPARE(read.value_or(QVariant()), value);
    if (read) {
        QCOMPARE(preferenceFromText(preferenceText(*read), registered).value(), value);
    }
}

QTEST_APPLESS_MAIN(PreferenceTextTest)

#include "PreferenceTextTest.moc"

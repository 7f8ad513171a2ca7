#include "TestCase.h"

void TestCase::init()
{
    QTest::failOnWarning(QRegularExpression(u"."_s));
}

void TestCase::expectWarning(const QString &pattern)
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(pattern));
}

QByteArray TestCase::load(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestCase::save(const QString &path, const QByteArray &data)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(data) == data.size());
}

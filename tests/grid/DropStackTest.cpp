#include "grid/DropStack.h"

#include <QDir>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class DropStackTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }

    void push_addsWhatIsInside_data()
    {
        const QUrl a(u"file:///a"_s);
        const QUrl b(u"https://example.org/b"_s);
        QTest::addColumn<QVariant>("object");
        QTest::addColumn<QString>("held");
        const auto row = [](const char *name, const QVariant &object, const QString &held) {
            QTest::newRow(name) << object << held;
        };
        row("nothing", {}, u"()"_s);
        row("a URL", b, u"(https://example.org/b)"_s);
        row("three URLs", QVariant::fromValue(QList<QUrl> { a, b, a }),
            u"(file:///a, https://example.org/b, file:///a)"_s);
        row("paths", QStringList { u"/b"_s, u"/a"_s }, u"(/b, /a)"_s);
        row("a list with nothing in it", QVariantList { 1, QVariant(), a }, u"(1, file:///a)"_s);
        row("a list in a list", QVariantList { QStringList { u"/a"_s, u"/b"_s } },
            u"(QStringList)"_s);
        row("a dictionary", QVariantMap { { u"x"_s, u"/b"_s }, { u"y"_s, a } },
            u"(/b, file:///a)"_s);
        row("a hash", QVariantHash { { u"x"_s, u"/b"_s } }, u"(/b)"_s);
        row("a set", QVariant::fromValue(QSet<QString> { u"/a"_s }), u"(/a)"_s);
    }
    void push_addsWhatIsInside()
    {
        QFETCH(QVariant, object);
        DropStack stack;
        stack.push(object);
        QTEST(stack.description(), "held");
        stack.push(u"/z"_s);
        QCOMPARE(stack.pop(), QVariant(u"/z"_s));
        QTEST(stack.description(), "held");
    }

    void objects_comeFromTheTop()
    {
        DropStack stack;
        QVERIFY(!stack.pop().isValid() && !stack.topObject().isValid());
        QCOMPARE(stack.topObjectAsURL(), QUrl());
        stack.push(QVariantList { u"/a"_s, 2, u"/c"_s });
        QCOMPARE(stack.count(), 3);
        QCOMPARE(stack.topObject(), QVariant(u"/c"_s));
        QCOMPARE(stack.pop(), QVariant(u"/c"_s));
        QCOMPARE(stack.pop(), QVariant(2));
        stack.free();
        QCOMPARE(stack.count(), 0);
    }

    void top_isAUrl()
    {
        DropStack stack;
        const auto top = [&stack](const QVariant &object) {
            stack.push(object);
            return stack.topObjectAsURL();
        };
        const QUrl page(u"https://example.org/a%20b"_s);
        QCOMPARE(top(page), page);
        QCOMPARE(top(u"/a b%20c#d"_s), QUrl(u"file:///a b%2520c%23d"_s));
        QCOMPARE(top(u"a"_s), QUrl::fromLocalFile(QDir::currentPath() + u"/a"_s));
        QCOMPARE(top(QString()), QUrl());
        QCOMPARE(top(2), QUrl());
    }
};

QTEST_GUILESS_MAIN(DropStackTest)
#include "DropStackTest.moc"

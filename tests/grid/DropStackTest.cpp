#include "grid/DropStack.h"

#include "TestCase.h"

#include <QSet>

class DropStackTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void push_addsWhatIsInside()
    {
        const QUrl a(u"file:///a"_s), b(u"https://example.org/b"_s);
        const std::pair<QVariant, QString> rows[] { { {}, u"()"_s },
            { b, u"(https://example.org/b)"_s },
            { QVariant::fromValue(QList<QUrl> { a, b, a }),
                u"(file:///a, https://example.org/b, file:///a)"_s },
            { QStringList { u"/b"_s, u"/a"_s }, u"(/b, /a)"_s },
            { QVariantList { 1, QVariant(), a }, u"(1, file:///a)"_s },
            { QVariantList { QStringList { u"/a"_s, u"/b"_s } }, u"(QStringList)"_s },
            { QVariantMap { { u"x"_s, u"/b"_s }, { u"y"_s, a } }, u"(/b, file:///a)"_s },
            { QVariantHash { { u"x"_s, u"/b"_s } }, u"(/b)"_s },
            { QVariant::fromValue(QSet<QString> { u"/a"_s }), u"(/a)"_s } };
        for (const auto &[object, held] : rows) {
            DropStack stack;
            stack.push(object);
            QCOMPARE(stack.description(), held);
        }
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
        const QUrl page(u"https://example.org/a%20b"_s);
        const std::pair<QVariant, QUrl> rows[] { { page, page },
            { u"/a b%20c#d"_s, QUrl(u"file:///a b%2520c%23d"_s) },
            { u"a"_s, QUrl::fromLocalFile(QDir::currentPath() + u"/a"_s) }, { QString(), {} },
            { 2, {} } };
        for (const auto &[object, url] : rows) {
            DropStack stack;
            stack.push(object);
            QCOMPARE(stack.topObjectAsURL(), url);
        }
    }
};

QTEST_GUILESS_MAIN(DropStackTest)
#include "DropStackTest.moc"

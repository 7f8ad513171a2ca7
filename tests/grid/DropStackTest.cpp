#include "grid/dragging/DropStack.h"

#include "TestCase.h"

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
            { QVariantMap { { u"x"_s, u"/b"_s }, { u"y"_s, a } }, u"(/b, file:///a)"_s } };
        for (const auto &[object, held] : rows) {
            DropStack stack;
            stack.push(object);
            QCOMPARE(stack.description(), held);
        }
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
            QCOMPARE(stack.pop(), object);
            QVERIFY(stack.count() == 0 && !stack.pop().isValid());
        }
    }
};

QTEST_GUILESS_MAIN(DropStackTest)
#include "DropStackTest.moc"

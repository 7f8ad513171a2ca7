#include "catalogue/CatalogueFiles.h"

#include "catalogue/FakeDesktop.h"

#include <QDir>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

using Domain = CatalogueFiles::Domain;
using Shape = CatalogueFiles::Shape;

namespace {

QByteArray plist(const QByteArray &content)
{
    return "<plist version=\"1.0\">" + content + "</plist>";
}

QByteArray array(const QByteArray &content)
{
    return "<array>" + content + "</array>";
}

const QByteArray a = "<string>/a</string>";
const QByteArray number = "<integer>7</integer>";

} // namespace

class CatalogueFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u"."_s));
        _desktop = std::make_unique<FakeDesktop>();
    }

    void writtenLists_areReadByTheNextStart()
    {
        CatalogueFiles files(_desktop->searchPaths());
        QCOMPARE(text(files, Shape::Flat), u"none"_s);
        const QStringList paths { u"/z/Ünï & <co>.app"_s, u"/a"_s, u"/z/Ünï & <co>.app"_s };
        for (const QStringList &list : { paths, QStringList {} }) {
            files.writePaths(list, u"F.plist"_s);
            CatalogueFiles next(_desktop->searchPaths());
            QCOMPARE(text(next, Shape::Flat), list.join(u' '));
        }
        QVERIFY(content(file()).contains("<array"));
        files.writePathArrays({ { u"/b"_s, u"/a"_s }, {}, { u"/c"_s } }, u"F.plist"_s);
        CatalogueFiles next(_desktop->searchPaths(), CatalogueFiles::Writing::Never);
        QCOMPARE(text(next, Shape::Bunched), u"/b /a||/c|"_s);
        next.writePaths({}, u"F.plist"_s);
        QCOMPARE(text(next, Shape::Bunched), u"/b /a||/c|"_s);
    }

    void damaged_data()
    {
        QTest::addColumn<QByteArray>("stored");
        QTest::addColumn<Shape>("shape");
        QTest::addColumn<QString>("read");
        const auto row = [](const char *about, const QByteArray &stored, Shape shape,
                             const QString &read = u"none"_s) {
            QTest::newRow(about) << stored << shape << read;
        };
        row("empty", {}, Shape::Flat);
        row("cut short", plist(array(a)).chopped(9), Shape::Flat);
        row("something else", "\x89PNG\r\n\x1a\n", Shape::Flat);
        row("no more than a binary head", "bplist00", Shape::Bunched);
        row("a dictionary", plist("<dict><key>path</key>" + a + "</dict>"), Shape::Flat);
        row("a string", plist(a), Shape::Bunched);
        row("a million deep",
            plist(QByteArray("<array>").repeated(1'000'000)
                + QByteArray("</array>").repeated(1'000'000)),
            Shape::Bunched);
        row("flat instead of bunched", plist(array(a)), Shape::Bunched, {});
        row("bunched instead of flat", plist(array(array(a))), Shape::Flat, {});
        row("numbers only", plist(array(number + number)), Shape::Flat, {});
        row("numbers among paths", plist(array(number + a + number)), Shape::Flat, u"/a"_s);
        row("not absolute", plist(array("<string>b</string><string/>" + a)), Shape::Flat, u"/a"_s);
        row("numbers among bunches, and in them",
            plist(array(array(a + number) + number + array({}))), Shape::Bunched, u"/a||"_s);
        row("a bunch of numbers goes", plist(array(array(number) + array(a))), Shape::Bunched,
            u"/a|"_s);
        row("bunches of numbers only", plist(array(array(number))), Shape::Bunched, {});
    }

    // One line, the original kept aside, the good part in its place, and silence the next time.
    void damaged()
    {
        QFETCH(QByteArray, stored);
        QFETCH(Shape, shape);
        QFETCH(QString, read);
        _desktop->tree.add(u"user/Ortu/F.plist"_s, stored);
        QTest::ignoreMessage(
            QtWarningMsg, QRegularExpression(u"F\\.plist\\.damaged, since .*: ."_s));
        CatalogueFiles files(_desktop->searchPaths());
        QCOMPARE(text(files, shape), read);
        QCOMPARE(content(file() + u".damaged"_s), stored);
        CatalogueFiles next(_desktop->searchPaths());
        QCOMPARE(text(next, shape), read.isEmpty() ? u"none"_s : read);

        next.writePaths({ u"/new"_s }, u"F.plist"_s);
        QCOMPARE(text(next, Shape::Flat), u"/new"_s);
        QCOMPARE(content(file() + u".damaged"_s), stored);
    }

    void damagedFileThatMayNotBeTouched_staysAndIsNamed()
    {
        const QByteArray stored = plist(array(a + number));
        for (const auto &[domain, folder, writing] :
            { std::tuple(Domain::Local, u"local/Ortu"_s, CatalogueFiles::Writing::Allowed),
                std::tuple(Domain::User, u"user/Ortu"_s, CatalogueFiles::Writing::Never) }) {
            CatalogueFiles files(_desktop->searchPaths(), writing);
            const QString path = _desktop->tree.add(folder + u"/F.plist"_s, stored);
            QTest::ignoreMessage(
                QtWarningMsg, QRegularExpression(u"^cannot use .*F\\.plist: 1 of"_s));
            QCOMPARE(text(files, Shape::Flat, domain), u"/a"_s);
            QCOMPARE(content(path), stored);
            QCOMPARE(QDir(_desktop->tree.path(folder)).entryList(QDir::Files).size(), 1);
        }
    }

    void withoutASupportFolder_theTemporaryFolderStandsIn()
    {
        _desktop->userFolder.clear();
        const CatalogueFiles files(_desktop->searchPaths());
        QCOMPARE(files.userApplicationSupportFolder(), QDir::tempPath() + u"/Ortu"_s);
    }

private:
    QString file() const { return _desktop->tree.path(u"user/Ortu/F.plist"_s); }
    // What is read, bunches ended by a bar; "none" when nothing can be used.
    static QString text(CatalogueFiles &files, Shape shape, Domain domain = Domain::User)
    {
        const auto read = files.readPathArrays(u"F.plist"_s, domain, shape);
        if (!read) {
            return u"none"_s;
        }
        QString text = read->flat.join(u' ');
        for (const QStringList &bunch : read->bunched) {
            text += bunch.join(u' ') + u'|';
        }
        return text;
    }
    static QByteArray content(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("absent");
    }

    std::unique_ptr<FakeDesktop> _desktop;
};

QTEST_GUILESS_MAIN(CatalogueFilesTest)
#include "CatalogueFilesTest.moc"

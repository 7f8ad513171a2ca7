#include "catalogue/files/CatalogueFiles.h"

#include "FakeDesktop.h"
#include "TestCase.h"
#include "support/NotificationCenter.h"
#include "support/files/FileLock.h"

#include <QDateTime>

using List = CatalogueFiles::List;
using Writing = CatalogueFiles::Writing;
using PathFile::Shape;

namespace {

const QString excludedFile = u"ExcludedApplications.plist"_s;
const QString bunchesFile = u"UserApplications.plist"_s;
const QString flatFile = u"UserApplications1D.plist"_s;

// Lists as text: a letter a path, a bar after each bunch.
PathBunches bunches(const QString &text)
{
    PathBunches list;
    for (const QString &part : text.split(u'|').mid(0, text.count(u'|'))) {
        QStringList &bunch = list.emplaceBack();
        for (const QChar letter : part) {
            bunch.append(u'/' + QString(letter));
        }
    }
    return list;
}

QString text(const PathBunches &list)
{
    QString text;
    for (const QStringList &bunch : list) {
        text += bunch.join(QString()).remove(u'/') + u'|';
    }
    return text;
}

} // namespace

class CatalogueFilesTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestCase::init();
        _desktop = std::make_unique<FakeDesktop>();
        _center = std::make_unique<NotificationCenter>();
        NotificationCenter::setDefaultCenter(_center.get());
    }

    // Theirs, mine, what of mine is changed, and what comes of it.
    void changesOfTwoPrograms_comeTogether()
    {
        const QString rows[][4] {
            { u"abc|"_s, u"axb|"_s, u"x"_s, u"axbc|"_s }, // behind what it follows
            { u"ab|"_s, u"xab|"_s, u"x"_s, u"xab|"_s },
            { u"ab|s|c|"_s, u"ab|cx|"_s, u"x"_s, u"ab|s|cx|"_s },
            { u"cab|"_s, u"acb|"_s, u"b"_s, u"cba|"_s }, // moved by both
            { u"a|b|cd|s|"_s, u"b|cad|"_s, u"a"_s, u"b|cad|s|"_s }, // to another bunch
            { u"a|s|b|"_s, u"a|x|b|"_s, u"x"_s, u"a|x|s|b|"_s }, // to a new one
            { u"sa|b|"_s, u"xy|a|b|"_s, u"xy"_s, u"xy|sa|b|"_s },
            { u"ad|"_s, u"abcx|d|"_s, u"x"_s, u"axd|"_s }, // what it followed is gone
            { u"ad|"_s, u"abd|"_s, {}, u"ad|"_s }, // removed by them, and by me
            { u"a|b|s|"_s, u"a|"_s, u"b"_s, u"a|s|"_s },
            { {}, u"ab|c|"_s, u"abc"_s, u"ab|c|"_s },
            { u"|ab|"_s, u"ba|"_s, u"b"_s, u"|ba|"_s },
        };
        for (const auto &[theirs, mine, changed, both] : rows) {
            const QSet<QString> paths = pathsOf(bunches(changed + u'|'));
            QCOMPARE(text(merged(bunches(theirs), bunches(mine), paths)), both);
        }
    }

    void writtenLists_areReadByTheNextStart()
    {
        CatalogueFiles files(_desktop->searchPaths());
        const PathBunches paths { { u"/z/Ünï & <co>.app"_s, u"/a"_s } };
        files.store({ { List::ExcludedApps, paths, {} } });
        files.store({ { List::UserApps, bunches(u"ba||c|"_s), {} },
            { List::UserApps1D, bunches(u"abc|"_s), {} } });
        for (const Writing writing : { Writing::Never, Writing::Allowed }) {
            CatalogueFiles next(_desktop->searchPaths(), writing);
            next.readExclusions();
            QCOMPARE(next.stored(List::ExcludedApps), paths);
            QCOMPARE(favourites(next), u"ba||c| abc|"_s);
            next.store({ { List::UserApps, {}, pathsOf(bunches(u"abc|"_s)) } });
        }
        QVERIFY(content(bunchesFile).contains("<array"));
        CatalogueFiles last(_desktop->searchPaths());
        QCOMPARE(favourites(last), u" abc|"_s);
    }

    void damagedFile_isSetAside()
    {
        const std::pair<QByteArray, QString> rows[] { { {}, {} },
            { "<dict><key>path</key><string>/a</string></dict>", {} },
            { "<array><string>/a</string></array>", {} },
            { "<array><array><integer>7</integer></array></array>", {} },
            // Binary, with a control character in the second path, which could not be written
            // again.
            { QByteArray::fromBase64("YnBsaXN0MDChAaICA1IvYVMvYgcICg0QAAAAAAAAAQEAAAAAAAAABAAAAAAA"
                                     "AAAAAAAAAAAAABQ="),
                u"a|"_s },
            { "<array><array><string>b</string><string/><string>/a</string></array></array>",
                u"a|"_s },
            { "<array><array><integer>7</integer></array><array><string>/a</string>"
              "<integer>7</integer></array><integer>7</integer><array/></array>",
                u"a||"_s } };
        for (const auto &[stored, read] : rows) {
            init();
            const QByteArray document =
                stored.startsWith('b') ? stored : "<plist version=\"1.0\">" + stored + "</plist>";
            _desktop->tree.add(u"user/Ortu/"_s + bunchesFile, document);
            expectWarning(u"UserApplications.plist.damaged, since .*: ."_s);
            for (int start = 0; start < 2; ++start) {
                CatalogueFiles files(_desktop->searchPaths());
                files.readFavourites();
                QCOMPARE(text(files.stored(List::UserApps)), read);
            }
            QCOMPARE(content(bunchesFile + u".damaged"_s), document);
        }
    }

    void damagedColours_areSetAside_andTheOthersStay()
    {
        const QVariantMap good { { u"red"_s, 1LL }, { u"green"_s, 0.5 }, { u"blue"_s, 0.0 } };
        QVariantMap colors { { u"/a"_s, good }, { u"b"_s, good }, { u"/c"_s, u"red"_s } };
        for (const QVariant &bad : QVariantList { -0.1, 1.1, qQNaN(), u"1"_s, {} }) {
            QVariantMap color = good;
            color[u"blue"_s] = bad;
            colors.insert(u"/"_s + QString::number(colors.size()), color);
        }
        const QString file = _desktop->tree.path(u"user/Ortu/ColorCorrections.plist"_s);
        _desktop->tree.add(u"user/Ortu/ColorCorrections.plist"_s, PropertyList::toXml(colors));
        expectWarning(u"set aside .*7 of its entries are no colours"_s);
        for (int start = 0; start < 2; ++start) {
            CatalogueFiles files(_desktop->searchPaths());
            files.readColors();
            QCOMPARE(files.colors().size(), 1);
            QVERIFY((files.colors()[u"/a"_s] == StoredColor { 1, 0.5, 0 }));
        }
        QVERIFY(QFile::exists(file + u".damaged"_s));
        // What is no list of colours at all, first with what it was before.
        QVERIFY(QFile::rename(file, file + u".previous"_s));
        _desktop->tree.add(u"user/Ortu/ColorCorrections.plist"_s, "<plist");
        expectWarning(u"set aside .*ColorCorrections"_s);
        expectWarning(u"previous stands in"_s);
        for (int start = 0; start < 2; ++start) {
            CatalogueFiles files(_desktop->searchPaths());
            files.readColors();
            QCOMPARE(files.colors().size(), 1);
        }
        QVERIFY(QFile::remove(file) && QFile::remove(file + u".previous"_s));
        _desktop->tree.add(u"user/Ortu/ColorCorrections.plist"_s, "<plist");
        CatalogueFiles preview(_desktop->searchPaths(), Writing::Never);
        expectWarning(u"cannot use .*ColorCorrections"_s);
        preview.readColors();
        preview.storeColors({ { u"/a"_s, StoredColor {} } });
        QCOMPARE(load(file), "<plist");
    }

    void damagedFileOfTheComputer_staysAndIsNamed()
    {
        const QString file = _desktop->tree.add(u"local/Ortu/"_s + excludedFile,
            "<plist><array><string>/a</string><integer>7</integer></array></plist>");
        expectWarning(u"^cannot use .*local.*Excluded.*: 1 of"_s);
        CatalogueFiles files(_desktop->searchPaths());
        files.readExclusions();
        QCOMPARE(text(files.stored(List::ExcludedApps)), u"a|"_s);
        QVERIFY(QFile::exists(file));
    }

    // In a row stand the bunches and the flat order in their files, the same in what these were
    // before, and both as they are read; "-" is no file, "!" a damaged one, "0" an empty list.
    void lostOrders_areRestored()
    {
        const std::pair<QString, bool> rows[] {
            { u"- cab| - - cab| cab|"_s, false }, { u"- cdab| a|eb| - cda|b| cdab|"_s, false },
            { u"ab|c| - - - ab|c| abc|"_s, false }, { u"ab|c| ! - cbx| ab|c| cab|"_s, false },
            { u"! ! ab|c| - ab|c| abc|"_s, true }, { u"- ! ab|c| cba| ab|c| cba|"_s, true },
            { u"- - - -  "_s, false }, { u"ab|c| ca| - - ab|c| cab|"_s, false },
            { u"b|c| cab| - - b|c| cb|"_s, false }, { u"0 0 ab|c| cba|  "_s, false },
            { u"!a| cba| - - a|cb| cba|"_s, false }, // damaged in part
        };
        for (const auto &[row, isFormerUsed] : rows) {
            init();
            const QStringList part = row.split(u' ');
            for (int i = 0; i < 4; ++i) {
                const QString name =
                    (i % 2 ? flatFile : bunchesFile) + (i < 2 ? u""_s : u".previous"_s);
                if (part[i].startsWith(u'!')) {
                    const PathBunches left = bunches(part[i].mid(1));
                    const QByteArray list = PropertyList::toXml(
                        PathFile::propertyList(left, i % 2 ? Shape::Flat : Shape::Bunched));
                    _desktop->tree.add(u"user/Ortu/"_s + name,
                        left.isEmpty() ? "damaged"
                                       : QByteArray(list).replace("<array>", "<array><true/>"));
                    expectWarning(u"^set aside .*%1.damaged"_s.arg(name));
                } else if (part[i] != u"-"_s) {
                    add(name, bunches(part[i]), i % 2 ? Shape::Flat : Shape::Bunched);
                }
            }
            if (isFormerUsed) {
                expectWarning(u"^.*previous stands in for the file that is lost$"_s);
            }
            const QSignalSpy messages(_center.get(), &NotificationCenter::N_UserMessage);
            for (int start = 0; start < 2; ++start) {
                CatalogueFiles files(_desktop->searchPaths());
                QCOMPARE(favourites(files), part.mid(4).join(u' '));
                QCOMPARE(messages.size(), isFormerUsed ? 1 : 0);
            }
        }
    }

    // A file that is gone while the program runs is no change of another program.
    void formerFile_isKeptForADay_andFilesThatVanishComeBack()
    {
        CatalogueFiles files(_desktop->searchPaths());
        const auto store = [&](const QString &text) {
            files.store({ { List::ExcludedApps, bunches(text), {} } });
        };
        store(u"a|"_s);
        QCOMPARE(names(), QStringList(excludedFile));
        store(u"ab|"_s);
        store(u"abc|"_s);
        const QString former = excludedFile + u".previous"_s;
        QVERIFY(content(former).contains("/a<") && !content(former).contains("/b<"));
        QFile file(_desktop->tree.path(u"user/Ortu/"_s + former));
        QVERIFY(file.open(QIODevice::ReadWrite)
            && file.setFileTime(
                QDateTime::currentDateTime().addDays(-2), QFileDevice::FileModificationTime));
        file.close();
        store(u"abcd|"_s);
        QVERIFY(content(former).contains("/c<") && !content(former).contains("/d<"));

        QVERIFY(QDir(files.userApplicationSupportFolder()).removeRecursively());
        store(u"abcde|"_s);
        QVERIFY(content(excludedFile).contains("/a<") && content(excludedFile).contains("/e<"));
        QVERIFY(QFile::remove(files.userApplicationSupportFolder() + u'/' + excludedFile));
        add(former, bunches(u"xy|"_s), Shape::Flat);
        expectWarning(u"^.*previous stands in for the file that is lost$"_s);
        CatalogueFiles next(_desktop->searchPaths());
        next.readExclusions();
        QCOMPARE(text(next.stored(List::ExcludedApps)), u"xy|"_s);
        QVERIFY(content(excludedFile).contains("/y<"));
    }

    void failure_isToldOnceUntilAWriteSucceeds()
    {
        const QSignalSpy messages(_center.get(), &NotificationCenter::N_UserMessage);
        const QString file = _desktop->tree.add(u"user"_s, "a file, where a folder belongs");
        CatalogueFiles files(_desktop->searchPaths());
        for (const QString &stored : { u"a|"_s, u"ab|"_s }) {
            expectWarning(u"^cannot lock .*user/Ortu: Not a directory"_s);
            files.store({ { List::ExcludedApps, bunches(stored), {} } });
        }
        QVERIFY(QFile::remove(file));
        files.store({ { List::UserApps, bunches(u"c|"_s), {} } });
        QVERIFY(content(excludedFile).contains("/a<") && content(excludedFile).contains("/b<"));
        QCOMPARE(messages.size(), 1);
        QVERIFY(messages[0][0].toString().contains(u"Not a directory"));
        FileLock lock(files.userApplicationSupportFolder());
        QVERIFY(lock.lock());
        expectWarning(u"^cannot lock .*another program"_s);
        files.store({ { List::UserApps, bunches(u"cd|"_s), {} } });
        QCOMPARE(messages.size(), 2);
    }

    void strays_areSweptAtTheStart()
    {
        const QStringList stray { excludedFile + u".aBcDeF"_s, flatFile + u".previous.abcdeF"_s };
        const QStringList other { u"Other.plist.abcDef"_s, excludedFile + u".backup"_s,
            flatFile + u".abcDe"_s, flatFile + u".damaged"_s };
        for (const QString &name : stray + other) {
            _desktop->tree.add(u"user/Ortu/"_s + name, {});
        }
        {
            FileLock lock(_desktop->tree.path(u"user/Ortu"_s));
            QVERIFY(lock.lock());
            const CatalogueFiles files(_desktop->searchPaths());
            QCOMPARE(names().size(), stray.size() + other.size());
        }
        const CatalogueFiles files(_desktop->searchPaths());
        QCOMPARE(names().size(), other.size());
    }

private:
    static QString favourites(CatalogueFiles &files)
    {
        files.readFavourites();
        return text(files.stored(List::UserApps)) + u' ' + text(files.stored(List::UserApps1D));
    }
    void add(const QString &name, const PathBunches &paths, Shape shape)
    {
        _desktop->tree.add(
            u"user/Ortu/"_s + name, PropertyList::toXml(PathFile::propertyList(paths, shape)));
    }
    QStringList names() const
    {
        return QDir(_desktop->tree.path(u"user/Ortu"_s)).entryList(QDir::Files);
    }
    QByteArray content(const QString &name) const
    {
        return load(_desktop->tree.path(u"user/Ortu/"_s + name));
    }

    std::unique_ptr<NotificationCenter> _center;
    std::unique_ptr<FakeDesktop> _desktop;
};

QTEST_GUILESS_MAIN(CatalogueFilesTest)
#include "CatalogueFilesTest.moc"

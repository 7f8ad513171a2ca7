#include "finding/UseCounts.h"

#include "TestCase.h"

class UseCountsTest : public TestCase
{
    Q_OBJECT

    static constexpr double week = 7 * 24 * 3600;
    static constexpr double start = 1.7e9;

    QTemporaryDir _folder;
    QString file() const { return _folder.filePath(u"sub/Use.plist"_s); }
    std::unique_ptr<UseCounts> counts() const
    {
        auto made = std::make_unique<UseCounts>(file());
        made->setOn(true);
        return made;
    }

private Q_SLOTS:
    void cleanup() { QDir(_folder.filePath(u"sub"_s)).removeRecursively(); }

    void usesAddUp_andFade()
    {
        auto uses = counts();
        QCOMPARE(uses->of(u"/a"_s), 0);
        for (int i = 0; i < 3; ++i) {
            uses->note(u"/often"_s, start);
        }
        uses->note(u"/once"_s, start);
        QVERIFY(uses->of(u"/often"_s) > uses->of(u"/once"_s) && uses->of(u"/once"_s) > 0);
        // Three uses are one and a half after three weeks, three quarters after six.
        uses->note(u"/later"_s, start + 3 * week);
        QVERIFY(uses->of(u"/later"_s) < uses->of(u"/often"_s));
        uses->note(u"/latest"_s, start + 6 * week);
        QVERIFY(uses->of(u"/latest"_s) > uses->of(u"/often"_s));
        // A clock that was ahead by years does not count for ever.
        uses->note(u"/wrong"_s, start + 2000 * week);
        uses->note(u"/wrong"_s, start + 7 * week);
        QVERIFY(uses->of(u"/wrong"_s) < start + 100 * week);
        const double often = uses->of(u"/often"_s);
        uses.reset();
        QCOMPARE(counts()->of(u"/often"_s), often);
        QCOMPARE(QFile::permissions(file()),
            QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);
    }

    void whatIsOff_isNeitherNotedNorRead()
    {
        counts()->note(u"/a"_s, start);
        const QByteArray kept = load(file());
        UseCounts uses(file());
        uses.note(u"/b"_s, start);
        QCOMPARE(uses.of(u"/a"_s), 0);
        uses.setOn(true);
        QVERIFY(uses.of(u"/a"_s) > 0 && uses.of(u"/b"_s) == 0);
        uses.setOn(false);
        QVERIFY(uses.of(u"/a"_s) == 0 && load(file()) == kept);
        uses.forget();
        QVERIFY(!QFile::exists(file()));
        UseCounts nowhere({});
        nowhere.setOn(true);
        nowhere.note(u"/a"_s, start);
        nowhere.note(u"no path"_s, start);
        QVERIFY(nowhere.of(u"/a"_s) > 0 && nowhere.of(u"no path"_s) == 0);
    }

    void theFileHasABound()
    {
        auto uses = counts();
        for (int i = 0; i < UseCounts::MostPaths + 5; ++i) {
            uses->note(u"/%1"_s.arg(i), start + i);
        }
        QVERIFY(uses->of(u"/4"_s) == 0 && uses->of(u"/5"_s) > 0);
        uses.reset();
        QCOMPARE(load(file()).count("<key>"), UseCounts::MostPaths);
        save(file(),
            load(file()).replace("</dict>",
                "<key>/a</key><real>1</real><key>/b</key><real>2</real>"
                "<key>/c</key><real>1e10</real></dict>"));
        uses = counts();
        QVERIFY(uses->of(u"/a"_s) == 0 && uses->of(u"/b"_s) == 0 && uses->of(u"/5"_s) == 0);
        QVERIFY(uses->of(u"/6"_s) > 0 && uses->of(u"/c"_s) > 0);
    }

    void aDamagedFileIsSetAside_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("cut off") << QByteArray("<plist version=\"1.0\"><dict><key>/a");
        QTest::newRow("a list") << QByteArray("<plist version=\"1.0\"><array/></plist>");
        QTest::newRow("no number") << QByteArray(
            "<plist version=\"1.0\"><dict><key>/a</key><string>x</string></dict></plist>");
        QTest::newRow("no path") << QByteArray(
            "<plist version=\"1.0\"><dict><key>a</key><real>1</real></dict></plist>");
    }
    void aDamagedFileIsSetAside()
    {
        QFETCH(QByteArray, content);
        QVERIFY(QDir().mkpath(_folder.filePath(u"sub"_s)));
        save(file(), content);
        expectWarning(u"set aside as .*Use.plist.damaged"_s);
        QCOMPARE(counts()->of(u"/a"_s), 0);
        QCOMPARE(load(file() + u".damaged"_s), content);
        counts()->note(u"/b"_s, start);
        QVERIFY(counts()->of(u"/b"_s) > 0);
    }
};

QTEST_GUILESS_MAIN(UseCountsTest)

#include "UseCountsTest.moc"

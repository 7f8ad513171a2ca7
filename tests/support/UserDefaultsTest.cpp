#include "support/UserDefaults.h"

#include "support/PropertyList.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <limits>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString sizeKey = u"maximumIconSize"_s;
const QString hueKey = u"wrapHue"_s;
const QVariantMap registered { { sizeKey, 64 }, { hueKey, 0.5 } };

// A folder with the path of a preference file in it, which need not exist.
struct Place
{
    QTemporaryDir folder;
    QString path = folder.filePath(u"Preferences.plist"_s);

    bool write(const QVariantMap &values) const { return PropertyList::writeFile(path, values); }
    QVariantMap stored() const { return PropertyList::readFile(path).value.toMap(); }
    QStringList files() const { return QDir(folder.path()).entryList(QDir::Files); }
};

// The announcements as "key old>new".
struct Spy
{
    explicit Spy(const UserDefaults &defaults)
        : signal(&defaults, &UserDefaults::changed)
    { }

    QStringList taken()
    {
        QStringList result;
        for (const QVariantList &call :
            std::exchange(static_cast<QList<QVariantList> &>(signal), {})) {
            result << u"%1 %2>%3"_s.arg(call[0].toString(), call[1].value<QVariant>().toString(),
                call[2].value<QVariant>().toString());
        }
        return result;
    }
    QStringList awaited() { return signal.isEmpty() && !signal.wait() ? QStringList() : taken(); }

    QSignalSpy signal;
};

void save(const QString &path, const QByteArray &data)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(data) == data.size());
}

QByteArray load(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void expectWarning(const QString &pattern)
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(pattern));
}

} // namespace

class UserDefaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }

    void storedValue_standsForAnotherType_data()
    {
        QTest::addColumn<QVariant>("like");
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QVariant>("expected"); // Invalid: it cannot stand for the default.
        const auto row = [](const char *name, const QVariant &like, const QVariant &stored,
                             const QVariant &expected) {
            QTest::newRow(name) << like << stored << expected;
        };
        row("boolean from 1", false, 1, true);
        row("boolean from 2", false, 2, {});
        row("boolean from YES", false, u"YES"_s, true);
        row("boolean from false", true, u"false"_s, false);
        row("boolean from a word", true, u"perhaps"_s, {});
        row("boolean from a real", false, 1.0, {});
        row("integer from a whole real", 64, 48.0, 48LL);
        row("integer from a fraction", 64, 48.5, {});
        row("integer from a huge real", 64, 1e19, {});
        row("integer from digits", 64, u"-48"_s, -48LL);
        row("integer from digits and more", 64, u"48px"_s, {});
        row("integer from a boolean", 64, true, {});
        row("real from an integer", 0.5, 2, 2.0);
        row("real from digits", 0.5, u"0.25"_s, 0.25);
        row("real from nan", 0.5, u"nan"_s, {});
        row("real from NaN", 0.5, std::numeric_limits<double>::quiet_NaN(), {});
        row("real from infinity", 0.5, std::numeric_limits<double>::infinity(), {});
        row("real from a boolean", 0.5, true, {});
        row("string from a number", u"a"_s, 5, {});
        row("array from a string", QStringList { u"a"_s }, u"b"_s, {});
        row("array from an array", QStringList { u"a"_s }, QVariantList(), QVariantList());
        row("dictionary from an array", QVariantMap(), QVariantList(), {});
        row("data from a string", QByteArray("a"), u"a"_s, {});
    }
    void storedValue_standsForAnotherType()
    {
        QFETCH(QVariant, like);
        QFETCH(QVariant, stored);
        QFETCH(QVariant, expected);
        const QVariant inForce = expected.isValid() ? expected : PropertyList::plain(like);
        const Place place;
        QVERIFY(place.write({ { sizeKey, stored } }));
        UserDefaults fromFile(place.path);
        UserDefaults forThisRun;
        forThisRun.setObjectForThisRun(sizeKey, stored);
        for (UserDefaults *defaults : { &fromFile, &forThisRun }) {
            if (!expected.isValid()) {
                expectWarning(u"^maximumIconSize: .* cannot stand for "_s);
            }
            defaults->registerDefaults({ { sizeKey, like } });
            QCOMPARE(defaults->objectForKey(sizeKey), inForce);
            QCOMPARE(defaults->objectForKey(sizeKey).typeId(), inForce.typeId());
        }
    }

    void unusableValue_isKeptAndNamedOnce()
    {
        const Place place;
        QVERIFY(place.write({ { sizeKey, u"a"_s } }));
        UserDefaults defaults(place.path);
        expectWarning(u"^maximumIconSize: string \"a\" cannot stand for integer"_s);
        defaults.registerDefaults(registered);
        defaults.registerDefaults(registered);
        QVERIFY(defaults.setObject(hueKey, 1));
        QCOMPARE(place.stored().value(sizeKey), QVariant(u"a"_s));

        Spy spy(defaults);
        expectWarning(u"^maximumIconSize: array cannot stand for integer"_s);
        QVERIFY(place.write({ { sizeKey, QVariantList { true } }, { hueKey, 2 } }));
        QCOMPARE(spy.awaited(), QStringList(u"wrapHue 1>2"_s));
    }

    void layers_standAboveOneAnother()
    {
        const Place place;
        UserDefaults defaults(place.path);
        defaults.registerDefaults(registered);
        defaults.registerDefaults({ { sizeKey, 32 } });
        QCOMPARE(defaults.registeredKeys(), QStringList({ sizeKey, hueKey }));
        Spy spy(defaults);
        defaults.setObjectForThisRun(sizeKey, u"99"_s);
        QCOMPARE(spy.taken(), QStringList(u"maximumIconSize 32>99"_s));
        QVERIFY(!defaults.hasStoredValue(sizeKey));
        QVERIFY(defaults.setObject(sizeKey, 48));
        QCOMPARE(spy.taken(), QStringList());
        QCOMPARE(place.stored(), QVariantMap({ { sizeKey, 48LL } }));
        defaults.setObjectForThisRun(sizeKey, {});
        QCOMPARE(spy.taken(), QStringList(u"maximumIconSize 99>48"_s));
        QVERIFY(defaults.removeObject(sizeKey));
        QCOMPARE(spy.taken(), QStringList(u"maximumIconSize 48>32"_s));
        QCOMPARE(defaults.defaultForKey(sizeKey), QVariant(32LL));
    }

    void setting_writesAndAnnouncesOnce()
    {
        const Place place;
        const QVariant foreign = QVariantMap { { u"a"_s, QByteArray("b") } };
        QVERIFY(place.write({ { u"later"_s, foreign } }));
        UserDefaults defaults(place.path);
        defaults.registerDefaults(registered);
        Spy spy(defaults);
        QVERIFY(defaults.setObject(sizeKey, 64));
        QCOMPARE(spy.taken(), QStringList());
        QVERIFY(defaults.setObject(hueKey, 1));
        QCOMPARE(spy.taken(), QStringList(u"wrapHue 0.5>1"_s));
        QCOMPARE(place.stored(),
            QVariantMap({ { sizeKey, 64LL }, { hueKey, 1.0 }, { u"later"_s, foreign } }));

        expectWarning(u"^maximumIconSize: real \"2.5\" cannot stand for integer"_s);
        QVERIFY(!defaults.setObject(sizeKey, 2.5));
        expectWarning(u"^note: QPoint cannot stand for a preference"_s);
        QVERIFY(!defaults.setObject(u"note"_s, QPoint(1, 2)));
        QVERIFY(QFile::remove(place.path));
        QVERIFY(defaults.setObject(hueKey, 1.0F));
        QVERIFY(defaults.removeObject(u"none"_s));
        QCOMPARE(place.files(), QStringList());
        QCOMPARE(spy.taken(), QStringList());
    }

    void receiverThatSetsAnotherKey_endsWithItsValue()
    {
        const Place place;
        UserDefaults defaults(place.path);
        defaults.registerDefaults(registered);
        QVariant last;
        connect(&defaults, &UserDefaults::changed, this,
            [&](const QString &key, const QVariant &, const QVariant &newValue) {
                if (key == sizeKey) {
                    defaults.setObject(hueKey, 7);
                } else {
                    last = newValue;
                }
            });
        QVERIFY(place.write({ { sizeKey, 20 }, { hueKey, 3 } }));
        QTRY_COMPARE(last, QVariant(7.0));
        QCOMPARE(place.stored(), QVariantMap({ { sizeKey, 20LL }, { hueKey, 7.0 } }));
    }

    void twoPrograms_keepEachOthersKeys()
    {
        const Place place;
        UserDefaults one(place.path);
        UserDefaults two(place.path);
        Spy spy(two);
        QVERIFY(one.setObject(sizeKey, 1));
        QVERIFY(two.setObject(hueKey, 2));
        // The second learned of the first's key by its own write, before any event.
        QCOMPARE(spy.taken(), QStringList({ u"maximumIconSize >1"_s, u"wrapHue >2"_s }));
        QTRY_COMPARE(one.integerForKey(hueKey), 2);
        QVERIFY(one.removeObject(sizeKey));
        QTRY_VERIFY(!two.hasStoredValue(sizeKey));
        QCOMPARE(place.stored(), QVariantMap({ { hueKey, 2LL } }));
    }

    void outsideChange_isAnnounced()
    {
        const Place place;
        UserDefaults defaults(place.path);
        defaults.registerDefaults(registered);
        Spy spy(defaults);
        const auto values = [](int size) {
            return QVariantMap { { sizeKey, size }, { hueKey, 0.5 } };
        };
        save(place.path, PropertyList::toXml(values(10)));
        QCOMPARE(spy.awaited(), QStringList(u"maximumIconSize 64>10"_s));
        save(place.path, PropertyList::toXml(values(11)));
        QCOMPARE(spy.awaited(), QStringList(u"maximumIconSize 10>11"_s));
        // As long as somebody has the old file open, it goes on beside the new one.
        QFile old(place.path);
        QVERIFY(old.open(QIODevice::ReadOnly));
        QVERIFY(place.write(values(12)));
        QCOMPARE(spy.awaited(), QStringList(u"maximumIconSize 11>12"_s));
        save(place.path, PropertyList::toXml(values(13)));
        QCOMPARE(spy.awaited(), QStringList(u"maximumIconSize 12>13"_s));
        QVERIFY(place.write(values(14)));
        QCOMPARE(spy.awaited(), QStringList(u"maximumIconSize 13>14"_s));
        QVERIFY(QFile::remove(place.path));
        QCOMPARE(spy.awaited(), QStringList(u"maximumIconSize 14>64"_s));
    }

    void missingFolder_isMadePrivateAndNoticed()
    {
        const QTemporaryDir folder;
        QDir made(folder.filePath(u"config/Ortu"_s));
        UserDefaults defaults(made.filePath(u"Preferences.plist"_s));
        UserDefaults other(made.filePath(u"Preferences.plist"_s));
        for (const int size : { 10, 11 }) {
            QVERIFY(!made.exists());
            QVERIFY(other.setObject(sizeKey, size));
            QTRY_COMPARE(defaults.integerForKey(sizeKey), size);
            const QFile::Permissions mode = QFileInfo(made.path()).permissions();
            QVERIFY(!mode.testAnyFlags(QFile::ReadGroup | QFile::ReadOther | QFile::ExeOther));
            QVERIFY(QDir(folder.filePath(u"config"_s)).removeRecursively());
            QTRY_VERIFY(!defaults.hasStoredValue(sizeKey) && !other.hasStoredValue(sizeKey));
        }
    }

    void damagedWhileRunning_isIgnoredUntilWeWrite()
    {
        const Place place;
        QVERIFY(place.write({ { sizeKey, 10 } }));
        UserDefaults defaults(place.path);
        defaults.registerDefaults(registered);
        Spy spy(defaults);
        const QByteArray whole = PropertyList::toXml(QVariantMap { { sizeKey, 20 } });
        save(place.path, whole.chopped(12));
        // Another reader of the folder, told after the first, shows when that has read.
        UserDefaults witness(place.folder.filePath(u"witness"_s));
        save(place.folder.filePath(u"witness"_s), whole);
        QTRY_COMPARE(witness.integerForKey(sizeKey), 20);
        QCOMPARE(spy.taken(), QStringList());
        QCOMPARE(place.files(), QStringList({ u"Preferences.plist"_s, u"witness"_s }));
        save(place.path, whole);
        QCOMPARE(spy.awaited(), QStringList(u"maximumIconSize 10>20"_s));

        save(place.path, whole.chopped(12));
        expectWarning(u"^set aside as .*Preferences.plist.damaged"_s);
        QVERIFY(defaults.setObject(hueKey, 2));
        QCOMPARE(place.stored(), QVariantMap({ { sizeKey, 20LL }, { hueKey, 2.0 } }));
        QCOMPARE(load(place.path + u".damaged"_s), whole.chopped(12));
    }

    void damagedAtStart_isSetAside_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("cut short") << PropertyList::toXml(QVariantMap()).chopped(10);
        QTest::newRow("array on top") << PropertyList::toXml(QVariantList());
    }
    void damagedAtStart_isSetAside()
    {
        QFETCH(QByteArray, content);
        const Place place;
        save(place.path, content);
        expectWarning(u"^cannot read .*Preferences.plist: ."_s);
        UserDefaults reader(place.path, UserDefaults::Writing::Never);
        QVERIFY(reader.setObject(sizeKey, 20));
        QCOMPARE(reader.integerForKey(sizeKey), 20);
        QCOMPARE(place.files(), QStringList(u"Preferences.plist"_s));
        QCOMPARE(load(place.path), content);

        expectWarning(u"^set aside as .*Preferences.plist.damaged"_s);
        UserDefaults defaults(place.path);
        QVERIFY(defaults.setObject(sizeKey, 1));
        QCOMPARE(place.stored(), QVariantMap({ { sizeKey, 1LL } }));
        QCOMPARE(load(place.path + u".damaged"_s), content);
    }

    void writeThatFails_keepsTheValue_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("folder that cannot be made") << u"/proc/Ortu/Preferences.plist"_s;
        QTest::newRow("file where the folder belongs") << u"%1/file/Preferences.plist"_s;
        QTest::newRow("lock that cannot be made") << u"/proc/Preferences.plist"_s;
    }
    void writeThatFails_keepsTheValue()
    {
        QFETCH(QString, path);
        const QTemporaryDir folder;
        save(folder.filePath(u"file"_s), "a");
        UserDefaults defaults(path.replace(u"%1"_s, folder.path()));
        defaults.registerDefaults(registered);
        Spy spy(defaults);
        expectWarning(u"^cannot (write|lock) .*: ."_s);
        QVERIFY(!defaults.setObject(sizeKey, 1));
        QCOMPARE(spy.taken(), QStringList(u"maximumIconSize 64>1"_s));
        QCOMPARE(defaults.integerForKey(sizeKey), 1);
    }

    void writeThatFailed_isMadeUpForByTheNext()
    {
        const Place place;
        QVERIFY(place.write({ { sizeKey, 10 } }));
        UserDefaults defaults(place.path);
        defaults.registerDefaults(registered);
        QLockFile lock(place.path + u".lock"_s);
        QVERIFY(lock.lock());
        expectWarning(u"^cannot lock .*: another program holds it"_s);
        QVERIFY(!defaults.removeObject(sizeKey));
        lock.unlock();
        // A change outside does not bring back what was removed here.
        Spy spy(defaults);
        QVERIFY(place.write({ { sizeKey, 20 }, { hueKey, 0.75 } }));
        QCOMPARE(spy.awaited(), QStringList(u"wrapHue 0.5>0.75"_s));
        QVERIFY(defaults.setObject(hueKey, 2));
        QCOMPARE(place.stored(), QVariantMap({ { hueKey, 2.0 } }));
    }

    void standardDefaults_areReplacedForALength()
    {
        UserDefaults &own = UserDefaults::standard();
        {
            UserDefaults replacement;
            UserDefaults::setStandard(&replacement);
            QCOMPARE(&UserDefaults::standard(), &replacement);
        }
        QCOMPARE(&UserDefaults::standard(), &own);
    }
};

QTEST_GUILESS_MAIN(UserDefaultsTest)
#include "UserDefaultsTest.moc"

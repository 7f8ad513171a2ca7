#include "support/UserDefaults.h"

#include "TestCase.h"
#include "support/NotificationCenter.h"
#include "support/PreferenceType.h"
#include "support/files/FileLock.h"
#include "support/files/PropertyList.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <utility>

namespace {

const QString sizeKey = u"maximumIconSize"_s;
const QString hueKey = u"wrapHue"_s;
const QVariantMap registered { { sizeKey, 64 }, { hueKey, 0.5 } };

// A program with the registered preferences, and its announcements as "key old>new".
struct Program
{
    explicit Program(const QString &path)
        : defaults(path)
    {
        defaults.registerDefaults(registered);
        signal.clear();
    }

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

    UserDefaults defaults;
    QSignalSpy signal { &defaults, &UserDefaults::changed };
};

} // namespace

class UserDefaultsTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestCase::init();
        _folder = std::make_unique<QTemporaryDir>();
        _path = _folder->filePath(u"Preferences.plist"_s);
    }

    // The default, a value, and what the value is then; invalid where it cannot stand for it.
    void value_standsForAnotherType()
    {
        const QVariant six = 6LL;
        const QVariant rows[][3] { { false, 1LL, true }, { false, 2LL, {} },
            { false, u"YES"_s, true }, { true, u"no!"_s, {} }, { six, 48.0, 48LL },
            { six, 4.5, {} }, { six, 1e19, {} }, { six, u"-4"_s, -4LL }, { six, u"4px"_s, {} },
            { six, true, {} }, { 0.5, 2LL, 2.0 }, { 0.5, u"0.25"_s, 0.25 }, { 0.5, qQNaN(), {} },
            { 0.5, true, {} }, { u"a"_s, 5LL, {} } };
        for (const auto &[like, value, expected] : rows) {
            const QVariant converted = PreferenceType::converted(value, like);
            QCOMPARE(converted, expected);
            QCOMPARE(converted.typeId(), expected.typeId());
        }
    }

    void unusableValue_isKeptAndNamedOnce()
    {
        QVERIFY(write({ { sizeKey, u"a"_s }, { hueKey, 2 } }));
        expectWarning(u"^maximumIconSize: string \"a\" cannot stand for integer"_s);
        Program program(_path);
        program.defaults.registerDefaults(registered);
        QVERIFY(program.defaults.objectForKey(hueKey).typeId() == QMetaType::Double);
        QVERIFY(program.defaults.setObject(hueKey, 1) && program.defaults.synchronize());
        QCOMPARE(stored(), QVariantMap({ { sizeKey, u"a"_s }, { hueKey, 1.0 } }));

        program.taken();
        expectWarning(u"^maximumIconSize: array cannot stand for integer"_s);
        QVERIFY(write({ { sizeKey, QVariantList { true } }, { hueKey, 2 } }));
        QCOMPARE(program.awaited(), QStringList(u"wrapHue 1>2"_s));
    }

    void layers_standAboveOneAnother()
    {
        Program program(_path);
        UserDefaults &defaults = program.defaults;
        defaults.registerDefaults({ { sizeKey, 32 } });
        QCOMPARE(defaults.registeredKeys(), QStringList({ sizeKey, hueKey }));
        defaults.setObjectForThisRun(sizeKey, u"99"_s);
        QVERIFY(!defaults.hasStoredValue(sizeKey));
        QVERIFY(defaults.setObject(sizeKey, 48) && defaults.synchronize());
        QCOMPARE(stored(), QVariantMap({ { sizeKey, 48LL } }));
        defaults.setObjectForThisRun(sizeKey, {});
        defaults.removeObject(sizeKey);
        QCOMPARE(program.taken(),
            QStringList({ u"maximumIconSize 64>32"_s, u"maximumIconSize 32>99"_s,
                u"maximumIconSize 99>48"_s, u"maximumIconSize 48>32"_s }));
    }

    void setting_writesAndAnnouncesOnce()
    {
        const QVariant foreign = QVariantMap { { u"a"_s, QByteArray("b") } };
        QVERIFY(write({ { u"later"_s, foreign } }));
        Program program(_path);
        UserDefaults &defaults = program.defaults;
        QVERIFY(defaults.setObject(sizeKey, 64) && defaults.setObject(hueKey, 1));
        QCOMPARE(program.taken(), QStringList(u"wrapHue 0.5>1"_s));
        QVERIFY(defaults.synchronize());
        QCOMPARE(
            stored(), QVariantMap({ { sizeKey, 64LL }, { hueKey, 1.0 }, { u"later"_s, foreign } }));

        expectWarning(u"^maximumIconSize: real \"2.5\" cannot stand for integer"_s);
        QVERIFY(!defaults.setObject(sizeKey, 2.5));
        expectWarning(u"^note: QPoint cannot stand for a preference"_s);
        QVERIFY(!defaults.setObject(u"note"_s, QPoint(1, 2)));
        QVERIFY(QFile::remove(_path));
        QVERIFY(defaults.setObject(hueKey, 1.0F));
        defaults.removeObject(u"none"_s);
        QVERIFY(defaults.synchronize());
        QCOMPARE(QDir(_folder->path()).entryList(QDir::Files) + program.taken(), QStringList());
    }

    void twoPrograms_keepEachOthersKeys()
    {
        UserDefaults one(_path);
        Program two(_path);
        QVERIFY(one.setObject(sizeKey, 1) && two.defaults.setObject(hueKey, 2));
        QVERIFY(one.synchronize() && two.defaults.synchronize());
        // The second learned of the first's key by its own write, before any event.
        QCOMPARE(two.taken(), QStringList({ u"wrapHue 0.5>2"_s, u"maximumIconSize 64>1"_s }));
        QTRY_COMPARE(one.integerForKey(hueKey), 2);
        one.removeObject(sizeKey);
        QTRY_VERIFY(!two.defaults.hasStoredValue(sizeKey));
        QCOMPARE(stored(), QVariantMap({ { hueKey, 2.0 } }));
    }

    void burst_isOneWriteAtItsEndOrAfterASecond()
    {
        Program program(_path);
        for (int size = 1; size <= 100; ++size) {
            QVERIFY(program.defaults.setObject(sizeKey, size) && !QFile::exists(_path));
            QCoreApplication::processEvents();
        }
        // Without a pause, so as to see the first write.
        const QDeadlineTimer patience(5000);
        while (!QFile::exists(_path) && !patience.hasExpired()) {
            QCoreApplication::processEvents();
        }
        QCOMPARE(stored(), QVariantMap({ { sizeKey, 100LL } }));

        const UserDefaults witness(_path);
        int size = 100;
        QTRY_VERIFY(
            program.defaults.setObject(sizeKey, ++size) && witness.integerForKey(sizeKey) > 100);
        // The watch told this program of its own write, between changes that are newer.
        QCOMPARE(program.taken().size(), size);
    }

    void endOfTheProgram_writesWhatIsLeft()
    {
        {
            UserDefaults defaults(_path);
            QVERIFY(defaults.setObject(sizeKey, 1));
        }
        QCOMPARE(stored(), QVariantMap({ { sizeKey, 1LL } }));
        UserDefaults defaults(_path);
        QVERIFY(defaults.setObject(sizeKey, 2));
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), &QCoreApplication::quit, Qt::QueuedConnection);
        QCoreApplication::exec();
        QCOMPARE(stored(), QVariantMap({ { sizeKey, 2LL } }));
    }

    void outsideChange_isAnnounced()
    {
        Program program(_path);
        for (const int size : { 10, 11 }) {
            save(_path, PropertyList::toXml(QVariantMap { { sizeKey, size } }));
            QCOMPARE(program.awaited().join(u' ').right(3), u">%1"_s.arg(size));
        }
        // As long as a program has the old file open, it goes on beside the new one.
        QFile old(_path);
        QVERIFY(old.open(QIODevice::ReadOnly));
        QVERIFY(write({ { sizeKey, 12 } }));
        QCOMPARE(program.awaited(), QStringList(u"maximumIconSize 11>12"_s));
        QVERIFY(QFile::remove(_path));
        QCOMPARE(program.awaited(), QStringList(u"maximumIconSize 12>64"_s));
    }

    void missingFolder_isMadePrivateAndNoticed()
    {
        const QTemporaryDir folder;
        QDir made(folder.filePath(u"config/Ortu"_s));
        UserDefaults defaults(made.filePath(u"Preferences.plist"_s));
        UserDefaults other(made.filePath(u"Preferences.plist"_s));
        for (const int size : { 10, 11 }) {
            QVERIFY(!made.exists());
            QVERIFY(other.setObject(sizeKey, size) && other.synchronize());
            QTRY_COMPARE(defaults.integerForKey(sizeKey), size);
            const QFile::Permissions mode = QFileInfo(made.path()).permissions();
            QVERIFY(!mode.testAnyFlags(QFile::ReadGroup | QFile::ReadOther | QFile::ExeOther));
            QVERIFY(QDir(folder.filePath(u"config"_s)).removeRecursively());
            QTRY_VERIFY(!defaults.hasStoredValue(sizeKey) && !other.hasStoredValue(sizeKey));
        }
    }

    void damagedWhileRunning_isIgnoredUntilWeWrite()
    {
        QVERIFY(write({ { sizeKey, 10 } }));
        Program program(_path);
        const QByteArray whole = PropertyList::toXml(QVariantMap { { sizeKey, 20 } });
        save(_path, whole.chopped(12));
        // Another reader of the folder, told after the first, shows when that has read.
        UserDefaults witness(_folder->filePath(u"witness"_s));
        save(_folder->filePath(u"witness"_s), whole);
        QTRY_COMPARE(witness.integerForKey(sizeKey), 20);
        QCOMPARE(program.taken(), QStringList());
        save(_path, whole);
        QCOMPARE(program.awaited(), QStringList(u"maximumIconSize 10>20"_s));

        save(_path, whole.chopped(12));
        expectWarning(u"^set aside as .*Preferences.plist.damaged"_s);
        QVERIFY(program.defaults.setObject(hueKey, 2) && program.defaults.synchronize());
        QCOMPARE(stored(), QVariantMap({ { sizeKey, 20LL }, { hueKey, 2.0 } }));
        QCOMPARE(load(_path + u".damaged"_s), whole.chopped(12));
    }

    void writeThatFails_keepsTheValue()
    {
        save(_path, "a");
        // A folder that cannot be made, a file where it belongs, a lock that cannot be made.
        for (const QString &path : { u"/proc/Ortu/Preferences.plist"_s,
                 _path + u"/Preferences.plist"_s, u"/proc/Preferences.plist"_s }) {
            UserDefaults defaults(path);
            expectWarning(u"^cannot (write|lock) .*: ."_s);
            QVERIFY(defaults.setObject(sizeKey, 1) && !defaults.synchronize());
            QCOMPARE(defaults.integerForKey(sizeKey), 1);
        }
    }

    void writeThatFailed_isToldOnceAndMadeUpForByTheNext()
    {
        QVERIFY(write({ { sizeKey, 10 } }));
        save(_folder->filePath(u".lock"_s), "left by another version");
        Program program(_path);
        const QSignalSpy messages(
            &NotificationCenter::defaultCenter(), &NotificationCenter::N_UserMessage);
        {
            FileLock lock(_folder->path());
            QVERIFY(lock.lock());
            for (int i = 0; i < 2; ++i) {
                expectWarning(u"^cannot lock .*: another program holds it"_s);
            }
            program.defaults.removeObject(sizeKey);
            QTRY_COMPARE(messages.size(), 1);
            QVERIFY(!program.defaults.synchronize());
        }
        QCOMPARE(messages.size(), 1);
        QVERIFY(messages[0][0].toString().contains(u"another program holds it"));
        // A change outside does not bring back what was removed here.
        program.taken();
        QVERIFY(write({ { sizeKey, 20 }, { hueKey, 0.75 } }));
        QCOMPARE(program.awaited(), QStringList(u"wrapHue 0.5>0.75"_s));
        QVERIFY(program.defaults.setObject(hueKey, 2));
        QTRY_COMPARE(stored(), QVariantMap({ { hueKey, 2.0 } }));
    }

private:
    bool write(const QVariantMap &values) const { return PropertyList::writeFile(_path, values); }
    QVariantMap stored() const { return PropertyList::readFile(_path).value.toMap(); }

    std::unique_ptr<QTemporaryDir> _folder;
    QString _path;
};

QTEST_GUILESS_MAIN(UserDefaultsTest)
#include "UserDefaultsTest.moc"

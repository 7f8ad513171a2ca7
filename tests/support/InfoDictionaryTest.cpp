#include "support/InfoDictionary.h"

#include "TestCase.h"
#include "support/PropertyList.h"

namespace {

const QString identifierKey = u"CFBundleIdentifier"_s;
const QString versionKey = u"CFBundleShortVersionString"_s;
const QString dockless = u"LSUIElement"_s;
const QString homeKey = u"OTHomeURL"_s;

} // namespace

class InfoDictionaryTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void compiledValues_holdWithoutAFile()
    {
        const InfoDictionary info(_folder.filePath(u"Absent.plist"_s));
        QCOMPARE(info.bundleIdentifier(), u"org.ortu.Ortu"_s);
        QCOMPARE(info.stringForKey(versionKey), QStringLiteral(ORTU_VERSION));
        QVERIFY(info.boolForKey(dockless));
        QVERIFY(!info.objectForKey(homeKey).isValid());
        // Each type answers for itself alone.
        QCOMPARE(info.stringForKey(dockless), QString());
        QVERIFY(!info.boolForKey(versionKey));
    }

    void file_overridesKeyByKey()
    {
        QVERIFY(PropertyList::writeFile(
            _path, QVariantMap { { dockless, 0 }, { homeKey, u"https://example.org"_s } }));
        const InfoDictionary info(_path);
        QVERIFY(!info.boolForKey(dockless));
        QCOMPARE(info.objectForKey(dockless), QVariant(false));
        QCOMPARE(info.stringForKey(homeKey), u"https://example.org"_s);
        QCOMPARE(info.bundleIdentifier(), u"org.ortu.Ortu"_s);
    }

    void wrongTypes_areNamedAndLeftOut()
    {
        QVERIFY(PropertyList::writeFile(_path,
            QVariantMap { { identifierKey, 7 }, { dockless, u"perhaps"_s },
                { homeKey, QVariantList { 1 } }, { versionKey, u"9"_s } }));
        expectWarning(
            u"plist: CFBundleIdentifier: integer \"7\" cannot stand for string and is not used$"_s);
        expectWarning(u"plist: LSUIElement: string \"perhaps\" cannot stand for boolean"_s);
        expectWarning(u"plist: OTHomeURL: array cannot stand for string"_s);
        const InfoDictionary info(_path);
        QCOMPARE(info.bundleIdentifier(), u"org.ortu.Ortu"_s);
        QVERIFY(info.boolForKey(dockless));
        QVERIFY(!info.objectForKey(homeKey).isValid());
        QCOMPARE(info.stringForKey(versionKey), u"9"_s);
    }

    void damagedFile_isNamedAndLeftWhereItIs()
    {
        for (const char *bytes :
            { "", "LSUIElement = NO", "<plist version=\"1.0\"><array/></plist>" }) {
            save(_path, bytes);
            expectWarning(u"^cannot read %1: ."_s.arg(_path));
            QVERIFY(InfoDictionary(_path).boolForKey(dockless));
            QCOMPARE(QDir(_folder.path()).entryList(QDir::Files), QStringList(u"Info.plist"_s));
        }
    }

private:
    QTemporaryDir _folder;
    QString _path = _folder.filePath(u"Info.plist"_s);
};

QTEST_GUILESS_MAIN(InfoDictionaryTest)
#include "InfoDictionaryTest.moc"

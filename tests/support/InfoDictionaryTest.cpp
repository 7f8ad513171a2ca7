#include "support/InfoDictionary.h"

#include "TestCase.h"
#include "support/files/PropertyList.h"

namespace {

const QString identifierKey = u"CFBundleIdentifier"_s;
const QString versionKey = u"CFBundleShortVersionString"_s;
const QString dockless = u"LSUIElement"_s;
const QString homeKey = u"OTHomeURL"_s;
const QString feedbackKey = u"OFSubmitFeedbackURL"_s;
const QString feedKey = u"SUFeedURL"_s;

} // namespace

class InfoDictionaryTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void file_overridesCompiledValuesKeyByKey()
    {
        const InfoDictionary compiled(_folder.filePath(u"Absent.plist"_s));
        QCOMPARE(compiled.bundleIdentifier(), u"org.ortu.Ortu"_s);
        QCOMPARE(compiled.stringForKey(versionKey), QStringLiteral(ORTU_VERSION));
        QVERIFY(compiled.boolForKey(dockless) && !compiled.objectForKey(homeKey).isValid());
        const auto written = [this](const QVariantMap &values) {
            PropertyList::writeFile(_path, values);
            return InfoDictionary(_path);
        };
        const InfoDictionary info = written({ { dockless, 0 }, { homeKey, u"https://a.org"_s } });
        QCOMPARE(info.objectForKey(dockless), QVariant(false));
        QCOMPARE(info.stringForKey(homeKey), u"https://a.org"_s);
        QCOMPARE(info.bundleIdentifier(), u"org.ortu.Ortu"_s);

        expectWarning(
            u"plist: CFBundleIdentifier: integer \"7\" cannot stand for string and is not used$"_s);
        expectWarning(u"plist: LSUIElement: string \"perhaps\" cannot stand for boolean"_s);
        const QString feedKey = u"SUFeedURL"_s;
        for (const QString &key : { homeKey, feedbackKey, feedKey }) {
            expectWarning(u"plist: %1: array cannot stand for string"_s.arg(key));
        }
        const InfoDictionary wrong = written({ { identifierKey, 7 }, { dockless, u"perhaps"_s },
            { homeKey, QVariantList { 1 } }, { feedbackKey, QVariantList { 1 } },
            { feedKey, QVariantList { 1 } }, { versionKey, u"9"_s } });
        QCOMPARE(wrong.bundleIdentifier(), u"org.ortu.Ortu"_s);
        QVERIFY(wrong.boolForKey(dockless) && !wrong.objectForKey(homeKey).isValid());
        QCOMPARE(wrong.stringForKey(versionKey), u"9"_s);
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

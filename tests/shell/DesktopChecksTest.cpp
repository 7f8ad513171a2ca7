#include "shell/DesktopChecks.h"

#include "TestCase.h"
#include "support/PropertyList.h"

class DesktopChecksTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void programIsShownInAllSpaces()
    {
        const QVariant two = QVariantList { 1, 2 };
        const auto isHappyWith = [this](const QVariant &spaces, const QVariant &bindings) {
            return PropertyList::writeFile(_path,
                       QVariantMap { { u"spaces"_s, spaces }, { u"app-bindings"_s, bindings } })
                && isHappy();
        };
        const QVariantMap elsewhere { { u"org.ortu.Ortu"_s, u"x"_s } };
        QVariantMap both = elsewhere;
        both.insert(u"org.ortu.ortu"_s, u"AllSpaces"_s);
        QVERIFY(isHappyWith({}, {}) && isHappyWith({}, elsewhere));
        for (const QVariant &empty : QVariantList { QVariantMap(), QString(), QByteArray() }) {
            QVERIFY(isHappyWith(empty, {}));
        }
        QVERIFY(!isHappyWith(QByteArray(1, '\0'), {}));
        for (const QString &name : { u"org.ortu.Ortu"_s, u"org.ortu.ortu"_s }) {
            QVERIFY(isHappyWith(two, QVariantMap { { name, u"AllSpaces"_s } }));
        }
        // Its own case goes before lower case.
        for (const QVariant &bindings : QVariantList { {}, u"AllSpaces"_s, elsewhere, both }) {
            QVERIFY(!isHappyWith(two, bindings));
        }
    }

    void unreadableFile_isFineAndUntouched()
    {
        for (const char *bytes : { "", "spaces", "<plist version=\"1.0\"><array/></plist>" }) {
            QFile::remove(_path);
            QVERIFY(isHappy());
            save(_path, bytes);
            QVERIFY(isHappy());
            QCOMPARE(load(_path), QByteArray(bytes));
            QCOMPARE(QDir(_folder.path()).entryList(QDir::Files).size(), 1);
        }
    }

private:
    bool isHappy() const
    {
        return DesktopChecks::isOrtuHappyWithMissionControl(_folder.path(), u"org.ortu.Ortu"_s);
    }

    QTemporaryDir _folder;
    QString _path = _folder.filePath(u"com.apple.spaces.plist"_s);
};

QTEST_GUILESS_MAIN(DesktopChecksTest)
#include "DesktopChecksTest.moc"

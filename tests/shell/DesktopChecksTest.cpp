#include "shell/DesktopChecks.h"

#include "support/PropertyList.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class DesktopChecksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }

    void programIsShownInAllSpaces_data()
    {
        QTest::addColumn<QVariant>("spaces");
        QTest::addColumn<QVariant>("bindings");
        QTest::addColumn<bool>("isHappy");
        const QVariant two = QVariantList { 1, 2 };
        const auto binding = [](const QString &identifier, const QVariant &value) {
            return QVariant(QVariantMap { { identifier, value } });
        };
        const auto row = [](const char *name, const QVariant &spaces, const QVariant &bindings,
                             bool isHappy) {
            QTest::newRow(name) << spaces << bindings << isHappy;
        };
        row("nothing", {}, {}, true);
        row("no spaces", {}, binding(u"org.ortu.Ortu"_s, u"x"_s), true);
        row("empty spaces", QVariantMap(), {}, true);
        row("empty text", QString(), {}, true);
        row("empty data", QByteArray(), {}, true);
        row("some data", QByteArray(1, '\0'), {}, false);
        row("no bindings", two, {}, false);
        row("bindings of another type", two, u"AllSpaces"_s, false);
        row("bound", two, binding(u"org.ortu.Ortu"_s, u"AllSpaces"_s), true);
        row("bound in lower case", two, binding(u"org.ortu.ortu"_s, u"AllSpaces"_s), true);
        row("bound to one", two, binding(u"org.ortu.Ortu"_s, u"x"_s), false);
        row("its own case goes before lower case", two,
            QVariantMap { { u"org.ortu.Ortu"_s, u"x"_s }, { u"org.ortu.ortu"_s, u"AllSpaces"_s } },
            false);
    }
    void programIsShownInAllSpaces()
    {
        QFETCH(QVariant, spaces);
        QFETCH(QVariant, bindings);
        QVERIFY(PropertyList::writeFile(
            _path, QVariantMap { { u"spaces"_s, spaces }, { u"app-bindings"_s, bindings } }));
        QTEST(isHappy(), "isHappy");
    }

    void unreadableFile_isFineAndUntouched()
    {
        for (const char *bytes : { "", "spaces", "<plist version=\"1.0\"><array/></plist>" }) {
            QFile::remove(_path);
            QVERIFY(isHappy());
            QFile file(_path);
            QVERIFY(file.open(QIODevice::ReadWrite) && file.write(bytes) >= 0 && file.flush());
            QVERIFY(isHappy());
            QVERIFY(file.seek(0));
            QCOMPARE(file.readAll(), QByteArray(bytes));
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

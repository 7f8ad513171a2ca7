#include "support/files/PropertyList.h"

#include "TestCase.h"

#include <QDateTime>
#include <QTimeZone>

#include <limits>
#include <sys/stat.h>

using PropertyList::State;

namespace {

QByteArray inPlist(const QByteArray &content)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">"
        + content + "</plist>\n";
}

QVariant nested(int levels)
{
    return levels == 0 ? QVariant(true) : QVariant(QVariantList { nested(levels - 1) });
}

} // namespace

class PropertyListTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void writing_thenReading_givesTheValueBack()
    {
        const QDateTime date(QDate(2024, 3, 31), QTime(2, 30, 59), QTimeZone::utc());
        const quint64 tooLarge = std::numeric_limits<quint64>::max();
        const std::pair<QVariant, QVariant> rows[] { { u"<a> & \"b\" ]]> ü 猫 \U0001F600"_s, {} },
            { u" \t\r\n a\r\n\r "_s, {} }, { std::numeric_limits<qlonglong>::min(), {} },
            { QVariantMap { { u""_s, true }, { u"a<&\r"_s, QVariantMap() } }, {} }, { 1.0 / 3, {} },
            { 10.0, {} }, { std::numeric_limits<double>::infinity(), {} },
            { QByteArray("\0\xff<", 3), {} }, { nested(PropertyList::maximumDepth), {} },
            { date.addMSecs(400).toOffsetFromUtc(3600), date },
            { QVariantList { 7U, 0.5F, QVariant::fromValue<short>(-7), QStringList(u"a"_s) },
                QVariantList { 7LL, 0.5, -7LL, QVariantList { u"a"_s } } },
            // What it cannot hold.
            { QVariantList { u"a\x01"_s, QString(QChar(0xD800)), QVariant(), QPoint(1, 2), tooLarge,
                  QDateTime(), QVariantMap { { u"\x02"_s, true } }, u"kept"_s },
                QVariantList { QVariantMap(), u"kept"_s } } };
        for (const auto &[value, other] : rows) {
            const QVariant expected = other.isValid() ? other : value;
            const std::optional<QVariant> read = PropertyList::fromData(PropertyList::toXml(value));
            QCOMPARE(read, expected);
            QCOMPARE(read->typeId(), expected.typeId());
            QCOMPARE(PropertyList::plain(value), expected);
        }
    }

    void xmlOfOthers_isRead()
    {
        // White space, numbers, comments and keys as other programs write them.
        const QByteArray content = "<array><integer> 0x1F\n</integer>"
                                   "<string>&#65;&#x42;&amp;</string>"
                                   "<string>a<!-- b --><![CDATA[<c>]]></string>"
                                   "<data>\n\tAP\n\t8=\n</data>"
                                   "<dict><key>a</key><true/><key>a</key><false></false></dict>"
                                   "</array>";
        const QVariant expected = QVariantList { 31LL, u"AB&"_s, u"a<c>"_s, QByteArray("\0\xff", 2),
            QVariantMap { { u"a"_s, false } } };
        QCOMPARE(PropertyList::fromData(inPlist(content)), expected);
        QCOMPARE(PropertyList::fromData("\xEF\xBB\xBF" + inPlist(content)), expected);
        QCOMPARE(PropertyList::fromData("<plist>" + content + "</plist>"), expected);
    }

    void binary_givesTheSameTypes()
    {
        const QByteArray data = QByteArray::fromBase64(
            "YnBsaXN0MDDXAQIDBAUGBwgJCgsODxBTYmlnVGRhdGFUZGF0ZVRsaXN0WG5lZ2F0aXZlVHJlYWxTeWVz"
            "EwAAAQAAAAAAQgD/M0HFyFSgAAAAogwNUWFhAPwT//////////sjP+AAAAAAAAAJCBcbICUqMzg8RUhR"
            "VFZZYmsAAAAAAAABAQAAAAAAAAARAAAAAAAAAAAAAAAAAAAAbA==");
        const QVariantMap expected { { u"list"_s, QVariantList { u"a"_s, u"ü"_s } },
            { u"negative"_s, -5LL }, { u"big"_s, 1LL << 40 }, { u"real"_s, 0.5 },
            { u"yes"_s, true }, { u"data"_s, QByteArray("\0\xff", 2) },
            { u"date"_s, QDateTime(QDate(2024, 2, 29), QTime(12, 0), QTimeZone::utc()) } };
        const QVariantMap read = PropertyList::fromData(data).value_or(QVariant()).toMap();
        QCOMPARE(read, expected);
        for (auto item = expected.cbegin(); item != expected.cend(); ++item) {
            QCOMPARE(read.value(item.key()).typeId(), item.value().typeId());
        }
    }

    void damagedData_areRefused()
    {
        const QByteArray tooDeep =
            QByteArray("<array>").repeated(65) + QByteArray("</array>").repeated(65);
        QByteArrayList rows { "", "<true/><true/>", "<array><null/></array>",
            "<dict><true/></dict>", "<dict><key>a</key></dict>", "<array>a<true/></array>",
            "<array>&b;</array>", "<string>a&b;</string>", "<true>no</true>",
            "<integer>5 px</integer>", "<real>0,5</real>", "<date>2023-02-29T00:00:00Z</date>",
            "<date>2023-02-28T00:00:00</date>", "<data>A*==</data>", tooDeep,
            QByteArray("<dict><key>a</key>").repeated(1'000'000) };
        std::transform(rows.begin(), rows.end(), rows.begin(), inPlist);
        const QByteArray whole = inPlist("<dict><key>a</key><string>ü</string></dict>").trimmed();
        QVERIFY(PropertyList::fromData(whole));
        for (qsizetype size = 0; size < whole.size(); ++size) {
            rows << whole.left(size);
        }
        rows << "<html><true/></html>" << inPlist("<true/>") + "more"
             << "<!DOCTYPE plist [<!ENTITY a \"aaaa\">]><plist><string>&a;</string></plist>";
        const QDir binary(QFINDTESTDATA("../fuzz/corpus/PropertyList"), u"refused-*"_s);
        for (const QFileInfo &file : binary.entryInfoList()) {
            rows << load(file.filePath());
        }
        QVERIFY(binary.count() > 5);
        for (const QByteArray &data : rows) {
            QString error;
            QVERIFY2(!PropertyList::fromData(data, &error), data.left(400));
            QVERIFY(!error.isEmpty());
        }
    }

    void readingFile_tellsAbsentFromDamaged()
    {
        const QTemporaryDir folder;
        const auto read = [&](const QString &name) {
            return PropertyList::readFile(folder.filePath(name));
        };
        QCOMPARE(read(u"none"_s).state, State::Absent);
        QCOMPARE(read(u"."_s).state, State::Damaged);
        QCOMPARE(::mkfifo(QFile::encodeName(folder.filePath(u"pipe"_s)).constData(), 0600), 0);
        QCOMPARE(read(u"pipe"_s).state, State::Damaged);
        const QString large = folder.filePath(u"large"_s);
        save(large, inPlist("<true/>"));
        QCOMPARE(read(u"large"_s).state, State::Read);
        QVERIFY(QFile::resize(large, PropertyList::maximumSize + 1));
        QCOMPARE(read(u"large"_s).state, State::Damaged);
        QCOMPARE(read(u"large"_s).error, u"too large"_s);
    }

    void writing_keepsLinksAndPermissions_andTheOldFileWhenItFails()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"list.plist"_s);
        const QString target = folder.filePath(u"target"_s);
        save(target, "old");
        const QFile::Permissions mode = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
        QVERIFY(QFile::setPermissions(target, mode) && QFile::link(target, path));
        QVERIFY(PropertyList::writeFile(path, u"new"_s, PropertyList::Former::KeptForADay));
        QVERIFY(QFileInfo(path).isSymLink());
        QVERIFY(QFile::permissions(target).testFlags(mode));
        QVERIFY(!QFile::permissions(target).testAnyFlags(QFile::WriteGroup | QFile::ReadOther));

        const auto failsToWrite = [](const QString &file, const QVariant &value) {
            expectWarning(u"^cannot write %1: ."_s.arg(QRegularExpression::escape(file)));
            return !PropertyList::writeFile(file, value);
        };
        const QString pipe = folder.filePath(u"pipe"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        for (const QString &file :
            { folder.filePath(u"none/list.plist"_s), folder.path(), u"/proc/list.plist"_s, pipe }) {
            QVERIFY(failsToWrite(file, true));
        }
        QVERIFY(failsToWrite(path, QPoint(1, 2)));
        QCOMPARE(PropertyList::readFile(target).value, QVariant(u"new"_s));
    }

    void setAside_keepsEveryDamagedFileOnce()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"list.plist"_s);
        for (const char *content : { "one", "two", "one", "two", "three" }) {
            save(path, content);
            expectWarning(u"^set aside as .*: no good$"_s);
            QVERIFY(PropertyList::setAside(path, u"no good"_s));
            QVERIFY(!QFile::exists(path));
        }
        QByteArray kept;
        for (const QString &suffix : { u""_s, u".2"_s, u".3"_s, u".4"_s }) {
            kept += load(path + u".damaged"_s + suffix) + '|';
        }
        QCOMPARE(kept, QByteArray("one|two|three||"));

        expectWarning(u"^cannot set aside the damaged /proc/version .no good.: ."_s);
        QVERIFY(!PropertyList::setAside(u"/proc/version"_s, u"no good"_s));
    }
};

QTEST_GUILESS_MAIN(PropertyListTest)
#include "PropertyListTest.moc"

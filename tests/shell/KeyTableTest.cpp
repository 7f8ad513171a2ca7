#include "shell/triggers/KeyTable.h"

#include "TestCase.h"

#include <QSet>

class KeyTableTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void ownTable_namesEveryKeyOnce()
    {
        const KeyTable table;
        QSet<QString> titles;
        QSet<QString> places;
        QSet<int> tags;
        for (const KeyTable::Key &key : table.keys()) {
            titles.insert(key.title);
            places.insert(key.place);
            tags.insert(key.tag);
            QVERIFY(key.tag >= 0 && key.tag < 128);
            // Four characters are all that a display keeps of a name.
            QVERIFY2(!key.place.isEmpty() && key.place.size() <= 4, qPrintable(key.title));
        }
        QVERIFY(titles.size() == 100 && places.size() == 100 && tags.size() == 100);
    }

    void combinationsAreReadable_andNameThePlaceOfTheKey()
    {
        const KeyTable table;
        const auto text = [&table](int code, int modifiers) {
            const std::optional<HotKeyCombination> found = table.combination(code, modifiers);
            const QString held = found ? u"%1%2%3%4"_s.arg(found->control)
                                             .arg(found->option)
                                             .arg(found->command)
                                             .arg(found->shift)
                                       : u"none"_s;
            return table.hotKeyString(code, modifiers) + u" = "_s + held
                + (found ? found->key : QString());
        };
        QCOMPARE(text(48, 4096), u"⌃ control + Tab = 1000TAB"_s);
        QCOMPARE(text(49, 2048), u"⌥ option + Space = 0100SPCE"_s);
        QCOMPARE(text(122, 256), u"⌘ command + F1 = 0010FK01"_s);
        QCOMPARE(text(92, 512), u"⇧ shift + Keypad 9 = 0001KP9"_s);
        QCOMPARE(
            text(82, -1), u"⌃ control + ⌥ option + ⌘ command + ⇧ shift + Keypad 0 = 1111KP0"_s);
        QCOMPARE(text(9999, 512), missing() + u" = none"_s);
    }

    void unusualRecords_areTakenForWhatTheyAre()
    {
        const KeyTable table(fileWith("key\ttag\ttitle\textra\nPL1\t7\tfirst\nPL2\t7\tsecond\n"
                                      "PL3\t8\nPL4\t8\thidden\nPL5\t\tno tag\n"
                                      "PL6\tseven\tno number\n\t9\tnowhere\n\t-1\tnone\n"));
        QStringList titles;
        for (const KeyTable::Key &key : table.keys()) {
            titles.append(key.title);
        }
        QCOMPARE(titles.join(u'|'), u"first|second|hidden|nowhere|none"_s);
        QCOMPARE(table.hotKeyString(7, 0), u"first"_s);
        QCOMPARE(table.combination(7, 0)->key, u"PL1"_s);
        QCOMPARE(table.hotKeyString(8, 0), missing());
        QCOMPARE(table.hotKeyString(9, 0), u"nowhere"_s);
        QVERIFY(!table.combination(9, 0));
        QCOMPARE(table.hotKeyString(-1, 4096), u"none"_s);
        QVERIFY(!table.combination(-1, 0));
    }

    void unusableTables_areReported()
    {
        for (const QByteArray &text : { QByteArray(), QByteArray("\n"),
                 QByteArray("name\tcode\nTab\t48\n"), QByteArray(10'000'000, '\0') }) {
            const QString path = text.isNull() ? u"/nowhere/keys.txt"_s : fileWith(text);
            expectWarning(u"^cannot use the key table %1: ."_s.arg(path));
            const KeyTable table(path);
            QVERIFY(table.keys().isEmpty());
            QCOMPARE(table.hotKeyString(48, 4096), missing());
            QVERIFY(!table.combination(48, 4096));
        }
    }

private:
    static QString missing() { return u"missing resource"_s; }
    QString fileWith(const QByteArray &text)
    {
        save(_folder.filePath(u"keys.txt"_s), text);
        return _folder.filePath(u"keys.txt"_s);
    }

    QTemporaryDir _folder;
};

QTEST_APPLESS_MAIN(KeyTableTest)
#include "KeyTableTest.moc"

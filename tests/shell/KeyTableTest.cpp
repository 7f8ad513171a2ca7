#include "shell/triggers/KeyTable.h"

#include "TestCase.h"
#include "support/Translations.h"

#include <QSet>

class KeyTableTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void ownTable_namesEveryKeyOnce()
    {
        const KeyTable table;
        QSet<QString> titles, places;
        for (const KeyTable::Key &key : table.keys()) {
            titles.insert(key.title);
            places.insert(key.place);
        }
        QVERIFY(titles.size() == 100 && places.size() == 100);

        const Translations translations({ "de" });
        for (const KeyTable::Key &key : table.keys()) {
            QVERIFY2(key.title.size() < 4 || !titles.contains(key.title), qPrintable(key.title));
        }
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
        QCOMPARE(text(9999, 512), u"missing resource = none"_s);
        QVERIFY(table.isTaken(48, KeyTable::Shift) && table.isTaken(115, 0));
        QVERIFY(!table.isTaken(48, KeyTable::Option) && !table.isTaken(122, 0));
    }
};

QTEST_GUILESS_MAIN(KeyTableTest)
#include "KeyTableTest.moc"

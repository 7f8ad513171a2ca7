#include "shell/triggers/KeyTable.h"

#include "shell/ShellTest.h"

#include <QSet>
#include <QTemporaryFile>

class KeyTableTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { expectNoWarnings(); }
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
        // 26 letters, 10 digits, 11 marks, 15 for typing and moving, 20 function keys, 18 of the
        // keypad.
        QCOMPARE(table.keys().size(), 100);
        QCOMPARE(titles.size(), 100);
        QCOMPARE(places.size(), 100);
        QCOMPARE(tags.size(), 100);
    }

    void combinationsAreReadable_andNameThePlaceOfTheKey()
    {
        const KeyTable table;
        const auto text = [&table](int code, int modifiers) {
            const std::optional<HotKeyCombination> found = table.combination(code, modifiers);
            return table.hotKeyString(code, modifiers) + u" = "_s
                + (!found ? u"none"_s
                          : found->key + (found->control ? u" control"_s : QString())
                            + (found->option ? u" option"_s : QString())
                            + (found->command ? u" command"_s : QString())
                            + (found->shift ? u" shift"_s : QString()));
        };
        QCOMPARE(text(48, 4096), u"⌃ control + Tab = TAB control"_s);
        QCOMPARE(text(49, 2048), u"⌥ option + Space = SPCE option"_s);
        QCOMPARE(text(122, 256), u"⌘ command + F1 = FK01 command"_s);
        QCOMPARE(text(92, 512), u"⇧ shift + Keypad 9 = KP9 shift"_s);
        QCOMPARE(text(0, 0), u"A = AC01"_s);
        QCOMPARE(text(82, -1),
            u"⌃ control + ⌥ option + ⌘ command + ⇧ shift + Keypad 0"
            " = KP0 control option command shift"_s);
        QCOMPARE(text(-1, 4096), missing() + u" = none"_s);
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
            QTest::ignoreMessage(
                QtWarningMsg, QRegularExpression(u"^cannot use the key table %1: ."_s.arg(path)));
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
        _file = std::make_unique<QTemporaryFile>();
        const bool isWritten = _file->open() && _file->write(text) == text.size() && _file->flush();
        return isWritten ? _file->fileName() : QString();
    }

    std::unique_ptr<QTemporaryFile> _file;
};

QTEST_APPLESS_MAIN(KeyTableTest)
#include "KeyTableTest.moc"

#include "grid/drawing/CellLook.h"

#include "TestCase.h"

#include <QHash>

namespace {

const QHash<QByteArray, bool CellFacts::*> Fields { { "app", &CellFacts::hasApp },
    { "filtered", &CellFacts::isFilteredOut }, { "excluded", &CellFacts::isExcluded },
    { "running", &CellFacts::isRunning }, { "dragged", &CellFacts::isDragged },
    { "droppable", &CellFacts::isDroppable }, { "selected", &CellFacts::isSelected },
    { "drop", &CellFacts::isFileDrop }, { "move", &CellFacts::isIconMove },
    { "button", &CellFacts::isMouseButtonDown }, { "function", &CellFacts::isFunctionKeyHeld } };

QByteArray look(int group, const QByteArray &words)
{
    CellFacts facts;
    facts.group = group;
    for (const QByteArray &word : words.split(' ')) {
        Q_ASSERT(Fields.contains(word));
        facts.*Fields[word] = true;
    }
    const CellLook look = cellLook(facts);
    return QByteArray(look.isOpaque ? "opaque" : "dimmed")
        + (look.isHighlighted ? " highlighted" : "") + (look.isDecorated ? " decorated" : "");
}

} // namespace

class CellLookTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void factsGiveTheLook()
    {
        for (const char *row :
            { "1 filtered excluded running selected button drop: opaque", // no application
                "1 app filtered: dimmed", "8 app selected button: dimmed", "8 app button: opaque",
                // Files over it.
                "8 app drop: dimmed", "8 app drop droppable selected button: opaque highlighted",
                "5 app excluded drop droppable: dimmed",
                // Running, and what the function key makes of it.
                "2 app running: opaque highlighted", "0 app running: opaque",
                "1 app running function: opaque", "1 app function: dimmed",
                // Icons on their way: into an empty cell, where it comes from, over no favourites.
                "9 move selected: opaque decorated", "8 app dragged move selected: dimmed",
                "1 app move selected: opaque" }) {
            const QByteArrayList part = QByteArray(row).split(':');
            QVERIFY2(look(row[0] - '0', part[0].mid(2)) == part[1].trimmed(), row);
        }
    }

    void excludedIsDimmedWhereItIsNotWanted()
    {
        QByteArray dimmed;
        for (int group = 0; group < 10; ++group) {
            dimmed += look(group, "app excluded") == "dimmed" ? 'x' : '-';
            dimmed += look(group, "app") == "dimmed" ? 'i' : '-';
        }
        QCOMPARE(dimmed, QByteArray("--x-x--i-ix-x-------"));
    }
};

QTEST_APPLESS_MAIN(CellLookTest)
#include "CellLookTest.moc"

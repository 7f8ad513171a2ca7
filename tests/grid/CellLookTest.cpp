#include "grid/CellLook.h"

#include <QHash>
#include <QTest>

class CellLookTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void factsGiveTheLook_data();
    void factsGiveTheLook();
    void excludedIsDimmedWhereItIsNotWanted();
};

namespace {

const QHash<QByteArray, bool CellFacts::*> Fields {
    { "app", &CellFacts::hasApp },
    { "filtered", &CellFacts::isFilteredOut },
    { "excluded", &CellFacts::isExcluded },
    { "running", &CellFacts::isRunning },
    { "dragged", &CellFacts::isDragged },
    { "droppable", &CellFacts::isDroppable },
    { "selected", &CellFacts::isSelected },
    { "drop", &CellFacts::isFileDrop },
    { "move", &CellFacts::isIconMove },
    { "button", &CellFacts::isMouseButtonDown },
    { "function", &CellFacts::isFunctionKeyHeld },
};

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

void CellLookTest::factsGiveTheLook_data()
{
    QTest::addColumn<int>("group");
    QTest::addColumn<QByteArray>("facts");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *name, int group, const char *facts, const char *expected) {
        QTest::newRow(name) << group << QByteArray(facts) << QByteArray(expected);
    };

    row("empty, whatever else", 1, "filtered excluded running selected button drop", "opaque");
    row("filtered out", 1, "app filtered", "dimmed");
    row("pressed", 8, "app selected button", "dimmed");
    row("button down elsewhere", 8, "app button", "opaque");
    row("cannot take the files", 8, "app drop", "dimmed");
    row("could take the files", 8, "app drop droppable button", "opaque");
    row("would take the files", 8, "app drop droppable selected button", "opaque highlighted");
    row("could take files, none there", 8, "app droppable selected", "opaque");
    row("excluded, could take the files", 5, "app excluded drop droppable", "dimmed");
    row("takes files in the running group", 0, "app drop droppable selected", "opaque highlighted");
    row("included, in the excluded group", 3, "app", "dimmed");
    row("excluded, in the excluded group", 4, "app excluded", "opaque");
    row("running", 2, "app running", "opaque highlighted");
    row("running and excluded", 5, "app running excluded", "dimmed highlighted");
    row("running, in the running group", 0, "app running", "opaque");
    row("running, function key", 1, "app running function", "opaque");
    row("not running, function key", 1, "app function", "dimmed");
    row("function key in the running group", 0, "app function", "opaque");
    row("before another", 8, "app running move selected button", "opaque highlighted decorated");
    row("into an empty cell", 9, "move selected", "opaque decorated");
    row("where it comes from", 8, "app dragged move selected", "dimmed");
    row("over no favourites", 1, "app move selected", "opaque");
    row("another cell", 8, "app move", "opaque");
}

void CellLookTest::factsGiveTheLook()
{
    QFETCH(int, group);
    QFETCH(QByteArray, facts);

    QTEST(look(group, facts), "expected");
}

void CellLookTest::excludedIsDimmedWhereItIsNotWanted()
{
    QByteArray dimmed;
    for (int group = 0; group < 10; ++group) {
        dimmed += look(group, "app excluded") == "dimmed" ? 'x' : '-';
        dimmed += look(group, "app") == "dimmed" ? 'i' : '-';
    }
    QCOMPARE(dimmed, QByteArray("--x-x--i-ix-x-------"));
}

QTEST_APPLESS_MAIN(CellLookTest)
#include "CellLookTest.moc"

#include "grid/GridAccessible.h"

#include "grid/IconViewFixture.h"

#include <QAccessible>
#include <QApplication>

using namespace Qt::Literals::StringLiterals;

class GridAccessibleTest : public IconViewFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void theListHoldsTheIconsInOrder();
    void descriptionsTellPlaceAndState();
    void itemsLieWhereTheIconsAre();
    void statesFollowSelectionAndFilter();
    void actionsDoWhatAClickDoes();
    void anItemStandsForItsApplication();

private:
    QAccessibleInterface *list() const
    {
        return QAccessible::queryAccessibleInterface(_view.get());
    }
    // "name place" of each item.
    QStringList heard() const
    {
        QStringList heard;
        for (int i = 0; i < list()->childCount(); ++i) {
            const QAccessibleInterface *const item = list()->child(i);
            heard += item->text(QAccessible::Name) + u' ' + item->text(QAccessible::Value);
        }
        return heard;
    }
    static void perform(QAccessibleInterface *item, const QString &action)
    {
        item->actionInterface()->doAction(action);
        QCoreApplication::processEvents();
    }
};

void GridAccessibleTest::theListHoldsTheIconsInOrder()
{
    fill({ u"b"_s, u"a"_s, u"c"_s });
    QCOMPARE(list()->role(), QAccessible::List);
    QCOMPARE(list()->text(QAccessible::Name), _view->groupTitle());
    QCOMPARE(heard(), QStringList({ u"a 1 of 3"_s, u"b 2 of 3"_s, u"c 3 of 3"_s }));
    for (int i = 0; i < 3; ++i) {
        QAccessibleInterface *const item = list()->child(i);
        QCOMPARE(item->role(), QAccessible::ListItem);
        QCOMPARE(item->parent(), list());
        QCOMPARE(list()->indexOfChild(item), i);
        QCOMPARE(list()->child(i), item);
    }
    QVERIFY(!list()->child(-1) && !list()->child(3));
    QCOMPARE(list()->indexOfChild(list()), -1);

    QVERIFY(list()->text(QAccessible::Description).isEmpty());
    QStringList hints;
    for (const int group : { RunningGroup, Excluded1DGroup, MissingGroup, User1DGroup }) {
        showGroup(group);
        QCOMPARE(list()->childCount(), 0);
        QVERIFY(!list()->child(0) && !list()->focusChild());
        hints.append(list()->text(QAccessible::Description));
    }
    _manager->removeAppsFromAllArrays(_manager->allApps1D());
    for (const int group : { All1DGroup, Included1DGroup }) {
        showGroup(group);
        hints.append(list()->text(QAccessible::Description));
    }
    QCOMPARE(hints.removeDuplicates(), 1);
    QVERIFY(hints.contains(u"No favourites yet. Choose Add Favorite in an application's menu."_s));
}

void GridAccessibleTest::descriptionsTellPlaceAndState()
{
    fill({ u"a"_s, u"b"_s });
    _desktop->run({ app(u"b"_s)->path() });
    QCOMPARE(list()->child(0)->text(QAccessible::Description), u"1 of 2"_s);
    QCOMPARE(list()->child(1)->text(QAccessible::Description), u"2 of 2, running"_s);
    _manager->excludeApp(app(u"b"_s));
    showGroup(AllGroup);
    QCOMPARE(list()->child(1)->text(QAccessible::Description), u"2 of 2, running, excluded"_s);
}

void GridAccessibleTest::itemsLieWhereTheIconsAre()
{
    fill({ u"a"_s, u"b"_s });
    _view->move(30, 40);
    _view->resize(_view->width(), _view->height() + 50);
    QAccessibleInterface *const item = list()->child(1);
    const QRect rect = item->rect();
    // Two cells of 68 points within a margin of 12, the window being at (30, 40).
    QCOMPARE(rect, QRect(30 + 12 + 68, 40 + 12 + 50, 68, 68));
    QCOMPARE(list()->childAt(rect.center().x(), rect.center().y()), item);
    QVERIFY(!list()->childAt(rect.right() + 5, rect.center().y()));
}

void GridAccessibleTest::statesFollowSelectionAndFilter()
{
    fill({ u"a"_s, u"b"_s });
    QVERIFY(list()->child(0)->state().invisible);
    _view->show();
    QVERIFY(QTest::qWaitForWindowActive(_view.get()));
    const auto is = [this](int item) { return list()->child(item)->state(); };
    QVERIFY(!is(0).invisible && is(0).selectable && is(0).focusable);
    _view->selectCoords({});
    QVERIFY(!is(0).selected && !is(1).selected && !list()->focusChild());

    _view->selectCoords(_view->coordsOfApp(app(u"b"_s)));
    QVERIFY(!is(0).selected && !is(0).focused && is(1).selected && is(1).focused);
    QCOMPARE(list()->focusChild(), list()->child(1));

    QVERIFY(!is(0).disabled);
    _view->textCommitted(u"b"_s);
    QVERIFY(is(0).disabled && !is(1).disabled);
    const auto canBePressed = [this](int item) {
        return list()->child(item)->actionInterface()->actionNames().contains(
            QAccessibleActionInterface::pressAction());
    };
    QVERIFY(!canBePressed(0) && canBePressed(1));
    perform(list()->child(0), QAccessibleActionInterface::pressAction());
    QVERIFY(_desktop->launched().isEmpty());
}

void GridAccessibleTest::actionsDoWhatAClickDoes()
{
    fill({ u"a"_s, u"b"_s });
    _view->show();
    QVERIFY(QTest::qWaitForWindowActive(_view.get()));
    perform(list()->child(1), QAccessibleActionInterface::setFocusAction());
    _defaults->setObject(u"iconSpacing"_s, 4);
    QVERIFY(list()->child(1)->state().selected);
    perform(list()->child(1), QAccessibleActionInterface::pressAction());
    QTRY_COMPARE(_desktop->launched(), QStringList(u"b"_s));

    // What menus do that the offscreen display cannot.
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
    perform(list()->child(0), QAccessibleActionInterface::showMenuAction());
    QTRY_VERIFY(QApplication::activePopupWidget());
    QVERIFY(list()->child(0)->state().selected);
    QApplication::activePopupWidget()->close();
}

void GridAccessibleTest::anItemStandsForItsApplication()
{
    fill({ u"a"_s, u"b"_s, u"c"_s });
    QCOMPARE(heard().size(), 3);
    QAccessibleInterface *const item = list()->child(1);
    const QAccessible::Id id = QAccessible::uniqueId(item);
    _manager->excludeApp(app(u"a"_s));
    QCOMPARE(list()->child(0), item);
    QCOMPARE(item->text(QAccessible::Description), u"1 of 2"_s);

    item->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    _manager->excludeApp(app(u"b"_s));
    QCoreApplication::processEvents();
    QVERIFY(_desktop->launched().isEmpty());
    QVERIFY(!item->isValid() && item->state().invalid && item->rect().isEmpty());
    QVERIFY(item->text(QAccessible::Name).isEmpty());
    QCOMPARE(list()->indexOfChild(item), -1);
    QCOMPARE(heard(), QStringList(u"c 1 of 1"_s));
    QVERIFY(!QAccessible::accessibleInterface(id));

    const QAccessible::Id last = QAccessible::uniqueId(list()->child(0));
    _view.reset();
    QVERIFY(!QAccessible::accessibleInterface(last));
}

QTEST_MAIN(GridAccessibleTest)
#include "GridAccessibleTest.moc"

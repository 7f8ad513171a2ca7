#include "grid/GridAccessible.h"

#include "grid/IconViewFixture.h"

#include <QAccessible>
#include <QApplication>

class GridAccessibleTest : public IconViewFixture
{
    Q_OBJECT
private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void theListHoldsTheIconsInOrder()
    {
        fill({ u"b"_s, u"a"_s, u"c"_s });
        QCOMPARE(list()->role(), QAccessible::List);
        QCOMPARE(list()->text(QAccessible::Name), u"Included applications"_s);
        QCOMPARE(heard(), u"a 1 of 3, b 2 of 3, c 3 of 3"_s);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(item(i)->role(), QAccessible::ListItem);
            QCOMPARE(item(i)->parent(), list());
            QCOMPARE(list()->indexOfChild(item(i)), i);
        }
        QVERIFY(!item(-1) && !item(3));
        QCOMPARE(list()->indexOfChild(list()), -1);

        showGroup(User1DGroup);
        QVERIFY(list()->childCount() == 0 && !item(0) && !list()->focusChild());
        QCOMPARE(list()->text(QAccessible::Description),
            u"No favourites yet. Drag an icon onto the Favorite button, or choose Add Favorite in its menu."_s);
    }

    void itemsLieWhereTheIconsAre()
    {
        fill({ u"a"_s, u"b"_s });
        _view->move(30, 40);
        _view->resize(_view->width(), _view->height() + 50);
        const QRect rect = item(1)->rect();
        // Two cells of 68 points within a margin of 12, the window being at (30, 40).
        QCOMPARE(rect, QRect(30 + 12 + 68, 40 + 12 + 50, 68, 68));
        QCOMPARE(list()->childAt(rect.center().x(), rect.center().y()), item(1));
        QVERIFY(!list()->childAt(rect.right() + 5, rect.center().y()));
    }

    void statesAndDescriptionsFollow()
    {
        fill({ u"a"_s, u"b"_s });
        QVERIFY(item(0)->state().invisible);
        _view->show();
        QVERIFY(QTest::qWaitForWindowActive(_view.get()));
        const auto is = [this](int index) { return item(index)->state(); };
        QVERIFY(!is(0).invisible && is(0).selectable && is(0).focusable);
        _view->selectCoords({});
        QVERIFY(!is(0).selected && !is(1).selected && !list()->focusChild());
        _view->selectCoords(_view->coordsOfApp(app(u"b"_s)));
        QVERIFY(!is(0).selected && !is(0).focused && is(1).selected && is(1).focused);
        QCOMPARE(list()->focusChild(), item(1));

        QVERIFY(!is(0).disabled);
        _view->textCommitted(u"b"_s);
        QVERIFY(is(0).disabled && !is(1).disabled);
        const QString press = QAccessibleActionInterface::pressAction();
        QVERIFY(!item(0)->actionInterface()->actionNames().contains(press));
        QVERIFY(item(1)->actionInterface()->actionNames().contains(press));
        perform(0, press);
        QVERIFY(launched().isEmpty());

        run(u"b"_s);
        QCOMPARE(item(1)->text(QAccessible::Description), u"2 of 2, running"_s);
        install(u"a"_s);
        QCOMPARE(item(0)->text(QAccessible::Description), u"1 of 2, new"_s);
        _defaults->setObject(u"markNewApplications"_s, false);
        QCOMPARE(item(0)->text(QAccessible::Description), u"1 of 2"_s);
        _manager->excludeApp(app(u"b"_s));
        showGroup(AllGroup);
        QCOMPARE(item(1)->text(QAccessible::Description), u"2 of 2, running, excluded"_s);
    }

    void actionsDoWhatAClickDoes()
    {
        fill({ u"a"_s, u"b"_s });
        _view->show();
        QVERIFY(QTest::qWaitForWindowActive(_view.get()));
        perform(1, QAccessibleActionInterface::setFocusAction());
        _defaults->setObject(u"iconSpacing"_s, 4);
        QVERIFY(item(1)->state().selected);
        perform(1, QAccessibleActionInterface::pressAction());
        QTRY_COMPARE(launched(), QStringList(u"b"_s));

        // What menus do that the offscreen display cannot.
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
        perform(0, QAccessibleActionInterface::showMenuAction());
        QTRY_VERIFY(QApplication::activePopupWidget());
        QVERIFY(item(0)->state().selected);
        QApplication::activePopupWidget()->close();
    }

    void anItemStandsForItsApplication()
    {
        fill({ u"a"_s, u"b"_s, u"c"_s });
        QAccessibleInterface *const b = item(1);
        const QAccessible::Id id = QAccessible::uniqueId(b);
        _manager->excludeApp(app(u"a"_s));
        QCOMPARE(item(0), b);
        QCOMPARE(b->text(QAccessible::Description), u"1 of 2"_s);

        b->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        _manager->excludeApp(app(u"b"_s));
        QCoreApplication::processEvents();
        QVERIFY(launched().isEmpty());
        QVERIFY(!b->isValid() && b->text(QAccessible::Name).isEmpty());
        QCOMPARE(heard(), u"c 1 of 1"_s);
        QVERIFY(!QAccessible::accessibleInterface(id));

        const QAccessible::Id last = QAccessible::uniqueId(item(0));
        _view.reset();
        QVERIFY(!QAccessible::accessibleInterface(last));
    }

private:
    QAccessibleInterface *list() const
    {
        return QAccessible::queryAccessibleInterface(_view.get());
    }
    QAccessibleInterface *item(int index) const { return list()->child(index); }
    // "name place" of each item.
    QString heard() const
    {
        QStringList heard;
        for (int i = 0; i < list()->childCount(); ++i) {
            heard += item(i)->text(QAccessible::Name) + u' ' + item(i)->text(QAccessible::Value);
        }
        return heard.join(u", "_s);
    }
    void perform(int index, const QString &action)
    {
        item(index)->actionInterface()->doAction(action);
        QCoreApplication::processEvents();
    }
};

QTEST_MAIN(GridAccessibleTest)
#include "GridAccessibleTest.moc"

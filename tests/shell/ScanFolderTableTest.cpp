#include "shell/preferences/ScanFolderTable.h"

#include "FakeDesktop.h"
#include "shell/ShellTest.h"
#include "shell/preferences/DirectoriesTable.h"
#include "support/UserDefaults.h"
#include "support/files/PropertyList.h"

#include <QDropEvent>
#include <QFileDialog>
#include <QMimeData>
#include <QPushButton>
#include <QRandomGenerator>
#include <QToolButton>

using Origin = OTArrayController::DropOrigin;

// Rows are given and read back as "/a /b/1 2": the folders, and after the last of them the numbers
// of the selected rows.
class ScanFolderTableTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        expectNoWarnings();
        _tree = std::make_unique<FileTree>();
        _tree->addFolder(u"real"_s);
        qputenv("HOME", QFile::encodeName(_tree->addLink(u"home"_s, _tree->path(u"real"_s))));
        _defaults = std::make_unique<UserDefaults>();
        _table = std::make_unique<ScanFolderTable>(*_defaults, _items);
        _view = _table->findChild<DirectoriesTable *>();
        setRows(u"/a /b /c /d"_s);
    }

    void insertedPaths_areStoredInOneForm()
    {
        const QString folder = _tree->addFolder(u"real/Apps"_s);
        const QString link = _tree->addLink(u"link"_s, folder);
        expectWarning(u"^cannot list /e\a: "_s);
        list().insertPaths({ link, u"/e\a"_s, folder, u"/b"_s, u"/e/"_s, u"/e"_s }, 1);
        QCOMPARE(rows(), u"/a ~/Apps /e /b /c /d|1 2"_s);
        // What is listed leaves the selection, too.
        list().insertPaths({ link, u"~/Apps"_s }, 0);
        QCOMPARE(rows(), u"/a ~/Apps /e /b /c /d|1 2"_s);
        list().insertPaths({ u"/f"_s }, 99);
        list().insertPaths({ u"/g"_s }, -99);
        QCOMPARE(rows(), u"/g /a ~/Apps /e /b /c /d /f|0"_s);
    }

    void dragsWithinTheTable()
    {
        QCOMPARE(dragged({ 0 })->urls(), { QUrl(u"file:///a"_s) });
        QVERIFY(!dragged({ 0, 1 })->hasUrls());
        const OTArrayController::Drop third { Qt::MoveAction, 3 }, last { Qt::CopyAction, 4 };
        QCOMPARE(list().validateDrop(Origin::ThisTable, {}, 2), third);
        QCOMPARE(list().validateDrop(Origin::ThisTable, {}, -2).row, 0);
        for (const int row : { 3, 4, 99 }) {
            QCOMPARE(list().validateDrop(Origin::ThisTable, Qt::AltModifier, row), last);
            QCOMPARE(list().validateDrop(Origin::Elsewhere, {}, row), last);
        }
        QVERIFY(list().acceptDrop(*dragged({ 0 }), Origin::ThisTable, {}, third.row));
        QCOMPARE(rows(), u"/b /c /a /d|2"_s);
        QVERIFY(list().acceptDrop(*dragged({ 0, 3 }), Origin::ThisTable, Qt::AltModifier, 1));
        QCOMPARE(rows(), u"/b /b /d /c /a /d|1 2"_s);
    }

    void moves_keepTheOrderOfMovedAndOfOthers()
    {
        QRandomGenerator random(7);
        for (int round = 0; round < 500; ++round) {
            const int count = random.bounded(1, 9);
            const int target = random.bounded(-1, count + 2);
            QStringList moved, before, after;
            std::set<int> indexes;
            for (int i = 0; i < count; ++i) {
                const bool isMoved = i == round % count || random.bounded(2);
                (isMoved ? moved : i < target ? before : after).append(u"/%1"_s.arg(i));
                indexes.insert(isMoved ? i : round % count);
            }
            setRows(u"/0 /1 /2 /3 /4 /5 /6 /7"_s.left(3 * count - 1));
            QVERIFY(list().acceptDrop(*dragged(indexes), Origin::ThisTable, {}, target));
            QCOMPARE(rows().section(u'|', 0, 0), (before + moved + after).join(u' '));
            QCOMPARE(list().selection().selectedIndexes().value(0).row(), before.size());
        }
    }

    void dropsFromElsewhere_takeFoldersAndApplications()
    {
        _tree->addLink(u"alias"_s, _tree->addFolder(u"x"_s));
        QStringList many { _tree->add(u"file"_s, {}), _tree->add(u"real/one.app"_s, {}) };
        for (const QString &name : { u"hidden"_s, u"classic.app"_s, u"x.framework"_s, u"x.pkg"_s,
                 u"alias"_s, u"alias/"_s, u"file"_s }) {
            QVERIFY2(!drop({ _tree->addFolder(name) }, { 0, 0 }), qUtf8Printable(name));
        }
        for (int i = 0; i < 999; ++i) {
            many.append(_tree->addFolder(u"many/%1"_s.arg(i)));
        }
        const QPoint first = _view->visualRect(list().index(0)).center();
        const QSignalSpy changes(_defaults.get(), &UserDefaults::changed);
        QVERIFY(drop(many, first) && drop(many, first));
        const QString all = u"~/one.app "_s + many.mid(2).join(u' ');
        QVERIFY(rows().startsWith(u"/a "_s + all + u" /b /c /d|1 2 3 "_s));
        QCOMPARE(list().selection().selectedIndexes().size(), 1000);
        QCOMPARE(changes.size(), 1);
        QVERIFY(drop({ _tree->addFolder(u"real/top"_s) }, { 0, 0 }));
        QVERIFY(drop({ _tree->addFolder(u"real/end"_s) }, { 0, 1 << 20 }));
        QCOMPARE(rows(), u"~/top /a "_s + all + u" /b /c /d ~/end|1005"_s);
    }

    void dragsThatHoldNoRows_areRefused()
    {
        const QByteArray xml = PropertyList::toXml(QVariantList { QVariantMap {}, 7, u"x"_s, -1 });
        for (const QByteArray &bytes : { QByteArray(), QByteArray("\0\xff<", 3), xml }) {
            QMimeData data;
            for (const QString &type : list().mimeTypes()) {
                data.setData(type, bytes);
            }
            for (const Qt::KeyboardModifier key : { Qt::NoModifier, Qt::AltModifier }) {
                QVERIFY(!list().acceptDrop(data, Origin::ThisTable, key, 0));
                QVERIFY(!list().acceptDrop(data, Origin::Elsewhere, key, 0));
            }
        }
        const auto old = dragged({ 0 });
        setRows(u"/changed /a"_s);
        QVERIFY(!list().acceptDrop(*old, Origin::ThisTable, {}, 2));
    }

    void thePreference_losesNothing()
    {
        const QVariantMap known { { u"path"_s, u"/a"_s }, { u"depth"_s, 2LL } };
        const QVariantMap pathless { { u"path"_s, 3LL } };
        _defaults->setObject(Key, QVariantList { u"text"_s, known, pathless });
        list().insertPaths({ u"/b"_s }, 0);
        QVERIFY(list().acceptDrop(*dragged({ 0 }), Origin::ThisTable, {}, 2));
        QCOMPARE(rows(), u"/a /b|1"_s);
        list().removeSelected();
        QCOMPARE(_defaults->arrayForKey(Key), QVariantList({ u"text"_s, known, pathless }));
        // Changed elsewhere: what remains stays selected.
        _defaults->setObject(Key, QVariantList { QVariantMap { { u"path"_s, u"/x"_s } }, known });
        QCOMPARE(rows(), u"/x /a|1"_s);
    }

    void keysAndButtons()
    {
        const QList<QToolButton *> buttons = _table->findChildren<QToolButton *>();
        QVERIFY(!buttons[0]->accessibleName().isEmpty() && !buttons[1]->accessibleName().isEmpty());
        QVERIFY(!buttons[1]->isEnabled());
        list().selection().select(
            { list().index(1), list().index(2) }, QItemSelectionModel::ClearAndSelect);
        QTest::keyClick(_view, Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(rows(), u"/b /c /a /d|0 1"_s);
        QTest::keyClick(_view, Qt::Key_Up, Qt::AltModifier);
        QTest::keyClick(_view, Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(rows(), u"/a /b /c /d|1 2"_s);
        QTest::keyClick(_view, Qt::Key_Delete);
        QCOMPARE(rows(), u"/a /d|1"_s);
        buttons[1]->click();
        QCOMPARE(rows(), u"/a|0"_s);
        _tree->addFolder(u"real/in/one"_s);
        _tree->addFolder(u"real/in/two"_s);
        for (const Qt::Key press : { Qt::Key_Insert, Qt::Key_Plus }) {
            QTest::keyClick(_view, press);
            auto *const panel = _table->findChild<QFileDialog *>();
            QVERIFY(panel && panel->windowModality() == Qt::WindowModal);
            panel->setDirectory(_tree->path(u"real/in"_s));
            auto *const folders = panel->findChild<QAbstractItemView *>(u"listView"_s);
            QTRY_COMPARE(folders->model()->rowCount(folders->rootIndex()), 2);
            folders->selectAll();
            panel->findChild<QPushButton *>()->click();
            QCOMPARE(rows(), u"/a ~/in/one ~/in/two|1 2"_s);
            QTRY_VERIFY(!_table->findChild<QFileDialog *>());
        }
    }

    void absentFolders_areDimmed()
    {
        setRows(u"~/there"_s);
        const auto look = [this] { return _view->grab().toImage(); };
        const auto tip = [this] { return list().index(0).data(Qt::ToolTipRole).toString(); };
        const QImage dimmed = look();
        QVERIFY(!tip().isEmpty());
        _tree->addFolder(u"real/there"_s);
        QVERIFY(tip().isEmpty() && look() != dimmed);
    }

private:
    inline static const QString Key = u"searchDirectories"_s;
    OTArrayController &list() { return _table->controller(); }

    void setRows(const QString &paths)
    {
        QVariantList rows;
        for (const QString &path : paths.split(u' ')) {
            rows.append(QVariantMap { { u"path"_s, path } });
        }
        _defaults->setObject(Key, rows);
    }
    QString rows()
    {
        QStringList paths, selected;
        for (int row = 0; row < list().rowCount(); ++row) {
            paths.append(list().index(row).data().toString());
            if (list().selection().isSelected(list().index(row))) {
                selected.append(QString::number(row));
            }
        }
        return paths.join(u' ') + u'|' + selected.join(u' ');
    }
    std::unique_ptr<QMimeData> dragged(const std::set<int> &indexes)
    {
        QModelIndexList rows;
        for (const int row : indexes) {
            rows.prepend(list().index(row));
        }
        return std::unique_ptr<QMimeData>(list().mimeData(rows));
    }
    // From a file manager, beside something that is no file.
    bool drop(const QStringList &paths, const QPoint &place)
    {
        QList<QUrl> urls { QUrl(u"https://example.org/x"_s) };
        for (const QString &path : paths) {
            urls.append(QUrl::fromLocalFile(path));
        }
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(_view->viewport(), &enter);
        QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(_view->viewport(), &drop);
        return enter.isAccepted() && drop.isAccepted();
    }

    std::unique_ptr<FileTree> _tree;
    FakeItems _items;
    std::unique_ptr<UserDefaults> _defaults;
    std::unique_ptr<ScanFolderTable> _table;
    DirectoriesTable *_view = nullptr;
};

QTEST_MAIN(ScanFolderTableTest)
#include "ScanFolderTableTest.moc"

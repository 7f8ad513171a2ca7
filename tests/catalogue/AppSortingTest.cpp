#include "catalogue/AppSorting.h"

#include "catalogue/BestMatch.h"
#include "catalogue/FakeDesktop.h"
#include "catalogue/OTApp.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

// The two ways in which paths and names are held against one another.
class AppSortingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sort()
    {
        _desktop.fakeItems.displayNames = { { u"/d/z.app"_s, u"Éclair"_s },
            { u"/d/y.app"_s, u"éclair"_s }, { u"/d/x.app"_s, u"Alpha"_s } };
        const QString shown = u"/d/z.app /d/y.app /d/x.app"_s;
        const QString shownSorted = u"/d/x.app /d/z.app /d/y.app"_s;
        const QString folders = u"/Users/adobe.app /Applications/Zoom.app"_s;
        const std::tuple<int, QString, QString> rows[] { { 1, folders, folders },
            { 0, folders, u"/Applications/Zoom.app /Users/adobe.app"_s },
            { 0, u"/b/A /B/b /a/C"_s, u"/a/C /b/A /B/b"_s }, { 1, shown, shownSorted },
            { 77, shown, shownSorted }, { -1, shown, shownSorted } };
        for (const auto &[preference, paths, sorted] : rows) {
            AppList list = apps(paths);
            sortApps(list, sortOrderFromPreference(preference));
            QCOMPARE(pathsFromApps(list).join(u' '), sorted);
        }
    }

    void bestMatch()
    {
        const std::pair<QString, int> rows[] { { u"/A/Editor.app /me/Tools/Editor.app"_s, 1 },
            { u"/a/Editor.app /b/Editor.app"_s, 0 }, { {}, -1 },
            { u"/Tools/Editors.app /editor.app"_s, -1 }, { u"/x/Y.app /Editor.AppImage"_s, 1 },
            { u"/Tools/Editor.a /Tools/Editor.b"_s, -1 }, { u"/Editor.app /Editor.a"_s, 0 } };
        const AppRef lost = apps(u"/Applications/Tools/Editor.app"_s).first();
        for (const auto &[candidates, best] : rows) {
            const AppList list = apps(candidates);
            const AppRef expected = best < 0 ? nullptr : list[best];
            QCOMPARE(bestMatchForApp(lost, AppArray(list)), expected);
            const BunchList bunches { list.mid(0, 1), list.mid(1) };
            QCOMPARE(bestMatchForApp(lost, AppArray(bunches)), expected);
            QCOMPARE(bestMatchForApp(nullptr, AppArray(list)), AppRef());
        }
    }

private:
    AppList apps(const QString &paths)
    {
        AppList list;
        for (const QString &path : paths.split(u' ', Qt::SkipEmptyParts)) {
            list.append(std::make_shared<OTApp>(path, _desktop));
        }
        return list;
    }

    FakeDesktop _desktop;
};

QTEST_GUILESS_MAIN(AppSortingTest)
#include "AppSortingTest.moc"

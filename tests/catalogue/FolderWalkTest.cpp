#include "catalogue/files/FolderWalk.h"

#include "FakeDesktop.h"
#include "TestCase.h"

#include <sys/stat.h>
#include <unistd.h>

class FolderWalkTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestCase::init();
        _tree = std::make_unique<FileTree>();
    }

    void walk()
    {
        for (const char *file : { "a.app/inside.app", "t/b.app", "t/u/c.app", "t/u/v/d.app",
                 "t/u/v/w/e.app", "x.framework/no.app", "x.pkg/no.app", "hidden.app",
                 "hidden/no.app", "classic.app", "text" }) {
            _tree->add(u"r/"_s + QLatin1String(file), {});
        }
        _tree->addLink(u"r/linked"_s, _tree->path(u"r/t"_s));
        _tree->addLink(u"r/linked.app"_s, _tree->path(u"r/a.app"_s));
        _tree->addLink(u"r/t/loop"_s, _tree->path(u"r"_s));
        _tree->addLink(u"r/nowhere"_s, u"/no/such/thing"_s);
        const QString four = u"r/a.app r/t/b.app r/t/u/c.app r/t/u/v/d.app"_s;
        QCOMPARE(found({ u"r"_s }, 1), u"r/a.app"_s);
        QCOMPARE(found({ u"r"_s }, 4), four);
        QCOMPARE(found({ u"r"_s }, 250), four + u" r/t/u/v/w/e.app"_s);
        QCOMPARE(found({ u"r"_s, u"r/t/u"_s }, 3),
            u"r/a.app r/t/b.app | r/t/u/c.app r/t/u/v/d.app r/t/u/v/w/e.app"_s);
    }

    void rootsThatAreNone()
    {
        _tree->addLink(u"circle"_s, _tree->path(u"circle"_s));
        _tree->add(u"real/a.app"_s, {});
        for (const auto &[root, line] :
            { std::pair(u"absent"_s, u""_s), std::pair(u"real/a.app"_s, u"not a folder"_s),
                std::pair(u"circle"_s, u"leads nowhere"_s) }) {
            if (!line.isEmpty()) {
                expectWarning(u"^cannot scan %1: .*%2"_s.arg(
                    QRegularExpression::escape(_tree->path(root)), line));
            }
            QCOMPARE(found({ root }, 4), QString());
        }
    }

    // One line each, up to a bound; what is no application is nothing to tell of.
    void namesThatNoListCanHold_areRefused()
    {
        QByteArrayList names { "line\n.app", "text\a", "latin\xe9.app" };
        for (int i = 0; i < 30; ++i) {
            names.append("bell\a" + QByteArray::number(i) + ".app");
        }
        const QByteArray folder = QFile::encodeName(_tree->addFolder(u"r/t"_s)) + '/';
        for (const QByteArray &name : std::as_const(names)) {
            QCOMPARE(::mknod((folder + name).constData(), S_IFREG | 0600, 0), 0);
        }
        for (int i = 0; i < 21; ++i) {
            expectWarning(u"^cannot list .*/r/t/(bell\a|latin\uFFFD).*: "_s);
        }
        QCOMPARE(found({ u"r"_s }, 4), u"r/t/line\n.app"_s);
        // Qt cannot remove it with its folder.
        QCOMPARE(::unlink((folder + names[2]).constData()), 0);
    }

private:
    // What one walk finds below each of the roots, relative to the tree and sorted.
    QString found(const QStringList &roots, qint64 depth)
    {
        QStringList full;
        for (const QString &root : roots) {
            full.append(_tree->path(root));
        }
        FolderWalk walk(_items, full, depth);
        QStringList bunches;
        for (const QString &root : std::as_const(full)) {
            QStringList paths = walk.pathsUnder(root);
            paths.replaceInStrings(_tree->path() + u'/', QString());
            paths.sort();
            bunches.append(paths.join(u' '));
        }
        return bunches.join(u" | "_s);
    }

    FakeItems _items;
    std::unique_ptr<FileTree> _tree;
};

QTEST_GUILESS_MAIN(FolderWalkTest)
#include "FolderWalkTest.moc"

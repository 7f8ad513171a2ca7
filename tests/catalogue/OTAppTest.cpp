#include "catalogue/OTApp.h"

#include "FakeDesktop.h"
#include "TestCase.h"
#include "support/NotificationCenter.h"

#include <QMimeData>
#include <QThread>

#include <cmath>
#include <limits>

class OTAppTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestCase::init();
        _center = std::make_unique<NotificationCenter>();
        NotificationCenter::setDefaultCenter(_center.get());
        _desktop = std::make_unique<FakeDesktop>();
    }

    void path_isStandardized()
    {
        const QStringList rows[] { { u"/A/../A/.//Mail.app/"_s, u"/A/Mail.app"_s, u"Mail"_s },
            { u"~/b.app"_s, QDir::homePath() + u"/b.app"_s, u"b"_s },
            { u"/org.a.b.desktop"_s, u"/org.a.b.desktop"_s, u"org.a.b"_s },
            { u"/a b#c?d%20.app"_s, u"/a b#c?d%20.app"_s, u"a b#c?d%20"_s }, {} };
        for (const QStringList &row : rows) {
            const AppRef app = made(row.value(0));
            QCOMPARE(app->path(), row.value(1));
            QCOMPARE(app->name(), row.value(2));
            QCOMPARE(app->url().toLocalFile(), app->path());
            QVERIFY(!app->isPathValid() && !app->icon().isNull());
        }
    }

    void encoding()
    {
        const AppRef app = made(u"/Ä/b.app"_s);
        const QByteArray good = app->encoded();
        const AppRef decoded = OTApp::decoded(good, *_desktop);
        QVERIFY(decoded && *decoded == *app);
        QVERIFY(decoded->launchWithPasteboard(nullptr));
        QCOMPARE(_desktop->requests.take(), QStringList(u"/Ä/b.app"_s));
        for (const QByteArray &bytes : { QByteArray(), good.chopped(1), good + 'x', good.mid(4),
                 QByteArray(good).replace('t', 'x'), QByteArray(64, char(0xFE)) }) {
            QCOMPARE(OTApp::decoded(bytes, *_desktop), AppRef());
        }
    }

    void wordsAndLetters_followTheShownName()
    {
        const AppRef app = made(_desktop->tree.add(u"uninstall.app"_s, {}));
        const auto excluded = [&](const QStringList &shown) {
            int count = 0;
            for (const QString &name : shown) {
                _desktop->fakeItems.displayNames = { { app->path(), name } };
                app->refreshNameAndPath();
                count += app->containsExcludedKeywords() ? 1 : 0;
            }
            return count;
        };
        QCOMPARE(excluded({ u"Uninstall Foo"_s, u"foo uNiNSTALLER"_s, u"Désinstaller Foo"_s,
                     u"Foo (Safe Mode)"_s, u"Avahi SSH Server Browser"_s, u"Деинсталлятор"_s }),
            6);
        QCOMPARE(excluded({ u"Installer"_s, u"Autostart"_s, u"Profile Handler"_s,
                     u"Phoronix Test Suite"_s, u"Установка и удаление программ"_s,
                     u"Thread Messenger"_s }),
            0);
        QVERIFY(app->isPathValid());
        QCOMPARE(app->displayName(), u"Thread Messenger"_s);
        QVERIFY(app->containsLetter('t') && !app->containsLetter('T'));
        QVERIFY(!app->containsLetter('u') && !app->containsLetter(0));
    }

    void launch()
    {
        const AppRef app = made(u"/a b.app"_s);
        QStringList announced;
        connect(_center.get(), &NotificationCenter::applicationOpenUntitledFile, this, [&] {
            announced += QThread::currentThread() == thread() ? u"panel"_s : u"wrong thread"_s;
        });
        connect(_center.get(), &NotificationCenter::N_AppIsMissing, this,
            [&](const AppRef &gone) { announced += gone == app ? u"missing"_s : u"?"_s; });
        connect(_center.get(), &NotificationCenter::N_UserMessage, this, [&](const QString &text) {
            announced += text.startsWith(u"a b cannot be started"_s) ? u"told"_s : text;
        });
        const std::pair<LaunchStatus, QString> rows[] { { LaunchStatus::Launched, {} },
            { LaunchStatus::CannotExecute, u"panel told"_s },
            { LaunchStatus::FileNotFound, u"panel missing told"_s } };
        for (const auto &[status, expected] : rows) {
            _desktop->launchStatus = status;
            bool isLaunched = false;
            const auto launch = [&, status = status] {
                if (status != LaunchStatus::Launched) {
                    expectWarning(
                        u"LSOpenCFURLRef\\(\\) returned err: %1 for URL: file:///a b.app"_s.arg(
                            int(status)));
                }
                isLaunched = app->launchWithPasteboard(nullptr);
            };
            launch();
            QCOMPARE(isLaunched, status == LaunchStatus::Launched);
            QCOMPARE(std::exchange(announced, {}).join(u' '), expected);
            // On another thread, the announcements come on this one.
            const std::unique_ptr<QThread> worker(QThread::create(launch));
            worker->start();
            QVERIFY(worker->wait() && announced.isEmpty());
            QCoreApplication::processEvents();
            QCOMPARE(std::exchange(announced, {}).join(u' '), expected);
        }
    }

    void documents_areFilesElseOneAddress()
    {
        const std::pair<QString, QString> rows[] { { {}, {} },
            { u"file:///b file:///a/../c"_s, u"file:///b file:///c"_s },
            { u"file:///x//d%E4"_s, u"file:///x/d%E4"_s }, // not UTF-8
            { u"https://b.org https://a.org"_s, u"https://b.org"_s },
            { u"https://b.org file:///a"_s, u"file:///a"_s } };
        for (const auto &[urls, launched] : rows) {
            QMimeData pasteboard;
            pasteboard.setText(u"/not/a/document"_s);
            pasteboard.setUrls(QUrl::fromStringList(urls.split(u' ', Qt::SkipEmptyParts)));
            QVERIFY(made(u"/x.app"_s)->launchWithPasteboard(&pasteboard));
            QCOMPARE(_desktop->requests.take().value(0), u"/x.app <- "_s + launched);
        }
        const AppRef used = made(u"/x.app"_s);
        used->launchWithPasteboard(nullptr);
        QTRY_VERIFY(used->attributeForKey(u"kMDItemLastUsedDate"_s).toDateTime().isValid());
    }

    void icon_isLoadedAgainOnlyWhenTheBundleOrTheSizeIsAnother()
    {
        const QString path = _desktop->tree.add(u"a.app"_s, {});
        expectWarning(u"^/nowhere/b.app: No such file"_s);
        made(u"/nowhere/b.app"_s)->loadIconWithParameters(sized(16));
        const AppRef app = made(path);
        QSignalSpy changes(_center.get(), &NotificationCenter::N_AppIconChanged);
        qsizetype loads = 0;
        const auto pass = [&](int size) {
            app->setIconParameters(sized(size));
            const bool isLoaded = wait() && _desktop->fakeIcons.asked().size() > loads;
            loads = _desktop->fakeIcons.asked().size();
            return isLoaded;
        };
        QVERIFY(pass(16));
        QCOMPARE(app->icon().size(), QSize(16, 16));
        QVERIFY(!pass(16));
        QVERIFY(pass(256));
        QCOMPARE(app->icon().size(), QSize(128, 128));
        QVERIFY(!pass(256));
        _desktop->tree.add(u"a.app"_s, "touched");
        QVERIFY(!pass(256));
        QVERIFY(QFile::rename(_desktop->tree.add(u"b.app"_s, {}), path + u"2"_s));
        QVERIFY(QFile::remove(path) && QFile::rename(path + u"2"_s, path));
        QVERIFY(pass(256));
        // An icon is announced when it is there and when its colours are, if it is another one.
        QCOMPARE(changes.count(), 4);
        _desktop->fakeIcons.colors = { { u"a"_s, Qt::blue } };
        app->forgetIconSource();
        QVERIFY(pass(256));
        QCOMPARE(changes.count(), 6);
    }

    void icons_thatArriveTooLate_areDropped()
    {
        AppRef dying = made(_desktop->tree.add(u"a.app"_s, {}));
        const AppRef changing = made(_desktop->tree.add(u"b.app"_s, {}));
        const AppRef vanishing = made(_desktop->tree.add(u"c.app"_s, {}));
        QSignalSpy changes(_center.get(), &NotificationCenter::N_AppIconChanged);
        for (const AppRef &app : { dying, changing, vanishing }) {
            app->setIconParameters(sized(16));
        }
        changing->setIconParameters(sized(24));
        QFile::remove(vanishing->path());
        vanishing->setIconParameters(sized(16));
        dying.reset();
        QVERIFY(wait());
        QCOMPARE(changing->icon().width(), 24);
        QCOMPARE(changes.count(), 3);
    }

    void colors_followTheIconAndTheParameters()
    {
        const AppRef app = made(u"/a.app"_s);
        IconParameters parameters = colored(0.14F);
        const auto key = [&] {
            app->setColorSortParameters(parameters);
            return app->colorSortValue();
        };
        key();
        app->setIcon(redAndBlue());
        const double red = 12.17439925928580830 / 360;
        QVERIFY(isNear(app->colorSortValue(), red));
        QCOMPARE(app->sortedColors().size(), 3);
        parameters.wrapHue = 90;
        QVERIFY(isNear(key(), 0.75 + red));
        // Both are grey now, so they are one colour, which only a measurement tells.
        parameters.minSaturation = 2;
        QVERIFY(key() > 1 && key() < 1.5);
        QCOMPARE(app->sortedColors().size(), 2);
        parameters.graysBySecondaryColor = true;
        QVERIFY(key() > 1.5 && key() < 2);
        app->setIcon({});
        QVERIFY(app->colorSortValue() == 10.0 && app->sortedColors().isEmpty());
        QVERIFY(app->spectrumIcon().isNull());

        QImage ghost(4, 4, QImage::Format_ARGB32_Premultiplied);
        ghost.fill(Qt::transparent);
        expectWarning(u"^No colors passed to pick & sort method for app: a$"_s);
        app->setIcon(ghost);
        QCOMPARE(app->colorSortValue(), 10.0);
        // The spectrum has the size asked for.
        app->setIcon(redAndBlue());
        parameters.maximumIconSize = 48;
        app->setColorSortParameters(parameters);
        QCOMPARE(app->spectrumIcon().width(), 48);
    }

    // While the icon is loaded, and while the colours are measured.
    void colors_honourWhatChangedMeanwhile()
    {
        const float nan = std::numeric_limits<float>::quiet_NaN();
        for (const bool isLoaded : { false, true }) {
            init();
            const AppRef app = made(_desktop->tree.add(u"a.app"_s, {}));
            if (isLoaded) {
                app->setIconParameters(colored(0.14F));
                QVERIFY(wait() && app->colorSortValue() < 1);
            }
            for (const float minSaturation : { 0.2F, nan, 3.0F }) {
                app->setIconParameters(colored(minSaturation));
            }
            // At most one measurement is on its way, and the entry has not changed yet.
            QCOMPARE(IconLoader::sharedIconLoader().pendingCount(), 1);
            QCOMPARE(app->colorSortValue() < 1, isLoaded);
            QVERIFY(wait() && app->colorSortValue() > 1 && app->colorSortValue() < 1.5);
            QCOMPARE(_desktop->fakeIcons.asked().size(), 1);
        }
    }

private:
    AppRef made(const QString &path) { return std::make_shared<OTApp>(path, *_desktop); }
    static IconParameters sized(int size) { return { .maximumIconSize = size }; }
    static IconParameters colored(float minSaturation)
    {
        return { .maximumIconSize = 16, .grayThreshold = 0.05F, .minSaturation = minSaturation };
    }
    // Half of it each.
    static QImage redAndBlue()
    {
        QImage icon(16, 16, QImage::Format_ARGB32_Premultiplied);
        icon.fill(Qt::blue);
        for (int i = 0; i < 128; ++i) {
            icon.setPixelColor(i % 16, i / 16, Qt::red);
        }
        return icon;
    }
    static bool isNear(double value, double expected) { return std::abs(value - expected) < 1e-13; }
    static bool wait() // until no icon is on its way
    {
        return QTest::qWaitFor([] { return IconLoader::sharedIconLoader().pendingCount() == 0; });
    }

    std::unique_ptr<NotificationCenter> _center;
    std::unique_ptr<FakeDesktop> _desktop;
};

QTEST_GUILESS_MAIN(OTAppTest)
#include "OTAppTest.moc"

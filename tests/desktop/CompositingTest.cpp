// Compositing on a display without a manager for it, which the test then stands in for.

#include "platform/freedesktop/FreedesktopDesktop.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

class CompositingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itIsActiveWhileSomebodyManagesIt()
    {
        QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
        const std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop();
        const Compositing &compositing = desktop->compositing();
        QSignalSpy changed(&compositing, &Compositing::changed);
        QVERIFY(!compositing.isActive());
        for (int i = 1; i <= 2; ++i) {
            manage();
            QTRY_VERIFY(compositing.isActive());
            // Another one takes over.
            xcb_connection_t *const first = _manager;
            manage();
            xcb_disconnect(first);
            // Right from the start, before anything can have been told.
            QVERIFY(makeFreedesktopDesktop()->compositing().isActive());
            xcb_disconnect(_manager);
            QTRY_VERIFY(!compositing.isActive());
            QCOMPARE(changed.count(), 2 * i);
        }
    }

private:
    void manage()
    {
        int screen = 0;
        _manager = xcb_connect(nullptr, &screen);
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(_manager)).data->root;
        const QByteArray name = "_NET_WM_CM_S" + QByteArray::number(screen);
        xcb_intern_atom_reply_t *const atom = xcb_intern_atom_reply(_manager,
            xcb_intern_atom(_manager, 0, quint16(name.size()), name.constData()), nullptr);
        const xcb_window_t window = xcb_generate_id(_manager);
        xcb_create_window(_manager, XCB_COPY_FROM_PARENT, window, root, 0, 0, 1, 1, 0,
            XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        const xcb_void_cookie_t owned =
            xcb_set_selection_owner_checked(_manager, window, atom->atom, XCB_CURRENT_TIME);
        std::free(atom);
        QCOMPARE(xcb_request_check(_manager, owned), nullptr);
    }

    xcb_connection_t *_manager = nullptr;
};

QTEST_MAIN(CompositingTest)

#include "CompositingTest.moc"

#include "platform/freedesktop/windows/WindowTraits.h"

#include <QSysInfo>

#include <algorithm>
#include <xcb/res.h>

namespace {

// In units of four bytes: no class is longer, and a title of a megabyte is never read.
constexpr quint32 longestProperty = 1024;

// The properties that are read, one after the other, of each window.
constexpr std::array<XConnection::Atom, 10> properties {
    XConnection::WmClass,
    XConnection::GtkApplicationId,
    XConnection::KdeNetWmDesktopFile,
    XConnection::NetStartupId,
    XConnection::WmTransientFor,
    XConnection::NetWmPid,
    XConnection::WmClientMachine,
    XConnection::NetWmWindowType,
    XConnection::NetWmState,
    XConnection::WmProtocols,
};

// Up to the first NUL.
QString textOf(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes.constData());
}

// The first type that is known here counts. A window without any is a dialog when it belongs to
// another one, else ordinary.
bool isOrdinaryType(const XConnection &connection, const QList<quint32> &types)
{
    static constexpr std::array<XConnection::Atom, 5> known { XConnection::NetWmWindowTypeNormal,
        XConnection::NetWmWindowTypeDialog, XConnection::NetWmWindowTypeUtility,
        XConnection::NetWmWindowTypeDesktop, XConnection::NetWmWindowTypeDock };
    const auto atoms = [&](quint32 type) {
        return std::find_if(known.begin(), known.end(),
            [&](XConnection::Atom name) { return connection.atom(name) == type; });
    };
    for (const quint32 type : types) {
        if (const auto *const found = atoms(type); found != known.end()) {
            return *found == XConnection::NetWmWindowTypeNormal
                || *found == XConnection::NetWmWindowTypeDialog
                || *found == XConnection::NetWmWindowTypeUtility;
        }
    }
    return true;
}

// With or without its domain, a machine is the same.
bool isOtherMachine(const QString &name)
{
    const QString here = QSysInfo::machineHostName();
    return !name.isEmpty() && name != here && !name.startsWith(here + QLatin1Char('.'))
        && !here.startsWith(name + QLatin1Char('.'));
}

void takeProperty(WindowTraits &traits, const XConnection &connection, XConnection::Atom name,
    const XPropertyReply &reply)
{
    switch (name) {
    case XConnection::WmClass: {
        const QByteArray bytes = bytesIn(reply);
        traits.instanceName = textOf(bytes);
        traits.className = textOf(bytes.mid(bytes.indexOf('\0') + 1));
        break;
    }
    case XConnection::GtkApplicationId:
        traits.gtkApplicationId = textOf(bytesIn(reply));
        break;
    case XConnection::KdeNetWmDesktopFile:
        traits.kdeDesktopFile = textOf(bytesIn(reply));
        break;
    case XConnection::NetStartupId:
        traits.startupId = textOf(bytesIn(reply));
        break;
    case XConnection::WmTransientFor:
        traits.transientFor = numbersIn(reply).value(0, XCB_WINDOW_NONE);
        break;
    case XConnection::NetWmPid:
        traits.processId = numbersIn(reply).value(0);
        break;
    case XConnection::WmClientMachine:
        traits.isElsewhere = isOtherMachine(textOf(bytesIn(reply)));
        break;
    case XConnection::NetWmWindowType:
        traits.isOrdinary = isOrdinaryType(connection, numbersIn(reply));
        break;
    case XConnection::NetWmState: {
        const QList<quint32> states = numbersIn(reply);
        traits.isHidden = states.contains(connection.atom(XConnection::NetWmStateHidden));
        const bool isSkipped = states.contains(connection.atom(XConnection::NetWmStateSkipTaskbar));
        traits.isOrdinary = traits.isOrdinary && !isSkipped;
        break;
    }
    case XConnection::WmProtocols:
        traits.isClosable = numbersIn(reply).contains(connection.atom(XConnection::WmDeleteWindow));
        break;
    default:
        break;
    }
}

// The server knows the process at the other end of the socket, in its own count; 0 when it does
// not.
qint64 processIn(const XReply<xcb_res_query_client_ids_reply_t> &reply)
{
    if (!reply) {
        return 0;
    }
    xcb_res_client_id_value_iterator_t ids = xcb_res_query_client_ids_ids_iterator(reply.get());
    for (; ids.rem > 0; xcb_res_client_id_value_next(&ids)) {
        const bool isProcess = (ids.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0;
        if (isProcess && xcb_res_client_id_value_value_length(ids.data) > 0) {
            return *xcb_res_client_id_value_value(ids.data);
        }
    }
    return 0;
}

bool hasClientIds(xcb_connection_t *connection)
{
    const xcb_query_extension_reply_t *const extension =
        xcb_get_extension_data(connection, &xcb_res_id);
    if (extension == nullptr || extension->present == 0) {
        return false;
    }
    const XReply<xcb_res_query_version_reply_t> version(
        xcb_res_query_version_reply(connection, xcb_res_query_version(connection, 1, 2), nullptr));
    return version && (version->server_major > 1 || version->server_minor >= 2);
}

} // namespace

// Where the server has a word on the process, the window's does not count: a program in a sandbox
// counts its processes in another way, and any program may claim any number.
QList<WindowTraits> WindowTraitsReader::read(
    XConnection &connection, const QList<xcb_window_t> &windows)
{
    xcb_connection_t *const server = connection.get();
    const bool asksForProcesses = hasClientIds(server);
    QList<std::array<xcb_get_property_cookie_t, properties.size()>> asked(windows.size());
    QList<xcb_res_query_client_ids_cookie_t> processesAsked;
    for (qsizetype i = 0; i < windows.size(); ++i) {
        for (size_t k = 0; k < properties.size(); ++k) {
            asked[i][k] = xcb_get_property(server, 0, windows[i], connection.atom(properties[k]),
                XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty);
        }
        if (asksForProcesses) {
            const xcb_res_client_id_spec_t spec { windows[i],
                XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID };
            processesAsked.append(xcb_res_query_client_ids(server, 1, &spec));
        }
    }
    QList<WindowTraits> all;
    for (qsizetype i = 0; i < windows.size(); ++i) {
        WindowTraits traits;
        traits.window = windows[i];
        bool isThere = true;
        for (size_t k = 0; k < properties.size(); ++k) {
            const XPropertyReply reply(xcb_get_property_reply(server, asked[i][k], nullptr));
            isThere = isThere && reply != nullptr;
            takeProperty(traits, connection, properties[k], reply);
        }
        if (asksForProcesses) {
            traits.processId = processIn(XReply<xcb_res_query_client_ids_reply_t>(
                xcb_res_query_client_ids_reply(server, processesAsked[i], nullptr)));
        }
        if (traits.isElsewhere) {
            traits.processId = 0;
        }
        if (isThere) {
            all.append(traits);
        }
    }
    return all;
}

bool WindowTraitsReader::isRead(const XConnection &connection, xcb_atom_t property)
{
    return std::any_of(properties.begin(), properties.end(),
        [&](XConnection::Atom name) { return connection.atom(name) == property; });
}

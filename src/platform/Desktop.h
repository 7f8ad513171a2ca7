// A desktop: everything the program asks of the system it runs on, one small interface an ability.
//
// This base class is the desktop that offers nothing, and it is complete: no caller asks
// whether an ability is there. An adapter overrides what its system has. The interfaces live as
// long as the desktop, and the desktop outlives whatever it was handed to.

#pragma once

#include "platform/Account.h"
#include "platform/ApplicationActions.h"
#include "platform/ApplicationControl.h"
#include "platform/Compositing.h"
#include "platform/Documents.h"
#include "platform/DragWatch.h"
#include "platform/HotKey.h"
#include "platform/HotSpot.h"
#include "platform/IconProvider.h"
#include "platform/Items.h"
#include "platform/Launcher.h"
#include "platform/LiveQuery.h"
#include "platform/LoginItems.h"
#include "platform/Memory.h"
#include "platform/ModifierTap.h"
#include "platform/Motion.h"
#include "platform/OwnWindows.h"
#include "platform/PageRenderer.h"
#include "platform/PinnedApplications.h"
#include "platform/RunningApplications.h"
#include "platform/SearchPaths.h"
#include "platform/StatusItem.h"
#include "platform/TaskBarProgress.h"
#include "platform/WebClient.h"

class Desktop
{
public:
    Desktop() = default;
    virtual ~Desktop() = default;
    Q_DISABLE_COPY_MOVE(Desktop)

    virtual const SearchPaths &searchPaths() const { return _nowhere; }
    virtual Items &items() { return _plainItems; }
    virtual IconProvider &icons() { return _noIcons; }
    virtual Launcher &launcher() { return _noLauncher; }
    virtual const Documents &documents() const { return _noDocuments; }
    virtual RunningApplications &runningApplications() { return _nothingRuns; }
    virtual ApplicationControl &applicationControl() { return _noControl; }
    virtual ApplicationActions &applicationActions() { return _noActions; }
    virtual const PinnedApplications &pinnedApplications() const { return _nothingPinned; }
    virtual const PageRenderer &pageRenderer() const { return _noPages; }
    virtual const WebClient &webClient() const { return _noServers; }
    virtual const Account &account() const { return _account; }
    virtual const Compositing &compositing() const { return _noCompositing; }
    virtual OwnWindows &ownWindows() { return _ownWindows; }
    virtual const Motion &motion() const { return _motion; }
    virtual TaskBarProgress &taskBarProgress() { return _noProgress; }
    virtual LiveQuery &liveQuery() { return _noLiveQuery; }
    virtual LoginItems &loginItems() { return _noLoginItems; }
    virtual Memory &memory() { return _memory; }
    virtual HotKey &hotKey() { return _noHotKey; }
    virtual ModifierTap &modifierTap() { return _noTap; }
    virtual HotSpot &hotSpot() { return _noHotSpot; }
    virtual DragWatch &dragWatch() { return _noDragWatch; }
    virtual StatusItem &statusItem() { return _noStatusItem; }

private:
    SearchPaths _nowhere;
    Items _plainItems;
    IconProvider _noIcons;
    Launcher _noLauncher;
    Documents _noDocuments;
    RunningApplications _nothingRuns;
    ApplicationControl _noControl;
    ApplicationActions _noActions;
    PinnedApplications _nothingPinned;
    PageRenderer _noPages;
    WebClient _noServers;
    Account _account;
    Compositing _noCompositing;
    OwnWindows _ownWindows;
    Motion _motion;
    TaskBarProgress _noProgress;
    LiveQuery _noLiveQuery;
    LoginItems _noLoginItems;
    Memory _memory;
    HotKey _noHotKey;
    ModifierTap _noTap;
    HotSpot _noHotSpot;
    DragWatch _noDragWatch;
    StatusItem _noStatusItem;
};

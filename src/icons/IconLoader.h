// The queue in which icons are loaded and measured: eight at a time, in the order in which they
// were asked for, all that is to be loaded before all that is to be measured.
//
// An operation resolves and decodes one icon on a thread of the queue and hands it to its receiver
// on the main thread; until the receiver has run, that thread waits, so that loading never runs far
// ahead of what is done with the icons, nor takes the processor from the thread that paints. A
// failure is handed over without waiting. What is ready together is handed over in one turn of the
// event loop, but no turn goes on longer than a few milliseconds.
//
// With a store, icons of earlier runs that are still good are handed over at once, while they are
// asked for, so that the first frame shows them. A moment later, when it has been drawn, a thread
// asks for each of them in the usual way, and hands over those that turn out to be others.
//
// The loader is used from the main thread. It knows no applications: a receiver that may die
// captures a weak handle.

#pragma once

#include "icons/IconFetch.h"
#include "icons/IconParameters.h"

#include <QImage>
#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QTimer>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

class IconProvider;
class IconStore;
class QSocketNotifier;

// One icon to load, or to measure.
struct IconLoadOperation
{
    // Called on the main thread: once, and once more with another icon when one that was at hand
    // turns out to be out of date.
    using Receiver = std::function<void(LoadedIcon)>;

    QString filePath;
    // Edge of the icon to load, in pixels.
    int size = 0;
    // The icon to measure; null to load one.
    QImage image;
    IconParameters parameters;
    Receiver receiver;

    // Loads the icon of the bundle at a path.
    IconLoadOperation(
        const QString &path, const IconParameters &iconParameters, Receiver iconReceiver);
    // The same in a size of its own, for a screen of more pixels than points.
    IconLoadOperation(const QString &path, int iconSize, Receiver iconReceiver);
    // Measures an icon.
    IconLoadOperation(
        const QImage &icon, const IconParameters &iconParameters, Receiver iconReceiver);
};

class IconLoader : public QObject
{
    Q_OBJECT

public:
    static constexpr int Width = 8;
    // After the last icon that was at hand, in milliseconds: by then a start has drawn its panel.
    static constexpr int CheckDelay = 500;
    // After the last new icon.
    static constexpr int KeepDelay = 3000;

    explicit IconLoader(QObject *parent = nullptr);
    ~IconLoader() override;

    // The loader that the whole program shares.
    static IconLoader &sharedIconLoader();

    // Icons of earlier runs stand in for those that are asked of this provider, and new ones are
    // kept for later runs. To be called as early as may be: what is at hand is found out on a
    // thread. The provider must live until stopKeeping().
    void keepIcons(const std::shared_ptr<IconStore> &store, const IconProvider &provider);
    // Keeps what is new at once.
    void stopKeeping();

    // To be called while no icon is seen: icons loaded in this run that have been kept since may be
    // exchanged for the kept ones, which take no memory of the program's own.
    void giveUpCopies();
    // The kept icon that is the same; null when there is none.
    QImage kept(const QImage &icon) const;

    // A kept icon drawn smaller or larger, null when that is not kept; and keeping one.
    QImage keptScaled(const QImage &icon, int edge) const;
    void keepScaled(const QImage &icon, const QImage &scaled);

    // Queues an operation, or ends it with an icon that is at hand. The provider must live until
    // the operation has ended or cancelAll() was called.
    void addOperation(IconLoadOperation operation, const IconProvider &provider);

    // Operations whose receiver has not run yet.
    int pendingCount() const { return _pendingCount; }

    // Drops what is queued, waits for the icons that are being decoded, and calls no receiver of
    // either. False when one of them has not ended after a quarter of a second: it goes on, and
    // its provider must live until isBusy() is false.
    bool cancelAll();

    // An icon is being loaded or measured, cancelled or not. The destructor waits until none is.
    bool isBusy() const { return _queue.activeThreadCount() > 0; }

Q_SIGNALS:
    // The last pending operation has been handed over, or some that were at hand are checked.
    void finished();
    // Pictures that are in use may be damaged: all are to be loaded again.
    void iconsLost();
    // Now is the time to ask for kept().
    void copiesSpare();

private:
    struct Delivery
    {
        quint64 ticket = 0;
        LoadedIcon icon;
        IconLoadOperation::Receiver receiver;
    };

    // An icon that was at hand.
    struct Handed
    {
        IconLoadOperation operation;
        const IconProvider *provider = nullptr;
        QImage image;
    };

    // What a thread found to be another icon than the one that was at hand.
    struct Other
    {
        IconLoadOperation::Receiver receiver;
        LoadedIcon icon;
    };
    struct Checked
    {
        std::vector<Other> others;
        quint64 cancellations = 0;
    };

    enum class Handing { Waits, DoesNotWait };

    bool isAtHand(const IconLoadOperation &operation, const IconProvider &provider);
    void checkHanded();
    void check(const std::vector<Handed> &handed, IconStore &store, quint64 cancellations);
    void takeChecked();
    bool isCancelled(quint64 cancellations);
    bool areChecksDue() const { return !_handed.empty() || _checkCount > 0; }
    void keepNewIcons();
    void storeDidBreak();
    std::shared_ptr<IconStore> storeFor(const IconProvider &provider) const;
    void run(const IconLoadOperation &operation, const IconProvider &provider, IconStore *store,
        quint64 cancellations);
    void deliver(const IconLoadOperation &operation, LoadedIcon icon, Handing handing,
        quint64 cancellations);
    void takeDelivered();
    void release(quint64 taken, std::deque<Delivery> &rest);

    QThreadPool _queue;
    QTimer _nextTurn;
    int _pendingCount = 0;

    // Null when nothing is kept.
    std::shared_ptr<IconStore> _store;
    const IconProvider *_keptFrom = nullptr;
    std::unique_ptr<QSocketNotifier> _alarm;
    std::vector<Handed> _handed;
    // Threads that check them. Until they are all checked nothing is written: what is not known to
    // be right would be left out.
    int _checkCount = 0;
    bool _areChecksCut = false;
    // Icons have been loaded and kept in this run.
    bool _areCopiesSpare = false;
    QTimer _checkDelay;
    QTimer _keepDelay;

    // Shared with the threads of the queue.
    std::mutex _mutex;
    std::condition_variable _taken;
    std::deque<Delivery> _delivered;
    std::deque<Checked> _checked;
    quint64 _lastTicket = 0;
    quint64 _lastTaken = 0;
    // A turn goes on or is to come.
    bool _isAwake = false;
    // How often everything was cancelled. An operation of another count than this is
    // dropped, and a turn notices when a receiver cancels. Written on the main thread only.
    quint64 _cancellations = 0;
};

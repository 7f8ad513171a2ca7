// Finds what is typed among the applications of a grid by more than their names, and knows which
// suits best; see Query. Only while the preference for it is on.
//
// What applications can be found by is read on a thread, a moment after the grid has shown them or
// as soon as something is typed; until then they are found by their names. A result is worked out
// when it is asked for, and kept until the text or the applications are others.

#pragma once

#include "catalogue/AppArray.h"
#include "finding/Query.h"
#include "finding/UseCounts.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QTimer>

#include <atomic>
#include <memory>
#include <optional>

class OTAppManager;

class AppFinder final : public QObject
{
    Q_OBJECT

public:
    // Milliseconds. How long bestAtLast() waits.
    static constexpr int LongestWait = 200;
    // For how long applications are shown before what they can be found by is read.
    static constexpr int ReadingDelay = 300;

    // The catalogue must outlive the finder.
    explicit AppFinder(OTAppManager &appManager, QObject *parent = nullptr);
    // Waits for the application that is being read.
    ~AppFinder() override;

    static void registerDefaults();

    bool isOn() const { return _isOn; }

    // Where to look. Costs next to nothing.
    void setApps(const AppArray &apps);

    // The empty text finds everything, but nothing suits it best.
    bool isFound(const QString &typed, const AppRef &app);
    AppRef best(const QString &typed);
    // The same for a key that does not come again: where nothing is found yet, and what
    // applications can be found by is still being read, it waits for that, a moment at most.
    AppRef bestAtLast(const QString &typed);
    // What the application is found by where that is one of its actions.
    std::optional<ApplicationActions::Action> actionOf(const QString &typed, const AppRef &app);

Q_SIGNALS:
    // The same text may find other applications now.
    void findsOthers();

private:
    using Item = std::shared_ptr<const Findable>;

    struct Known
    {
        QString name;
        Item item;
        // All was read that it can be found by.
        bool isRead = false;
    };

    // What was asked of the thread, and what it came to.
    struct Reading
    {
        QString path;
        QString name;
        Item item;
    };

    void preferenceDidChange(const QString &key);
    void takePreferences();
    void appWasUsed(const AppRef &app);
    void scanDidEnd();
    void read();
    void readOnThread(QList<Reading> readings);
    void takeReadings(const QList<Reading> &readings);
    Item itemOf(const AppRef &app);
    void find(const QString &typed);
    void forgetResult() { _typed.reset(); }

    OTAppManager &_appManager;
    bool _isOn = false;
    UseCounts _uses;
    AppArray _apps;
    QHash<QString, Known> _known;

    // What the result is of.
    std::optional<QString> _typed;
    AppRef _best;
    // By path; the places of their actions, -1 for those that are found by themselves.
    QHash<QString, int> _found;

    QTimer _readingDelay;
    bool _isReading = false;
    // A scan that ends meanwhile may have found other entries.
    int _scanCount = 0;
    int _scanCountRead = 0;
    std::atomic<bool> _isEnding = false;
    QThreadPool _thread;
};

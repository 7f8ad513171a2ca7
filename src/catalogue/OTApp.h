// One application: the thing that the grid shows, that the catalogue's lists hold and that the user
// launches.
//
// It is made from the path of its bundle and is the same application as any other entry with that
// path. A path at which there is nothing is accepted; only launching reports it. An entry changes
// on the main thread only; launching may run on any thread.

#pragma once

#include "catalogue/AppIcon.h"
#include "catalogue/AppList.h"
#include "platform/ApplicationActions.h"
#include "platform/ApplicationControl.h"
#include "platform/Launcher.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QImage>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>

#include <memory>
#include <optional>

class Desktop;
class QMimeData;

class OTApp : public std::enable_shared_from_this<OTApp>
{
    Q_DECLARE_TR_FUNCTIONS(OTApp)

public:
    // The desktop must outlive the entry.
    OTApp(const QString &path, Desktop &desktop);
    Q_DISABLE_COPY_MOVE(OTApp)

    // The entry as bytes that another process of this program understands. Only the path travels: a
    // decoded entry has neither placeholder icon nor attributes. Null for bytes that are no entry.
    QByteArray encoded() const;
    static AppRef decoded(const QByteArray &bytes, Desktop &desktop);

    const QString &path() const { return _path; }
    // Standardises the path; a different one loads the icon again.
    void setPath(const QString &path);
    QUrl url() const { return QUrl::fromLocalFile(_path); }
    // The last path component without its extension; lost favourites are found again by it.
    QString name() const;
    // What people see and type.
    QString displayName() const;
    // Asks for it afresh. True when it is another than was last given.
    bool renewDisplayName();
    QString description() const { return _path; }
    // Whether there was something at the path at the last pass over the icons.
    bool isPathValid() const { return _pathIsValid; }

    QVariant attributeForKey(const QString &key) const;
    // An empty key or an invalid value changes nothing. A launch that succeeds sets
    // "kMDItemLastUsedDate", a QDateTime.
    void setAttribute(const QVariant &value, const QString &forKey);

    void findLetters();
    // Whether a name part begins with this lower-case ASCII letter or digit.
    bool containsLetter(char letter) const;

    // The words that mark a name for automatic exclusion; read once.
    static const QStringList &excludedNameSubstrings();
    void findExcludedStringsInName();
    bool containsExcludedKeywords() const { return _containsExcludedKeywords; }

    // The icon, or a picture that says there is none. Never null.
    QImage icon() const;
    // Finds out again what the entry is called, by which letters and words, and whether its bundle
    // is there.
    void refreshNameAndPath();
    // Refreshes name and path, then sees to the icon.
    void setIconParameters(const IconParameters &parameters);
    // Asks for the icon; when the same bundle was loaded at the same size before, only its colours
    // are judged afresh, and measured afresh, on another thread, where that is needed.
    void loadIconWithParameters(const IconParameters &parameters);
    // Measures the icon at once and announces N_AppIconChanged, unless it is the icon that the
    // entry has. Null: no icon.
    void setIcon(const QImage &icon) { _icon.setIcon(icon); }
    // Shows the placeholder until the next pass, which loads the icon again. Announces nothing.
    void resetIconToDot() { _icon.resetIconToDot(); }
    // The next pass loads the icon again; until it arrives the present one stays.
    void forgetIconSource() { _icon.forgetIconSource(); }

    // Exchanges the icon for the same one among those kept for later runs. Announces nothing.
    void takeKeptIcon() { _icon.takeKept(); }

    // Judges the colours of the icon by these parameters, measuring it first where the judgement
    // needs that. Announces N_AppIconChanged, also when all stayed as it was.
    void setColorSortParameters(const IconParameters &parameters)
    {
        _icon.setColorSortParameters(parameters);
    }
    // Forgets what was measured; the key is then unknown.
    void freeColorSortData() { _icon.freeColorSortData(); }
    // Where the icon stands in the order by colour; ColorKey::Unknown when it cannot be told.
    double colorSortValue() const { return _icon.colorSortValue(); }
    // The icon's colours, the main one first; empty when they are not known.
    const SortedColors &sortedColors() const { return _icon.sortedColors(); }
    // What was measured of the icon, by falling weight, and the colour that the user says counts in
    // place of that. Setting it announces N_AppIconChanged where that makes a difference.
    QList<MeasuredColor> measuredColors() const { return _icon.measuredColors(); }
    const std::optional<SortedColor> &correctedColor() const { return _icon.correctedColor(); }
    void setCorrectedColor(const std::optional<SortedColor> &color)
    {
        _icon.setCorrectedColor(color);
    }
    // A picture of the sorted colours; the icon, which may be null, when there are none.
    QImage spectrumIcon() const { return _icon.spectrumIcon(); }

    // Launches the application with the documents on the pasteboard: its local files, else its
    // first URL, else an empty list; with no pasteboard, without documents. May be called from any
    // thread. True on success; otherwise one log line, and the main thread asks for the panel and
    // tells the user there, and announces a bundle that is gone.
    bool launchWithPasteboard(const QMimeData *pasteboard) const;
    bool launchWithDocuments(const std::optional<QList<QUrl>> &documents) const;
    // One more window of an application that runs, in the same way; and whether that is offered.
    bool openNewWindow() const;
    bool canOpenNewWindow() const;
    static std::optional<QList<QUrl>> documentsOnPasteboard(const QMimeData *pasteboard);

    // What the application offers beside being started, and doing it, which may be on any thread.
    // False and one log line when it could not be done; the user is told as above.
    QList<ApplicationActions::Action> actions() const;
    bool performAction(const QString &id) const;

    // The process of the running application, 0 when the desktop cannot tell it; empty when the
    // application does not run.
    std::optional<qint64> pid() const;
    // All zero when it does not run.
    ProcessSerialNumber psn() const;
    bool isVisible() const;
    // Nothing when the application does not run.
    void show() const;
    void hide() const;
    // Brings the application to the front. False when it does not run.
    bool activate() const;
    // Asks it to end; whether it does is up to it.
    void quit() const;

    void revealInFinder() const;
    bool canAcceptURL(const QUrl &document) const;
    bool prefersURL(const QUrl &document) const;

    friend bool operator==(const OTApp &one, const OTApp &other)
    {
        return &one == &other || one._path == other._path;
    }

private:
    bool takeStatus(LaunchStatus status) const;
    void noteUseOnMainThread() const;
    void announceUseOnMainThread() const;
    void announceFailureOnMainThread(LaunchStatus status) const;
    void announceFailure(LaunchStatus status);
    void refreshName();

    Desktop &_desktop;
    QString _path;
    mutable QString _displayName;
    // The name that letters and words were found in.
    QString _indexedName;
    bool _pathIsValid = false;
    QByteArray _letters;
    bool _containsExcludedKeywords = false;
    QVariantMap _attributes;
    AppIcon _icon;
};

#include "fuzz/Fuzz.h"
#include "updates/UpdateFeed.h"

#include <QGuiApplication>

// Notes may be HTML; reading that needs fonts, and so an application.
void fuzz(const QByteArray &bytes)
{
    static int argc = 0;
    static const QGuiApplication application(argc, nullptr);
    QString problem;
    const std::optional<Release> release = UpdateFeed::newestRelease(bytes, &problem);
    require(release.has_value() == problem.isEmpty());
    if (release) {
        require(!release->version.isNull() && release->notes.size() <= UpdateFeed::MaxNotes);
        require(release->link.isEmpty() || release->link.scheme().startsWith(u"http"));
    }
}

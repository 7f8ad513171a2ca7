#include "updates/UpdateFeed.h"

#include <QRegularExpression>
#include <QTextDocumentFragment>
#include <QXmlStreamReader>

#include <utility>

namespace {

bool isVersionName(QStringView name)
{
    return name == u"version" || name == u"shortVersionString";
}

// Notes may be marked up; of the marks only the lines are kept.
QString plainNotes(const QString &notes)
{
    const QString start = notes.left(UpdateFeed::MaxNotes);
    const QString plain =
        Qt::mightBeRichText(start) ? QTextDocumentFragment::fromHtml(start).toPlainText() : start;
    return plain.trimmed();
}

// Reads one feed, release by release.
class FeedReader final
{
public:
    explicit FeedReader(const QByteArray &feed)
        : _xml(feed)
    { }

    // The newest one; of what follows a fault nothing counts, and nothing before it either.
    std::optional<Release> read(QString *problem)
    {
        while (!_xml.atEnd()) {
            if (_xml.readNext() == QXmlStreamReader::DTD) {
                _xml.raiseError(QStringLiteral("it defines a document type of its own"));
            } else if (_xml.isStartElement() && isRelease(_xml.name())) {
                readRelease();
            }
        }
        if (_xml.hasError()) {
            *problem = _xml.errorString();
            return {};
        }
        if (!_newest) {
            *problem = QStringLiteral("it names no version");
        }
        return _newest;
    }

private:
    static bool isRelease(QStringView name) { return name == u"item" || name == u"entry"; }

    void readRelease()
    {
        Release release;
        QVersionNumber titled;
        while (_xml.readNextStartElement()) {
            const QString name = _xml.name().toString();
            takeVersion(release);
            if (name == QLatin1String("link")) {
                takeLink(release);
            } else if (isVersionName(name)) {
                release.version = UpdateFeed::versionOf(text());
            } else if (name == QLatin1String("title")) {
                titled = UpdateFeed::versionOf(text());
            } else if (name == QLatin1String("description") || name == QLatin1String("content")
                || name == QLatin1String("summary")) {
                release.notes = plainNotes(text());
            } else {
                _xml.skipCurrentElement();
            }
        }
        if (release.version.isNull()) {
            release.version = titled;
        }
        const bool isNewest = !_newest || UpdateFeed::isNewer(release.version, _newest->version);
        if (!release.version.isNull() && isNewest) {
            _newest = std::move(release);
        }
    }

    // As an attribute of what is to be downloaded.
    void takeVersion(Release &release) const
    {
        for (const QXmlStreamAttribute &attribute : _xml.attributes()) {
            if (isVersionName(attribute.name())) {
                release.version = UpdateFeed::versionOf(attribute.value().toString());
            }
        }
    }

    // Atom has it in an attribute, RSS as text. Of several the first counts.
    void takeLink(Release &release)
    {
        const QString address = _xml.attributes().value(QLatin1String("href")).toString();
        const QString inside = text();
        const QUrl url(address.isEmpty() ? inside.trimmed() : address, QUrl::StrictMode);
        const bool isWeb =
            url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http");
        if (release.link.isEmpty() && url.isValid() && isWeb && !url.host().isEmpty()) {
            release.link = url;
        }
    }

    QString text() { return _xml.readElementText(QXmlStreamReader::IncludeChildElements); }

    QXmlStreamReader _xml;
    std::optional<Release> _newest;
};

} // namespace

std::optional<Release> UpdateFeed::newestRelease(const QByteArray &feed, QString *problem)
{
    return FeedReader(feed).read(problem);
}

bool UpdateFeed::isNewer(const QVersionNumber &one, const QVersionNumber &other)
{
    return one.normalized() > other.normalized();
}

QVersionNumber UpdateFeed::versionOf(const QString &text)
{
    static const QRegularExpression version(
        QStringLiteral(R"((?:^|\s)v?(\d{1,9}(?:\.\d{1,9}){0,4})(?=\s|$))"));
    return QVersionNumber::fromString(version.match(text.left(200)).captured(1));
}

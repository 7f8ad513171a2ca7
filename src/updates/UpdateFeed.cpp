#include "updates/UpdateFeed.h"

#include <QRegularExpression>
#include <QTextDocumentFragment>
#include <QXmlStreamReader>

#include <utility>

namespace {

// Of elements within a text. What a feed marks up needs a handful.
constexpr int MaxDepth = 100;

QVersionNumber numberIn(const QRegularExpression &pattern, const QString &text)
{
    return QVersionNumber::fromString(pattern.match(text.left(200)).captured(1));
}

// Anywhere in a title, as a word of its own.
QVersionNumber versionInTitle(const QString &title)
{
    static const QRegularExpression word(
        QStringLiteral(R"((?:^|[\s(])v?(\d{1,9}(?:\.\d{1,9}){0,4})(?=[\s:,)]|$))"));
    return numberIn(word, title);
}

// What a release says of its version, in the order in which it counts: the first one that is there
// decides alone. `version` may be the number of a build.
struct Versions
{
    std::optional<QString> shortVersionString = {};
    std::optional<QString> version = {};
    QString title = {};

    void take(QStringView name, const QString &text)
    {
        std::optional<QString> *const place = name == u"shortVersionString" ? &shortVersionString
            : name == u"version"                                            ? &version
                                                                            : nullptr;
        if (place != nullptr && !place->has_value()) {
            *place = text;
        }
    }

    QVersionNumber number() const
    {
        if (shortVersionString || version) {
            return UpdateFeed::versionOf(shortVersionString ? *shortVersionString : *version);
        }
        return versionInTitle(title);
    }
};

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
        Versions versions;
        while (_xml.readNextStartElement()) {
            const QString name = _xml.name().toString();
            for (const QXmlStreamAttribute &attribute : _xml.attributes()) {
                // Of what is to be downloaded.
                versions.take(attribute.name(), attribute.value().toString());
            }
            if (name == QLatin1String("link")) {
                takeLink(release);
            } else if (name == QLatin1String("version")
                || name == QLatin1String("shortVersionString")) {
                versions.take(name, text());
            } else if (name == QLatin1String("title")) {
                versions.title = text();
            } else if (name == QLatin1String("description") || name == QLatin1String("content")
                || name == QLatin1String("summary")) {
                release.notes = plainNotes(text());
            } else {
                _xml.skipCurrentElement();
            }
        }
        release.version = versions.number();
        const bool isNewest = !_newest || UpdateFeed::isNewer(release.version, _newest->version);
        if (!release.version.isNull() && isNewest) {
            _newest = std::move(release);
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

    // Of this element and of those in it. Qt's own function calls itself for each of them, and
    // enough of them overflow the stack.
    QString text()
    {
        QString all;
        for (int depth = 1; depth > 0 && !_xml.atEnd();) {
            const QXmlStreamReader::TokenType token = _xml.readNext();
            if (token == QXmlStreamReader::Characters) {
                all += _xml.text();
            } else if (token == QXmlStreamReader::EndElement) {
                --depth;
            } else if (token == QXmlStreamReader::StartElement && ++depth > MaxDepth) {
                _xml.raiseError(QStringLiteral("its elements lie too deep in one another"));
            }
        }
        return all;
    }

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
        QStringLiteral(R"(^\s*v?(\d{1,9}(?:\.\d{1,9}){0,4})\s*$)"));
    return numberIn(version, text);
}

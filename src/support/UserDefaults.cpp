#include "support/UserDefaults.h"

#include "support/DefaultsFile.h"
#include "support/NotificationCenter.h"
#include "support/PreferenceType.h"
#include "support/Shapes.h"
#include "support/Translations.h"
#include "support/files/Log.h"
#include "support/files/PropertyList.h"

#include <QCoreApplication>
#include <QHash>
#include <QMultiHash>
#include <QSet>

#include <utility>

namespace {

UserDefaults *standardDefaults = nullptr;

void complain(const QString &key, const QVariant &value, const QVariant &like)
{
    const QString type =
        like.isValid() ? PreferenceType::name(like) : QStringLiteral("a preference");
    qCWarning(lcSupport, "%s: %s cannot stand for %s and is not used", qUtf8Printable(key),
        qUtf8Printable(PreferenceType::described(value)), qUtf8Printable(type));
}

struct Change
{
    QString key;
    QVariant oldValue;
    QVariant newValue;
};

} // namespace

// The layers, and the values in force that follow from them, so that reading one is a single
// look-up.
class UserDefaults::Private
{
public:
    Private(const QString &path, Writing writing)
        : file(path, writing)
    { }

    QVariant stored(const QString &key) const { return file.values().value(key); }
    void store(const QString &key, const QVariant &value);
    QList<Change> recompute();
    // True once: the log has not named the value yet.
    bool isRefusalNew(const QString &key, const QVariant &value);

    DefaultsFile file;
    QHash<QString, QVariant> registered;
    // Keys of these that are no preferences in truth.
    QSet<QString> state;
    QHash<QString, QVariant> thisRun;
    QHash<QString, QVariant> inForce;
    // That a write failed; once, until one succeeds.
    QString writeProblem;

private:
    QVariant usable(const QString &key, const QVariant &value);
    QVariant computed(const QString &key);
    QStringList keys() const;

    // Values that the log has already named.
    QMultiHash<QString, QVariant> _refused;
};

void UserDefaults::Private::store(const QString &key, const QVariant &value)
{
    const QVariant old = PreferenceType::converted(stored(key), registered.value(key));
    const bool isRemoved = !value.isValid() && !stored(key).isValid();
    const bool isSame = isRemoved || (value.isValid() && PreferenceType::same(value, old));
    if (!isSame || file.isWaiting(key)) {
        file.change(key, value);
    }
}

// Brings the values in force up to date and tells which of them changed.
QList<Change> UserDefaults::Private::recompute()
{
    QList<Change> changes;
    for (const QString &key : keys()) {
        const QVariant value = computed(key);
        const QVariant old = inForce.value(key);
        if (PreferenceType::same(value, old)) {
            continue;
        }
        changes.append({ key, old, value });
        if (value.isValid()) {
            inForce.insert(key, value);
        } else {
            inForce.remove(key);
        }
    }
    return changes;
}

// Every key of any layer, sorted, so that changes are announced in an order that does not vary.
QStringList UserDefaults::Private::keys() const
{
    QStringList keys = inForce.keys() + registered.keys() + thisRun.keys() + file.values().keys();
    keys.sort();
    keys.removeDuplicates();
    return keys;
}

QVariant UserDefaults::Private::computed(const QString &key)
{
    if (QVariant value = usable(key, thisRun.value(key)); value.isValid()) {
        return value;
    }
    if (QVariant value = usable(key, stored(key)); value.isValid()) {
        return value;
    }
    return registered.value(key);
}

// The value in the type of its preference; invalid, and named once in the log, when it cannot be.
QVariant UserDefaults::Private::usable(const QString &key, const QVariant &value)
{
    if (!value.isValid()) {
        return {};
    }
    const QVariant like = registered.value(key);
    QVariant result = PreferenceType::converted(value, like);
    if (!result.isValid() && isRefusalNew(key, value)) {
        complain(key, value, like);
    }
    return result;
}

bool UserDefaults::Private::isRefusalNew(const QString &key, const QVariant &value)
{
    if (_refused.contains(key, value)) {
        return false;
    }
    _refused.insert(key, value);
    return true;
}

UserDefaults::UserDefaults(const QString &path, Writing writing, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>(path, writing))
{
    d->recompute();
    connect(&d->file, &DefaultsFile::changedOutside, this, [this] { announceChanges(); });
    connect(&d->file, &DefaultsFile::writeFailed, this,
        [this](const QString &reason) { setWriteProblem(reason); });
    connect(&d->file, &DefaultsFile::written, this, [this] {
        setWriteProblem({});
        announceChanges();
    });
    if (const auto *const application = QCoreApplication::instance()) {
        connect(application, &QCoreApplication::aboutToQuit, this, &UserDefaults::synchronize);
    }
}

UserDefaults::~UserDefaults()
{
    if (standardDefaults == this) {
        standardDefaults = nullptr;
    }
    // Writes once more, but emits nothing during destruction.
    d->file.disconnect(this);
}

UserDefaults &UserDefaults::standard()
{
    static UserDefaults inMemory;
    return standardDefaults ? *standardDefaults : inMemory;
}

void UserDefaults::setStandard(UserDefaults *defaults)
{
    standardDefaults = defaults;
}

void UserDefaults::announceChanges()
{
    const QList<Change> changes = d->recompute();
    for (const Change &change : changes) {
        // A receiver may have set the key meanwhile, and that was announced.
        if (PreferenceType::same(d->inForce.value(change.key), change.newValue)) {
            Q_EMIT changed(change.key, change.oldValue, change.newValue);
        }
    }
}

void UserDefaults::registerDefaults(const QVariantMap &defaults)
{
    for (auto entry = defaults.cbegin(); entry != defaults.cend(); ++entry) {
        const QVariant value = PropertyList::plain(entry.value());
        Q_ASSERT(value.isValid());
        d->registered.insert(entry.key(), value);
    }
    announceChanges();
}

void UserDefaults::registerState(const QVariantMap &defaults)
{
    const QStringList keys = defaults.keys();
    d->state.unite({ keys.begin(), keys.end() });
    registerDefaults(defaults);
}

const QString &UserDefaults::writeProblem() const
{
    return d->writeProblem;
}

// The user is told once; the panel alone notes something down each time it is hidden.
void UserDefaults::setWriteProblem(const QString &reason)
{
    const bool isNews = d->writeProblem.isEmpty() && !reason.isEmpty();
    if (std::exchange(d->writeProblem, reason) == reason) {
        return;
    }
    Q_EMIT writeProblemChanged();
    if (isNews) {
        Q_EMIT NotificationCenter::defaultCenter().N_UserMessage(
            tr("Changes of the preferences are not kept: %1.").arg(Translations::ofReason(reason)));
    }
}

QVariant UserDefaults::objectForKey(const QString &key) const
{
    return d->inForce.value(key);
}

bool UserDefaults::boolForKey(const QString &key) const
{
    return objectForKey(key).toBool();
}

qint64 UserDefaults::integerForKey(const QString &key) const
{
    return objectForKey(key).toLongLong();
}

float UserDefaults::floatForKey(const QString &key) const
{
    return objectForKey(key).toFloat();
}

double UserDefaults::doubleForKey(const QString &key) const
{
    return objectForKey(key).toDouble();
}

QString UserDefaults::stringForKey(const QString &key) const
{
    return objectForKey(key).toString();
}

QVariantList UserDefaults::arrayForKey(const QString &key) const
{
    return objectForKey(key).toList();
}

QColor UserDefaults::colorForKey(const QString &key) const
{
    const QString text = stringForKey(key);
    const QColor color = colorFromText(text);
    if (color.isValid()) {
        return color;
    }
    if (d->isRefusalNew(key, text)) {
        qCWarning(lcSupport, "%s: \"%s\" is no colour and is not used", qUtf8Printable(key),
            qUtf8Printable(text));
    }
    return colorFromText(defaultForKey(key).toString());
}

QVariant UserDefaults::defaultForKey(const QString &key) const
{
    return d->registered.value(key);
}

QStringList UserDefaults::registeredKeys() const
{
    QStringList keys = d->registered.keys();
    keys.sort();
    return keys;
}

bool UserDefaults::isState(const QString &key) const
{
    return d->state.contains(key);
}

QVariant UserDefaults::storedValue(const QString &key) const
{
    return d->stored(key);
}

bool UserDefaults::isUsable(const QString &key, const QVariant &value) const
{
    const QVariant like = defaultForKey(key);
    const bool isColor = colorFromText(like.toString()).isValid();
    return value.isValid() && PreferenceType::converted(value, like).isValid()
        && (!isColor || colorFromText(value.toString()).isValid());
}

bool UserDefaults::setObject(const QString &key, const QVariant &value)
{
    if (!value.isValid()) {
        removeObject(key);
        return true;
    }
    const QVariant like = defaultForKey(key);
    const QVariant plain = PropertyList::plain(value);
    const QVariant stored = plain.isValid() ? PreferenceType::converted(plain, like) : QVariant();
    if (!stored.isValid()) {
        complain(key, value, like);
        return false;
    }
    d->store(key, stored);
    announceChanges();
    return true;
}

void UserDefaults::removeObject(const QString &key)
{
    d->store(key, {});
    announceChanges();
}

bool UserDefaults::synchronize()
{
    return d->file.synchronize();
}

void UserDefaults::writeAgain()
{
    if (!d->writeProblem.isEmpty()) {
        d->file.writeAgain();
    }
}

bool UserDefaults::isFixedForThisRun(const QString &key) const
{
    return d->thisRun.contains(key);
}

void UserDefaults::setObjectForThisRun(const QString &key, const QVariant &value)
{
    const QVariant plain = PropertyList::plain(value);
    if (plain.isValid()) {
        d->thisRun.insert(key, plain);
    } else if (value.isValid()) {
        complain(key, value, defaultForKey(key));
    } else {
        d->thisRun.remove(key);
    }
    announceChanges();
}

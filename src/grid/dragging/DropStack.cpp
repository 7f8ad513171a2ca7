#include "grid/dragging/DropStack.h"

#include <QAssociativeIterable>
#include <QFileInfo>
#include <QSequentialIterable>
#include <QSet>
#include <QStringList>

namespace {

DropStack *replacement = nullptr;

bool isCollection(const QVariant &object)
{
    const int type = object.typeId();
    return type == QMetaType::QVariantList || type == QMetaType::QStringList
        || type == qMetaTypeId<QList<QUrl>>() || type == qMetaTypeId<QSet<QString>>();
}

bool isDictionary(const QVariant &object)
{
    return object.typeId() == QMetaType::QVariantMap || object.typeId() == QMetaType::QVariantHash;
}

QUrl asURL(const QVariant &object)
{
    if (object.typeId() == QMetaType::QUrl) {
        return object.toUrl();
    }
    const QString path = object.typeId() == QMetaType::QString ? object.toString() : QString();
    return path.isEmpty() ? QUrl() : QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
}

} // namespace

DropStack::~DropStack()
{
    if (replacement == this) {
        replacement = nullptr;
    }
}

DropStack &DropStack::sharedDropStack()
{
    static DropStack own;
    return replacement ? *replacement : own;
}

void DropStack::setSharedDropStack(DropStack *stack)
{
    replacement = stack;
}

QUrl DropStack::topObjectAsURL() const
{
    return asURL(topObject());
}

QList<QUrl> DropStack::URLs() const
{
    QList<QUrl> urls;
    for (const QVariant &object : _heldObjects) {
        urls.append(asURL(object));
    }
    urls.removeAll(QUrl());
    return urls;
}

QString DropStack::description() const
{
    QStringList texts;
    for (const QVariant &object : _heldObjects) {
        const QString text = object.toString();
        texts.append(text.isEmpty() ? QLatin1String(object.typeName()) : text);
    }
    return QStringLiteral("(%1)").arg(texts.join(QStringLiteral(", ")));
}

void DropStack::push(const QVariant &object)
{
    const auto add = [this](const QVariant &element) {
        if (element.isValid()) {
            _heldObjects.append(element);
        }
    };
    if (isCollection(object)) {
        for (const QVariant &element : object.value<QSequentialIterable>()) {
            add(element);
        }
    } else if (isDictionary(object)) {
        for (const QVariant &element : object.value<QAssociativeIterable>()) {
            add(element);
        }
    } else {
        add(object);
    }
}

QVariant DropStack::pop()
{
    return _heldObjects.isEmpty() ? QVariant() : _heldObjects.takeLast();
}

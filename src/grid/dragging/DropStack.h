// Files and addresses that are given to the program wait here until the grid takes them. The last
// one given is on top.
//
// There is one stack for the whole program; a test may put another in its place. Main thread only.

#pragma once

#include <QString>
#include <QUrl>
#include <QVariant>

class DropStack final
{
public:
    DropStack() = default;
    ~DropStack();
    Q_DISABLE_COPY_MOVE(DropStack)

    static DropStack &sharedDropStack();
    // The caller keeps owning it, and it may go at any time. Null goes back to the stack of the
    // process.
    static void setSharedDropStack(DropStack *stack);

    int count() const { return int(_heldObjects.size()); }
    // Invalid when the stack is empty.
    QVariant topObject() const { return _heldObjects.value(_heldObjects.size() - 1); }
    // The file's URL when a path is on top; a relative path is one of the current folder. Empty for
    // what is neither URL nor string.
    QUrl topObjectAsURL() const;
    // Every object that is a URL or a path, as its URL, the lowest first.
    QList<QUrl> URLs() const;
    // The objects from the lowest to the top, for the log.
    QString description() const;

    // Adds all elements of a list or a set and all values of a dictionary, as they are; anything
    // else is one element. What is invalid is not added.
    void push(const QVariant &object);
    // The object on top, which it then no longer holds; invalid when the stack is empty.
    QVariant pop();
    // Empties the stack.
    void free() { _heldObjects.clear(); }

private:
    QVariantList _heldObjects;
};

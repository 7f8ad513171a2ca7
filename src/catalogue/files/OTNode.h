// A named node of a tree of path components.
//
// A node owns its children; two are equal when they have the same parent object and equal names, so
// a parent never has two equal ones.

#pragma once

#include <QHash>
#include <QString>

#include <memory>
#include <utility>
#include <vector>

class OTNode final
{
public:
    using Children = std::vector<std::unique_ptr<OTNode>>;

    // The parent, null for a root, must outlive the node.
    explicit OTNode(QString name, const OTNode *parent = nullptr)
        : _name(std::move(name))
        , _parent(parent)
    { }
    Q_DISABLE_COPY_MOVE(OTNode)

    const QString &name() const { return _name; }
    const QString &description() const { return _name; }
    bool isRoot() const { return !_parent; }
    bool isLeaf() const { return _children.empty(); }
    const Children &children() const { return _children; }
    // Whether a path that was put into the tree ends here.
    bool isFlagged() const { return _isFlagged; }
    void setIsFlagged(bool isFlagged) { _isFlagged = isFlagged; }

    // The child of that name, made when there is none yet; null for an empty name.
    OTNode *addChildWithName(const QString &name);

    size_t hash() const { return qHash(_name); }
    friend bool operator==(const OTNode &one, const OTNode &other)
    {
        return one._parent == other._parent && one._name == other._name;
    }

private:
    QString _name;
    const OTNode *_parent;
    Children _children;
    bool _isFlagged = false;
};

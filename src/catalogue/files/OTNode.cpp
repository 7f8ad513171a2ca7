#include "catalogue/files/OTNode.h"

#include <algorithm>

OTNode *OTNode::addChildWithName(const QString &name)
{
    if (name.isEmpty()) {
        return nullptr;
    }
    auto added = std::make_unique<OTNode>(name, this);
    const auto existing = std::find_if(_children.begin(), _children.end(),
        [&added](const std::unique_ptr<OTNode> &child) { return *child == *added; });
    if (existing != _children.end()) {
        return existing->get();
    }
    return _children.emplace_back(std::move(added)).get();
}

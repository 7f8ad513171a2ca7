#include "platform/freedesktop/pictures/SvgReferences.h"

#include <algorithm>

int SvgReferences::addElement(int parent)
{
    const int index = int(_nodes.size());
    _nodes.emplace_back();
    if (parent >= 0) {
        _nodes[size_t(parent)].leadsTo.push_back(index);
    }
    return index;
}

// An id is a node between those who refer to it and those who carry it: however many of both there
// are, the graph stays as small as the text.
int SvgReferences::nodeOfId(const QString &id)
{
    const auto known = _ids.constFind(id);
    return known != _ids.constEnd() ? *known : *_ids.insert(id, addElement(-1));
}

void SvgReferences::addId(int element, const QString &id)
{
    const int node = nodeOfId(id);
    _nodes[size_t(node)].leadsTo.push_back(element);
}

void SvgReferences::addReference(int element, const QString &id)
{
    const int node = nodeOfId(id);
    _nodes[size_t(element)].leadsTo.push_back(node);
}

void SvgReferences::addWeight(int element, double characters)
{
    _nodes[size_t(element)].weight += characters;
}

QString SvgReferences::refusal(int mostDepth, double mostExpanded)
{
    _mostDepth = mostDepth;
    for (int i = 0; i < int(_nodes.size()); ++i) {
        if (!measure(i, 0)) {
            return _refusal;
        }
        if (_nodes[size_t(i)].weight > mostExpanded) {
            return QStringLiteral("too much to draw");
        }
    }
    return {};
}

bool SvgReferences::measure(int index, int depth)
{
    Node &node = _nodes[size_t(index)];
    if (node.state == State::Done) {
        return true;
    }
    if (node.state == State::Open) {
        _refusal = QStringLiteral("a reference leads back to itself");
        return false;
    }
    node.state = State::Open;
    // The depth bounds this very recursion; the height also counts what was measured before.
    for (const int next : node.leadsTo) {
        if (depth < _mostDepth && !measure(next, depth + 1)) {
            return false;
        }
        node.height = std::max(node.height, _nodes[size_t(next)].height + 1);
        if (depth >= _mostDepth || node.height > _mostDepth) {
            _refusal = QStringLiteral("nested too deeply");
            return false;
        }
        node.weight += _nodes[size_t(next)].weight;
    }
    node.state = State::Done;
    return true;
}

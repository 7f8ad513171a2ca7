// The elements of a picture and what they refer to, as a graph; finds out how large the picture
// really is.

#pragma once

#include <QHash>
#include <QString>

#include <vector>

class SvgReferences final
{
public:
    // Adds an element inside another one (-1: inside none) and returns its number.
    int addElement(int parent);
    void addId(int element, const QString &id);
    // The element shows whatever carries the id, which may come later or never.
    void addReference(int element, const QString &id);
    // How long the element's own text is; calls add up.
    void addWeight(int element, double characters);

    // Why the picture must not be drawn: a reference that leads back to itself, a chain longer than
    // `mostDepth`, or more than `mostExpanded` characters with every reference written out. Empty
    // when it may.
    QString refusal(int mostDepth, double mostExpanded);

private:
    enum class State : char { Unseen, Open, Done };
    struct Node
    {
        std::vector<int> leadsTo;
        double weight = 0;
        int height = 0;
        State state = State::Unseen;
    };

    int nodeOfId(const QString &id);
    // Fills in the height and the expanded weight of a node. False, and a reason, when there is
    // none.
    bool measure(int index, int depth);

    std::vector<Node> _nodes;
    QHash<QString, int> _ids;
    int _mostDepth = 0;
    QString _refusal;
};

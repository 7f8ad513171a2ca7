// What an application can be found by, ready to be compared with what is typed. Made once for an
// application, on any thread.

#pragma once

#include "finding/FoldedText.h"
#include "platform/ApplicationActions.h"
#include "platform/Items.h"

#include <QSet>

#include <vector>

// In the order in which they count where the text matches equally well and use is equal.
enum class FoundBy {
    Name,
    UntranslatedName,
    GenericName,
    UntranslatedGenericName,
    Command,
    Keywords,
    UntranslatedKeywords,
    Action,
};

class Findable final
{
public:
    struct Text
    {
        FoundBy field;
        FoldedText text;
    };
    struct Action
    {
        ApplicationActions::Action action;
        FoldedText text;
    };

    // By its name alone, or by all that its desktop entry and its actions say.
    explicit Findable(const QString &displayName);
    Findable(const QString &displayName, const ItemWords &words,
        const QList<ApplicationActions::Action> &actions);

    // In the order of their fields; a text that says the same as one before it is left out.
    const std::vector<Text> &texts() const { return _texts; }
    const std::vector<Action> &actions() const { return _actions; }
    bool hasLettersOf(QChar::Script script) const { return _scripts.contains(script); }

private:
    void add(FoundBy field, const FoldedText &text);
    void noteScripts(const FoldedText &text);

    std::vector<Text> _texts;
    std::vector<Action> _actions;
    QSet<int> _scripts;
};

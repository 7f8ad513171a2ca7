#include "finding/Findable.h"

#include <algorithm>

Findable::Findable(const QString &displayName)
    : Findable(displayName, {}, {})
{ }

Findable::Findable(const QString &displayName, const ItemWords &words,
    const QList<ApplicationActions::Action> &actions)
{
    add(FoundBy::Name, FoldedText(displayName));
    add(FoundBy::UntranslatedName, FoldedText(words.untranslatedName));
    add(FoundBy::GenericName, FoldedText(words.genericName));
    add(FoundBy::UntranslatedGenericName, FoldedText(words.untranslatedGenericName));
    for (const QString &command : words.commands) {
        add(FoundBy::Command, FoldedText(command));
    }
    add(FoundBy::Keywords, FoldedText(words.keywords));
    add(FoundBy::UntranslatedKeywords, FoldedText(words.untranslatedKeywords));
    for (const ApplicationActions::Action &action : actions) {
        _actions.push_back({ action, FoldedText(action.title) });
        noteScripts(_actions.back().text);
    }
}

void Findable::add(FoundBy field, const FoldedText &text)
{
    const bool isKnown = std::any_of(_texts.begin(), _texts.end(),
        [&](const Text &other) { return other.text.letters() == text.letters(); });
    if (!text.isEmpty() && !isKnown) {
        _texts.push_back({ field, text });
        noteScripts(text);
    }
}

void Findable::noteScripts(const FoldedText &text)
{
    for (const QChar letter : text.letters()) {
        if (letter.isLetter()) {
            _scripts.insert(letter.script());
        }
    }
}

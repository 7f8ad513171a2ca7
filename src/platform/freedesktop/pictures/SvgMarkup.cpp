#include "platform/freedesktop/pictures/SvgMarkup.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace {

using Text = std::string_view;

qsizetype countOf(Text text, Text part)
{
    qsizetype count = 0;
    for (size_t at = text.find(part); at != Text::npos; at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}

// An equals sign belongs to every attribute, and may be written as a reference.
QString refusalOfAttributes(Text text)
{
    double comparisons = 0;
    qsizetype attributes = 0;
    qsizetype inElement = 0;
    for (const char c : text) {
        if (c == '=' || c == '&') {
            ++inElement;
        } else if (c == '<') {
            attributes += inElement;
            comparisons += double(inElement) * double(inElement);
            inElement = 0;
        }
    }
    comparisons += double(inElement) * double(inElement);
    return comparisons > SvgMarkup::mostComparisons
            || attributes + inElement > SvgMarkup::mostAttributes
        ? QStringLiteral("too many attributes")
        : QString();
}

// Markup that comes from an entity is not seen here, so there may be none: neither written out nor
// by reference.
QString refusalOfDeclarations(Text text)
{
    constexpr Text entity("<!ENTITY");
    if (text.find("<!DOCTYPE") == Text::npos) {
        return {};
    }
    // Attributes that are declared come with every element, however short that is.
    size_t attributeLists = 0;
    for (size_t at = text.find("<!ATTLIST"); at != Text::npos; at = text.find("<!ATTLIST", at)) {
        const size_t start = at++;
        attributeLists += std::min(text.find('<', at), text.size()) - start;
    }
    if (attributeLists > SvgMarkup::longestAttributeLists
        || countOf(text, entity) > SvgMarkup::mostEntities) {
        return QStringLiteral("declares too much");
    }
    for (size_t at = text.find(entity); at != Text::npos; at = text.find(entity, at)) {
        at += entity.size();
        const size_t start = std::min(text.find_first_of("\"'>", at), text.size() - 1);
        const size_t end = text.find(text[start], start + 1);
        if (text.substr(at, end - at).find_first_of("<&%") != Text::npos) {
            return QStringLiteral("declares markup");
        }
    }
    return {};
}

} // namespace

QString SvgMarkup::refusal(const QByteArray &text)
{
    QByteArray narrow;
    if (std::memchr(text.constData(), 0, size_t(text.size())) != nullptr) {
        narrow = text;
        narrow.removeIf([](char c) { return c == '\0'; });
    }
    const QByteArray &looked = narrow.isEmpty() ? text : narrow;
    const Text all(looked.constData(), size_t(looked.size()));
    QString why = refusalOfAttributes(all);
    if (why.isEmpty()) {
        why = refusalOfDeclarations(all);
    }
    if (why.isEmpty() && countOf(all, "xmlns") > mostNamespaces) {
        why = QStringLiteral("too many namespaces");
    }
    return why;
}

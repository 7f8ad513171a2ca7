#include "grid/typing/KeyCharacters.h"

#include <QKeyEvent>

namespace {

constexpr QChar Enter(3);
constexpr QChar Return(13);
constexpr QChar Backtab(25);
constexpr QChar Delete(127);

} // namespace

QString KeyCharacters::of(const QKeyEvent &event)
{
    if ((event.modifiers() & (Qt::ControlModifier | Qt::MetaModifier)) != 0) {
        return {};
    }
    switch (event.key()) {
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
        return Delete;
    case Qt::Key_Enter:
        return Enter;
    case Qt::Key_Return:
        return Return;
    case Qt::Key_Backtab:
        return Backtab;
    default:
        return event.text();
    }
}

bool KeyCharacters::isReturn(const QString &characters)
{
    return characters == Return || characters == Enter;
}

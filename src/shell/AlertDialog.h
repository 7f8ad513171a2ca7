// Alerts as message boxes: the presenter of a program with windows.

#pragma once

class QWidget;
struct Alert;

namespace AlertDialog {

// Shows the alert and returns when it is answered, as Alerts::Presenter asks. Window-modal on its
// parent, on all windows without one. Alerts that come up while one is shown wait for their turn;
// since the calls lie in one another, an earlier one returns after the later ones. The safe answer
// is given by Escape, by the window's close button, when the parent is hidden or goes away and when
// the program ends.
int run(const Alert &alert, QWidget *parent);

} // namespace AlertDialog

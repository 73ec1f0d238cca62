#pragma once

#include "foundation/Exceptions.h"
#include "platform/ui/QtPeople.h"

/// Runs a step of a view; a failure of it is shown over the view and goes no further, since no exception may
/// leave an event of the window library.
template <class Step>
void ShowFailure(QWidget* pView, Step step) {
    try {
        step();
    } catch (const Torvane::CRunException& exception) {
        CQtPeople people;
        people.SetParent(pView);
        people.Error(exception.GetMessage());
    }
}

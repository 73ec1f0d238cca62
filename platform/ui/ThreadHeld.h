#pragma once

#include "platform/ui/QtPeople.h"
#include "platform/ui/WebBrowser.h"

/// A step holds the interface thread: it only lets the windows be painted, or waits for a page. Timers fire
/// then too; what opens a box or starts work of its own from one waits until this is over.
inline bool IsThreadHeld() {
    return CQtPeople::IsKeepingPainting() || CWebBrowser2Ex::IsCallRunning();
}

#include "platform/ui/LockKeys.h"

#include <QGuiApplication>

#ifdef VOREL_X11
// After Qt: these headers define words that Qt uses.
#include <X11/XKBlib.h>
#include <X11/keysym.h>
#endif

namespace LockKeys {

#ifdef VOREL_X11

namespace {

EState StateOf(Display* pDisplay, const char* pszIndicator) {
    const Atom name = XInternAtom(pDisplay, pszIndicator, True);
    int nOn = 0;
    if (name == 0 || !XkbGetNamedIndicator(pDisplay, name, nullptr, &nOn, nullptr, nullptr))
        return EState::Unknown;
    return nOn != 0 ? EState::On : EState::Off;
}

} // namespace

States Read() {
    const auto* pX11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    Display* pDisplay = pX11 == nullptr ? nullptr : pX11->display();
    if (pDisplay == nullptr)
        return {};
    // Few displays lock anything with the key for scrolling: its indicator stays dark then, whatever is
    // pressed.
    const bool bScroll = XkbKeysymToModifiers(pDisplay, XK_Scroll_Lock) != 0;
    return {StateOf(pDisplay, "Caps Lock"), StateOf(pDisplay, "Num Lock"),
            bScroll ? StateOf(pDisplay, "Scroll Lock") : EState::Unknown};
}

#else

States Read() {
    return {};
}

#endif

} // namespace LockKeys

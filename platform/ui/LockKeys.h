#pragma once

/// The three keys of the keyboard that stay in force when they are let go.
namespace LockKeys {

enum class EState { Unknown, Off, On };

struct States {
    EState Caps = EState::Unknown;
    EState Num = EState::Unknown;
    EState Scroll = EState::Unknown;
};

/// Asks the display, which takes a fraction of a millisecond. Unknown for a key that the display does not
/// have, for scrolling where the display locks nothing with its key, and for all of them on a display that
/// can't be asked. For the interface thread.
States Read();

} // namespace LockKeys

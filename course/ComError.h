#pragma once

#include <QString>

/// Failure codes of the store and the messages that they give. The engine's own result codes are taken to the
/// system's codes for the same failure, so that a person reads the system's text.
namespace ComError {

inline constexpr quint32 c_nMismatch = 0x80020005;
inline constexpr quint32 c_nOverflow = 0x8002000A;
/// The current row is asked for and there is none.
inline constexpr quint32 c_nNoRow = 0x800A0BCD;
inline constexpr quint32 c_nNoSuchColumn = 0x800A0CC1;
inline constexpr quint32 c_nNotOpen = 0x800A0E78;

/// The system's text for the code. Where it has none: "IDispatch error #%d" for the codes that interfaces
/// define for themselves, else "Unknown error 0x%0lX".
QString Message(quint32 nCode);

/// The system's code for a result code of SQLite, plain or extended.
quint32 CodeOfSqlite(int nResult);

/// Throws Torvane::COM::CCOMException with the code's message.
[[noreturn]] void Throw(quint32 nCode);

} // namespace ComError

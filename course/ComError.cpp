#include "course/ComError.h"

#include "course/Texts.h"
#include "foundation/Exceptions.h"

#include <sqlite3.h>

#include <array>

namespace {

constexpr quint32 c_nFailed = 0x80004005;
constexpr quint32 c_nNotFound = 0x80070002;
constexpr quint32 c_nDenied = 0x80070005;
constexpr quint32 c_nNoMemory = 0x8007000E;
constexpr quint32 c_nInUse = 0x80070020;
constexpr quint32 c_nDiskFull = 0x80070070;
constexpr quint32 c_nDevice = 0x8007045D;
constexpr quint32 c_nCorrupt = 0x80070570;
constexpr quint32 c_nBadCommand = 0x80040E14;
constexpr quint32 c_nIntegrity = 0x80040E2F;

/// Codes from here to the end were defined by the interface that answers them.
constexpr quint32 c_nInterfaceFirst = 0x80040200;
constexpr quint32 c_nInterfaceEnd = 0x80050000;

struct SystemText {
    quint32 nCode;
    const QString& strText;
};

const std::array c_systemTexts{
    SystemText{c_nFailed, CourseText::c_strSystemFailed},
    SystemText{c_nNotFound, CourseText::c_strSystemNotFound},
    SystemText{c_nDenied, CourseText::c_strSystemDenied},
    SystemText{c_nNoMemory, CourseText::c_strSystemNoMemory},
    SystemText{c_nInUse, CourseText::c_strSystemInUse},
    SystemText{c_nDiskFull, CourseText::c_strSystemDiskFull},
    SystemText{c_nDevice, CourseText::c_strSystemDevice},
    SystemText{c_nCorrupt, CourseText::c_strSystemCorrupt},
    SystemText{ComError::c_nMismatch, CourseText::c_strSystemMismatch},
    SystemText{ComError::c_nOverflow, CourseText::c_strSystemOverflow},
};

} // namespace

QString ComError::Message(quint32 nCode) {
    for (const auto& known : c_systemTexts) {
        if (known.nCode == nCode)
            return known.strText;
    }
    if (nCode >= c_nInterfaceFirst && nCode < c_nInterfaceEnd && (nCode & 0xFFFF) != 0x200)
        return QString::asprintf("IDispatch error #%d", static_cast<int>((nCode - 0x200) & 0xFFFF));
    return QString::asprintf("Unknown error 0x%0X", nCode);
}

quint32 ComError::CodeOfSqlite(int nResult) {
    const int nPrimary = nResult & 0xFF;
    switch (nPrimary) {
    case SQLITE_ERROR:
        return c_nBadCommand;
    case SQLITE_INTERNAL:
        return c_nFailed;
    case SQLITE_PERM:
    case SQLITE_AUTH:
    case SQLITE_READONLY:
        return c_nDenied;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return c_nInUse;
    case SQLITE_NOMEM:
        return c_nNoMemory;
    case SQLITE_IOERR:
        return c_nDevice;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return c_nCorrupt;
    case SQLITE_FULL:
        return c_nDiskFull;
    case SQLITE_CANTOPEN:
        return c_nNotFound;
    case SQLITE_TOOBIG:
        return c_nOverflow;
    case SQLITE_CONSTRAINT:
        return c_nIntegrity;
    case SQLITE_MISMATCH:
        return c_nMismatch;
    default:
        // Below the interfaces' own codes, so that it shows as an unknown error with its number.
        return 0x80040000 | static_cast<quint32>(nPrimary);
    }
}

void ComError::Throw(quint32 nCode) {
    throw Torvane::COM::CCOMException(Message(nCode));
}

#pragma once

#include <QByteArray>
#include <QString>

#include <mutex>
#include <optional>

/// More than any text of a course has; to be read, it is in memory several times over.
constexpr qint64 c_nMaxSourceText = qint64{32} << 20;

/// A page of hypertext, by its ending.
bool IsPageFile(const QString& strName);

/// A text of the course, whole; nothing for one of more than c_nMaxSourceText bytes. Throws
/// Torvane::CRunException with a message.
std::optional<QByteArray> ReadSourceText(const QString& strNativePath);

/// Throws Torvane::CRunException for a file that can't be opened; with strMissing, which has a %1 for the
/// path, where there is none.
void CheckReadable(const QString& strNativePath, const QString& strMissing);

/// Held while a page is parsed, whose tree takes forty times its text: of large pages one at a time is, in
/// the whole program. Nothing is locked for a small one. Whoever holds it may parse another large page
/// within.
std::unique_lock<std::recursive_mutex> LockIfLarge(qint64 nBytes);
constexpr qint64 c_nLargePage = qint64{1} << 20;

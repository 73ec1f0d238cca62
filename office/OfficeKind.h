#pragma once

#include <QByteArray>
#include <QString>

/// What an Office file is by its name, and whether its first bytes are such a file's at all.
namespace Torvane::Office {

enum class EKind { None, Document, Sheet, Presentation };

/// By the name's ending, in any letter case.
EKind KindOf(const QString& strName);

/// How many bytes of a file LooksLike wants.
constexpr qint64 c_nHeadBytes = 1024;

/// Whether a file that begins so may be of that kind. The converter takes anything that it doesn't know for
/// plain text and gives a page of rubbish, so what can't be such a file must not reach it.
bool LooksLike(EKind eKind, const QByteArray& head);

} // namespace Torvane::Office

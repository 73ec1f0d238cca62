#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Pages are in the code page unless they say otherwise.
namespace PageEncoding {

/// Whether the bytes begin with a byte order mark, or name an encoding within the first kilobyte.
bool SaysItsEncoding(const QByteArray& bytes);

/// The text of a page: in the encoding that it says, else in the code page, unless its bytes can only be
/// UTF-8 or UTF-16.
QString TextOf(const QByteArray& bytes);

/// Whether a page's file is the text of a body and nothing else: it has no tag of a document around it.
bool IsBodyText(const QByteArray& bytes);

/// The text of the page if the engine, which took it for the given character set, misread it. Unless strict,
/// a page that the engine took for UTF-8 is believed to be so, as long as most of it is.
std::optional<QString> TextIfMisread(const QByteArray& bytes, const QString& strCharacterSet, bool bStrict);

} // namespace PageEncoding

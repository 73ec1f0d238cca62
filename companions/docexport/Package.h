#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>

/// Word documents as the packages that they are: ZIP archives of parts. Paths are native.
namespace Package {

struct Part {
    QByteArray Name;
    QByteArray Bytes;
};

/// Writes a package. Throws Torvane::CRunException with a message.
void Write(const QString& strPath, const QList<Part>& parts);

/// One part of a package; empty when the package has no such part, or can't be read to its end.
QByteArray Read(const QString& strPath, const QByteArray& name);

/// Copies a package, part for part, letting change see each. Throws Torvane::CRunException with a message.
void Rewrite(const QString& strFrom, const QString& strTo, const std::function<void(Part&)>& change);

/// The document that lends its styles, its sheet of paper, header and footer to the one that is made.
/// strHeader stands above each sheet.
QList<Part> ReferenceDocument(const QString& strHeader);

} // namespace Package

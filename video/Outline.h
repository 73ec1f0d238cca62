#pragma once

#include <QString>
#include <QStringList>

/// The outline of a lecture, "CourseInfo\Outline.js": a script of the published page that fills an array with
/// the names of the film's markers, in their order.

/// Far more than any outline takes.
constexpr qint64 c_nMaxOutlineBytes = qint64{16} * 1024 * 1024;

/// The file's name below the folder of the film, with "\" before it.
QString OutlineFileBelow();

/// Fills the names: of each line that adds one, what stands between its first and its last double quote. The
/// file may be in the code page or any coding that its bytes tell. False, with no names, when it can't be
/// opened or is larger than an outline.
bool ReadOutline(const QString& strPath, QStringList& names);

/// The bytes of an outline of these names, in the code page.
QByteArray MakeOutline(const QStringList& names);

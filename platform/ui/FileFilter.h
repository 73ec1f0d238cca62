#pragma once

#include <QStringList>

namespace FileFilter {

/// "label|*.a;*.b|label|*.*||" as the file dialog's name filters, "label (*.a *.b)". A list of patterns at
/// the end of a label is left out, since the dialog shows the patterns itself; "*.*" is every file. A
/// notation without a single pair gives every file.
QStringList ToNameFilters(const QString& strNotation);

} // namespace FileFilter

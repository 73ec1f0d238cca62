#pragma once

#include <QStringList>

namespace FileFilter {

/// "label|*.a;*.b|label|*.*||" as the file dialog's name filters, "label (*.a *.b)", of which the dialog
/// shows the label alone (HideNameFilterDetails); "*.*" is every file. A notation without a single pair gives
/// every file.
QStringList ToNameFilters(const QString& strNotation);

} // namespace FileFilter

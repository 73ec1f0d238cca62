#pragma once

#include "office/Converter.h"
#include "office/OfficeKind.h"

#include <QString>

namespace Torvane::Office {

/// Converts the file with the plain name "source.EXT" that stands in the converter's folder. The page comes
/// into its folder as "page.htm", what belongs to the page as the folder "files", which is missing when there
/// is nothing. strStem is the name that the page shall get, strTitle is for its reader.
EConversion MakePages(CConverter& converter, EKind eKind, const QString& strSource, const QString& strStem,
                      const QString& strTitle);

} // namespace Torvane::Office

#pragma once

#include "platform/base/People.h"

#include <QString>

/// Copies each folder directly under the template's skin into the target folder under its own name. Files
/// beside them are passed over, and a template without a skin copies nothing. Windows stay painted meanwhile.
/// Throws Torvane::File::CFileException.
void CopySkin(const QString& strTemplate, const QString& strTargetFolder,
              Torvane::Dialog::MFC::IPeople& people);

/// The same, but a folder of the same name that stands in the target is deleted first, as far as that goes,
/// so that nothing of an older skin shines through. Folders that only the old skin had remain.
void ReplaceSkin(const QString& strTemplate, const QString& strTargetFolder,
                 Torvane::Dialog::MFC::IPeople& people);

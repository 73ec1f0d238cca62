#pragma once

#include "companions/common/ui/TaskWindow.h"
#include "companions/docexport/DocExport.h"

/// Asks where the document shall go, exports, shows how far it is, and reports in the end.
class CExportWindow : public CTaskWindow {
    Q_OBJECT
public:
    CExportWindow(const QString& strProjectPath, const QString& strCourse, const PictureTakerMaker& pictures);
};

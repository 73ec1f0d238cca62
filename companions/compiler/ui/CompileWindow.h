#pragma once

#include "companions/common/ui/TaskWindow.h"
#include "companions/compiler/CompileRequest.h"

struct FolderProposal {
    QString Folder;
    /// Why it is another folder than the last time; empty where it isn't.
    QString Remark;
};

/// Asks for the output folder, compiles, shows how far it is, and reports in the end.
class CCompileWindow : public CTaskWindow {
    Q_OBJECT
public:
    /// The request's folder may be empty: then the one that the course remembers is proposed.
    CCompileWindow(const CompileRequest& request, const QString& strCourse);

private:
    CCompileWindow(const CompileRequest& request, const QString& strCourse, const FolderProposal& proposal);
};

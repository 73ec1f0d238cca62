#pragma once

#include "companions/common/TaskOutcome.h"
#include "companions/compiler/CompileProgress.h"
#include "companions/compiler/CompileRequest.h"

#include <QString>
#include <QStringList>

struct CompileReport {
    /// Native: the folder of the form, the main one where there are two.
    QString OutputFolder;
    /// The other one; empty for none.
    QString ApplicationFolder;
    int Pages = 0;
    /// Beside the pages.
    int Files = 0;
    /// How many of both were not yet as they should be.
    int Changed = 0;
    /// What the teacher should know: content that is missing, links that lead to nothing.
    QStringList Notes;
};

/// Compiles a course. Of the course itself nothing is changed but the folder that its project file remembers.
/// Throws Torvane::CRunException with a message, CCompileCancelled where the progress says so.
CompileReport CompileSite(const CompileRequest& request, CompileProgress& progress);
CompileReport CompileSite(const CompileRequest& request);

/// The same for a window or a console, which never throws. The page to open comes in pStartPage (native).
TaskOutcome Compile(const CompileRequest& request, CompileProgress& progress, QString* pStartPage = nullptr);

/// How far it is, in a line.
QString DescribeProgress(const CompileProgress& progress);

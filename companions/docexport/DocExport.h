#pragma once

#include "companions/common/TaskOutcome.h"
#include "companions/docexport/CourseDocument.h"
#include "companions/docexport/DocProgress.h"

#include <QString>
#include <QStringList>

struct DocRequest {
    /// In backslash form, absolute.
    QString ProjectPath;
    /// Native, absolute.
    QString TargetPath;
};

/// Where the document goes unless the person says otherwise: beside the project file, under its name. Native.
QString DefaultTarget(const QString& strProjectPath);

/// What is wrong with a target, as a sentence for the person; empty for one that may be written. The course's
/// own data stay as they are.
QString FaultOfTarget(const DocRequest& request);

/// The course's name, for the window. Throws Torvane::CRunException with a message when it can't be read.
QString NameOfCourse(const QString& strProjectPath);

using DocOutcome = TaskOutcome;

/// Makes the taker of pictures for a folder (native) that stands.
using PictureTakerMaker = std::function<PictureTaker(const QString& strFolder)>;

/// Writes the Word document of a course, of which nothing is changed. The target is replaced as a whole, and
/// at the end; whatever fails before leaves it as it was. Never throws.
DocOutcome ExportDocument(const DocRequest& request, const PictureTakerMaker& pictures,
                          DocProgress& progress);

/// How far it is, in a line.
QString DescribeProgress(const DocProgress& progress);

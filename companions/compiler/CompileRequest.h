#pragma once

#include "companions/compiler/SiteModel.h"

#include <QString>
#include <QStringList>

/// The form in which a course is compiled, by the letter behind the project's path.
enum class ESiteForm { Site, Html, Classroom };

struct CompileRequest {
    /// In backslash form, absolute.
    QString ProjectPath;
    ESiteForm Form = ESiteForm::Site;
    /// Native, absolute: the folder in which the forms have their folders. Empty for the one that the course
    /// remembers, or else the course's own.
    QString OutputFolder = {};
    /// Native: a folder of the person's account for what makes the next run faster and may be lost; it need
    /// not be there. Empty to keep nothing.
    QString CacheFolder = {};
};

/// Reads the program's one argument: a path in native or backslash form, and maybe "|H" or "|S" behind it.
/// Throws Torvane::CRunException with a message.
CompileRequest ReadArgument(const QString& strArgument);

/// Where the last compile of a course wrote, when that place still is one for this course: native, never
/// empty. pRemark gets a sentence for the person where the remembered folder is of no use any more.
QString RememberedFolder(const CSiteModel& model, QString* pRemark = nullptr);
/// The same for a course that may be unreadable: the folder of its project file then.
QString ProposedFolder(const QString& strProjectPath, QString* pRemark = nullptr);

/// The output folder for the one that a person chose, who may well choose a form's own folder in it.
QString OutputFolderFor(const QString& strChosen);

/// The folders below the output folder that a form writes, the main one first.
QStringList FoldersOf(ESiteForm form);

/// What is wrong with an output folder, as a sentence for the person; empty for one that may be tried.
QString FaultOfOutput(const CompileRequest& request);

#pragma once

#include <QString>
#include <QStringList>

/// The form in which a course is compiled, by the letter behind the project's path.
enum class ESiteForm { Site, Html, Classroom };

struct CompileRequest {
    /// In backslash form, absolute.
    QString ProjectPath;
    ESiteForm Form = ESiteForm::Site;
};

/// Reads the program's one argument: a path in native or backslash form, and maybe "|H" or "|S" behind it.
/// Throws Torvane::CRunException with a message.
CompileRequest ReadArgument(const QString& strArgument);

struct CompileReport {
    /// Native.
    QString OutputFolder;
    int Pages = 0;
    int Files = 0;
    /// What the teacher should know: content that is missing, links that lead to nothing.
    QStringList Notes;
};

/// Makes the site of a course. The course itself is never changed. Throws Torvane::CRunException with a
/// message.
CompileReport CompileSite(const CompileRequest& request);

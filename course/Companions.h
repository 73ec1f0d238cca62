#pragma once

#include <QString>

/// Command lines of the companion programs, exactly as they expect them. strProgramFolder has no trailing
/// backslash; it is not quoted, the one argument is.
namespace Companions {

enum class ECompileForm { Site, Html, Classroom };

QString CompilerCommandLine(const QString& strProgramFolder, const QString& strProjectPath,
                            ECompileForm form);
QString DocExportCommandLine(const QString& strProgramFolder, const QString& strProjectPath);

} // namespace Companions

#pragma once

#include "course/BookDatabase.h"
#include "platform/base/People.h"

#include <QString>

/// The companion programs. Command lines are exactly as they expect them: strProgramFolder has no trailing
/// backslash; it is not quoted, the one argument is.
namespace Companions {

enum class ECompileForm { Site, Html, Classroom };

QString CompilerCommandLine(const QString& strProgramFolder, const QString& strProjectPath,
                            ECompileForm form);
QString DocExportCommandLine(const QString& strProgramFolder, const QString& strProjectPath);

/// Runs a companion on the open course and waits for its end without a time limit, with the windows painted.
/// The store lets go of its file meanwhile. That a companion could not start is told to nobody; one in a
/// folder whose path holds a blank can't, since its path is not quoted. Throws Torvane::COM::CCOMException
/// when the store can't let go (nothing is started then) or can't be opened again.
void Run(const QString& strCommandLine, CBookDatabase& database, Torvane::Dialog::MFC::IPeople& people);

} // namespace Companions

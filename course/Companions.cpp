#include "course/Companions.h"

#include "platform/base/Process.h"

using namespace Qt::StringLiterals;

namespace {

/// The compiler splits the form's letter off its one argument by itself.
QString FormMark(Companions::ECompileForm form) {
    switch (form) {
    case Companions::ECompileForm::Site:
        return {};
    case Companions::ECompileForm::Html:
        return u"|H"_s;
    case Companions::ECompileForm::Classroom:
        return u"|S"_s;
    }
    return {};
}

} // namespace

QString Companions::CompilerCommandLine(const QString& strProgramFolder, const QString& strProjectPath,
                                        ECompileForm form) {
    return strProgramFolder + u"\\VorelCompiler.exe \""_s + strProjectPath + FormMark(form) + u'"';
}

QString Companions::DocExportCommandLine(const QString& strProgramFolder, const QString& strProjectPath) {
    return strProgramFolder + u"\\VorelDocExport.exe \""_s + strProjectPath + u'"';
}

void Companions::Run(const QString& strCommandLine, CBookDatabase& database,
                     Torvane::Dialog::MFC::IPeople& people) {
    // The program's path is not quoted, so it ends at the first blank: from a folder with one nothing starts.
    if (!Platform::IsProgram(strCommandLine.section(u' ', 0, 0)))
        return;
    database.PauseForReaders();
    try {
        Platform::RunAndWait(strCommandLine, [&people] { people.KeepPainting(); });
    } catch (...) {
        // Whatever happens meanwhile, the open course must not be left without its store.
        database.ResumeWriting();
        throw;
    }
    database.ResumeWriting();
}

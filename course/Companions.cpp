#include "course/Companions.h"

#include "platform/base/Process.h"

#include <QRegularExpression>

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

/// Between quotes. Here a name may hold one itself: it gets a backslash, and backslashes before it are
/// doubled.
QString Quoted(QString strArgument) {
    static const QRegularExpression quote(u"(\\\\*)\""_s);
    return u'"' + strArgument.replace(quote, u"\\1\\1\\\""_s) + u'"';
}

} // namespace

QString Companions::CompilerCommandLine(const QString& strProgramFolder, const QString& strProjectPath,
                                        ECompileForm form) {
    return strProgramFolder + u"\\VorelCompiler.exe "_s + Quoted(strProjectPath + FormMark(form));
}

QString Companions::DocExportCommandLine(const QString& strProgramFolder, const QString& strProjectPath) {
    return strProgramFolder + u"\\VorelDocExport.exe "_s + Quoted(strProjectPath);
}

void Companions::Run(const QString& strCommandLine, CBookDatabase& database,
                     Torvane::Dialog::MFC::IPeople& people) {
    // The program's path is not quoted, so it ends at the first blank: from a folder with one nothing starts.
    if (!Platform::IsProgram(strCommandLine.section(u' ', 0, 0)))
        return;
    const auto pStop = people.StopInput();
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

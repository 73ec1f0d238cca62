#include "companions/compiler/SiteCompiler.h"
#include "companions/compiler/Texts.h"
#include "foundation/Exceptions.h"

#include <QCoreApplication>
#include <QTextStream>

#include <exception>

namespace {

constexpr int c_nDone = 0;
constexpr int c_nFailed = 1;

int Fail(const QString& strMessage) {
    QTextStream(stderr) << strMessage << Qt::endl;
    return c_nFailed;
}

int Compile(const QString& strArgument) {
    const CompileReport report = CompileSite(ReadArgument(strArgument));
    QTextStream out(stdout);
    for (const QString& strNote : report.Notes)
        out << strNote << '\n';
    out << CompilerText::c_strDone.arg(report.Pages).arg(report.Files).arg(report.OutputFolder) << Qt::endl;
    return c_nDone;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2)
        return Fail(CompilerText::c_strUsage);
    try {
        return Compile(arguments[1]);
    } catch (const Torvane::CException& failure) {
        return Fail(CompilerText::c_strFailed.arg(failure.GetMessage()));
    } catch (const std::exception& failure) {
        return Fail(CompilerText::c_strFailed.arg(
            CompilerText::c_strUnexpected.arg(QString::fromLocal8Bit(failure.what()))));
    }
}

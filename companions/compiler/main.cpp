// The compiler where no window library is: for scripts alone.
#include "companions/compiler/Console.h"
#include "companions/compiler/Texts.h"
#include "foundation/Exceptions.h"

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    try {
        const auto options = CompilerConsole::ReadOptions(QCoreApplication::arguments().mid(1));
        if (!options.bHelp)
            return CompilerConsole::Run(options);
        QTextStream(stdout) << CompilerText::c_strUsage << Qt::endl;
        return CompilerConsole::c_nDone;
    } catch (const Torvane::CException& failure) {
        QTextStream(stderr) << failure.GetMessage() << '\n' << CompilerText::c_strUsage << Qt::endl;
        return CompilerConsole::c_nBadCommand;
    }
}

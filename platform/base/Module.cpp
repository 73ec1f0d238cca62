#include "platform/base/Module.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLibrary>

#include <algorithm>

namespace Platform {

CModule::CModule(const QString& strName) {
    const QString strProgram = QCoreApplication::applicationDirPath();
    m_files = {strProgram + QStringLiteral("/lib") + strName,
               strProgram + QStringLiteral("/../lib/lib") + strName,
               // Of a companion in a folder of its own.
               strProgram + QStringLiteral("/../lib") + strName,
               strProgram + QStringLiteral("/../../lib/lib") + strName};
}

bool CModule::IsThere() const {
    return std::ranges::any_of(
        m_files, [](const QString& strFile) { return QFileInfo(strFile + QStringLiteral(".so")).isFile(); });
}

QFunctionPointer CModule::Load(const char* szFunction) {
    m_strReason.clear();
    for (const QString& strFile : std::as_const(m_files)) {
        QLibrary library(strFile);
        library.setLoadHints(QLibrary::PreventUnloadHint);
        if (const QFunctionPointer pFunction = library.resolve(szFunction))
            return pFunction;
        // The program's own folder is where it should be.
        if (m_strReason.isEmpty())
            m_strReason = library.errorString();
    }
    return nullptr;
}

} // namespace Platform

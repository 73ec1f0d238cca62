#include "platform/ui/WebEngineLoader.h"

#include "platform/ui/WebEngine.h"

#include <QCoreApplication>
#include <QLibrary>

namespace {

WebEngineFactory FindFactory() {
    const QString strProgram = QCoreApplication::applicationDirPath();
    for (const QString& strFolder : {strProgram, QString(strProgram + QStringLiteral("/../lib")),
                                     qEnvironmentVariable("VOREL_ENGINE_FOLDER")}) {
        if (strFolder.isEmpty())
            continue;
        // The engine can't be taken out of a running process again, so the library stays.
        QLibrary library(strFolder + QStringLiteral("/libvorelweb"));
        library.setLoadHints(QLibrary::PreventUnloadHint);
        if (!library.load())
            continue;
        if (const auto pFactory = reinterpret_cast<WebEngineFactory>(library.resolve(c_szWebEngineFactory)))
            return pFactory;
    }
    return nullptr;
}

} // namespace

std::unique_ptr<IWebEngine> MakeWebEngine(QWidget* pParent) {
    static WebEngineFactory s_pFactory = nullptr;
    if (!s_pFactory)
        s_pFactory = FindFactory();
    return std::unique_ptr<IWebEngine>(s_pFactory ? s_pFactory(pParent) : nullptr);
}

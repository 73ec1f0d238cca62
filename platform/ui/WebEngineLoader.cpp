#include "platform/ui/WebEngineLoader.h"

#include "platform/ui/WebEngine.h"

#include <QCoreApplication>
#include <QLibrary>
#include <QOpenGLContext>

// Exported by the toolkit for the engine's own start, and declared in no public header of it.
QT_BEGIN_NAMESPACE
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext* pContext);
Q_GUI_EXPORT QOpenGLContext* qt_gl_global_share_context();
QT_END_NAMESPACE

namespace {

void DropShareContext() {
    delete qt_gl_global_share_context();
    qt_gl_set_global_share_context(nullptr);
}

/// The engine paints with a context that the whole process shares. Asked for by the application's attribute
/// it would be made at the program's start, where it costs more time and memory than everything else
/// together; so it is made here, before the engine is loaded. The attribute follows, since views look at it.
void MakeShareContext() {
    if (qt_gl_global_share_context())
        return;
    auto pContext = std::make_unique<QOpenGLContext>();
    pContext->setFormat(QSurfaceFormat::defaultFormat());
    if (!pContext->create())
        return;
    qt_gl_set_global_share_context(pContext.release());
    qAddPostRoutine(DropShareContext);
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
}

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
    if (!s_pFactory) {
        MakeShareContext();
        s_pFactory = FindFactory();
    }
    return std::unique_ptr<IWebEngine>(s_pFactory ? s_pFactory(pParent) : nullptr);
}

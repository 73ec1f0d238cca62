#include "platform/ui/WebEngineLoader.h"

#include "platform/base/Module.h"
#include "platform/ui/WebEngine.h"

#include <QCoreApplication>
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

} // namespace

std::unique_ptr<IWebEngine> MakeWebEngine(QWidget* pParent) {
    static WebEngineFactory s_pFactory = nullptr;
    if (!s_pFactory) {
        MakeShareContext();
        Platform::CModule module(QStringLiteral("vorelweb"));
        s_pFactory = reinterpret_cast<WebEngineFactory>(module.Load(c_szWebEngineFactory));
    }
    return std::unique_ptr<IWebEngine>(s_pFactory ? s_pFactory(pParent) : nullptr);
}

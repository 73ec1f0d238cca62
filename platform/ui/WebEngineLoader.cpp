#include "platform/ui/WebEngineLoader.h"

#include "platform/base/Module.h"
#include "platform/ui/QtPeople.h"
#include "platform/ui/WebEngine.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QOpenGLContext>
#include <QPointer>
#include <QThread>
#include <QTimer>
#include <QWidget>

// Exported by the toolkit for the engine's own start, and declared in no public header of it.
QT_BEGIN_NAMESPACE
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext* pContext);
Q_GUI_EXPORT QOpenGLContext* qt_gl_global_share_context();
QT_END_NAMESPACE

namespace {

constexpr int c_nAgainMilliseconds = 10;

void DropShareContext() {
    delete qt_gl_global_share_context();
    qt_gl_set_global_share_context(nullptr);
}

/// The engine asks for the context that a process shares, though it draws without one. A context that is only
/// an object is enough for it; to create one would load the graphics driver, for some 50 ms and 50 MB.
void MakeShareContext() {
    if (qt_gl_global_share_context())
        return;
    qt_gl_set_global_share_context(new QOpenGLContext);
    qAddPostRoutine(DropShareContext);
}

/// The module on its way from the disk to a started engine.
class CEngineModule : public QObject {
public:
    static CEngineModule& Instance() {
        static auto* const s_pModule = new CEngineModule;
        return *s_pModule;
    }

    /// Runs the event loop until the module is loaded or known to be missing.
    WebEngineFactory Wait() {
        Prepare();
        // A page may be wanted while another one waits.
        QEventLoop loop;
        m_loops.append(&loop);
        if (!m_bReady)
            loop.exec(QEventLoop::ExcludeUserInputEvents);
        m_loops.removeOne(&loop);
        return m_pFactory;
    }

    void Prepare() {
        if (m_bBegun)
            return;
        m_bBegun = true;
        MakeShareContext();
        QThread* pThread =
            QThread::create([this, module = Platform::CModule(QStringLiteral("vorelweb"))]() mutable {
                const auto pStart = reinterpret_cast<WebEngineStart>(module.Load(c_szWebEngineStart));
                const auto pFactory = reinterpret_cast<WebEngineFactory>(module.Load(c_szWebEngineFactory));
                QMetaObject::invokeMethod(
                    this, [=, this] { Start(pStart, pFactory); }, Qt::QueuedConnection);
            });
        connect(pThread, &QThread::finished, pThread, &QObject::deleteLater);
        pThread->start();
    }

private:
    void Start(WebEngineStart pStart, WebEngineFactory pFactory) {
        // It holds the thread for longer than all else of a course's opening: behind that, then.
        if (m_loops.isEmpty() && CQtPeople::IsKeepingPainting()) {
            QTimer::singleShot(c_nAgainMilliseconds, this, [=, this] { Start(pStart, pFactory); });
            return;
        }
        if (pStart && pFactory) {
            pStart();
            m_pFactory = pFactory;
        }
        m_bReady = true;
        for (QEventLoop* pLoop : m_loops)
            pLoop->quit();
    }

    bool m_bBegun = false;
    bool m_bReady = false;
    WebEngineFactory m_pFactory = nullptr;
    QList<QEventLoop*> m_loops;
};

} // namespace

void PrepareWebEngine() {
    CEngineModule::Instance().Prepare();
}

std::unique_ptr<IWebEngine> MakeWebEngine(QWidget* pParent) {
    const QPointer<QWidget> pAlive(pParent);
    const WebEngineFactory pFactory = CEngineModule::Instance().Wait();
    return std::unique_ptr<IWebEngine>(pFactory && pAlive ? pFactory(pParent) : nullptr);
}

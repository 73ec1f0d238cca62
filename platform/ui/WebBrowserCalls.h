#pragma once

#include "platform/ui/WebBrowser.h"
#include "platform/ui/WebEngine.h"

#include <QJsonArray>
#include <QJsonObject>

/// What the parts of the browser surface share.
namespace SurfaceCalls {

inline constexpr int c_nScriptMilliseconds = 10000;
inline constexpr int c_nRetryMilliseconds = 50;
inline constexpr QLatin1String c_strBlank("about:blank");

inline bool IsTrue(const SEngineAnswer& answer) {
    return answer.HasValue() && answer.Value.toBool();
}

/// What becomes of the local references in a page's text: those that aren't in canonical form.
QJsonObject NewNames(const QJsonArray& references);

} // namespace SurfaceCalls

/// Refuses a call while another one runs. Holds nothing of the surface, which may go during the call.
class CWebBrowser2Ex::CCallGuard {
public:
    CCallGuard() : m_bMine(s_nCalls == 0) { ++s_nCalls; }
    ~CCallGuard() { --s_nCalls; }
    Q_DISABLE_COPY_MOVE(CCallGuard)
    bool IsRefused() const { return !m_bMine; }
    static bool IsAnyRunning() { return s_nCalls > 0; }

private:
    static inline int s_nCalls = 0;
    bool m_bMine;
};

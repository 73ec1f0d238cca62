#pragma once

#include <functional>
#include <memory>

namespace Platform {

/// Turns the system's request to end this process (the session ends, or the terminal that started it closes)
/// into a call on this thread's event loop, so that work which isn't saved can be asked about. The same
/// request again while that call runs ends the process at once. One object at a time; needs a running
/// application object.
class CEndRequest {
public:
    explicit CEndRequest(std::function<void()> end);
    ~CEndRequest();
    CEndRequest(const CEndRequest&) = delete;
    CEndRequest& operator=(const CEndRequest&) = delete;

private:
    struct Pipe;
    std::unique_ptr<Pipe> m_pPipe;
};

} // namespace Platform

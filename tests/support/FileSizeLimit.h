#pragma once

#include <csignal>
#include <sys/resource.h>

/// While this lives, a write beyond a size fails, as on a full disk.
class CFileSizeLimit {
public:
    explicit CFileSizeLimit(rlim_t nBytes) {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{nBytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~CFileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handlerBefore);
    }
    CFileSizeLimit(const CFileSizeLimit&) = delete;
    CFileSizeLimit& operator=(const CFileSizeLimit&) = delete;

private:
    rlimit m_before{};
    void (*m_handlerBefore)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

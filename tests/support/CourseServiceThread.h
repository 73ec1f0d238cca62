#pragma once

#include "courseserver/CourseService.h"
#include "tests/support/Testing.h"

#include <memory>
#include <optional>
#include <thread>

/// The real course server in a thread of the test, on a port of the loopback address, with a folder of its
/// own.
class CCourseServiceThread {
public:
    explicit CCourseServiceThread(const QString& strSampleSchool = QString(),
                                  const QString& strTemplates = {}) {
        m_options.strDataFolder = m_folder.Native(u"data"_s);
        m_options.strSampleSchool = strSampleSchool;
        m_options.strTemplatesFolder = strTemplates;
        Start();
    }
    ~CCourseServiceThread() { Stop(); }
    Q_DISABLE_COPY(CCourseServiceThread)

    QString Url() const { return u"http://127.0.0.1:%1"_s.arg(m_options.nPort); }
    quint16 Port() const { return m_options.nPort; }
    const CTempFolder& Folder() const { return m_folder; }
    CHttpServer& Server() { return m_pService->GetServer(); }

    /// Another connection to the server's state.
    CCourseStore OpenStore() const { return CCourseStore(m_options.strDataFolder + u"/courses.db"_s); }

    void Start() {
        m_pService = std::make_unique<CCourseService>(m_options);
        m_options.nPort = m_pService->GetPort();
        m_thread = std::thread([this] { m_pService->Run(); });
    }
    void Stop() {
        if (!m_pService)
            return;
        m_pService->Stop();
        m_thread.join();
        m_pService.reset();
    }

private:
    CTempFolder m_folder;
    CourseServiceOptions m_options;
    std::unique_ptr<CCourseService> m_pService;
    std::thread m_thread;
};

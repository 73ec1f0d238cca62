#pragma once

#include "courseserver/AccessLog.h"
#include "courseserver/CourseScript.h"
#include "courseserver/CourseStore.h"
#include "courseserver/HttpServer.h"
#include "courseserver/TemplateSite.h"

#include <QString>

struct CourseServiceOptions {
    QString strAddress = QStringLiteral("127.0.0.1");
    /// 0 lets the system choose.
    quint16 nPort = 0;
    /// Native path; made when it is missing.
    QString strDataFolder;
    /// Native path; empty for no templates.
    QString strTemplatesFolder;
    /// The school whose sample courses are made when there is no course yet; empty for none.
    QString strSampleSchool;
    int nSessionSeconds = 300;
    int nMaxOnline = 0;
};

/// The whole course server. Several may share one folder's state.
class CCourseService {
public:
    /// Listens from here on. Throws Torvane::CRunException when the folder or the port can't be had.
    explicit CCourseService(const CourseServiceOptions& options);

    quint16 GetPort() const { return m_server.GetPort(); }
    CCourseStore& GetStore() { return *m_pStore; }
    CHttpServer& GetServer() { return m_server; }

    /// Serves until Stop, which any thread and a signal handler may call.
    void Run() { m_server.Run(); }
    void Stop() { m_server.Stop(); }

private:
    HttpReply Answer(const HttpRequest& request, const QByteArray& peer);
    HttpReply AnswerScript(const HttpRequest& request, const QByteArray& peer);

    std::unique_ptr<CCourseStore> m_pStore;
    std::unique_ptr<CAccessLog> m_pLog;
    std::unique_ptr<CCourseScript> m_pScript;
    CTemplateSite m_templates;
    CHttpServer m_server;
};

/// The sample courses of a school, as README.md lists them.
QList<ServedCourse> SampleCourses(const QString& strSchoolName);

#include "courseserver/CourseService.h"

#include "foundation/Ciphers.h"
#include "foundation/Exceptions.h"
#include "foundation/Text.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <SQLiteCpp/Exception.h>

namespace {

constexpr qint64 c_nMaxNotice = 1024;

QString ReadNotice(const QString& strFile) {
    QFile file(strFile);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.read(c_nMaxNotice)).trimmed() : QString();
}

std::unique_ptr<CCourseStore> OpenStore(const CourseServiceOptions& options) {
    if (options.strDataFolder.isEmpty() || !QDir().mkpath(options.strDataFolder))
        throw Torvane::CRunException(QStringLiteral("no such folder: ") + options.strDataFolder);
    const QString strFile = options.strDataFolder + QStringLiteral("/courses.db");
    try {
        auto pStore = std::make_unique<CCourseStore>(strFile);
        if (!options.strSampleSchool.isEmpty() && !pStore->HasCourses()) {
            pStore->InTransaction([&] {
                for (const ServedCourse& course : SampleCourses(options.strSampleSchool))
                    pStore->AddCourse(course);
            });
        }
        return pStore;
    } catch (const SQLite::Exception& exception) {
        throw Torvane::CRunException(strFile + QStringLiteral(": ") + QString::fromUtf8(exception.what()));
    }
}

} // namespace

CCourseService::CCourseService(const CourseServiceOptions& options)
    : m_pStore(OpenStore(options)),
      m_pLog(std::make_unique<CAccessLog>(options.strDataFolder + QStringLiteral("/access.log"))),
      m_templates(options.strTemplatesFolder),
      m_server([this](const HttpRequest& request, const QByteArray& peer) { return Answer(request, peer); },
               [this](const QByteArray& peer, int nStatus) {
                   m_pLog->Write(peer, "refused", QByteArray::number(nStatus));
               }) {
    ScriptSettings settings;
    settings.nSessionSeconds = options.nSessionSeconds;
    settings.nMaxOnline = options.nMaxOnline;
    settings.Now = [] { return QDateTime::currentMSecsSinceEpoch(); };
    const QString strNotice = options.strDataFolder + QStringLiteral("/notice.txt");
    settings.Notice = [strNotice] { return ReadNotice(strNotice); };
    m_pScript = std::make_unique<CCourseScript>(*m_pStore, std::move(settings));
    m_server.Listen(options.strAddress, options.nPort);
}

HttpReply CCourseService::Answer(const HttpRequest& request, const QByteArray& peer) {
    if (EqualsIgnoringCase(QString::fromLatin1(request.Path()), u"/ISAPI/CourseMgr.dll"))
        return AnswerScript(request, peer);
    HttpReply reply;
    if (auto page = m_templates.Answer(request))
        reply = std::move(*page);
    else
        reply.nStatus = 404;
    // Without the query, which may hold a token that came to a wrong path.
    m_pLog->Write(peer, request.Path(), QByteArray::number(reply.nStatus));
    return reply;
}

HttpReply CCourseService::AnswerScript(const HttpRequest& request, const QByteArray& peer) {
    const ScriptReply script = m_pScript->Run(request.Query());
    HttpReply reply;
    reply.Headers = script.Headers();
    reply.Body = script.Body;
    // Tokens and digests of the query stay out of the log.
    m_pLog->Write(peer, script.strOperation + " course " + QByteArray::number(script.nCourseId),
                  "error " + QByteArray::number(script.nErrorCode));
    return reply;
}

QList<ServedCourse> SampleCourses(const QString& strSchoolName) {
    struct Sample {
        const char16_t* szName;
        const char16_t* szTeacher;
        const char* szPassword;
        bool bInitial;
    };
    static constexpr Sample c_samples[] = {
        {u"大学物理", u"张明", "123456", true},      {u"高等数学", u"李华", "123456", true},
        {u"数据结构", u"王芳", "123456", true},      {u"中国古代文学", u"赵静", "123456", true},
        {u"计算机网络", u"陈强", "wangluo8", false},
    };
    QList<ServedCourse> courses;
    for (const Sample& sample : c_samples) {
        ServedCourse course;
        course.nId = static_cast<qint32>(courses.size()) + 1;
        course.strSchoolName = strSchoolName;
        course.strName = QString::fromUtf16(sample.szName);
        course.strTeacher = QString::fromUtf16(sample.szTeacher);
        course.strPasswordDigest = Md5Hex(sample.szPassword);
        course.bInitialPassword = sample.bInitial;
        courses.append(course);
    }
    return courses;
}

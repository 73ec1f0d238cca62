#include "courseserver/CourseScript.h"

#include "course/CourseInfo.h"
#include "foundation/Ciphers.h"
#include "foundation/CodePage.h"
#include "foundation/Token.h"
#include "server/Protocol.h"

#include <QRandomGenerator>

#include <SQLiteCpp/Exception.h>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

constexpr qsizetype c_nMaxToken = 256;
constexpr qsizetype c_nMaxTag = 64;
// A client that lost its session is remembered so long, to be told so.
constexpr qint64 c_nDay = qint64{24} * 3600 * 1000;
constexpr qint64 c_nForgetClients = c_nDay;
constexpr qint64 c_nForgetTokens = 90 * c_nDay;
// A proxy may send a request again whose reply got lost.
constexpr qint64 c_nRepeatWithin = 5'000;

namespace ErrorCode {
constexpr int c_nProxy = 1;
constexpr int c_nBadParameters = 2;
constexpr int c_nNoDatabase = 4;
constexpr int c_nNoCourse = 8;
constexpr int c_nSessionLost = 16;
constexpr int c_nInUse = 17;
constexpr int c_nTooManyOnline = 18;
constexpr int c_nMessage = 64;
constexpr int c_nServerError = 128;
} // namespace ErrorCode

/// Ends an operation with an error code.
struct Refusal {
    int nCode;
};

QHash<QByteArray, QByteArray> SplitParameters(const QByteArray& text) {
    QHash<QByteArray, QByteArray> parameters;
    const QByteArrayList pairs = text.split('&');
    for (const QByteArray& pair : pairs) {
        const qsizetype nEquals = pair.indexOf('=');
        if (nEquals > 0)
            parameters.insert(pair.first(nEquals), pair.sliced(nEquals + 1));
    }
    return parameters;
}

qint32 RequireInt(const QHash<QByteArray, QByteArray>& parameters, const char* szName) {
    bool bOk = false;
    const int n = parameters.value(szName).toInt(&bOk);
    if (!bOk)
        throw Refusal{ErrorCode::c_nBadParameters};
    return n;
}

QByteArray RequireText(const QHash<QByteArray, QByteArray>& parameters, const char* szName,
                       qsizetype nMaxBytes) {
    const QByteArray text = parameters.value(szName);
    if (text.isEmpty() || text.size() > nMaxBytes)
        throw Refusal{ErrorCode::c_nBadParameters};
    return text;
}

bool IsDigest(const QByteArray& text) {
    return text.size() == 32 && std::all_of(text.begin(), text.end(), [](char c) {
               return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
           });
}

/// A proof that no client expects.
QByteArray WrongProof() {
    return Md5Hex(QByteArray::number(QRandomGenerator::system()->generate64()));
}

QByteArray Names(const ServedCourse& course) {
    return CodePage::Encode(course.strName) + Protocol::c_cFieldSeparator +
           CodePage::Encode(course.strTeacher);
}

} // namespace

QByteArrayList ScriptReply::Headers() const {
    return {"Operation Type: " + strOperation, QByteArray("Successful: ") + (bSuccessful ? '1' : '0'),
            "Error Code: " + QByteArray::number(nErrorCode)};
}

struct CCourseScript::Report {
    ServedCourse Course;
    int nType = 0;
    qint32 nCount = 0;
    qint32 nChanged = 0;
    double dSize = 0.0;
    QList<CourseClient> Clients;
};

CCourseScript::CCourseScript(CCourseStore& store, ScriptSettings settings)
    : m_store(store), m_settings(std::move(settings)) {}

ScriptReply CCourseScript::Run(const QByteArray& query) {
    ScriptReply reply;
    try {
        Dispatch(query, reply);
    } catch (const Refusal& refusal) {
        reply.nErrorCode = refusal.nCode;
    } catch (const SQLite::Exception&) {
        reply.nErrorCode = ErrorCode::c_nNoDatabase;
    } catch (const std::exception&) {
        reply.nErrorCode = ErrorCode::c_nServerError;
    }
    reply.bSuccessful = reply.nErrorCode == 0;
    if (reply.nErrorCode == ErrorCode::c_nMessage)
        reply.Body = CodePage::Encode(m_settings.Notice());
    else if (!reply.bSuccessful)
        reply.Body.clear();
    return reply;
}

void CCourseScript::Dispatch(const QByteArray& query, ScriptReply& reply) {
    const qsizetype nMark = query.indexOf('?');
    const QByteArray operation = nMark < 0 ? query : query.first(nMark);
    const QByteArray parameters = nMark < 0 ? QByteArray() : query.sliced(nMark + 1);
    const bool bKnown = operation == "GetCourseList" || operation == "CheckPassword" ||
                        operation == "EditPassword" || operation == "CheckCourseInfo";
    reply.strOperation = bKnown ? operation : QByteArray("Unknown");
    if (!bKnown)
        throw Refusal{ErrorCode::c_nBadParameters};
    if (m_settings.Notice && !m_settings.Notice().isEmpty())
        throw Refusal{ErrorCode::c_nMessage};
    if (operation == "GetCourseList")
        List(parameters, reply);
    else
        m_store.InTransaction([&] { RunOperation(SplitParameters(parameters), query, reply); });
}

void CCourseScript::RunOperation(const Parameters& parameters, const QByteArray& query, ScriptReply& reply) {
    try {
        if (reply.strOperation == "CheckCourseInfo")
            Status(parameters, query, reply);
        else
            Password(parameters, query, reply.strOperation == "EditPassword", reply);
    } catch (const Refusal& refusal) {
        // A refused request has used its token all the same.
        reply.nErrorCode = refusal.nCode;
    }
}

void CCourseScript::List(const QByteArray& parameters, ScriptReply& reply) {
    // The school's name is the last value and stands as it is, so it may hold the separators.
    const QByteArray key = "&SchoolName=";
    const qsizetype nSchool = parameters.indexOf(key);
    if (nSchool < 0)
        throw Refusal{ErrorCode::c_nBadParameters};
    const qint32 nProvince = RequireInt(SplitParameters(parameters.first(nSchool)), "Province");
    const QString strSchool = CodePage::Decode(parameters.sliced(nSchool + key.size()));
    const QList<ServedCourse> courses = m_store.ListCourses(nProvince, strSchool);
    for (const ServedCourse& course : courses)
        reply.Body += QByteArray::number(course.nId) + Protocol::c_cFieldSeparator + Names(course) + "\r\n";
}

ServedCourse CCourseScript::RequireCourse(const Parameters& parameters, ScriptReply& reply) const {
    reply.nCourseId = RequireInt(parameters, "CourseId");
    const std::optional<ServedCourse> course = m_store.FindCourse(reply.nCourseId);
    if (!course)
        throw Refusal{ErrorCode::c_nNoCourse};
    return *course;
}

bool CCourseScript::IsLive(const CourseClient& client) const {
    // After the clock was set back, what was heard before lies ahead: that counts no longer either.
    return qAbs(m_settings.Now() - client.nSeen) <= SessionLength();
}

/// False for a token that came before in another request: whoever sent this one has overheard that one.
bool CCourseScript::UseToken(const QByteArray& token, const QByteArray& query) {
    const qint64 nNow = m_settings.Now();
    const QByteArray digest = Md5Hex(query);
    const std::optional<UsedToken> used = m_store.FindToken(token);
    if (!used) {
        m_store.RemoveTokensBefore(nNow - c_nForgetTokens);
        m_store.PutToken(token, {digest, nNow});
        return true;
    }
    if (used->strRequestDigest != digest)
        return false;
    if (qAbs(nNow - used->nTime) > c_nRepeatWithin)
        throw Refusal{ErrorCode::c_nProxy};
    return true;
}

void CCourseScript::Password(const Parameters& parameters, const QByteArray& query, bool bEdit,
                             ScriptReply& reply) {
    ServedCourse course = RequireCourse(parameters, reply);
    const QByteArray token = RequireText(parameters, "Password", c_nMaxToken);
    const QByteArray tag = RequireText(parameters, "Info", c_nMaxTag);
    const QByteArray newDigest = parameters.value("New");
    if (bEdit && !IsDigest(newDigest))
        throw Refusal{ErrorCode::c_nBadParameters};

    const Protocol::KeyTexts keys = Protocol::PasswordKeys();
    const std::optional<OpenedToken> opened = OpenToken(token, keys.strOne, keys.strTwo);
    QByteArray proof = WrongProof();
    if (opened && opened->digest == course.strPasswordDigest && UseToken(token, query)) {
        const QList<CourseClient> clients = m_store.ListClients(course.nId);
        const bool bStaysOpen = std::any_of(clients.begin(), clients.end(), [&](const CourseClient& client) {
            return client.strTag == tag && client.bOpen && IsLive(client);
        });
        m_store.RemoveClientsBefore(m_settings.Now() - c_nForgetClients);
        m_store.PutClient(course.nId, {tag, bStaysOpen, m_settings.Now()});
        if (bEdit) {
            m_store.SetPassword(course.nId, newDigest, tag);
            course.bInitialPassword = false;
        }
        proof = Protocol::ChallengeProof(opened->nTick, opened->nRandom);
    }
    reply.Body = proof + "\r\n" + Names(course) + "\r\n" +
                 QByteArray::number(course.bInitialPassword ? Protocol::c_nInitialPasswordRight : 0) + "\r\n";
}

void CCourseScript::Status(const Parameters& parameters, const QByteArray& query, ScriptReply& reply) {
    Report report;
    report.Course = RequireCourse(parameters, reply);
    const QByteArray token = RequireText(parameters, "Info", c_nMaxToken);
    report.nType = RequireInt(parameters, "Type");
    report.nCount = RequireInt(parameters, "Count");
    report.nChanged = RequireInt(parameters, "Changed");
    bool bOk = false;
    report.dSize = parameters.value("Size").toDouble(&bOk);
    const bool bKnownType = report.nType == StatusType::c_nHeartbeat ||
                            report.nType == StatusType::c_nOpened || report.nType == StatusType::c_nClosed;
    if (!bKnownType || !bOk || !std::isfinite(report.dSize))
        throw Refusal{ErrorCode::c_nBadParameters};

    reply.Body = WrongProof();
    const Protocol::KeyTexts keys = Protocol::SessionKeys(CodePage::Encode(report.Course.strSchoolName));
    const std::optional<OpenedToken> opened = OpenToken(token, keys.strOne, keys.strTwo);
    if (!opened)
        return;
    // The tag itself doesn't travel: it is the known one that gives this digest.
    report.Clients = m_store.ListClients(report.Course.nId);
    const QByteArray name = CodePage::Encode(report.Course.strName);
    const QByteArray teacher = CodePage::Encode(report.Course.strTeacher);
    const auto client =
        std::find_if(report.Clients.begin(), report.Clients.end(), [&](const CourseClient& known) {
            return Protocol::StatusDigest(name, teacher, known.strTag) == opened->digest;
        });
    if (client == report.Clients.end() || !UseToken(token, query))
        return;
    if (!IsLive(*client)) {
        if (client->bOpen && report.nType != StatusType::c_nOpened)
            throw Refusal{ErrorCode::c_nSessionLost};
        return;
    }
    AcceptReport(report, *client);
    reply.Body = Protocol::ChallengeProof(opened->nTick, opened->nRandom);
}

void CCourseScript::AcceptReport(const Report& report, CourseClient client) {
    const qint32 nId = report.Course.nId;
    const qint64 nNow = m_settings.Now();
    if (report.nType == StatusType::c_nClosed) {
        m_store.RemoveClient(nId, client.strTag);
    } else {
        const bool bTaken =
            std::any_of(report.Clients.begin(), report.Clients.end(), [&](const CourseClient& other) {
                return other.strTag != client.strTag && other.bOpen && IsLive(other);
            });
        if (bTaken)
            throw Refusal{ErrorCode::c_nInUse};
        if (m_settings.nMaxOnline > 0 &&
            m_store.CountOpenCourses(nNow - SessionLength(), nNow + SessionLength(), nId) >=
                m_settings.nMaxOnline)
            throw Refusal{ErrorCode::c_nTooManyOnline};
        client.bOpen = true;
        client.nSeen = nNow;
        m_store.PutClient(nId, client);
    }
    if (report.nCount >= 0)
        m_store.PutFigures(nId, report.nCount, report.nChanged, report.dSize, nNow);
}

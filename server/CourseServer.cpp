#include "server/CourseServer.h"

#include "foundation/Ciphers.h"
#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/Random.h"
#include "foundation/Token.h"
#include "server/Protocol.h"
#include "server/Texts.h"

using Torvane::CRunException;

namespace {

/// The two numbers of a request that the server has to know from the token alone.
struct Challenge {
    quint32 nTick = TickCount();
    quint32 nRandom = static_cast<quint32>(NextRandom());

    QByteArray Proof() const { return Protocol::ChallengeProof(nTick, nRandom); }
    QByteArray Sign(const QByteArray& digest, const Protocol::KeyTexts& keys) const {
        return SignToken(digest, nTick, nRandom, keys.strOne, keys.strTwo);
    }
};

/// An empty password has no digest of its own; zeros stand for it, which no password has.
QByteArray PasswordDigest(const QString& strPassword) {
    return strPassword.isEmpty() ? QByteArray(32, '0') : Md5Hex(CodePage::Encode(strPassword));
}

/// True when the body proves that the server opened the token. Takes over what the server says of the course
/// either way.
bool TakePasswordReply(const QByteArray& body, CCourseInfo& info, const QByteArray& proof, qint32* pRights) {
    if (body.isEmpty())
        return false;
    const Protocol::PasswordReply reply = Protocol::ParsePasswordReply(body);
    info.Name = reply.strName;
    info.TeacherName = reply.strTeacher;
    if (pRights != nullptr)
        *pRights = reply.nRights;
    return reply.strProof == proof;
}

QByteArray ListQuery(qint32 nProvince, const QString& strSchoolName) {
    return "GetCourseList?Province=" + QByteArray::number(nProvince) +
           "&SchoolName=" + CodePage::Encode(strSchoolName);
}

} // namespace

CCourseServer::CCourseServer() : m_identity(Protocol::ClientIdentity()) {}

void CCourseServer::SetBaseUrl(const QString& strUrl) {
    m_baseUrl = CodePage::Encode(strUrl);
    if (!m_baseUrl.startsWith("http://"))
        m_baseUrl.prepend("http://");
    if (!m_baseUrl.endsWith('/'))
        m_baseUrl.append('/');
}

void CCourseServer::SetWaitStep(Torvane::Net::CHttpClient::WaitStep step) {
    m_client.SetWaitStep(std::move(step));
}

void CCourseServer::SetIdentity(const QByteArray& identity) {
    m_identity = identity;
}

QByteArray CCourseServer::RequestScript(const QByteArray& query) {
    const QByteArray url = m_baseUrl + "ISAPI/CourseMgr.dll?" + query;
    m_client.Request(url, Torvane::Net::EHttpMethod::Get, "TorvaneAgent");
    const Protocol::ReplyState state = Protocol::ParseReplyState(m_client.GetRawHeaders());
    if (!state.bSuccessful)
        Protocol::RaiseError(state.nErrorCode, m_client.GetBody());
    return m_client.GetBody();
}

QList<CCourseInfo> CCourseServer::GetCourseList(qint32 nProvince, const QString& strSchoolName) {
    try {
        return Protocol::ParseCourseList(RequestScript(ListQuery(nProvince, strSchoolName)));
    } catch (const Torvane::Net::CCancelledException&) {
        throw;
    } catch (const CRunException&) {
        throw CRunException(ServerText::c_strNoCourseList);
    } catch (const CInvalidLogException&) {
        throw CRunException(ServerText::c_strNoCourseList);
    }
}

void CCourseServer::TestLink(qint32 nProvince, const QString& strSchoolName) {
    try {
        RequestScript(ListQuery(nProvince, strSchoolName));
    } catch (const CInvalidLogException&) {
        throw CRunException(ServerText::c_strServerError);
    }
}

bool CCourseServer::CheckPassword(CCourseInfo& info, const QString& strPassword, qint32& nRights) {
    const Challenge challenge;
    nRights = 0;
    const QByteArray body =
        RequestScript("CheckPassword?CourseId=" + QByteArray::number(info.Id) +
                      "&Password=" + challenge.Sign(PasswordDigest(strPassword), Protocol::PasswordKeys()) +
                      "&Info=" + Protocol::ClientTag(m_identity, info.Id));
    return TakePasswordReply(body, info, challenge.Proof(), &nRights);
}

bool CCourseServer::EditPassword(CCourseInfo& info, const QString& strOldPassword,
                                 const QString& strNewPassword) {
    const Challenge challenge;
    // The new password goes as its digest, without a token: the server takes it only so.
    const QByteArray body = RequestScript(
        "EditPassword?CourseId=" + QByteArray::number(info.Id) +
        "&Password=" + challenge.Sign(PasswordDigest(strOldPassword), Protocol::PasswordKeys()) + "&New=" +
        Md5Hex(CodePage::Encode(strNewPassword)) + "&Info=" + Protocol::ClientTag(m_identity, info.Id));
    return TakePasswordReply(body, info, challenge.Proof(), nullptr);
}

bool CCourseServer::CheckCourseInfo(const CCourseInfo& info, const QString& strSchoolName, int nType,
                                    const CourseFigures& figures) {
    const Challenge challenge;
    const QByteArray digest =
        Protocol::StatusDigest(CodePage::Encode(info.Name), CodePage::Encode(info.TeacherName),
                               Protocol::ClientTag(m_identity, info.Id));
    const bool bHasKeys = !m_keyOne.isEmpty() && !m_keyTwo.isEmpty();
    if (!bHasKeys || NextRandom() % 100 >= 70) {
        const Protocol::KeyTexts keys = Protocol::SessionKeys(CodePage::Encode(strSchoolName));
        m_keyOne = keys.strOne;
        m_keyTwo = keys.strTwo;
    }
    const QByteArray body = RequestScript(
        "CheckCourseInfo?CourseId=" + QByteArray::number(info.Id) +
        "&Info=" + challenge.Sign(digest, {m_keyOne, m_keyTwo}) + "&Type=" + QByteArray::number(nType) +
        "&Count=" + QByteArray::number(figures.Count) + "&Changed=" + QByteArray::number(figures.Changed) +
        "&Size=" + QByteArray::number(figures.Size, 'f', 6));
    return body == challenge.Proof();
}

#include "server/Protocol.h"

#include "foundation/Ciphers.h"
#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/Text.h"
#include "server/Texts.h"

#include <QSysInfo>

using Torvane::CRunException;

namespace Protocol {

namespace {

constexpr qsizetype c_nIdentityBytes = 30;
constexpr qsizetype c_nKeyLength = 14;
constexpr qsizetype c_nSecondKeyAt = 16;
constexpr qint32 c_nNoReply = 128;

qint32 ReadNumber(QByteArrayView text) {
    return ParseInt(QString::fromLatin1(text));
}

} // namespace

KeyTexts PasswordKeys() {
    return {QByteArrayLiteral("q7.Rk@Z2|Wm$Fd"), QByteArrayLiteral(";T/4xnNe+#saP!")};
}

KeyTexts SessionKeys(QByteArrayView schoolName) {
    const QByteArray digest = Md5Hex(QByteArray("!&^c%:PV" + schoolName.toByteArray()));
    return {digest.first(c_nKeyLength), digest.sliced(c_nSecondKeyAt, c_nKeyLength)};
}

QByteArray StatusDigest(QByteArrayView courseName, QByteArrayView teacherName, QByteArrayView clientTag) {
    const QByteArray text =
        "JM@5)Gyr" + courseName.toByteArray() + teacherName.toByteArray() + clientTag.toByteArray();
    return Md5Hex(text);
}

QByteArray ChallengeProof(quint32 nTick, quint32 nRandom) {
    const QByteArray text =
        QByteArray::number(static_cast<qint32>(nTick)) + QByteArray::number(static_cast<qint32>(nRandom));
    return Md5Hex(text);
}

QByteArray ClientTag(QByteArrayView identity, qint32 nCourseId) {
    const QByteArray padded = identity.toByteArray().leftJustified(c_nIdentityBytes, ' ', true);
    return EncodeBase64Paren(ScrambleBytes(padded, static_cast<quint32>(nCourseId)));
}

QByteArray ClientIdentity() {
    QString strUser = qEnvironmentVariable("USER");
    if (strUser.isEmpty())
        strUser = qEnvironmentVariable("USERNAME");
    const QString strWho = strUser + QLatin1Char('@') + QSysInfo::machineHostName();
    // Machines set up from one image share user and host names: the end tells them apart.
    const QByteArray machine = CodePage::Encode(strWho) + '\n' + QSysInfo::machineUniqueId();
    const QByteArray mark = Md5Hex(machine).first(8);
    const QString strHead = CodePage::Cut(strWho, c_nIdentityBytes - mark.size() - 1);
    const QByteArray identity = CodePage::Encode(strHead) + ' ' + mark;
    return identity.leftJustified(c_nIdentityBytes, ' ', true);
}

ReplyState ParseReplyState(QByteArrayView headers) {
    constexpr QByteArrayView c_operation("Operation Type: ");
    constexpr QByteArrayView c_successful("Successful: ");
    constexpr QByteArrayView c_errorCode("Error Code: ");
    ReplyState state;
    const QByteArrayList lines = SplitLines(headers);
    for (const QByteArray& line : lines) {
        if (line.startsWith(c_operation))
            state.strOperation = line.sliced(c_operation.size());
        else if (line.startsWith(c_successful))
            state.bSuccessful = line.sliced(c_successful.size()).startsWith('1');
        else if (line.startsWith(c_errorCode))
            state.nErrorCode = ReadNumber(line.sliced(c_errorCode.size() - 1));
    }
    if (state.strOperation.isEmpty()) {
        state.bSuccessful = false;
        state.nErrorCode = c_nNoReply;
    }
    return state;
}

void RaiseError(qint32 nErrorCode, QByteArrayView body) {
    switch (nErrorCode) {
    case 0:
        return;
    case 1:
        throw CRunException(ServerText::c_strProxyError);
    case 2:
        throw CRunException(ServerText::c_strBadParameters);
    case 4:
        throw CRunException(ServerText::c_strNoDatabase);
    case 8:
        throw CRunException(ServerText::c_strNoCourse);
    case 16:
        throw CInvalidLogException();
    case 17:
        throw CRunException(ServerText::c_strCourseInUse);
    case 18:
        throw CRunException(ServerText::c_strTooManyOnline);
    case 64:
        throw CRunException(CodePage::Decode(body));
    default:
        throw CRunException(ServerText::c_strServerError);
    }
}

QByteArrayList SplitLines(QByteArrayView text) {
    QByteArray plain = text.toByteArray();
    plain.replace('\r', QByteArrayView());
    return plain.split('\n');
}

QList<CCourseInfo> ParseCourseList(QByteArrayView body) {
    QList<CCourseInfo> courses;
    if (body.isEmpty())
        return courses;
    QByteArrayList lines = SplitLines(body);
    if (lines.last().isEmpty())
        lines.removeLast();
    for (const QByteArray& line : lines) {
        const QByteArrayList fields = line.split(c_cFieldSeparator);
        if (fields.size() < 3)
            throw CRunException(ServerText::c_strNoCourseList);
        courses.append({ReadNumber(fields[0]), CodePage::Decode(fields[1]), CodePage::Decode(fields[2])});
    }
    return courses;
}

PasswordReply ParsePasswordReply(QByteArrayView body) {
    const QByteArrayList lines = SplitLines(body);
    const QByteArrayList names = lines.size() > 1 ? lines[1].split(c_cFieldSeparator) : QByteArrayList();
    if (names.size() < 2)
        throw CRunException(ServerText::c_strNoCourseInfo);
    PasswordReply reply;
    reply.strProof = lines[0];
    reply.strName = CodePage::Decode(names[0]);
    reply.strTeacher = CodePage::Decode(names[1]);
    reply.nRights = lines.size() > 2 ? ReadNumber(lines[2]) : 0;
    return reply;
}

} // namespace Protocol

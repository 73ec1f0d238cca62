#pragma once

#include "course/CourseInfo.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

/// What client and course server have in common: the digests of the protocol, and the parts of a reply, as
/// plain functions. Bytes are in the code page.
namespace Protocol {

/// Between the fields of a line.
inline constexpr char c_cFieldSeparator = '\a';

/// The rights word's bit that says that the password is still the initial one.
inline constexpr qint32 c_nInitialPasswordRight = 16;

struct KeyTexts {
    QByteArray strOne;
    QByteArray strTwo;
};
/// The keys under which a password travels.
KeyTexts PasswordKeys();
/// The keys under which a status report of this school travels.
KeyTexts SessionKeys(QByteArrayView schoolName);

/// What a status report proves: the course's names and the client's tag.
QByteArray StatusDigest(QByteArrayView courseName, QByteArrayView teacherName, QByteArrayView clientTag);

/// What the server sends back to show that it could open the token. The tick count counts as a signed number
/// here, so that it is negative after 25 days without a restart.
QByteArray ChallengeProof(quint32 nTick, quint32 nRandom);

/// The value that stands for this client in requests about a course. identity is cut and blank-padded to 30
/// bytes.
QByteArray ClientTag(QByteArrayView identity, qint32 nCourseId);

/// 30 bytes that stay the same for a person at a machine.
QByteArray ClientIdentity();

struct ReplyState {
    QByteArray strOperation;
    bool bSuccessful = false;
    qint32 nErrorCode = 0;
};
/// Reads the state out of a reply's raw headers.
ReplyState ParseReplyState(QByteArrayView headers);

/// Throws what the error code asks for: Torvane::CRunException or CInvalidLogException; returns for 0.
void RaiseError(qint32 nErrorCode, QByteArrayView body);

/// Without carriage returns, split at line feeds; there is a last line behind the last line feed.
QByteArrayList SplitLines(QByteArrayView text);

/// Throws Torvane::CRunException for a line that lacks a field.
QList<CCourseInfo> ParseCourseList(QByteArrayView body);

struct PasswordReply {
    QByteArray strProof;
    QString strName;
    QString strTeacher;
    qint32 nRights = 0;
};
/// Throws Torvane::CRunException when a line or a field is missing.
PasswordReply ParsePasswordReply(QByteArrayView body);

} // namespace Protocol

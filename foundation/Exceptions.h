#pragma once

#include <QString>

/// The exceptions of the whole program. They hold a finished message for a person and nothing else.
namespace Torvane {

class CException {
public:
    explicit CException(QString strMessage) : m_strMessage(std::move(strMessage)) {}
    virtual ~CException() = default;
    CException(const CException&) = default;
    CException(CException&&) = default;
    CException& operator=(const CException&) = default;
    CException& operator=(CException&&) = default;

    /// The message, never null: an empty message gives an empty text.
    virtual QString GetMessage() const { return m_strMessage.isNull() ? QStringLiteral("") : m_strMessage; }

private:
    QString m_strMessage;
};

/// A failure with a ready message. What most modules throw.
class CRunException : public CException {
public:
    using CException::CException;
};

namespace File {

/// A failed file operation. The message ends with the system's reason in brackets, "(…)", when there was one.
class CFileException : public CRunException {
public:
    /// strText is cut at 1,023 code page bytes; nSystemError of 0 adds no reason.
    CFileException(const QString& strText, int nSystemError);
    /// A message with one place or two for paths, which are shown in native form.
    CFileException(const QString& strMessage, const QString& strPath, int nSystemError);
    CFileException(const QString& strMessage, const QString& strFrom, const QString& strTo, int nSystemError);

    /// 0 when there was none.
    int GetSystemError() const { return m_nSystemError; }

private:
    int m_nSystemError;
};

/// The system's text for an error code, in the person's language; "Unknown Error!" when it has none. At most
/// 1,023 code page bytes.
QString FormatSystemError(int nCode);

} // namespace File

namespace Net {

class CHttpClientException : public CRunException {
public:
    using CRunException::CRunException;
};

/// The person gave the request up: no box has to tell her.
class CCancelledException : public CHttpClientException {
public:
    using CHttpClientException::CHttpClientException;
};

} // namespace Net

namespace COM {

/// A failed call of the database.
class CCOMException : public CRunException {
public:
    using CRunException::CRunException;
};

} // namespace COM
} // namespace Torvane

/// The course server has lost this client's session. Stands outside the family on purpose: whoever handles
/// failures with a message must not take it for one.
class CInvalidLogException {};

#include "courseserver/HttpRequest.h"

namespace {

constexpr qsizetype c_nMaxHead = qsizetype{8} * 1024;

} // namespace

QByteArray HttpRequest::Path() const {
    QByteArray path = strTarget.first(strTarget.indexOf('?') < 0 ? strTarget.size() : strTarget.indexOf('?'));
    while (path.contains("//"))
        path.replace("//", "/");
    return path;
}

QByteArray HttpRequest::Query() const {
    const qsizetype nMark = strTarget.indexOf('?');
    return nMark < 0 ? QByteArray() : strTarget.sliced(nMark + 1);
}

CRequestReader::EState CRequestReader::Feed(QByteArrayView bytes) {
    if (m_state != EState::More)
        return m_state;
    m_buffer.append(bytes.first(qMin(bytes.size(), c_nMaxHead + 1 - m_buffer.size())));
    qsizetype nEnd = m_buffer.indexOf("\r\n\r\n");
    const qsizetype nPlainEnd = m_buffer.indexOf("\n\n");
    if (nEnd < 0 || (nPlainEnd >= 0 && nPlainEnd < nEnd))
        nEnd = nPlainEnd;
    if (nEnd < 0) {
        if (m_buffer.size() > c_nMaxHead)
            m_state = EState::TooLong;
        return m_state;
    }
    QByteArrayView line =
        QByteArrayView(m_buffer).first(m_buffer.indexOf('\n') < 0 ? nEnd : m_buffer.indexOf('\n'));
    if (line.endsWith('\r'))
        line.chop(1);
    m_state = ParseRequestLine(line);
    m_buffer.clear();
    return m_state;
}

CRequestReader::EState CRequestReader::ParseRequestLine(QByteArrayView line) {
    // Blanks of the target are sent as they stand: only the first and the last blank of the line separate.
    const qsizetype nMethodEnd = line.indexOf(' ');
    const qsizetype nTargetEnd = line.lastIndexOf(" HTTP/");
    if (nMethodEnd <= 0 || nTargetEnd <= nMethodEnd)
        return EState::Bad;
    m_request.strMethod = line.first(nMethodEnd).toByteArray();
    m_request.strTarget = line.sliced(nMethodEnd + 1, nTargetEnd - nMethodEnd - 1).toByteArray();
    // A proxy's form, with scheme and host in front.
    if (m_request.strTarget.startsWith("http://")) {
        const qsizetype nPath = m_request.strTarget.indexOf('/', 7);
        m_request.strTarget = nPath < 0 ? QByteArray("/") : m_request.strTarget.sliced(nPath);
    }
    return m_request.strTarget.startsWith('/') ? EState::Done : EState::Bad;
}

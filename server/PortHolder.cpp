#include "server/PortHolder.h"

#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "foundation/TextFile.h"
#include "server/Protocol.h"

namespace {

constexpr qsizetype c_nMaxPorts = 64;

} // namespace

void CPortHolder::Run() {
    QByteArray text;
    try {
        if (Torvane::File::IsFile(m_strPath))
            text = ReadFileBytes(m_strPath);
    } catch (const Torvane::CRunException&) {
        return;
    }
    if (text.isEmpty())
        return;
    for (const QByteArray& line : Protocol::SplitLines(text).mid(0, c_nMaxPorts)) {
        const qint32 nPort = ParseInt(QString::fromLatin1(line));
        if (nPort < 0 || nPort > 65535)
            continue;
        if (auto pHeld = Platform::CHeldPort::Take(static_cast<quint16>(nPort)))
            m_held.push_back(std::move(pHeld));
    }
}

QList<quint16> CPortHolder::GetPorts() const {
    QList<quint16> ports;
    for (const auto& pHeld : m_held)
        ports.append(pHeld->GetPort());
    return ports;
}

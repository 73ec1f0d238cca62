#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <ostream>

// So that a failed comparison shows text instead of bytes.
inline void PrintTo(const QString& str, std::ostream* pOut) {
    *pOut << '"' << str.toStdString() << '"';
}
inline void PrintTo(const QByteArray& bytes, std::ostream* pOut) {
    *pOut << '"' << bytes.toStdString() << "\" (" << bytes.toHex().toStdString() << ')';
}

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <ostream>

// So that a failed comparison, and what is said of it, show text instead of bytes.
inline std::ostream& operator<<(std::ostream& out, const QString& str) {
    return out << str.toStdString();
}
inline std::ostream& operator<<(std::ostream& out, const QByteArray& bytes) {
    return out << bytes.toStdString();
}
inline void PrintTo(const QString& str, std::ostream* pOut) {
    *pOut << '"' << str << '"';
}
inline void PrintTo(const QByteArray& bytes, std::ostream* pOut) {
    *pOut << '"' << bytes << "\" (" << bytes.toHex() << ')';
}

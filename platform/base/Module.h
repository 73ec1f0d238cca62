#pragma once

#include <QFunctionPointer>
#include <QStringList>

namespace Platform {

/// A part of the program that lies in a library of its own, for what a start need not pay for. It is loaded
/// when it is first needed, from the program's folder or from "../lib" beside it, or the folder above, and
/// stays.
class CModule {
public:
    /// The name stands without what a platform puts before and behind it ("lib", ".so"). The application
    /// object must exist.
    explicit CModule(const QString& strName);

    /// Whether there is a file to load. Loads nothing.
    bool IsThere() const;

    /// The module's exported C function, or null when there is none that loads. May be called on any thread,
    /// also to have the loading over before it is needed.
    QFunctionPointer Load(const char* szFunction);

    /// Why the last Load gave null, in the system's words; not to be read while it runs.
    const QString& Reason() const { return m_strReason; }

private:
    QStringList m_files;
    QString m_strReason;
};

} // namespace Platform

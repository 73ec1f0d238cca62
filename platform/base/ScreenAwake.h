#pragma once

#include <QString>

#include <memory>

namespace Platform {

/// Keeps the desktop's screen saver away while something is being watched. Nothing here waits, and without a
/// desktop that can be asked nothing happens. What is asked for ends with the object, and with the process.
class CScreenAwake {
public:
    /// Why, in a few words that the desktop may show to a person.
    explicit CScreenAwake(const QString& strReason) : m_strReason(strReason) {}
    ~CScreenAwake() { Hold(false); }
    CScreenAwake(const CScreenAwake&) = delete;
    CScreenAwake& operator=(const CScreenAwake&) = delete;

    /// The same again changes nothing.
    void Hold(bool bOn);

private:
    struct SHold;

    QString m_strReason;
    /// Null while the screen saver may come.
    std::shared_ptr<SHold> m_pHold;
};

} // namespace Platform

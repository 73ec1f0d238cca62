#pragma once

#include "foundation/Ciphers.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

/// How a course stores its nodes' titles: enciphered with a key of the course, but for the three rows that
/// every course has.
class CTitleCipher {
public:
    /// The key comes from Province and SchoolName of the settings and the course's id.
    explicit CTitleCipher(qint32 nCourseId);

    /// What the column holds for a title. Quotes are doubled although the value is bound: every stored title
    /// is so, and has to be met that way.
    QByteArray Stored(const QString& strTitle) const;
    /// What a search looks for: nothing doubled, so that titles with a single quote are not found.
    QByteArray Searched(const QString& strTitle) const;
    /// The title of what the column holds; garbage when the key is another's.
    QString Plain(qint32 nId, QByteArrayView stored) const;

private:
    CDesKey m_key;
};

#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringView>

/// Adds things up to a number that tells whether they are still the same. Not for what somebody may forge: it
/// tells an edited file from an unedited one.
class CSum {
public:
    CSum& Add(quint64 nValue) {
        m_nSum = Mixed(m_nSum ^ nValue);
        return *this;
    }
    CSum& Add(QStringView text) {
        Add(quint64(text.size()));
        quint64 nWord = 0;
        for (qsizetype i = 0; i < text.size(); ++i) {
            nWord = nWord << 16 | text[i].unicode();
            if (i % 4 == 3) {
                Add(nWord);
                nWord = 0;
            }
        }
        return Add(nWord);
    }
    CSum& Add(const QString& strText) { return Add(QStringView(strText)); }

    /// Never 0.
    quint64 Value() const { return m_nSum | 1; }

private:
    static quint64 Mixed(quint64 n) {
        n = (n ^ n >> 30) * 0xBF58476D1CE4E5B9ULL;
        n = (n ^ n >> 27) * 0x94D049BB133111EBULL;
        return (n ^ n >> 31) + 0x9E3779B97F4A7C15ULL;
    }

    quint64 m_nSum = 0x9E3779B97F4A7C15ULL;
};

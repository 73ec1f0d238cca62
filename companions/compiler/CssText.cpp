#include "companions/compiler/CssText.h"

using namespace Qt::StringLiterals;

namespace CssText {
namespace {

bool IsSpace(QChar c) {
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\f';
}

bool IsNameCharacter(QChar c) {
    return c.isLetterOrNumber() || c == u'-' || c == u'_' || c == u'\\' || c.unicode() >= 128;
}

class CScanner {
public:
    CScanner(const QString& strSheet, const Rewriter& rewrite) : m_strSheet(strSheet), m_rewrite(rewrite) {}

    std::optional<QString> Run() {
        while (m_nAt < m_strSheet.size())
            Step();
        if (!m_bChanged)
            return std::nullopt;
        return m_strOut + m_strSheet.mid(m_nCopied);
    }

private:
    bool At(QStringView strText) const {
        return QStringView(m_strSheet).mid(m_nAt).startsWith(strText, Qt::CaseInsensitive);
    }

    void Step() {
        const QChar c = m_strSheet[m_nAt];
        if (At(u"/*")) {
            const qsizetype nEnd = m_strSheet.indexOf(u"*/"_s, m_nAt + 2);
            m_nAt = nEnd < 0 ? m_strSheet.size() : nEnd + 2;
        } else if (c == u'"' || c == u'\'') {
            String(m_bImport);
        } else if (IsNameCharacter(c) || c == u'@') {
            Name();
        } else {
            m_bImport = m_bImport && c != u';' && c != u'{';
            ++m_nAt;
        }
    }

    void Name() {
        if (At(u"url(")) {
            m_nAt += 4;
            return Url();
        }
        m_bImport = At(u"@import");
        ++m_nAt;
        while (m_nAt < m_strSheet.size() && IsNameCharacter(m_strSheet[m_nAt]))
            ++m_nAt;
    }

    void Url() {
        while (m_nAt < m_strSheet.size() && IsSpace(m_strSheet[m_nAt]))
            ++m_nAt;
        if (m_nAt < m_strSheet.size() && (m_strSheet[m_nAt] == u'"' || m_strSheet[m_nAt] == u'\''))
            return String(true);
        const qsizetype nBracket = m_strSheet.indexOf(u')', m_nAt);
        qsizetype nEnd = nBracket < 0 ? m_strSheet.size() : nBracket;
        const qsizetype nNext = nEnd;
        while (nEnd > m_nAt && IsSpace(m_strSheet[nEnd - 1]))
            --nEnd;
        Reference(m_nAt, nEnd, m_nAt, nEnd);
        m_nAt = nNext;
    }

    /// A string ends with its quote; a broken one with its line.
    void String(bool bReference) {
        const QChar cQuote = m_strSheet[m_nAt];
        qsizetype nEnd = m_nAt + 1;
        while (nEnd < m_strSheet.size() && m_strSheet[nEnd] != cQuote && m_strSheet[nEnd] != u'\n')
            nEnd += m_strSheet[nEnd] == u'\\' ? 2 : 1;
        nEnd = qMin(nEnd, m_strSheet.size());
        const bool bClosed = nEnd < m_strSheet.size() && m_strSheet[nEnd] == cQuote;
        if (bReference && bClosed)
            Reference(m_nAt + 1, nEnd, m_nAt, nEnd + 1);
        m_nAt = bClosed ? nEnd + 1 : nEnd;
    }

    /// Rewrites the reference in [nBegin, nEnd), which stands in [nFrom, nTo) with its quotes.
    void Reference(qsizetype nBegin, qsizetype nEnd, qsizetype nFrom, qsizetype nTo) {
        const QString strReference = m_strSheet.mid(nBegin, nEnd - nBegin);
        if (strReference.isEmpty() || strReference.contains(u'\\'))
            return;
        std::optional<QString> strNew = m_rewrite(strReference);
        if (!strNew)
            return;
        m_strOut +=
            m_strSheet.mid(m_nCopied, nFrom - m_nCopied) + u'"' + strNew->replace(u'"', u"%22"_s) + u'"';
        m_nCopied = nTo;
        m_bChanged = true;
    }

    const QString& m_strSheet;
    const Rewriter& m_rewrite;
    QString m_strOut;
    qsizetype m_nAt = 0;
    qsizetype m_nCopied = 0;
    bool m_bImport = false;
    bool m_bChanged = false;
};

} // namespace

std::optional<QString> RewriteReferences(const QString& strSheet, const Rewriter& rewrite) {
    return CScanner(strSheet, rewrite).Run();
}

} // namespace CssText

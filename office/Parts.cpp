#include "office/Parts.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace Torvane::Office {

QByteArray Part(const QString& strName, const QMap<QByteArray, QByteArray>& values) {
    QFile file(u":/office/"_s + strName);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("part of a page is missing");
    const QByteArray text = file.readAll();
    QByteArray out;
    qsizetype nAt = 0;
    for (;;) {
        const qsizetype nBegin = text.indexOf('%', nAt);
        const qsizetype nEnd = nBegin < 0 ? -1 : text.indexOf('%', nBegin + 1);
        if (nEnd < 0)
            return out + text.mid(nAt);
        const auto it = values.find(text.mid(nBegin + 1, nEnd - nBegin - 1));
        if (it == values.end()) {
            out += text.mid(nAt, nEnd - nAt);
            nAt = nEnd;
        } else {
            out += text.mid(nAt, nBegin - nAt) + *it;
            nAt = nEnd + 1;
        }
    }
}

} // namespace Torvane::Office

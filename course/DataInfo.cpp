#include "course/DataInfo.h"

#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/Text.h"
#include "foundation/TextFile.h"

#include <charconv>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/// Far more than three numbers take.
constexpr qint64 c_nMaxLength = 1024;

/// As C reads a number from the head of a text, but never in the manner of the person's country.
double ParseDouble(const QString& strText) {
    const QByteArray text = strText.trimmed().toLatin1();
    double dValue = 0;
    std::from_chars(text.begin(), text.end(), dValue);
    return std::isfinite(dValue) ? dValue : CourseFigures().Size;
}

} // namespace

CourseFigures ReadDataInfo(const QString& strPath) {
    QByteArray text;
    try {
        text = ReadFileBytes(strPath, c_nMaxLength + 1);
    } catch (const Torvane::CRunException&) {
        return {};
    }
    if (text.size() > c_nMaxLength)
        return {};
    const QString strLine = CodePage::Decode(text).trimmed();
    QStringList pieces;
    SplitText(strLine, pieces, u',');
    if (pieces.size() != 3 || strLine.contains(u'\n'))
        return {};
    return {ParseInt(pieces[0]), ParseDouble(pieces[2]), ParseInt(pieces[1])};
}

void WriteDataInfo(const QString& strPath, const CourseFigures& figures) {
    ReplaceFile(strPath, QByteArray::number(figures.Count) + ',' + QByteArray::number(figures.Changed) + ',' +
                             QByteArray::number(figures.Size, 'f', 6));
}
